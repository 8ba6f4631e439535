#!/usr/bin/env python3
"""Hosts that cannot be reached, before and after a change.

Usage: outage_test.py PROGRAMS, the directory of the built programs. Ends
with 77 without Ansible.
"""
import json
import os
import sys
import unittest

import workspace

WORK = None
ABSENT, GOOD, LOST, LAST = "absent", "good", "lost", "waiting"
NAMES = [ABSENT, GOOD, LOST, "other", LAST]


def cli_that_cuts(host):
    program = WORK.path / "cuts"
    program.write_text(f'#!/bin/sh\n{WORK.programs}/cli-rehearse "$@"\n'
                       f"touch {WORK.path}/down/{host}\n")
    program.chmod(0o755)
    return str(program)


def write_inventory():
    hosts = {}
    for name in NAMES:
        WORK.make_world(name)
        hosts[name] = {"sataraid_environment": WORK.simulator(name)}
    hosts[LOST]["sataraid_cli_path"] = cli_that_cuts(LOST)
    common = {
        "ansible_connection": "fragile", "sataraid_become": False,
        "ansible_python_interpreter": sys.executable,
        "sataraid_settle": 0,
        "sataraid_cli_path": str(WORK.programs / "cli-rehearse"),
        "sataraid_status_path": str(WORK.programs / "cli-status"),
        "sataraid_controller_settings": {"rebuild_rate": 50}}
    (WORK.path / "inventory.json").write_text(json.dumps(
        {"sataraid": {"hosts": hosts, "vars": common}}))


def play(name, *more):
    return WORK.playbook("-i", WORK.path / "inventory.json",
                         f"sataraid.cli.{name}", *more)


def rates():
    return {name: WORK.read_world(name)["controllers"][0]["rates"]["rebuild"]
            for name in NAMES}


class OutageTest(unittest.TestCase):
    def test_0_wave_of_absent_hosts_is_the_last(self):
        status, output, _ = play("rollout", "-e",
                                 '{"sataraid_waves": [1, 2, 2]}')
        self.assertNotEqual(status, 0, output)
        self.assertEqual(set(rates().values()), {128})

    def test_1_rollout(self):
        status, output, results = play("rollout", "-e",
                                       '{"sataraid_waves": [2, 2, 1]}')
        self.assertNotEqual(status, 0, output)
        self.assertEqual(rates(), {ABSENT: 128, GOOD: 50, LOST: 50,
                                   "other": 50, LAST: 128})
        failed = {one["host"]: one["result"]["msg"] for one in results
                  if one["outcome"] == "failed"}
        self.assertEqual(failed, {"other": "unreachable after the change: "
                                           + LOST})
        self.assertNotIn(LAST, {one["host"] for one in results})

    def test_2_report(self):
        directory = WORK.path / "report"
        status, output, _ = play(
            "report", "-e", f"sataraid_report_directory={directory}")
        self.assertEqual(status, 0, output)
        lines = (directory / "report.txt").read_text().splitlines()
        self.assertEqual([line.split()[:2] for line in lines], [
            ["HOST", "STATE"], [ABSENT, "unknown"], [LOST, "unknown"],
            [GOOD, "warning"], ["other", "warning"], [LAST, "warning"]])
        self.assertTrue(lines[1].endswith("there is no snapshot"))

    def test_3_state_of_a_host_that_was_read_before(self):
        directory = WORK.path / "report"
        (WORK.path / "down" / GOOD).touch()
        WORK.q5sim("other", "hang", "q5_*")
        status, output, _ = play(
            "report", "-e", f"sataraid_report_directory={directory}",
            "-e", "sataraid_timeout=2")
        self.assertEqual(status, 0, output)
        lines = {line.split()[0]: line for line
                 in (directory / "report.txt").read_text().splitlines()[1:]}
        self.assertEqual({host: line.split()[1]
                          for host, line in lines.items()},
                         {ABSENT: "unknown", LOST: "unknown",
                          GOOD: "unknown", "other": "unknown",
                          LAST: "warning"})
        for host in GOOD, "other":
            self.assertTrue(lines[host].endswith(
                "the host could not be read now; this is an earlier state"))


def main():
    global WORK
    workspace.skip_without("ansible-playbook")
    WORK = workspace.Workspace(sys.argv.pop(1))
    WORK.environment["ANSIBLE_CONNECTION_PLUGINS"] = os.path.join(
        os.path.dirname(os.path.abspath(__file__)), "connection")
    WORK.environment["DOWN"] = str(WORK.path / "down")
    (WORK.path / "down").mkdir()
    (WORK.path / "down" / ABSENT).touch()
    try:
        write_inventory()
        unittest.main(failfast=True)
    finally:
        WORK.close()


if __name__ == "__main__":
    main()
