"""The local connection, until there is a file DOWN/HOST."""
import os

from ansible.errors import AnsibleConnectionFailure
from ansible.plugins.connection.local import Connection as Local

DOCUMENTATION = """
name: fragile
short_description: a connection that can be cut
description: For the tests.
extends_documentation_fragment:
  - connection_pipelining
"""


class Connection(Local):
    transport = "fragile"

    def exec_command(self, cmd, in_data=None, sudoable=True):
        host = self._play_context.remote_addr
        if os.path.exists(os.path.join(os.environ["DOWN"], host)):
            raise AnsibleConnectionFailure(f"{host} is down")
        return super().exec_command(cmd, in_data, sudoable)
