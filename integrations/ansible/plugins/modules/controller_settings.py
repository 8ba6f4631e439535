#!/usr/bin/python
"""Settings of controllers."""

DOCUMENTATION = r"""
module: controller_settings
short_description: Set rates, polling and rebuild settings of controllers
description:
  - Brings the settings of one controller, or of all controllers of the host,
    to the desired values with C(cli). Settings without a value are kept.
  - The task fails if a value did not take effect, or if another one changed.
  - Nothing is changed if the settings of any controller concerned cannot be
    read.
options:
  rebuild_rate:
    description: Share of the adapter's time for rebuilds, 1 to 255.
    type: int
  sync_rate:
    description:
      - Share for synchronizations and redundancy checks, 1 to 255.
    type: int
  init_rate:
    description: Share for initializations, 1 to 255.
    type: int
  migrate_rate:
    description: Share for migrations, 1 to 255.
    type: int
  patrol_rate:
    description: Share for media patrol, 1 to 255.
    type: int
  smart_poll:
    description: Minutes between polls of the drives' SMART status, 1 to 255.
    type: int
  enclosure_poll:
    description: Minutes between polls of the enclosures, 1 to 255.
    type: int
  smart:
    description: Whether the SMART status is polled at all.
    type: bool
  auto_rebuild:
    description: Whether a spare automatically replaces a lost drive.
    type: bool
  rebuild_policy:
    description: Whether a rebuild can start without a designated spare.
    type: bool
extends_documentation_fragment:
  - sataraid.cli.settings
  - sataraid.cli.programs
  - sataraid.cli.programs.cli
  - ansible.builtin.action_common_attributes
author: the cli developers
"""

EXAMPLES = r"""
- name: Reduce background work on all controllers
  sataraid.cli.controller_settings:
    rebuild_rate: 64
    sync_rate: 32
    patrol_rate: 16

- name: Let controller 0 rebuild onto spares and poll its drives
  sataraid.cli.controller_settings:
    controller: 0
    auto_rebuild: true
    smart: true
    smart_poll: 30
"""

RETURN = r"""
commands:
  description: The commands that were run, or would be in check mode.
  returned: always
  type: list
  elements: list
  sample:
    - [cli, ctrl, -a, mod, -i, "0", -s, "rebuildrate=64,syncrate=32"]
diff:
  description: The settings that change, by controller.
  returned: always
  type: dict
  sample:
    before: {"controller 0": {"rebuild_rate": 128}}
    after: {"controller 0": {"rebuild_rate": 64}}
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.sataraid.cli.plugins.module_utils import (
    programs, settings)

TABLE = (
    ("rebuild_rate", "rebuildrate", "rebuildRate", "number"),
    ("sync_rate", "syncrate", "syncRate", "number"),
    ("init_rate", "initrate", "initRate", "number"),
    ("migrate_rate", "migraterate", "migrateRate", "number"),
    ("patrol_rate", "mprate", "mpRate", "number"),
    ("smart_poll", "smartpoll", "smartPollInterval", "number"),
    ("enclosure_poll", "encpoll", "encPollInterval", "number"),
    ("smart", "smart", "smartCheck", "switch"),
    ("auto_rebuild", "autorebuild", "autoRebuild", "switch"),
    ("rebuild_policy", "rebuildpolicy", "rebuildPolicy", "switch"),
)
TYPES = {"number": "int", "switch": "bool"}


def find(module, snapshot):
    return [{"name": f"controller {one['id']}",
             "identity": None,
             "controller": one["id"],
             "select": ["ctrl", "-a", "mod", "-i", str(one["id"])],
             "record": one["settings"]}
            for one in settings.controllers(module, snapshot)]


def choose(module, targets):
    wanted = settings.desired(module, TABLE)
    return [{**target, "wanted": wanted} for target in targets]


def main():
    module = AnsibleModule(
        argument_spec={
            **programs.program_options("cli_path", "status_path"),
            "controller": {"type": "int"},
            **{option: {"type": TYPES[kind]} for option, _, _, kind in TABLE}},
        supports_check_mode=True)
    programs.require_range(module, "controller", 0, 65535)
    for option, _, _, kind in TABLE:
        if kind == "number":
            programs.require_range(module, option, 1, 255)
    settings.apply(module, TABLE, find, choose, "controllers")


if __name__ == "__main__":
    main()
