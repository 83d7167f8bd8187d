# Documentation only: the action of the same name does the work.

DOCUMENTATION = r"""
module: status_info
short_description: Reads the health of a device and what lint finds
version_added: 1.1.0
description:
  - Returns what C(camcfg status) and C(camcfg lint) say, over one command.
  - Does not fail because a device is not well. Use C(ansible.builtin.assert) on what it returns.
options: {}
extends_documentation_fragment:
  - camcfg.device.device
  - camcfg.device.attributes
  - camcfg.device.attributes.reads
author:
  - The authors of camcfg (@camcfg)
"""

EXAMPLES = r"""
- name: Ask the device
  camcfg.device.status_info:
  register: device

- name: It is well
  ansible.builtin.assert:
    that:
      - device.health == 'well'
      - device.error_count == 0
      - device.status.pending is none
"""

RETURN = r"""
health:
  description: C(well), C(degraded) (it works, but a copy of a file is not as it should be) or C(unusable).
  returned: success
  type: str
  sample: well
status:
  description: The whole answer of C(camcfg status), with all copies, findings, advice and the change on trial.
  returned: success
  type: dict
error_count:
  description: How many errors lint finds.
  returned: success
  type: int
warning_count:
  description: How many warnings lint finds.
  returned: success
  type: int
findings:
  description: What lint finds.
  returned: success
  type: list
  elements: dict
version:
  description: The version of camcfg on the device.
  returned: success
  type: str
  sample: 1.1.0
"""
