from __future__ import annotations

from ansible_collections.camcfg.device.plugins.plugin_utils.device import DeviceAction, Refused
from ansible_collections.camcfg.device.plugins.plugin_utils.document import completed
from ansible_collections.camcfg.device.plugins.plugin_utils.gather import OPTIONS as GATHER, gathered
from ansible_collections.camcfg.device.plugins.plugin_utils.trial import Trial

MODES = {"merged": "merge", "replaced": "replace", "overridden": "override"}


class ActionModule(DeviceAction):
    options = {
        **GATHER,
        "state": {"type": "str", "default": "merged", "choices": [*MODES, "gathered"]},
        "document": {"type": "dict"},
        "src": {"type": "path"},
        "force": {"type": "bool", "default": False},
        "confirm_within": {"type": "int"},
        "confirm_host": {"type": "str"},
        "confirm_port": {"type": "int"},
    }
    rules = {
        "mutually_exclusive": [["document", "src"]],
        "required_if": [["state", state, ("document", "src"), True] for state in MODES],
        "required_by": {"confirm_host": "confirm_within", "confirm_port": "confirm_within"},
    }

    def act(self):
        if self.params["state"] == "gathered":
            return gathered(self)
        document = completed(self.document())
        mode = MODES[self.params["state"]]
        force = ["--force"] if self.params["force"] else []
        if self.params["confirm_within"] is None:
            return self.send_document(document, mode, *force)
        return Trial(self, document, mode, force).result()

    def document(self):
        if self.params["document"] is not None:
            return self.params["document"]
        path = self._find_needle("files", self.params["src"])
        document = self._loader.load_from_file(path)
        if not isinstance(document, dict):
            raise Refused(f"{path} holds no document: it must be an object with sections")
        return document
