"""Runs the module backup, and fetches the files that it lists.

The managed host chooses the names, so they are checked before they become
paths on the control node.
"""
import hashlib
import os
import re

from ansible.errors import AnsibleActionFail
from ansible.plugins.action import ActionBase
from ansible.utils.hashing import secure_hash
from ansible_collections.sataraid.cli.plugins.module_utils import names

NAME = re.compile(r"[\w][\w.-]*-\d{8}T\d{6}Z\.(cfg|json)", re.ASCII)
DIRECTORY = "/var/backups/cli"


def sha256(path):
    return secure_hash(path, hashlib.sha256)


def check_names(files):
    for file in files:
        if not NAME.fullmatch(file["name"]):
            raise AnsibleActionFail(
                f"{file['name']!r} is no name of a backup")


class ActionModule(ActionBase):
    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        result.update(self._execute_module(task_vars=task_vars))
        if result.get("failed") or result.get("skipped"):
            return result
        check_names(result["backups"])
        directory = os.path.join(
            os.path.expanduser(self._task.args["dest"]),
            names.file_name(task_vars["inventory_hostname"]))
        result["fetched"] = [
            self._fetch(file, directory, task_vars)
            for file in result["backups"]
            if not is_here(file, directory)]
        result["changed"] = result["saved"] or bool(result["fetched"])
        return result

    def _fetch(self, file, directory, task_vars):
        """Under another name first: an incomplete copy is never used."""
        path = os.path.join(directory, file["name"])
        task = self._task.copy()
        task.args = {
            "src": os.path.join(self._task.args.get("directory", DIRECTORY),
                                file["name"]),
            "dest": path + ".part", "flat": True}
        fetch = self._shared_loader_obj.action_loader.get(
            "ansible.builtin.fetch", task=task, connection=self._connection,
            play_context=self._play_context, loader=self._loader,
            templar=self._templar, shared_loader_obj=self._shared_loader_obj)
        outcome = fetch.run(task_vars=task_vars)
        if outcome.get("failed"):
            raise AnsibleActionFail(
                f"cannot fetch {file['name']}: {outcome.get('msg')}")
        if sha256(path + ".part") != file["sha256"]:
            raise AnsibleActionFail(
                f"{file['name']} is not what the managed host has")
        os.replace(path + ".part", path)
        return path


def is_here(file, directory):
    path = os.path.join(directory, file["name"])
    return os.path.exists(path) and sha256(path) == file["sha256"]
