"""Options of all modules that run programs on the managed host."""


class ModuleDocFragment:
    DOCUMENTATION = r"""
options:
  status_path:
    description:
      - C(cli-status), as a path or as a name that is looked up in C(PATH)
        and in the C(sbin) directories.
    type: path
    default: cli-status
  timeout:
    description:
      - Seconds that one program may take. A program that takes longer is
        ended, and the task fails.
    type: int
    default: 120
requirements:
  - Python 3.7 or later on the managed host
"""

    CLI = r"""
options:
  cli_path:
    description:
      - C(cli), as a path or as a name that is looked up in C(PATH) and in
        the C(sbin) directories.
    type: path
    default: cli
"""
