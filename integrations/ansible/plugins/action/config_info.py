from __future__ import annotations

from ansible_collections.camcfg.device.plugins.plugin_utils.device import DeviceAction
from ansible_collections.camcfg.device.plugins.plugin_utils.gather import OPTIONS, gathered


class ActionModule(DeviceAction):
    options = OPTIONS

    def act(self):
        return gathered(self)
