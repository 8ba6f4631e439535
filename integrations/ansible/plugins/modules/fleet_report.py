#!/usr/bin/python
"""A report on many hosts."""

DOCUMENTATION = r"""
module: fleet_report
short_description: Report on the adapters of many hosts
description:
  - Reads the snapshots that M(sataraid.cli.status_info) saved on the control
    node, or that hosts delivered in another way, and writes one HTML page
    and one table of all hosts, the worst first.
  - The page also shows where firmware and driver versions differ, and which
    drives are of one batch, since these tend to fail together.
  - Runs on the control node. No string of a host is trusted; what HTML or a
    terminal would interpret is escaped.
options:
  snapshots:
    description: Directory with the snapshots, C(HOST.json) for each host.
    type: path
    required: true
  hosts:
    description:
      - Hosts to report on; one without a snapshot is unknown. Without this,
        all hosts that have a snapshot.
    type: list
    elements: str
  since:
    description:
      - Time, in seconds since 1970. A host whose snapshot was saved before
        could not be read now, so that it is unknown; what is reported of it
        is an earlier state.
    type: int
    default: 0
  page:
    description: HTML page to write.
    type: path
  table:
    description: Table to write, as plain text.
    type: path
  title:
    description: Title of the page.
    type: str
    default: SATA RAID adapters
  batch_prefix:
    description:
      - Drives of one model are of one batch if as many characters at the
        beginning of their serial numbers are the same.
    type: int
    default: 8
  max_age:
    description: Seconds from which on a snapshot counts as unknown.
    type: int
    default: 86400
extends_documentation_fragment:
  - ansible.builtin.action_common_attributes
attributes:
  check_mode:
    support: full
  diff_mode:
    support: none
  platform:
    platforms: posix
requirements:
  - Python 3.7 or later on the control node
author: the cli developers
"""

EXAMPLES = r"""
- name: Report on all hosts
  sataraid.cli.fleet_report:
    snapshots: /var/lib/fleet/snapshots
    hosts: "{{ ansible_play_hosts_all }}"
    page: /var/www/html/fleet.html
    table: /var/lib/fleet/fleet.txt
  run_once: true
  delegate_to: localhost
"""

RETURN = r"""
summary:
  description: How many hosts are in which state.
  returned: success
  type: str
  sample: "50 hosts: 1 critical, 0 unknown, 2 warning, 47 ok"
worst:
  description: The hosts that are not ok, the worst first, at most 20.
  returned: success
  type: list
  elements: str
"""

import os
import time

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.sataraid.cli.plugins.module_utils import (
    fleet, fleet_page, programs)


def replace_if_different(module, path, text):
    """Writes the file if its content differs; returns whether it did."""
    data = text.encode()
    try:
        with open(path, "rb") as file:
            if file.read() == data:
                return False
    except FileNotFoundError:
        pass
    if not module.check_mode:
        temporary = os.path.join(module.tmpdir, os.path.basename(path))
        with open(temporary, "wb") as file:
            file.write(data)
        module.atomic_move(temporary, path)
    return True


def write_outputs(module, outputs):
    try:
        changed = [replace_if_different(module, module.params[name], text)
                   for name, text in outputs.items()
                   if module.params[name] is not None]
    except OSError as error:
        module.fail_json(msg=f"cannot write the report: {error}")
    return any(changed)


def main():
    module = AnsibleModule(
        argument_spec={
            "snapshots": {"type": "path", "required": True},
            "hosts": {"type": "list", "elements": "str"},
            "since": {"type": "int", "default": 0},
            "page": {"type": "path"},
            "table": {"type": "path"},
            "title": {"type": "str", "default": "SATA RAID adapters"},
            "batch_prefix": {"type": "int", "default": 8},
            "max_age": {"type": "int", "default": 86400}},
        required_one_of=[("page", "table")],
        supports_check_mode=True)
    programs.require_range(module, "batch_prefix", 1, 23)
    params = module.params
    records = fleet.read_fleet(params["snapshots"], params["hosts"],
                               time.time(), params["max_age"],
                               params["since"])
    changed = write_outputs(module, {
        "page": fleet_page.page(records, params["title"],
                                params["batch_prefix"]),
        "table": fleet_page.text_table(records)})
    module.exit_json(
        changed=changed, summary=fleet_page.summary(records),
        worst=[record["host"] for record in records
               if record["status"] != "ok"][:20])


if __name__ == "__main__":
    main()
