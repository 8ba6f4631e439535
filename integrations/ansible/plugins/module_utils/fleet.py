"""Combines the snapshots of many hosts.

A snapshot comes from a managed host, which is untrusted. Each is
reduced to a flat record of checked strings and numbers; one that cannot be
reduced makes its host unknown, and no other.

A record of a host is a dictionary:
  host, status, problems (severity and text, the worst first), time
  versions  list of (what, version)
  drives    list of (model, serial, has a problem)
  arrays    list of (label, serials of the members), redundant ones only
"""
import glob
import os
from collections import Counter, defaultdict

from ansible_collections.sataraid.cli.plugins.module_utils import (
    names, programs)

RANKS = {"ok": 0, "info": 0, "warning": 1, "unknown": 2, "critical": 3}
BROKEN = (KeyError, TypeError, ValueError, AttributeError, IndexError,
          RecursionError)
NO_REDUNDANCY = ("RAID0", "JBOD")


def printable(text):
    """Control, bidirectional and invalid characters as escapes."""
    return "".join(one if one.isprintable()
                   else one.encode("unicode_escape").decode()
                   for one in text)


def text_of(value):
    if not isinstance(value, str):
        raise TypeError("not a string")
    return printable(value)


def version_text(version):
    return ".".join(str(int(version[part]))
                    for part in ("major", "minor", "third", "fourth"))


def problems_of(snapshot):
    found = [(one["severity"], text_of(one["text"]))
             for one in snapshot["findings"] if RANKS[one["severity"]] > 0]
    return sorted(found, key=lambda one: -RANKS[one[0]])


def versions_of(controller):
    for what, record, field in (
            ("controller firmware", "version", "firmwareVersion"),
            ("controller BIOS", "info", "biosVersion"),
            ("driver", "driver", "driverVersion")):
        if controller[record] is not None:
            yield what, version_text(controller[record][field])
    for drive in controller["drives"]:
        info = drive["info"]
        yield ("drive " + text_of(info["model"]), text_of(info["firmware"]))


def drives_with_problems(snapshot):
    return {(one["object"]["controller"], one["object"]["number"])
            for one in snapshot["findings"]
            if one["object"]["kind"] == "drive"
            and RANKS[one["severity"]] > 0}


def drives_of(snapshot):
    troubled = drives_with_problems(snapshot)
    for controller in snapshot["controllers"]:
        lost = {member["number"] for one in controller["logicalDrives"]
                for member in one["members"] if member["lost"]}
        for drive in controller["drives"]:
            number, info = drive["number"], drive["info"]
            yield (text_of(info["model"]), text_of(info["serial"]),
                   (controller["id"], number) in troubled or number in lost)


def arrays_of(snapshot):
    for controller in snapshot["controllers"]:
        models = {text_of(drive["info"]["serial"]):
                  text_of(drive["info"]["model"])
                  for drive in controller["drives"]}
        for one in controller["logicalDrives"]:
            info = one["info"]
            if info["raidLevelText"] in NO_REDUNDANCY:
                continue
            serials = [text_of(member["serial"]) for member in one["members"]
                       if member["serial"]]
            label = (f"logical drive {int(info['logDrvId'])} "
                     f"{text_of(info['name'])} of controller "
                     f"{int(controller['id'])}")
            yield label, [(models.get(serial, ""), serial)
                          for serial in serials]


def empty_record(host, problem):
    return {"host": printable(host), "status": "unknown", "time": None,
            "problems": [("unknown", problem)], "versions": [], "drives": [],
            "arrays": []}


def record_of(host, snapshot, time):
    if snapshot["status"] not in ("ok", "warning", "critical", "unknown"):
        raise ValueError("the status is not known")
    return {"host": printable(host), "status": snapshot["status"],
            "time": time, "problems": problems_of(snapshot),
            "versions": [pair for one in snapshot["controllers"]
                         for pair in versions_of(one)],
            "drives": list(drives_of(snapshot)),
            "arrays": list(arrays_of(snapshot))}


def read_record(host, path):
    try:
        with open(path, encoding="utf-8") as file:
            text = file.read()
        snapshot, problem = programs.parse_snapshot(text)
        if snapshot is None:
            return empty_record(host, problem)
        return record_of(host, snapshot, os.path.getmtime(path))
    except OSError as error:
        return empty_record(host, f"the snapshot cannot be read: {error}")
    except BROKEN:
        return empty_record(host, "the snapshot is not that of cli-status")


def worsen(record, problem):
    """Adds a reason why the present state is unknown, as the first of them."""
    record["problems"].insert(0, ("unknown", problem))
    record["problems"].sort(key=lambda one: -RANKS[one[0]])
    if RANKS[record["status"]] < RANKS["unknown"]:
        record["status"] = "unknown"


def outdate(record, now, max_age):
    """An outdated snapshot does not describe the present state."""
    if record["time"] is None or now - record["time"] <= max_age:
        return record
    hours = int(now - record["time"]) // 3600
    worsen(record, f"the snapshot is {hours} hours old")
    return record


def mark_unread(record, since):
    """A host that could not be read now may be in another state since."""
    if record["time"] is not None and record["time"] < since:
        worsen(record, "the host could not be read now; this is an earlier "
                       "state")
    return record


def counts(record):
    """Problems by severity, the worst first."""
    found = Counter(severity for severity, _ in record["problems"])
    return [found[severity] for severity in ("critical", "unknown",
                                             "warning")]


def badness(record):
    return ([-RANKS[record["status"]]]
            + [-number for number in counts(record)] + [record["host"]])


def read_fleet(directory, hosts, now, max_age, since=0):
    """The records of all hosts, the worst first."""
    paths = {names.host_name(os.path.basename(path)[:-len(".json")]): path
             for path in glob.glob(os.path.join(glob.escape(directory),
                                                "*.json"))}
    wanted = paths if hosts is None else hosts
    records = [outdate(read_record(host, paths[host]), now, max_age)
               if host in paths else empty_record(host, "there is no snapshot")
               for host in wanted]
    return sorted([mark_unread(record, since) for record in records],
                  key=badness)


def version_differences(records):
    """For each thing with more than one version, a dictionary of them.

    Its values are the number of things and the hosts that have them; the
    most common version comes first.
    """
    number, hosts = defaultdict(Counter), defaultdict(dict)
    for record in records:
        for what, version in record["versions"]:
            number[what][version] += 1
            hosts[what].setdefault(version, {})[record["host"]] = True
    return {what: {version: (count, list(hosts[what][version]))
                   for version, count in number[what].most_common()}
            for what in sorted(number) if len(number[what]) > 1}


def batches(records, prefix):
    """Drives, drives with problems and hosts of each batch of two or more.

    Those with the most drives with problems come first, then the largest.
    """
    found = {}
    for record in records:
        for model, serial, troubled in record["drives"]:
            if not serial:
                continue
            batch = found.setdefault((model, serial[:prefix]),
                                     {"drives": 0, "troubled": 0,
                                      "hosts": {}})
            batch["drives"] += 1
            batch["troubled"] += troubled
            batch["hosts"][record["host"]] = True
    rows = [(model, start, one) for (model, start), one in found.items()
            if one["drives"] > 1]
    return sorted(rows, key=lambda row: (-row[2]["troubled"],
                                         -row[2]["drives"], row[:2]))


def arrays_of_one_batch(records, prefix):
    """Redundant logical drives whose members may all fail together."""
    for record in records:
        for label, members in record["arrays"]:
            kinds = {(model, serial[:prefix]) for model, serial in members}
            if len(members) > 1 and len(kinds) == 1:
                yield record["host"], label, kinds.pop()
