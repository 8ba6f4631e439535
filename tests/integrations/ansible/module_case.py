"""What the tests of single modules share. Each has a world of its own."""
import itertools
import sys
import unittest

import workspace

WORK = None
COUNTER = itertools.count()


def new_world(change=None):
    name = f"world{next(COUNTER)}"
    WORK.make_world(name, change)
    return name


def script(text):
    """A fake program."""
    path = WORK.path / f"script{next(COUNTER)}"
    path.write_text("#!/bin/sh\n" + text)
    path.chmod(0o755)
    return str(path)


def run(module, world, check_mode=False, **arguments):
    programs = {"cli_path": str(WORK.programs / "cli-rehearse"),
                "status_path": str(WORK.programs / "cli-status")}
    if module == "status_info":
        del programs["cli_path"]
    return WORK.module(module, {**programs, **arguments}, world, check_mode)


class ModuleTest(unittest.TestCase):
    work = None  # the workspace

    def assert_failed(self, result, *parts):
        self.assertTrue(result.get("failed"), result)
        for part in parts:
            self.assertIn(part, result["msg"])

    def assert_refused(self, module, world, message, **arguments):
        """Fails for this reason, and the world does not change."""
        before = WORK.world(world).read_bytes()
        self.assert_failed(run(module, world, **arguments), message)
        self.assertEqual(WORK.world(world).read_bytes(), before)


def main():
    global WORK
    workspace.skip_without("ansible-playbook")
    WORK = workspace.Workspace(sys.argv.pop(1))
    ModuleTest.work = WORK
    try:
        unittest.main(module="__main__")
    finally:
        WORK.close()
