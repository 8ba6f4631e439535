#!/usr/bin/python
"""The state of all adapters of a host."""

DOCUMENTATION = r"""
module: status_info
short_description: Read the state of all adapters of a host
description:
  - Returns what C(cli-status --json) prints, the whole state of controllers,
    drives, logical drives, enclosures and batteries, and what is wrong with
    it. Nothing is changed.
  - The task succeeds whatever the state is; see I(status) in the result.
options:
  controller:
    description: ID of the only controller to read, from 0.
    type: int
  baseline:
    description:
      - File on the managed host with an earlier snapshot, to compare with.
        Only this reveals what is no longer there.
    type: path
  limits:
    description: File on the managed host with thresholds.
    type: path
  full:
    description:
      - Whether I(snapshot) is in the result. It takes about 40 kB for a host
        with twelve drives, which the control node keeps to the end of the
        playbook.
    type: bool
    default: true
  save:
    description:
      - Directory on the control node where the snapshot is saved as
        C(HOST.json). In check mode, nothing is saved.
    type: path
extends_documentation_fragment:
  - sataraid.cli.programs
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
    support: full
  diff_mode:
    support: none
  platform:
    platforms: posix
seealso:
  - module: sataraid.cli.fleet_report
author: the cli developers
"""

EXAMPLES = r"""
- name: Read the state of the adapters
  sataraid.cli.status_info:
  register: raid

- name: Stop here if anything is critical
  ansible.builtin.assert:
    that: raid.status != "critical"
    fail_msg: "{{ raid.summary }}"

- name: Collect the snapshots of all hosts for a report
  sataraid.cli.status_info:
    save: /var/lib/fleet/snapshots
    full: false
"""

RETURN = r"""
status:
  description: The worst severity, C(ok), C(warning), C(critical) or
    C(unknown).
  returned: success
  type: str
  sample: warning
summary:
  description: One line that sums up.
  returned: success
  type: str
  sample: 1 problem
findings:
  description: What is wrong, the worst first.
  returned: success
  type: list
  elements: dict
snapshot:
  description: The whole state, as C(cli-status.schema.json) describes it.
  returned: unless I(full) is false
  type: dict
saved:
  description: File on the control node that holds the snapshot.
  returned: if I(save) is given, but not in check mode
  type: str
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.sataraid.cli.plugins.module_utils import programs


def more_arguments(module):
    return [word for name in ("baseline", "limits")
            if module.params[name] is not None
            for word in ("--" + name, module.params[name])]


def main():
    module = AnsibleModule(
        argument_spec={
            **programs.program_options("status_path"),
            "controller": {"type": "int"},
            "baseline": {"type": "path"},
            "limits": {"type": "path"},
            "full": {"type": "bool", "default": True},
            "save": {"type": "path"}},
        supports_check_mode=True)
    programs.require_range(module, "controller", 0, 65535)
    snapshot = programs.read_snapshot(
        module, module.params["controller"], more_arguments(module))
    module.exit_json(changed=False, status=snapshot["status"],
                     summary=snapshot["summary"],
                     findings=snapshot["findings"], snapshot=snapshot)


if __name__ == "__main__":
    main()
