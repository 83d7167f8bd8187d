# Documentation only: the action of the same name does the work.

DOCUMENTATION = r"""
module: presets
short_description: Manages the camera positions of a device
version_added: 1.1.0
description:
  - Adds, changes and deletes presets by their ids, all or none.
options:
  state:
    description:
      - C(merged) adds and changes the given presets and leaves the others.
      - C(replaced) also deletes the others.
      - C(deleted) deletes the given ones; only their ids count.
    type: str
    choices: [merged, replaced, deleted]
    default: merged
  presets:
    description: The presets. What is left out stays as it is; in a new preset it is 0, or empty.
    type: list
    elements: dict
    required: true
    suboptions:
      id:
        description: The number of the preset.
        type: int
        required: true
      description:
        description: Its name.
        type: str
      pan:
        description: Position of the pan motor.
        type: int
      tilt:
        description: Position of the tilt motor.
        type: int
      zoom:
        description: Position of the zoom.
        type: int
      focus:
        description: Position of the focus.
        type: int
      focusMode:
        description: Mode of the focus.
        type: int
        aliases: [focus_mode]
extends_documentation_fragment:
  - camcfg.device.device
  - camcfg.device.attributes
  - camcfg.device.attributes.changes
author:
  - The authors of camcfg (@camcfg)
seealso:
  - module: camcfg.device.config
"""

EXAMPLES = r"""
- name: Two positions for tonight
  camcfg.device.presets:
    presets:
      - {id: 10, description: Choir, pan: -3200, tilt: -300, zoom: 6000}
      - {id: 11, description: Organ, pan: 900, tilt: 450, zoom: 8200}

- name: They go again
  camcfg.device.presets:
    state: deleted
    presets: [{id: 10}, {id: 11}]
"""

RETURN = r"""
changes:
  description: What changed, or would in check mode, as M(camcfg.device.config) returns it.
  returned: success
  type: list
  elements: dict
  sample: [{place: 'presets[3].zoom', before: 9800, after: 9000}]
findings:
  description: What the tool's C(lint) says of the change.
  returned: success
  type: list
  elements: raw
"""
