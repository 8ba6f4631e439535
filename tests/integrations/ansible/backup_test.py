#!/usr/bin/env python3
"""Backs up three hosts, and fetches the backups to the control node.

Usage: backup_test.py PROGRAMS, the directory of the built programs. Without
cli-backup among them, a script takes its place. Ends with 77 without
Ansible.
"""
import json
import sys
import unittest

import workspace

WORK = None
NAMES = ["a", "b", "c/../c"]
DIRECTORIES = ["a", "b", "c%2F..%2Fc"]

STAND_IN = """#!/bin/sh
[ -f "$2"/*.cfg ] && { echo unchanged since; exit; }
echo '{"format": 1}' >"$2/host-20010909T014640Z.json"
date >"$2/host-20010909T014640Z.cfg"
echo saved as
"""


def cli_backup():
    program = WORK.programs / "cli-backup"
    if not program.exists():
        program = WORK.path / "cli-backup"
        program.write_text(STAND_IN)
        program.chmod(0o755)
    return program


def host_directory(index):
    return WORK.path / "host" / str(index)


def write_inventory():
    hosts = {}
    for index, name in enumerate(NAMES):
        WORK.make_world(str(index))
        host_directory(index).mkdir(parents=True)
        hosts[name] = {
            "sataraid_environment": WORK.simulator(str(index)),
            "sataraid_backup_directory": str(host_directory(index))}
    common = {
        "ansible_connection": "local", "sataraid_become": False,
        "ansible_python_interpreter": sys.executable,
        "sataraid_backup_dest": str(WORK.path / "dest"),
        "sataraid_backup_path": str(cli_backup()),
        "sataraid_cli_path": str(WORK.programs / "cli-rehearse")}
    (WORK.path / "inventory.json").write_text(json.dumps(
        {"sataraid": {"hosts": hosts, "vars": common}}))


def backup(*more):
    return WORK.playbook("-i", WORK.path / "inventory.json",
                         "sataraid.cli.backup", *more)


def files(directory):
    return {path.name: path.read_bytes() for path in directory.glob("*-*Z.*")}


class BackupTest(unittest.TestCase):
    """The steps of an administrator, in the order of their names."""

    def check_fetched(self):
        for index, name in enumerate(DIRECTORIES):
            fetched = WORK.path / "dest" / name
            self.assertEqual(files(fetched), files(host_directory(index)))
            self.assertEqual(len(list(fetched.iterdir())), 2)

    def changed(self, output):
        return {host for host, numbers in workspace.recap(output).items()
                if numbers["changed"]}

    def test_1_check_mode(self):
        status, output, results = backup("--check")
        self.assertEqual(status, 0, output)
        self.assertEqual({one["outcome"] for one in results}, {"skipped"})
        self.assertFalse((WORK.path / "dest").exists())
        self.assertEqual(files(host_directory(0)), {})

    def test_2_backup(self):
        status, output, results = backup()
        self.assertEqual(status, 0, output)
        self.assertEqual(self.changed(output), set(NAMES))
        self.check_fetched()

    def test_3_again(self):
        status, output, results = backup()
        self.assertEqual(status, 0, output)
        self.assertEqual(self.changed(output), set())
        self.check_fetched()

    def test_4_damaged_on_the_control_node(self):
        next((WORK.path / "dest" / "a").glob("*.cfg")).write_text("damaged")
        next((WORK.path / "dest" / "b").glob("*.json")).unlink()
        status, output, results = backup()
        self.assertEqual(status, 0, output)
        self.assertEqual(self.changed(output), {"a", "b"})
        self.check_fetched()

    def test_5_damaged_on_the_host(self):
        next(host_directory(0).glob("*.cfg")).write_text("")
        next(host_directory(0).glob("*.json")).write_text("{")
        before = files(WORK.path / "dest" / "a")
        status, output, results = backup("--limit", "a")
        after = files(WORK.path / "dest" / "a")
        self.assertEqual({name: after[name] for name in before}, before)
        if not (WORK.programs / "cli-backup").exists():
            self.assertEqual(status, 2, output)
            self.assertIn("is damaged", output)


def main():
    global WORK
    workspace.skip_without("ansible-playbook")
    WORK = workspace.Workspace(sys.argv.pop(1))
    try:
        write_inventory()
        unittest.main(failfast=True)
    finally:
        WORK.close()


if __name__ == "__main__":
    main()
