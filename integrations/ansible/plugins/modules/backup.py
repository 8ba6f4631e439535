#!/usr/bin/python
"""Backups of the configuration and state of all adapters."""

DOCUMENTATION = r"""
module: backup
short_description: Back up configurations, and fetch them
description:
  - Runs C(cli-backup) on the managed host, which saves the configuration and
    the state of all controllers if they have changed, and verifies both.
  - Then fetches the newest backup to the control node, into a directory of
    its own for each host. What arrives is compared with the checksum that
    the managed host computed. Backups on the control node are never removed.
  - A backup that C(cli-backup) saved with a warning is fetched too, and the
    warning is shown.
options:
  dest:
    description:
      - Directory on the control node. The backups of a host are fetched to
        C(dest/HOST).
    type: path
    required: true
  directory:
    description: Directory of the backups on the managed host.
    type: path
    default: /var/backups/cli
  keep:
    description: Backups to keep on the managed host. Old ones are removed.
    type: int
    default: 30
  fetch:
    description:
      - Whether to fetch the newest backup, or all backups of the host. Those
        of other hosts, in a directory that they share, are not fetched.
    type: str
    choices: [newest, all]
    default: newest
  backup_path:
    description:
      - C(cli-backup), as a path or as a name that is looked up in C(PATH)
        and in the C(sbin) directories.
    type: path
    default: cli-backup
  cli_path:
    description:
      - The C(cli) that exports the configuration. Without it, the one
        installed with C(cli-backup).
    type: path
  timeout:
    description: Seconds that C(cli-backup) may take.
    type: int
    default: 300
extends_documentation_fragment:
  - ansible.builtin.action_common_attributes
  - ansible.builtin.action_common_attributes.flow
attributes:
  action:
    support: full
  async:
    support: none
  bypass_host_loop:
    support: none
  check_mode:
    support: partial
    details: C(cli-backup) does not run, and nothing is fetched.
  diff_mode:
    support: none
  platform:
    platforms: posix
author: the cli developers
"""

EXAMPLES = r"""
- name: Back up all hosts, and fetch the backups
  sataraid.cli.backup:
    dest: /var/backups/fleet
"""

RETURN = r"""
saved:
  description: Whether C(cli-backup) saved a new backup.
  returned: success, but not in check mode
  type: bool
output:
  description: What C(cli-backup) printed, by line.
  returned: success, but not in check mode
  type: list
  elements: str
backups:
  description: The files of the backups on the managed host, oldest first.
  returned: success, but not in check mode
  type: list
  elements: dict
  contains:
    name:
      description: Name of the file.
      type: str
    sha256:
      description: Its checksum.
      type: str
fetched:
  description: Files on the control node that are new.
  returned: success, but not in check mode
  type: list
  elements: str
"""

import os
import re

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.sataraid.cli.plugins.module_utils import programs

SAVED = 0
WARNING = 1  # saved too; any other exit status means that nothing was
LAST = re.compile(r"(?:saved as|unchanged since) (?:.*/)?"
                  r"(.+-)(\d{8}T\d{6}Z)\.cfg")


def last_backup(module, output):
    """The host and the time of the newest backup, as cli-backup names it."""
    for line in output:
        match = LAST.fullmatch(line)
        if match:
            return match[1], match[2]
    module.fail_json(msg="cli-backup did not name its backup: "
                         + " ".join(output))


def stems(directory, host, last):
    """The backups of the host, oldest first; a pair is one of them."""
    name = re.compile(re.escape(host) + r"\d{8}T\d{6}Z")
    names = set(os.listdir(directory))
    found = (file[:-len(".cfg")] for file in names if file.endswith(".cfg"))
    return sorted(stem for stem in found if stem + ".json" in names
                  and name.fullmatch(stem) and stem <= host + last)


def check_pair(module, path):
    """The files of a backup, verified, with their checksums."""
    with open(path + ".json", encoding="utf-8") as file:
        _, problem = programs.parse_snapshot(file.read())
    if problem or os.path.getsize(path + ".cfg") == 0:
        module.fail_json(msg=f"{path} is damaged: "
                             + (problem or "its .cfg is empty"))
    return [{"name": os.path.basename(path) + suffix,
             "sha256": module.sha256(path + suffix)}
            for suffix in (".json", ".cfg")]


def list_backups(module, output):
    directory = module.params["directory"]
    host, last = last_backup(module, output)
    try:
        wanted = [host + last]
        if module.params["fetch"] == "all":
            wanted = stems(directory, host, last)
        return [file for stem in wanted
                for file in check_pair(module, os.path.join(directory, stem))]
    except (OSError, ValueError) as error:
        module.fail_json(msg=f"cannot read the backups: {error}")


def back_up(module):
    """What cli-backup printed."""
    arguments = ["-d", module.params["directory"],
                 "--keep", str(module.params["keep"])]
    if module.params["cli_path"] is not None:
        arguments += ["--cli", module.params["cli_path"]]
    status, output, errors = programs.run(module, "backup_path", arguments)
    if status not in (SAVED, WARNING):
        module.fail_json(msg=f"cli-backup ended with status {status}: "
                             + (errors or output).strip())
    if status == WARNING:
        module.warn("cli-backup: " + " ".join((output + errors).split()))
    return output.splitlines()


def main():
    module = AnsibleModule(
        argument_spec={
            "dest": {"type": "path", "required": True},
            "directory": {"type": "path", "default": "/var/backups/cli"},
            "keep": {"type": "int", "default": 30},
            "fetch": {"type": "str", "choices": ["newest", "all"],
                      "default": "newest"},
            "backup_path": {"type": "path", "default": "cli-backup"},
            "cli_path": {"type": "path"},
            "timeout": {"type": "int", "default": 300}},
        supports_check_mode=True)
    programs.require_range(module, "keep", 1, 100000)
    if module.check_mode:
        module.exit_json(skipped=True, msg="cli-backup has no check mode")
    output = back_up(module)
    saved = any(line.startswith("saved as ") for line in output)
    module.exit_json(changed=saved, saved=saved, output=output,
                     backups=list_backups(module, output))


if __name__ == "__main__":
    main()
