#!/usr/bin/env python3
"""The report on a fleet and the comparison of snapshots, in isolation.

Ends with 77 without Ansible.
"""
import copy
import json
import os
import re
import sys
import unittest
from html.parser import HTMLParser

import workspace

WORK = None
MALICIOUS = "</bdi></td><script>alert('x')</script>&amp;\x1b[2J\u202eabc\ud800"
VERSION = {"major": 1, "minor": 2, "third": 3, "fourth": 4}
NOW = 1000000000


def drive(number, serial, model="M", firmware="F"):
    return {"number": number, "info": {"model": model, "serial": serial,
                                       "firmware": firmware}}


def array(name, members, level="RAID1", lost=()):
    return {"info": {"logDrvId": 0, "name": name, "raidLevelText": level},
            "members": [{"number": number, "serial": serial,
                         "lost": number in lost}
                        for number, serial in members]}


def finding(severity, rule="r", kind="drive", number=1, text="t"):
    return {"rule": rule, "severity": severity, "text": text, "object": {
        "kind": kind, "controller": 0, "number": number, "name": ""}}


def snapshot(status="ok", findings=(), drives=(), arrays=(), firmware=4):
    return {"format": 1, "status": status, "findings": list(findings),
            "controllers": [{
                "id": 0, "info": {"biosVersion": VERSION}, "driver": None,
                "version": {"firmwareVersion": {**VERSION,
                                                "fourth": firmware}},
                "drives": list(drives), "logicalDrives": list(arrays)}]}


class Tags(HTMLParser):
    """The elements of a page, which have to be closed in order."""

    def __init__(self):
        super().__init__()
        self.open, self.seen = [], set()

    def handle_starttag(self, tag, attrs):
        self.seen.add(tag)
        if tag != "meta":
            self.open.append(tag)

    def handle_endtag(self, tag):
        if self.open.pop() != tag:
            raise AssertionError(f"{tag} is closed out of order")


class ReportTest(unittest.TestCase):
    def setUp(self):
        self.directory = WORK.path / self.id().rsplit(".", 1)[1]
        self.directory.mkdir()

    def save(self, host, state, age=0):
        path = self.directory / (names.file_name(host) + ".json")
        path.write_text(state if isinstance(state, str)
                        else json.dumps(state))
        os.utime(path, (NOW - age, NOW - age))

    def read(self, hosts=None):
        return fleet.read_fleet(str(self.directory), hosts, NOW, 3600)

    def test_worst_first(self):
        self.save("well", snapshot())
        self.save("warned", snapshot("warning", [finding("warning")]))
        self.save("warned twice", snapshot("warning",
                                           [finding("warning")] * 2))
        self.save("unreadable", snapshot("unknown", [finding("unknown")]))
        self.save("lost", snapshot("critical", [
            finding("warning", text="w"), finding("critical", text="c")]))
        self.save("old", snapshot("warning", [finding("warning")]), 7200)
        self.save("other", snapshot("critical"))
        records = self.read(["well", "warned", "warned twice", "unreadable",
                             "lost", "old", "nobody"])
        self.assertEqual(
            [(one["host"], one["status"]) for one in records],
            [("lost", "critical"), ("old", "unknown"),
             ("nobody", "unknown"), ("unreadable", "unknown"),
             ("warned twice", "warning"), ("warned", "warning"),
             ("well", "ok")])
        self.assertEqual(fleet_page.text_table(records).splitlines(), [
            "HOST          STATE     CRIT  UNKN  WARN  FIRMWARE  WORST",
            "lost          critical  1     0     1     1.2.3.4   c",
            "old           unknown   0     1     1     1.2.3.4   "
            "the snapshot is 2 hours old",
            "nobody        unknown   0     1     0     -         "
            "there is no snapshot",
            "unreadable    unknown   0     1     0     1.2.3.4   t",
            "warned twice  warning   0     0     2     1.2.3.4   t",
            "warned        warning   0     0     1     1.2.3.4   t",
            "well          ok        0     0     0     1.2.3.4   -"])
        self.assertEqual(fleet_page.summary(records), "7 hosts: 1 critical, "
                         "3 unknown, 2 warning, 1 ok")

    def test_snapshots_of_earlier_runs(self):
        self.save("now", snapshot(), 9)
        self.save("before", snapshot("critical", [finding("critical")]), 11)
        self.save("well before", snapshot(), 11)
        records = fleet.read_fleet(str(self.directory), None, NOW, 3600,
                                   NOW - 10)
        earlier = ("unknown", "the host could not be read now; this is an "
                              "earlier state")
        self.assertEqual(
            [(one["host"], one["status"], one["problems"])
             for one in records],
            [("before", "critical", [("critical", "t"), earlier]),
             ("well before", "unknown", [earlier]), ("now", "ok", [])])

    def test_hosts_with_a_snapshot(self):
        for host in "b", "a/../x", "..":
            self.save(host, snapshot())
        self.assertEqual([one["host"] for one in self.read()],
                         ["..", "a/../x", "b"])
        self.assertEqual(sorted(path.name
                                for path in self.directory.iterdir()),
                         ["%2E..json", "a%2F..%2Fx.json", "b.json"])

    def test_firmware(self):
        self.save("a", snapshot(drives=[drive(1, "s", firmware="old"),
                                        drive(2, "t", firmware="new")]))
        self.save("b", snapshot(drives=[drive(1, "u", firmware="new")],
                                firmware=5))
        self.save("c", snapshot())
        self.assertEqual(fleet.version_differences(self.read()), {
            "controller firmware": {"1.2.3.4": (2, ["a", "c"]),
                                    "1.2.3.5": (1, ["b"])},
            "drive M": {"new": (2, ["a", "b"]), "old": (1, ["a"])}})

    def test_batches(self):
        self.save("a", snapshot("warning", [finding("warning", number=2)],
                                [drive(1, "AAA1"), drive(2, "BBB1"),
                                 drive(3, ""), drive(4, "")],
                                [array("x", [(1, "AAA1"), (2, "BBB1")])]))
        self.save("b", snapshot(drives=[
            drive(1, "AAA2"), drive(2, "AAA3"), drive(3, "BBB2"),
            drive(4, "CCC1"), drive(5, "AAA4", model="N")], arrays=[
                array("y", [(1, "AAA2"), (2, "AAA3")]),
                array("z", [(1, "AAA2"), (2, "AAA3")], "RAID0")]))
        records = self.read()
        self.assertEqual(
            [(model, start, one["drives"], one["troubled"],
              list(one["hosts"]))
             for model, start, one in fleet.batches(records, 3)],
            [("M", "BBB", 2, 1, ["a", "b"]), ("M", "AAA", 3, 0, ["a", "b"])])
        self.assertEqual(list(fleet.arrays_of_one_batch(records, 3)), [
            ("b", "logical drive 0 y of controller 0", ("M", "AAA"))])

    def test_lost_member_counts_as_a_problem(self):
        self.save("a", snapshot(drives=[drive(1, "AA"), drive(2, "AB")],
                                arrays=[array("x", [(1, "AA"), (2, "AB")],
                                              lost=[2])]))
        self.assertEqual(
            fleet.batches(self.read(), 1)[0][2]["troubled"], 1)

    def test_broken_snapshots(self):
        broken = ["", "{", "7", "[]", "null", '{"format": 2}', "[" * 100000,
                  '{"format": 1}', "\x00"]
        good = snapshot("warning", [finding("warning")], [drive(1, "s")],
                        [array("x", [(1, "s")])])
        for path in (["status"], ["findings"], ["controllers"],
                     ["findings", 0], ["findings", 0, "severity"],
                     ["findings", 0, "text"], ["findings", 0, "object"],
                     ["controllers", 0], ["controllers", 0, "drives"],
                     ["controllers", 0, "drives", 0, "info", "serial"],
                     ["controllers", 0, "logicalDrives", 0, "info"],
                     ["controllers", 0, "logicalDrives", 0, "info", "name"]):
            for value in {"a": 1}, 7, [[]], "<b>":
                state = copy.deepcopy(good)
                where = state
                for key in path[:-1]:
                    where = where[key]
                where[path[-1]] = value
                broken.append(json.dumps(state))
        for number, state in enumerate(broken):
            self.save(f"h{number}", state)
        records = self.read()
        self.assertEqual(len(records), len(broken))
        page = fleet_page.page(records, "t", 8)
        self.assertNotIn("<b>", page)
        self.check_markup(page)

    def check_markup(self, page):
        tags = Tags()
        tags.feed(page)
        self.assertEqual(tags.open, [])
        self.assertFalse(tags.seen - {
            "html", "head", "meta", "title", "style", "body", "h1", "h2",
            "p", "table", "caption", "thead", "tbody", "tr", "th", "td",
            "ul", "li", "span", "bdi"})
        page.encode()

    def test_malicious_names(self):
        self.save(MALICIOUS[:-1], snapshot(
            "warning", [finding("warning", text=MALICIOUS)],
            [drive(1, MALICIOUS + "1", MALICIOUS, MALICIOUS),
             drive(2, MALICIOUS + "2", MALICIOUS, "F")],
            [array(MALICIOUS, [(1, MALICIOUS + "1"), (2, MALICIOUS + "2")])]))
        records = self.read()
        page = fleet_page.page(records, MALICIOUS[:-1], 8)
        self.check_markup(page)
        self.assertNotIn("<script", page)
        self.assertIn("<bdi>&lt;/bdi&gt;&lt;/td&gt;&lt;script&gt;alert("
                      "&#x27;x&#x27;)&lt;/script&gt;&amp;amp;\\x1b[2J"
                      "\\u202eabc\\ud800</bdi>", page)
        table = fleet_page.text_table(records)
        self.assertTrue(all(one.isprintable() or one == "\n"
                            for one in table))

    def test_page_allows_its_own_style_alone(self):
        page = fleet_page.page([], "t", 8)
        style = re.search("<style>(.*)</style>", page, re.DOTALL)[1]
        digest = workspace.digest(style)
        self.assertIn("content=\"default-src 'none'; style-src "
                      f"'sha256-{digest}'\"", page)

    def test_module(self):
        self.save("a", snapshot("critical", [finding("critical")]))
        page, table = self.directory / "p.html", self.directory / "t.txt"
        arguments = {"snapshots": str(self.directory), "page": str(page),
                     "table": str(table), "max_age": 10 ** 9,
                     "title": "<Fleet>"}
        for check_mode, changed in (True, True), (False, True), (
                False, False), (True, False):
            result = WORK.module("fleet_report", arguments,
                                 check_mode=check_mode)
            self.assertEqual((result["changed"], result["worst"]),
                             (changed, ["a"]), result)
            self.assertEqual(page.exists(), not (check_mode and changed))
        self.assertIn("<h1>&lt;Fleet&gt;</h1>", page.read_text())
        self.assertIn("a     critical", table.read_text())

    def test_arguments_of_the_module(self):
        for message, arguments in (
                ("missing required arguments: snapshots", {"page": "/x"}),
                ("one of the following is required: page, table",
                 {"snapshots": "/x"}),
                ("batch_prefix is 0, not 1 to 23",
                 {"snapshots": "/x", "page": "/x", "batch_prefix": 0}),
                ("cannot write the report",
                 {"snapshots": "/x", "page": "/proc"})):
            result = WORK.module("fleet_report", arguments)
            self.assertTrue(result.get("failed"), result)
            self.assertIn(message, result["msg"])


class NewProblemsTest(unittest.TestCase):
    def problems(self, later, earlier):
        return new_problems({"findings": later}, {"findings": earlier})

    def test_nothing_new(self):
        findings = [finding("warning"), finding("critical", number=2)]
        self.assertEqual(self.problems(findings, findings), [])
        self.assertEqual(self.problems([], findings), [])
        self.assertEqual(self.problems([finding("info")], []), [])

    def test_readings_may_vary(self):
        self.assertEqual(self.problems([finding("warning", text="47 C")],
                                       [finding("warning", text="46 C")]), [])

    def test_new_problem(self):
        for severity in "warning", "unknown", "critical":
            self.assertEqual(
                self.problems([finding(severity, text="bad")], []),
                [f"{severity}: bad"])

    def test_other_object_rule_severity_or_number(self):
        earlier = [finding("warning")]
        for later in ([finding("warning", number=2)],
                      [finding("warning", rule="s")],
                      [finding("warning", kind="battery")],
                      [finding("critical")], earlier * 2):
            self.assertEqual(len(self.problems(later, earlier)), 1)


class FetchTest(unittest.TestCase):
    def test_names_that_a_host_may_not_choose(self):
        backup.check_names([{"name": "h-1.x_y-20010909T014640Z.cfg"}])
        for name in ("../h-20010909T014640Z.cfg", "h-20010909T014640Z.sh",
                     "/h-20010909T014640Z.cfg", "h-20010909T014640Z.cfg\n",
                     ".h-20010909T014640Z.cfg", "", "authorized_keys"):
            with self.assertRaises(AnsibleActionFail):
                backup.check_names([{"name": name}])

    def test_directories_of_hosts(self):
        for host, name in (("a.example", "a.example"), ("..", "%2E."),
                           ("../x", "%2E.%2Fx"), ("a b", "a%20b")):
            self.assertEqual(names.file_name(host), name)


if __name__ == "__main__":
    workspace.skip_without("ansible-playbook")
    workspace.use_ansible_python(__file__)
    WORK = workspace.Workspace(sys.argv.pop(1))
    sys.path.insert(0, str(WORK.path))
    # In this order: Ansible loads installed ones itself.
    from ansible_collections.sataraid.cli.plugins.module_utils import (
        fleet, fleet_page, names)
    from ansible_collections.sataraid.cli.plugins.filter.new_problems import (
        new_problems)
    from ansible_collections.sataraid.cli.plugins.action import backup
    from ansible.errors import AnsibleActionFail
    try:
        unittest.main()
    finally:
        WORK.close()
