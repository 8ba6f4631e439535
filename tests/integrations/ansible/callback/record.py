"""Writes the results of all tasks to the file RECORD, one JSON a line."""
import json
import os

from ansible.plugins.callback import CallbackBase

DOCUMENTATION = """
name: record
type: aggregate
short_description: results as JSON lines
description: For the tests.
"""


class CallbackModule(CallbackBase):
    CALLBACK_VERSION = 2.0
    CALLBACK_TYPE = "aggregate"
    CALLBACK_NAME = "record"

    def record(self, outcome, result):
        with open(os.environ["RECORD"], "a", encoding="utf-8") as file:
            file.write(json.dumps({
                "host": result._host.get_name(),
                "task": result._task.get_name(),
                "outcome": outcome, "result": result._result}) + "\n")

    def v2_runner_on_ok(self, result):
        self.record("ok", result)

    def v2_runner_on_failed(self, result, ignore_errors=False):
        self.record("failed", result)

    def v2_runner_on_unreachable(self, result):
        self.record("unreachable", result)

    def v2_runner_on_skipped(self, result):
        self.record("skipped", result)
