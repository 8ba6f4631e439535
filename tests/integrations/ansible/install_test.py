#!/usr/bin/env python3
"""Tests the role install, as far as possible without installing anything.

On Debian in check mode, with a package that every system has. The tasks for
FreeBSD run with a pkg of the test's own, and write a periodic.conf of the
test's own. Ends with 77 without Ansible.
"""
import json
import os
import sys
import unittest

import workspace

WORK = None

FREEBSD = [{"hosts": "localhost", "connection": "local",
            "gather_facts": False, "tasks": [
                {"ansible.builtin.include_role": {
                    "name": "sataraid.cli.install",
                    "tasks_from": "freebsd.yml"}}]}]
PKG = """#!/bin/sh
echo "$*" >>"$PKG_LOG"
grep -qx "$*" "$PKG_LOG.installed" 2>/dev/null && echo already installed
echo "$*" >>"$PKG_LOG.installed"
"""


def freebsd(jobs, *files):
    playbook = WORK.path / "freebsd.json"
    playbook.write_text(json.dumps(FREEBSD))
    variables = {
        "ansible_python_interpreter": sys.executable, "sataraid_jobs": jobs,
        "sataraid_package_files": list(map(str, files)),
        "sataraid_package_directory": str(WORK.path / "packages"),
        "sataraid_monitoring": ["prometheus"],
        "sataraid_periodic_conf": str(WORK.path / "periodic.conf")}
    return WORK.playbook(playbook, "-i", "localhost,", "-e",
                         json.dumps(variables))


def check_mode(**variables):
    host = {"ansible_connection": "local", "sataraid_become": False}
    inventory = {"sataraid": {"hosts": {"localhost": host | variables}}}
    (WORK.path / "inventory.json").write_text(json.dumps(inventory))
    return WORK.playbook("-i", WORK.path / "inventory.json",
                         "sataraid.cli.install", "--check")


class InstallTest(unittest.TestCase):
    def test_freebsd(self):
        package = WORK.path / "cli-1.0.0.pkg"
        package.write_text("package")
        conf = WORK.path / "periodic.conf"
        conf.write_text('daily_cli_status_enable="NO"\nother="YES"\n')
        for changed in True, False:
            status, output, _ = freebsd(["status", "patrol"], package)
            self.assertEqual(status, 0, output)
            self.assertEqual(
                workspace.recap(output)["localhost"]["changed"] > 0, changed,
                output)
        self.assertEqual(conf.read_text(), (
            'daily_cli_status_enable="YES"\nother="YES"\n'
            'daily_cli_backup_enable="NO"\n'
            'weekly_cli_patrol_enable="YES"\n'))
        copied = WORK.path / "packages" / "cli-1.0.0.pkg"
        self.assertEqual(copied.read_text(), "package")
        self.assertEqual((WORK.path / "pkg.log").read_text(),
                         f"install -y {copied} node_exporter\n" * 2)

    @unittest.skipUnless(os.path.exists("/etc/debian_version"),
                         "not on Debian")
    def test_debian_in_check_mode(self):
        status, output, _ = check_mode(sataraid_packages=["coreutils"])
        self.assertEqual(status, 0, output)

    def test_arguments(self):
        status, output, _ = check_mode(sataraid_jobs=["stauts"])
        self.assertEqual(status, 2, output)
        self.assertIn("must be one or more of: status, backup, patrol",
                      output)


def main():
    global WORK
    workspace.skip_without("ansible-playbook")
    WORK = workspace.Workspace("/")
    programs = WORK.path / "bin"
    programs.mkdir()
    (programs / "pkg").write_text(PKG)
    (programs / "pkg").chmod(0o755)
    WORK.environment["PATH"] = f"{programs}:{WORK.environment['PATH']}"
    WORK.environment["PKG_LOG"] = str(WORK.path / "pkg.log")
    try:
        unittest.main()
    finally:
        WORK.close()


if __name__ == "__main__":
    main()
