#!/usr/bin/python
"""Settings of physical drives."""

DOCUMENTATION = r"""
module: drive_settings
short_description: Set write cache and command queuing of drives
description:
  - Brings the settings of one drive, or of all drives, to the desired values
    with C(cli). Settings without a value are kept.
  - The task fails if a value did not take effect, if another one changed, or
    if the drive was exchanged meanwhile.
  - Nothing is changed if the settings of any drive concerned cannot be read,
    or if a controller lists fewer drives than it has.
options:
  drive:
    description: Number of the drive, from 1 as in the listings of C(cli).
    type: int
  serial:
    description: Serial number of the drive, in place of its number.
    type: str
  write_cache:
    description: Whether the drive's write cache is used.
    type: bool
  ncq:
    description: Whether native command queuing is used.
    type: bool
  tcq:
    description: Whether tagged command queuing is used.
    type: bool
  skip_unsupported:
    description:
      - Leave a kind of queuing off on drives that do not support it. Without
        this the task fails, and nothing is changed.
    type: bool
    default: false
extends_documentation_fragment:
  - sataraid.cli.settings
  - sataraid.cli.programs
  - sataraid.cli.programs.cli
  - ansible.builtin.action_common_attributes
author: the cli developers
"""

EXAMPLES = r"""
- name: Turn the write caches of all drives off
  sataraid.cli.drive_settings:
    write_cache: false

- name: Use native command queuing wherever drives support it
  sataraid.cli.drive_settings:
    ncq: true
    skip_unsupported: true

- name: Turn the write cache of one drive on
  sataraid.cli.drive_settings:
    controller: 0
    drive: 3
    write_cache: true
"""

RETURN = r"""
commands:
  description: The commands that were run, or would be in check mode.
  returned: always
  type: list
  elements: list
  sample:
    - [cli, phydrv, -a, mod, -p, "3", -i, "0", -s, "writecache=enable"]
diff:
  description: The settings that change, by drive.
  returned: always
  type: dict
  sample:
    before: {"drive 3 of controller 0": {"write_cache": false}}
    after: {"drive 3 of controller 0": {"write_cache": true}}
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.sataraid.cli.plugins.module_utils import (
    programs, settings)

TABLE = (
    ("write_cache", "writecache", "writeCache", "switch"),
    ("ncq", "ncq", "ncqEnabled", "switch"),
    ("tcq", "tcq", "tcqEnabled", "switch"),
)


def own_record(drive):
    """The drive's settings, unless the reply was about another drive."""
    record = drive["settings"]
    if record is not None and record["pdId"] == drive["number"] - 1:
        return record
    return None


def target_of(controller, drive):
    number = drive["number"]
    return {"name": f"drive {number} of controller {controller}",
            "identity": drive["info"]["serial"],
            "controller": controller,
            "number": number,
            "select": ["phydrv", "-a", "mod", "-p", str(number),
                       "-i", str(controller)],
            "record": own_record(drive)}


def find(module, snapshot):
    return [target_of(one["id"], drive)
            for one in settings.controllers(module, snapshot)
            for drive in one["drives"]]


def selected(module, targets):
    number, serial = module.params["drive"], module.params["serial"]
    if number is None and serial is None:
        return targets
    found = [target for target in targets
             if target["number"] == number or target["identity"] == serial]
    settings.require_one(module, "drive", serial or number, found)
    return found


def supported(module, target, wanted):
    """What is wanted of this drive, without what it does not support."""
    record = target["record"] or {"ncqSupported": 1, "tcqSupported": 1}
    missing = [kind for kind in ("ncq", "tcq")
               if wanted.get(kind) and not record[kind + "Supported"]]
    if missing and not module.params["skip_unsupported"]:
        module.fail_json(msg=f"{target['name']} does not support "
                             + " and ".join(missing))
    return {option: value for option, value in wanted.items()
            if option not in missing}


def choose(module, targets):
    wanted = settings.desired(module, TABLE)
    return [{**target, "wanted": supported(module, target, wanted)}
            for target in selected(module, targets)]


def main():
    module = AnsibleModule(
        argument_spec={
            **programs.program_options("cli_path", "status_path"),
            "controller": {"type": "int"},
            "drive": {"type": "int"},
            "serial": {"type": "str"},
            **{option: {"type": "bool"} for option, _, _, _ in TABLE},
            "skip_unsupported": {"type": "bool", "default": False}},
        mutually_exclusive=[("drive", "serial")],
        required_by={"drive": ("controller",)},
        supports_check_mode=True)
    programs.require_range(module, "controller", 0, 65535)
    programs.require_range(module, "drive", 1, 65536)
    one = module.params["drive"] is not None or module.params["serial"]
    settings.apply(module, TABLE, find, choose, None if one else "drives")


if __name__ == "__main__":
    main()
