"""What the modules for settings have in common."""


class ModuleDocFragment:
    DOCUMENTATION = r"""
options:
  controller:
    description: ID of the controller, from 0. Without it, all controllers.
    type: int
notes:
  - The settings are read with C(cli-status). After each change they are read
    again, because C(cli) does not report that an adapter refused it.
attributes:
  check_mode:
    support: full
  diff_mode:
    support: full
  platform:
    platforms: posix
seealso:
  - module: sataraid.cli.status_info
"""
