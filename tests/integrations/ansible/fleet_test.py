#!/usr/bin/env python3
"""Runs the playbooks over a fleet of hosts with the local connection.

Usage: fleet_test.py PROGRAMS, the directory of the built programs.
FLEET_HOSTS is the number of hosts, by default 10, the least; FLEET_FORKS
how many Ansible works on at once. Each host has a world of its own. Ends
with 77 without Ansible.
"""
import html
import json
import os
import sys
import unittest

import workspace

HOSTS = int(os.environ.get("FLEET_HOSTS", "10"))
FORKS = os.environ.get("FLEET_FORKS", "4")
NAMES = [f"h{number:03}" for number in range(HOSTS)]
SMART, BATTERY, FIRMWARE, MALICIOUS = NAMES[1:5]
REFUSING = NAMES[HOSTS * 2 // 5]
WAVES = ["10%", "20%", "30%", "100%"]
MALICIOUS_NAME = "<script>alert(1)</script>{{ 7 * 6 }}"

POLICY = {
    "sataraid_controller_settings": {
        "rebuild_rate": 77, "smart_poll": 30, "auto_rebuild": True},
    "sataraid_drive_settings": {"write_cache": False, "ncq": True},
    "sataraid_logical_drive_settings": {
        "write_policy": "writeback", "write_policy_unprotected": "writethru",
        "look_ahead": 2}}
UNPROTECTED = {"sataraid_logical_drive_settings": {
    "write_policy": "writeback"}}

WORK = None


def individual(number):
    """Gives the host unique serial numbers and its particular faults."""
    def change(world):
        for index, one in enumerate(world["controllers"]):
            for drive in one["drives"]:
                drive["serial"] = (f"LOT{index}{number % 2}-{number:03}"
                                   f"-{drive['id']}")
        first = world["controllers"][0]
        if NAMES[number] == FIRMWARE:
            first["firmwareVersion"] = [9, 9, 9, 9]
        if NAMES[number] == MALICIOUS:
            first["logicalDrives"][0]["name"] = MALICIOUS_NAME
            for drive in first["drives"][6:]:
                drive["model"] = "<b>&"
    return change


def make_worlds():
    for number, name in enumerate(NAMES):
        WORK.make_world(name, individual(number))
    WORK.q5sim(SMART, "smart-fail", "0", "3")
    WORK.q5sim(BATTERY, "battery", "0", "failed")


def write_inventory():
    hosts = {name: {"sataraid_environment": WORK.simulator(name)}
             for name in NAMES}
    common = {
        "ansible_connection": "local",
        "ansible_python_interpreter": sys.executable,
        "sataraid_become": False, "sataraid_settle": 0,
        "sataraid_cli_path": str(WORK.programs / "cli-rehearse"),
        "sataraid_status_path": str(WORK.programs / "cli-status"), **POLICY}
    (WORK.path / "inventory.json").write_text(json.dumps(
        {"sataraid": {"hosts": hosts, "vars": common}}))


def play(name, *more, variables=None):
    words = ["-i", WORK.path / "inventory.json", "-f", FORKS,
             f"sataraid.cli.{name}", *more]
    words += ["-e", json.dumps({"sataraid_waves": WAVES,
                                **(variables or {})})]
    return WORK.playbook(*words)


def worlds():
    return {name: WORK.world(name).read_bytes() for name in NAMES}


def changed_hosts(output):
    return {host for host, numbers in workspace.recap(output).items()
            if numbers["changed"] > 0}


def wave_of(host):
    """The hosts before its wave, those of it, and those after it."""
    start = 0
    for size in WAVES:
        end = start + max(1, HOSTS * int(size[:-1]) // 100)
        if host in NAMES[start:end]:
            return NAMES[:start], NAMES[start:end], NAMES[end:]
        start = end
    raise ValueError(host)


class FleetTest(unittest.TestCase):
    """The steps of an administrator, in the order of their names."""

    def test_1_facts(self):
        status, output, results = play("report", variables={
            "sataraid_report_directory": str(WORK.path / "report"),
            "sataraid_report_batch_prefix": 5})
        self.assertEqual(status, 0, output)
        for name in NAMES:
            direct = WORK.run(WORK.programs / "cli-status", "--json",
                              environment=WORK.simulator(name))
            saved = WORK.path / "report" / "snapshots" / f"{name}.json"
            self.assertEqual(json.loads(saved.read_text()),
                             json.loads(direct.stdout))
        self.check_table((WORK.path / "report/report.txt").read_text())
        self.check_page((WORK.path / "report/report.html").read_text())

    def check_table(self, table):
        lines = table.splitlines()
        self.assertEqual(len(lines), HOSTS + 1)
        self.assertEqual(lines[1].split()[:5],
                         [BATTERY, "critical", "1", "0", "3"])
        self.assertEqual(lines[2].split()[:5],
                         [SMART, "warning", "0", "0", "2"])
        self.assertEqual(lines[3].split()[:5],
                         [NAMES[0], "warning", "0", "0", "1"])

    def check_page(self, page):
        self.assertIn("<td><bdi>&lt;b&gt;&amp;</bdi></td>", page)
        self.assertIn(html.escape(MALICIOUS_NAME), page)
        self.assertNotIn("<script", page)
        self.assertIn("<td><bdi>9.9.9.9</bdi></td><td>1</td>"
                      f"<td><bdi>{FIRMWARE}</bdi></td>", page)
        even = (HOSTS + 1) // 2 * 4  # controller 1 has four drives
        self.assertRegex(page, f"<td><bdi>LOT10</bdi></td><td>{even}</td>"
                         "<td>0</td>")

    def test_2_check_mode_changes_nothing(self):
        before = worlds()
        status, output, results = play("rollout", "--check", "--diff")
        self.assertEqual(status, 0, output)
        self.assertEqual(worlds(), before)
        self.assertEqual(changed_hosts(output), set(NAMES))
        self.assertIn('+        "rebuild_rate": 77', output)

    def test_3_refusing_adapter_stops_the_waves(self):
        WORK.q5sim(REFUSING, "refuse", "q5_setControllerSettings")
        before = worlds()
        status, output, results = play("rollout")
        self.assertEqual(status, 2, output)
        earlier, wave, later = wave_of(REFUSING)
        self.assertTrue(earlier and later)
        failed = {one["host"]: one["result"]["msg"] for one in results
                  if one["outcome"] == "failed"}
        self.assertEqual(list(failed), [REFUSING])
        self.assertIn("controller 0: the change is not in effect: "
                      "rebuild_rate is 128, not 77", failed[REFUSING])
        after = worlds()
        self.assertEqual({name for name in NAMES
                          if after[name] != before[name]},
                         set(earlier + wave))
        self.assertEqual({one["host"] for one in results},
                         set(earlier + wave))
        self.check_rate(REFUSING, 128)
        WORK.q5sim(REFUSING, "clear-rules")

    def test_4_all_hosts_reach_the_policy(self):
        status, output, results = play("rollout")
        self.assertEqual(status, 0, output)
        for name in NAMES:
            self.check_rate(name, 77)
            self.check_policy(name)

    def check_rate(self, name, rate):
        for one in WORK.read_world(name)["controllers"]:
            self.assertEqual(one["rates"]["rebuild"], rate, name)

    def check_policy(self, name):
        """Bit 1 is write-back; only a good battery allows it."""
        first, second = WORK.read_world(name)["controllers"]
        for one in first, second:
            self.assertEqual(one["smartPollMinutes"], 30)
            self.assertTrue(one["autoRebuild"])
            self.assertEqual({drive["writeCache"] for drive in one["drives"]},
                             {False})
            self.assertEqual({drive["lookahead"]
                              for drive in one["logicalDrives"]}, {2})
        flags = 0 if name == BATTERY else 1
        self.assertEqual({drive["cacheFlags"]
                          for drive in first["logicalDrives"]}, {flags}, name)
        self.assertEqual({drive["cacheFlags"]
                          for drive in second["logicalDrives"]}, {0}, name)

    def test_5_second_run_changes_nothing(self):
        for name in NAMES:  # counts calls, and lets them pass
            WORK.q5sim(name, "refuse", "q5_set*", "--after", "1000000")
        before = worlds()
        status, output, results = play("rollout")
        self.assertEqual(status, 0, output)
        self.assertEqual(set(workspace.recap(output)), set(NAMES))
        self.assertFalse([one for one in results
                          if "snapshot" in one["result"]])
        self.assertEqual(changed_hosts(output), set())
        self.assertEqual(worlds(), before)

    def test_6_less_healthy_host_stops_the_waves(self):
        """Write-back without a battery takes effect, but is a problem."""
        before = worlds()
        status, output, results = play("rollout", variables=UNPROTECTED)
        self.assertEqual(status, 2, output)
        _, wave, _ = wave_of(NAMES[0])
        after = worlds()
        self.assertEqual({name for name in NAMES
                          if after[name] != before[name]}, set(wave))
        failed = {one["host"]: str(one["result"]["msg"]) for one in results
                  if one["outcome"] == "failed"}
        self.assertEqual(set(failed), set(wave))
        self.assertIn("less healthy than before", failed[NAMES[0]])
        self.assertIn("set to write back, but the controller has no battery",
                      failed[NAMES[0]])


def main():
    global WORK
    workspace.skip_without("ansible-playbook")
    WORK = workspace.Workspace(sys.argv.pop(1))
    try:
        make_worlds()
        write_inventory()
        unittest.main(failfast=True, verbosity=2)
    finally:
        WORK.close()


if __name__ == "__main__":
    main()
