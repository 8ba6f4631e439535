"""Shared by the tests of the collection.

A workspace is a directory with a copy of the collection where Ansible finds
it, a home directory, and worlds of simulated adapters.
"""
import base64
import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
COLLECTION = ROOT / "integrations" / "ansible"
CLOCK = "1000000000"  # the simulated adapters' clock is stopped
SKIP = 77


def skip_without(*programs):
    """Skips the test if a program is missing; shows the versions."""
    for program in programs:
        if shutil.which(program) is None:
            print(f"{program} is not installed")
            sys.exit(SKIP)
    if os.environ.get("RESTARTED") is None:
        for program in programs:
            version = subprocess.run([program, "--version"], check=True,
                                     stdout=subprocess.PIPE, text=True)
            print(f"{program}: {version.stdout.splitlines()[0]}", flush=True)


def ansible_python():
    """The interpreter that Ansible is installed for."""
    with open(shutil.which("ansible-playbook"), encoding="utf-8") as file:
        return file.readline().strip()[2:].split()


def use_ansible_python(script):
    """Starts the script again if it needs that interpreter."""
    python = ansible_python()
    if os.environ.get("RESTARTED") is None:
        os.environ["RESTARTED"] = "1"
        os.execvp(python[0], [*python, script, *sys.argv[1:]])


def digest(text):
    """In the form that a content security policy uses."""
    return base64.b64encode(
        hashlib.sha256(text.encode()).digest()).decode()


class Workspace:
    """A temporary directory, removed at exit."""

    def __init__(self, programs):
        self.programs = Path(programs).resolve()
        self._directory = tempfile.TemporaryDirectory(prefix="ansible-test-")
        self.path = Path(self._directory.name)
        self.collection = (self.path / "ansible_collections" / "sataraid"
                           / "cli")
        shutil.copytree(COLLECTION, self.collection)
        (self.path / "home").mkdir()
        self.environment = {
            "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8",
            "HOME": str(self.path / "home"),
            "PYTHONPATH": str(self.path),
            "PYTHONDONTWRITEBYTECODE": "1",
            "ANSIBLE_COLLECTIONS_PATH": str(self.path),
            "ANSIBLE_NOCOLOR": "1", "ANSIBLE_RETRY_FILES_ENABLED": "0",
            "ANSIBLE_LOCALHOST_WARNING": "0",
            "ANSIBLE_PIPELINING": "1",
            "ANSIBLE_CALLBACK_PLUGINS": str(Path(__file__).parent
                                            / "callback"),
            "ANSIBLE_CALLBACKS_ENABLED": "record",
            "RECORD": str(self.path / "record")}

    def close(self):
        self._directory.cleanup()

    def run(self, *command, **more):
        """Runs a program; returns both output streams combined."""
        environment = {**self.environment, **more.pop("environment", {})}
        return subprocess.run(
            [str(word) for word in command], check=False, text=True,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, env=environment, timeout=900, **more)

    def world(self, name):
        return self.path / "worlds" / name / "world.json"

    def simulator(self, name):
        """The environment in which programs see a world."""
        return {"Q5SIM_WORLD": str(self.world(name)), "Q5SIM_NOW": CLOCK}

    def q5sim(self, name, *words):
        run = self.run(self.programs / "q5sim", *words,
                       environment=self.simulator(name))
        if run.returncode != 0:
            raise AssertionError(f"q5sim {words}: {run.stdout}")
        return run.stdout

    def make_world(self, name, change=None):
        """The built-in world after change(world)."""
        self.world(name).parent.mkdir(parents=True)
        self.q5sim(name, "reset")
        if change is not None:
            world = self.read_world(name)
            change(world)
            self.world(name).write_text(json.dumps(world))
            self.q5sim(name, "status", "--check")

    def read_world(self, name):
        return json.loads(self.world(name).read_text())

    def module(self, name, arguments, world=None, check_mode=False):
        """The result of a module that runs by itself."""
        given = {"_ansible_check_mode": check_mode, **arguments}
        file = self.path / "arguments.json"
        file.write_text(json.dumps({"ANSIBLE_MODULE_ARGS": given}))
        run = self.run(
            *ansible_python(),
            self.collection / "plugins" / "modules" / f"{name}.py", file,
            environment=self.simulator(world) if world else {})
        try:
            return json.loads(run.stdout)
        except ValueError:
            raise AssertionError(f"{name}: {run.stdout}") from None

    def playbook(self, *arguments, environment=None):
        """Exit status, output, and the results of all tasks."""
        record = self.path / "record"
        record.write_text("")
        run = self.run("ansible-playbook", *arguments, cwd=self.path,
                       environment=environment or {})
        results = [json.loads(line)
                   for line in record.read_text().splitlines()]
        return run.returncode, run.stdout, results


RECAP = re.compile(r"^(\S+)\s+: (ok=.*)$", re.MULTILINE)


def recap(output):
    """The numbers of the last table, by host."""
    return {host: {word.split("=")[0]: int(word.split("=")[1])
                   for word in numbers.split()}
            for host, numbers in RECAP.findall(output)}
