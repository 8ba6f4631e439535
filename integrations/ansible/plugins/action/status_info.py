"""Runs the module status_info, and saves the snapshot on the control node."""
import json
import os
import tempfile

from ansible.errors import AnsibleActionFail
from ansible.module_utils.parsing.convert_bool import boolean
from ansible.plugins.action import ActionBase
from ansible_collections.sataraid.cli.plugins.module_utils import names


def replace_file(path, text):
    """Atomically, so that a reader never sees an incomplete file."""
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


def save(directory, host, snapshot):
    """The file that holds the snapshot now."""
    path = os.path.join(os.path.expanduser(directory),
                        names.file_name(host) + ".json")
    try:
        replace_file(path, json.dumps(snapshot))
    except OSError as error:
        raise AnsibleActionFail(f"cannot save {path}: {error}")
    return path


class ActionModule(ActionBase):
    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        result.update(self._execute_module(task_vars=task_vars))
        if "snapshot" not in result:
            return result
        directory = self._task.args.get("save")
        if directory is not None and not self._play_context.check_mode:
            result["saved"] = save(directory, task_vars["inventory_hostname"],
                                   result["snapshot"])
        if not boolean(self._task.args.get("full", True)):
            del result["snapshot"]
        return result
