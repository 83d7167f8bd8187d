from __future__ import annotations

from ansible_collections.camcfg.device.plugins.plugin_utils.device import DeviceAction


class ActionModule(DeviceAction):
    def act(self):
        line = "; ".join([self.line("--version"), self.line("status"), self.line("lint")])
        answers = self.answers(self.send(line), 3)
        version, status, lint = (self.accepted(answer) for answer in answers)
        return {
            "changed": False,
            "version": version["version"],
            "health": status["health"],
            "status": status,
            "error_count": lint["errors"],
            "warning_count": lint["warnings"],
            "findings": lint["findings"],
        }
