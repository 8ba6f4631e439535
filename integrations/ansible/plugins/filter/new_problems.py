"""The filter new_problems."""

DOCUMENTATION = r"""
name: new_problems
author: the cli developers
short_description: What got worse between two states
description:
  - Lists the problems of the later of two states that the earlier one does
    not have. Findings of severity C(info) are no problems.
  - A finding is the same if rule and object are. It is new again if its
    severity has risen, or if an object has more findings of the rule.
positional: _input, earlier
options:
  _input:
    description:
      - The later result of M(sataraid.cli.status_info), or its snapshot.
    type: dict
    required: true
  earlier:
    description: The earlier one.
    type: dict
    required: true
"""

EXAMPLES = r"""
- name: Stop if this host is less healthy than before
  ansible.builtin.assert:
    that: after | sataraid.cli.new_problems(before) == []
"""

RETURN = r"""
_value:
  description: One line for each new problem, with its severity.
  type: list
  elements: str
"""

from collections import Counter

RANKS = {"ok": 0, "info": 0, "warning": 1, "unknown": 2, "critical": 3}


def identity(finding):
    """Rule, object and rank; the text may hold readings that vary."""
    what = finding["object"]
    return (finding["rule"], what["kind"], what["controller"],
            what["number"], RANKS[finding["severity"]])


def new_problems(later, earlier):
    known = Counter(identity(finding) for finding in earlier["findings"])
    lines = []
    for finding in later["findings"]:
        key = identity(finding)
        if known[key] > 0:
            known[key] -= 1
        elif RANKS[finding["severity"]] > 0:
            lines.append(f"{finding['severity']}: {finding['text']}")
    return lines


class FilterModule:
    def filters(self):
        return {"new_problems": new_problems}
