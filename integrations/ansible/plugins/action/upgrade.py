from __future__ import annotations

from ansible_collections.camcfg.device.plugins.plugin_utils.device import DeviceAction


class ActionModule(DeviceAction):
    options = {
        "state": {"type": "str", "default": "merged", "choices": ["merged", "rehearsed"]},
        "old_set": {"type": "str"},
        "rules": {"type": "str"},
        "on_conflict": {"type": "str", "default": "user", "choices": ["user", "factory", "stop"]},
        "force": {"type": "bool", "default": False},
    }

    def act(self):
        rehearsal = self.params["state"] == "rehearsed"
        answer = self.ask("upgrade", *self.choices(), *(["--dry-run"] if rehearsal else self.dry_run()))
        wanted = bool(answer["files"])
        return self.with_diff({
            "changed": wanted and not rehearsal,
            "would_change": wanted,
            "merged_before": answer["mergedBefore"],
            "changes": answer["changes"],
            "conflicts": answer["conflicts"],
            "findings": answer["findings"],
            "files": answer["files"],
        })

    def choices(self):
        words = ["--on-conflict", self.params["on_conflict"]]
        for option, name in (("--from", "old_set"), ("--rules", "rules")):
            if self.params[name] is not None:
                words += [option, self.params[name]]
        return words + (["--force"] if self.params["force"] else [])
