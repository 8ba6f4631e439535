#!/usr/bin/python
"""Settings of logical drives."""

DOCUMENTATION = r"""
module: logical_drive_settings
short_description: Set write policy, look-ahead and name of logical drives
description:
  - Brings the settings of one logical drive, or of all, to the desired values
    with C(cli). Settings without a value are kept.
  - The task fails if a value did not take effect, or if another one changed.
  - Nothing is changed if the settings of any logical drive concerned cannot
    be read, or a battery that decides about the write policy, or if a
    controller lists fewer logical drives than it has.
options:
  logical_drive:
    description: ID of the logical drive, from 0.
    type: int
  current_name:
    description: Present name of the logical drive, in place of its ID.
    type: str
  name:
    description:
      - New name, 1 to 31 bytes of UTF-8.
      - C(cli) cannot set a name that contains a comma, that begins or ends
        with a space, or that contains one of its own words C(writepolicy),
        C(lookahead) and C(consolidation). Such a name is rejected here.
    type: str
  write_policy:
    description: How writes are cached.
    type: str
    choices: [writethru, writeback, bypass, auto]
  write_policy_unprotected:
    description:
      - The write policy on a controller whose battery is missing or neither
        charging nor fully charged, in place of I(write_policy).
    type: str
    choices: [writethru, writeback, bypass, auto]
  look_ahead:
    description: Look-ahead threshold, 0 to 8.
    type: int
  consolidation:
    description: Whether requests are consolidated.
    type: bool
extends_documentation_fragment:
  - sataraid.cli.settings
  - sataraid.cli.programs
  - sataraid.cli.programs.cli
  - ansible.builtin.action_common_attributes
author: the cli developers
"""

EXAMPLES = r"""
- name: Cache writes only where a battery protects them
  sataraid.cli.logical_drive_settings:
    write_policy: writeback
    write_policy_unprotected: writethru

- name: Rename a logical drive
  sataraid.cli.logical_drive_settings:
    controller: 0
    current_name: Archive
    name: Old archive
"""

RETURN = r"""
commands:
  description: The commands that were run, or would be in check mode.
  returned: always
  type: list
  elements: list
  sample:
    - [cli, logdrv, -a, mod, -l, "0", -i, "0", -s, "writepolicy=writethru"]
diff:
  description: The settings that change, by logical drive.
  returned: always
  type: dict
  sample:
    before: {"logical drive 0 of controller 0": {"look_ahead": 4}}
    after: {"logical drive 0 of controller 0": {"look_ahead": 8}}
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.sataraid.cli.plugins.module_utils import (
    programs, settings)

TABLE = (
    ("write_policy", "writepolicy", "cacheFlags", "policy"),
    ("look_ahead", "lookahead", "lookahead", "number"),
    ("consolidation", "consolidation", "consolidation", "switch"),
    ("name", "name", "name", "text"),
)
POLICIES = ["writethru", "writeback", "bypass", "auto"]
PROTECTED = ("charging", "fully charged")
LONGEST_NAME = 31


def name_problem(name):
    """Why cli cannot set this name; empty if it can."""
    if not 1 <= len(name.encode()) <= LONGEST_NAME:
        return f"it has not 1 to {LONGEST_NAME} bytes"
    if name != name.strip(" "):
        return "it begins or ends with a space"
    if "," in name or not name.isprintable():
        return "it contains a comma or a character that cannot be printed"
    for word in ("writepolicy", "lookahead", "consolidation"):
        if word in name.lower():
            return f"it contains {word}, which cli takes for a setting"
    return ""


def target_of(controller, drive):
    number = drive["info"]["logDrvId"]
    return {"name": f"logical drive {number} of controller "
                    f"{controller['id']}",
            "identity": drive["info"]["arrayId"],
            "controller": controller["id"],
            "number": number,
            "battery": controller["battery"],
            "select": ["logdrv", "-a", "mod", "-l", str(number),
                       "-i", str(controller["id"])],
            "record": drive["settings"]}


def find(module, snapshot):
    return [target_of(one, drive)
            for one in settings.controllers(module, snapshot)
            for drive in one["logicalDrives"]]


def has_name(target, name):
    return target["record"] is not None and target["record"]["name"] == name


def selected(module, targets):
    number = module.params["logical_drive"]
    name = module.params["current_name"]
    if number is None and name is None:
        return targets
    found = [target for target in targets
             if target["number"] == number
             or name is not None and has_name(target, name)]
    settings.require_one(module, "logical drive",
                         number if name is None else name, found)
    return found


def is_protected(module, target):
    battery = target["battery"]
    if battery is None:
        module.fail_json(msg=f"{target['name']}: the battery cannot be read, "
                             "so nothing was changed")
    return battery["statusText"] in PROTECTED


def choose(module, targets):
    wanted = settings.desired(module, TABLE)
    unprotected = module.params["write_policy_unprotected"]
    chosen = selected(module, targets)
    for target in chosen:
        target["wanted"] = dict(wanted)
        if unprotected is not None and not is_protected(module, target):
            target["wanted"]["write_policy"] = unprotected
    return chosen


def check_arguments(module):
    programs.require_range(module, "controller", 0, 65535)
    programs.require_range(module, "logical_drive", 0, 254)
    programs.require_range(module, "look_ahead", 0, 8)
    name = module.params["name"]
    if name is None:
        return
    problem = name_problem(name)
    if problem:
        module.fail_json(msg=f"cli cannot set the name {name!r}: {problem}")
    if module.params["logical_drive"] is module.params["current_name"] is None:
        module.fail_json(msg="a name needs logical_drive or current_name")


def main():
    module = AnsibleModule(
        argument_spec={
            **programs.program_options("cli_path", "status_path"),
            "controller": {"type": "int"},
            "logical_drive": {"type": "int"},
            "current_name": {"type": "str"},
            "name": {"type": "str"},
            "write_policy": {"type": "str", "choices": POLICIES},
            "write_policy_unprotected": {"type": "str", "choices": POLICIES},
            "look_ahead": {"type": "int"},
            "consolidation": {"type": "bool"}},
        mutually_exclusive=[("logical_drive", "current_name")],
        required_by={"logical_drive": ("controller",)},
        supports_check_mode=True)
    check_arguments(module)
    one = (module.params["logical_drive"] is not None
           or module.params["current_name"])
    settings.apply(module, TABLE, find, choose,
                   None if one else "logical drives")


if __name__ == "__main__":
    main()
