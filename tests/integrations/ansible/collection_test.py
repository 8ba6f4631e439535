#!/usr/bin/env python3
"""The collection as Ansible's own tools see it.

Usage: collection_test.py lint|docs|build|style. Ends with 77 without the
tool.
"""
import json
import sys
import tarfile

import workspace

NEEDED = {"lint": "ansible-lint", "docs": "ansible-doc",
          "build": "ansible-galaxy", "style": "pycodestyle"}
MODULES = ["backup", "controller_settings", "drive_settings", "fleet_report",
           "logical_drive_settings", "status_info"]
ROLES = ["install", "report", "settings"]
# Options of the settings modules that the settings role does not take.
NOT_IN_ROLE = {"cli_path", "status_path", "timeout", "controller", "drive",
               "serial", "skip_unsupported", "logical_drive", "current_name",
               "name"}
# Modules import after their documentation, as Ansible requires.
IGNORED = "E402,W503,W504"


def check(run):
    if run.returncode != 0:
        sys.exit(run.stdout)
    return run.stdout


def check_lint(work):
    output = check(work.run("ansible-lint", "--offline", "--nocolor",
                            "--profile", "production", cwd=work.collection))
    if "Passed with production profile: 0 failure(s), 0 warning(s)" \
            not in output:
        sys.exit(output)


def check_lint_can_fail(work):
    playbook = work.collection / "playbooks" / "rollout.yml"
    text = playbook.read_text()
    playbook.write_text(text.replace("ansible.builtin.pause", "pause"))
    if work.run("ansible-lint", "--offline", "--profile", "production",
                cwd=work.collection).returncode == 0:
        sys.exit("a short module name passed")


def lint(work):
    check_lint(work)
    check_lint_can_fail(work)


def documented(work, kind, name):
    """What ansible-doc shows, as JSON; warnings count as failures."""
    output = check(work.run("ansible-doc", "-t", kind, "--json",
                            f"sataraid.cli.{name}"))
    return json.loads(output)[f"sataraid.cli.{name}"]


SHOW_SPECIFICATION = """
import json, runpy, sys
from ansible.module_utils import basic
def show(argument_spec, **more):
    sys.exit(print(json.dumps(argument_spec)))
basic.AnsibleModule = show
runpy.run_path(sys.argv[1], run_name="__main__")
"""


def argument_spec(work, name):
    """What the module accepts."""
    return json.loads(check(work.run(
        *workspace.ansible_python(), "-c", SHOW_SPECIFICATION,
        work.collection / "plugins" / "modules" / f"{name}.py")))


def check_module(work, name):
    """The options documented are those that the module accepts."""
    doc = documented(work, "module", name)
    for part in "doc", "examples", "return":
        if not doc[part]:
            sys.exit(f"{name} has no {part}")
    accepted = argument_spec(work, name)
    for option in {*accepted, *doc["doc"]["options"]}:
        described = doc["doc"]["options"].get(option, {})
        given = accepted.get(option, {})
        for key in "type", "default", "choices", "required", "elements":
            if described.get(key) != given.get(key):
                sys.exit(f"{name}: {key} of {option} is {given.get(key)}, "
                         f"documented is {described.get(key)}")


def check_settings_role(work):
    """The role accepts every setting of the modules and passes it on."""
    role = documented(work, "role", "settings")["entry_points"]["main"]
    tasks = (work.collection / "roles" / "settings" / "tasks" / "main.yml"
             ).read_text()
    for kind in "controller", "drive", "logical_drive":
        variable = f"sataraid_{kind}_settings"
        wanted = {*argument_spec(work, f"{kind}_settings")} - NOT_IN_ROLE
        accepted = {*role["options"][variable]["options"]}
        if accepted != wanted:
            sys.exit(f"{variable}: {sorted(accepted)}, "
                     f"the module has {sorted(wanted)}")
        for option in wanted:
            if f"{option}: \"{{{{ {variable}.{option} | " not in tasks:
                sys.exit(f"the role does not pass on {variable}.{option}")


def docs(work):
    for name in MODULES:
        check_module(work, name)
    documented(work, "filter", "new_problems")
    for name in ROLES:
        if not documented(work, "role", name)["entry_points"]["main"]:
            sys.exit(f"role {name} has no argument spec")
    check_settings_role(work)
    found = json.loads(check(work.run("ansible-doc", "--list", "--json",
                                      "sataraid.cli")))
    if sorted(found) != [f"sataraid.cli.{name}" for name in MODULES]:
        sys.exit(f"modules: {found}")


def build(work):
    """The archive holds every file, and installs without a network."""
    check(work.run("ansible-galaxy", "collection", "build",
                   "--output-path", work.path, cwd=work.collection))
    archive = work.path / "sataraid-cli-1.0.0.tar.gz"
    with tarfile.open(archive) as tar:
        held = {member.name for member in tar if member.isfile()}
    source = {str(path.relative_to(work.collection))
              for path in work.collection.rglob("*") if path.is_file()}
    missing = source - held - {"galaxy.yml"}
    if missing:
        sys.exit(f"missing in the archive: {missing}")
    target = work.path / "installed"
    check(work.run("ansible-galaxy", "collection", "install", archive,
                   "-p", target))
    check(work.run("ansible-doc", "sataraid.cli.status_info",
                   environment={"ANSIBLE_COLLECTIONS_PATH": str(target)}))


def style(work):
    check(work.run("pycodestyle", f"--ignore={IGNORED}", work.collection,
                   workspace.Path(__file__).parent))


def main():
    name = sys.argv[1]
    workspace.skip_without(NEEDED[name])
    work = workspace.Workspace("/")
    try:
        {"lint": lint, "docs": docs, "build": build, "style": style}[name](
            work)
    finally:
        work.close()


if __name__ == "__main__":
    main()
