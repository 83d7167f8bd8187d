from __future__ import annotations

from ansible_collections.camcfg.device.plugins.plugin_utils.device import DeviceAction
from ansible_collections.camcfg.device.plugins.plugin_utils.document import completed

MEMBERS = ("description", "pan", "tilt", "zoom", "focus", "focusMode")

PRESET = {
    "id": {"type": "int", "required": True},
    "description": {"type": "str"},
    "pan": {"type": "int"},
    "tilt": {"type": "int"},
    "zoom": {"type": "int"},
    "focus": {"type": "int"},
    "focusMode": {"type": "int", "aliases": ["focus_mode"]},
}


class ActionModule(DeviceAction):
    options = {
        "state": {"type": "str", "default": "merged", "choices": ["merged", "replaced", "deleted"]},
        "presets": {"type": "list", "elements": "dict", "required": True, "options": PRESET},
    }

    def act(self):
        entry = absent if self.params["state"] == "deleted" else given
        mode = "replace" if self.params["state"] == "replaced" else "merge"
        entries = [entry(preset) for preset in self.params["presets"]]
        return self.send_document(completed({"presets": entries}), mode)


def given(preset):
    members = {name: preset[name] for name in MEMBERS if preset.get(name) is not None}
    return {"id": preset["id"], **members}


def absent(preset):
    return {"id": preset["id"], "absent": True}
