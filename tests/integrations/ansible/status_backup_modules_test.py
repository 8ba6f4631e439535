#!/usr/bin/env python3
"""Runs the modules status_info and backup in isolation.

Usage: status_backup_modules_test.py PROGRAMS, the directory of the built
programs. Ends with 77 without Ansible.
"""
import json

import module_case
from module_case import new_world, run, script


class StatusTest(module_case.ModuleTest):
    def test_state(self):
        world = new_world()
        result = run("status_info", world)
        self.assertEqual((result["changed"], result["status"],
                          result["summary"]), (False, "warning", "1 problem"))
        direct = self.work.run(self.work.programs / "cli-status", "--json",
                               environment=self.work.simulator(world))
        self.assertEqual(result["snapshot"], json.loads(direct.stdout))

    def test_baseline_and_limits(self):
        world = new_world()
        baseline = self.work.path / "baseline"
        limits = self.work.path / "limits"
        baseline.write_text(json.dumps(run("status_info", world)["snapshot"]))
        limits.write_text("battery-hot = 10\n")
        self.work.q5sim(world, "pull-drive", "0", "8")
        result = run("status_info", world, baseline=str(baseline),
                     limits=str(limits), controller=0)
        rules = {one["rule"] for one in result["snapshot"]["findings"]}
        self.assertLessEqual({"drive-missing", "battery-hot"}, rules)

    def test_no_library(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_initialize")
        result = run("status_info", world)
        self.assertNotIn("failed", result)
        self.assertEqual(result["status"], "unknown")

    def test_what_is_not_a_snapshot(self):
        for text, message in (("echo hello", "not JSON"),
                              ("echo '{\"format\": 2}'", "not of format 1"),
                              ("echo 7", "not of format 1"),
                              ("echo wrong >&2; exit 3", "wrong")):
            self.assert_failed(run("status_info", None,
                                   status_path=script(text + "\n")), message)

    def test_program_that_hangs_or_is_missing(self):
        hangs = script("exec sleep 60\n")
        self.assert_failed(run("status_info", None, status_path=hangs,
                               timeout=1), "took longer than 1 seconds")
        self.assert_failed(run("status_info", None, status_path="no-such"),
                           "no-such")


class BackupTest(module_case.ModuleTest):
    """With a fake cli-backup, for what the real one rarely does.
    """

    def backup(self, text, last='echo "unchanged since $f.cfg"\n',
               **arguments):
        directory = self.work.path / f"backups{next(module_case.COUNTER)}"
        directory.mkdir()
        pair = ('f=$2/host-20010909T014640Z\n'
                'echo "{\\"format\\": 1}" >$f.json; echo x >$f.cfg\n')
        return self.work.module("backup", {
            "dest": "/nowhere", "directory": str(directory),
            "backup_path": script(pair + text + last), **arguments})

    def test_saved(self):
        result = self.backup("", last='echo "saved as $f.cfg"\n')
        self.assertEqual((result["changed"], result["saved"]), (True, True))
        self.assertEqual([file["name"] for file in result["backups"]],
                         ["host-20010909T014640Z.json",
                          "host-20010909T014640Z.cfg"])

    def test_unchanged(self):
        result = self.backup("")
        self.assertEqual((result["changed"], result["saved"]),
                         (False, False))

    def test_warning(self):
        result = self.backup('echo "warning: less"; echo "saved as $f.cfg"\n'
                             "exit 1\n")
        self.assertTrue(result["saved"])
        self.assertIn("warning: less", result["warnings"][0])

    def test_failed(self):
        for status in 2, 3, 127:
            self.assert_failed(
                self.backup(f"echo no >&2; exit {status}\n"),
                f"cli-backup ended with status {status}: no")

    def test_newest_and_all(self):
        more = ('new=$2/host-20200101T000000Z\n'
                'cp $f.json $new.json; cp $f.cfg $new.cfg\n'
                'cp $f.json $2/other-20250101T000000Z.json\n'
                'cp $f.cfg $2/other-20250101T000000Z.cfg\n'
                'touch $2/host-20300101T000000Z.json $2/notes.cfg\n'
                'touch $2/host-20310101T000000Z.cfg\n')
        for fetch, stems in (("newest", ["host-20200101T000000Z"]),
                             ("all", ["host-20010909T014640Z",
                                      "host-20200101T000000Z"])):
            result = self.backup(more, last='echo "saved as $new.cfg"\n',
                                 fetch=fetch)
            self.assertNotIn("failed", result)
            self.assertEqual([file["name"] for file in result["backups"]],
                             [stem + end for stem in stems
                              for end in (".json", ".cfg")])

    def test_output_without_a_name(self):
        self.assert_failed(self.backup("", last="echo hello\n"),
                           "cli-backup did not name its backup: hello")

    def test_damaged(self):
        self.assert_failed(self.backup("echo '{' >$f.json\n"),
                           "is damaged: the output is not JSON")
        self.assert_failed(self.backup(": >$f.cfg\n"),
                           "is damaged: its .cfg is empty")

    def test_arguments(self):
        self.assert_failed(self.backup("", keep=0), "keep is 0, not 1 to")
        self.assert_failed(self.work.module("backup", {}),
                           "missing required arguments: dest")


if __name__ == "__main__":
    module_case.main()
