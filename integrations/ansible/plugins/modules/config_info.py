# Documentation only: the action of the same name does the work.

DOCUMENTATION = r"""
module: config_info
short_description: Reads the settings of a device as a document
version_added: 1.1.0
description:
  - Returns what C(camcfg export) prints.
options:
  sections:
    description: Only these, such as C(System), C(live) or C(live.srt).
    type: list
    elements: str
    default: []
  changed_only:
    description: Only what differs from the factory set.
    type: bool
    default: false
  secrets:
    description: Passwords too. Set C(no_log) on such a task.
    type: bool
    default: false
extends_documentation_fragment:
  - camcfg.device.device
  - camcfg.device.attributes
  - camcfg.device.attributes.reads
author:
  - The authors of camcfg (@camcfg)
seealso:
  - module: camcfg.device.config
"""

EXAMPLES = r"""
- name: What was changed on this device
  camcfg.device.config_info:
    changed_only: true
  register: current

- name: Show it
  ansible.builtin.debug:
    var: current.document
"""

RETURN = r"""
document:
  description: The settings, in the form that M(camcfg.device.config) takes.
  returned: success
  type: dict
  sample: {version: 1, parameters: {System: {Rtsp: 8554}}}
"""
