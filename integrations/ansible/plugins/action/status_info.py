"""Runs the module status_info, and saves the snapshot on the control node."""
import json
import os
import tempfile

from ansible.errors import AnsibleActionFail
from ansible.plugins.action import ActionBase
from ansible_collections.sataraid.cli.plugins.module_utils import names


def replace_file(path, text):
    """In one step, so that a reader never sees half of it."""
    directory = os.path.dirname(path)
    os.makedirs(directory, exist_ok=True)
    handle, temporary = tempfile.mkstemp(dir=directory, prefix=".new-")
    try:
        with os.fdopen(handle, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(temporary, 0o644)
        os.replace(temporary, path)
    except OSError:
        os.unlink(temporary)
        raise


class ActionModule(ActionBase):
    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        result.update(self._execute_module(task_vars=task_vars))
        directory = self._task.args.get("save")
        if result.get("failed") or directory is None or \
                self._play_context.check_mode:
            return result
        host = names.file_name(task_vars["inventory_hostname"])
        path = os.path.join(os.path.expanduser(directory), host + ".json")
        try:
            replace_file(path, json.dumps(result["snapshot"]))
        except OSError as error:
            raise AnsibleActionFail(f"cannot save {path}: {error}")
        result["saved"] = path
        return result
