# Documentation only: the action of the same name does the work.

DOCUMENTATION = r"""
module: upgrade
short_description: Merges the factory set of a new firmware into the settings
version_added: 1.1.0
description:
  - Does what C(camcfg upgrade) does with the factory set that is in place on the device, or says what that would be.
  - The paths are those of the machine on which the tool runs.
options:
  state:
    description:
      - C(merged) merges. In check mode it says what would change.
      - C(rehearsed) changes nothing and says what would change.
    type: str
    choices: [merged, rehearsed]
    default: merged
  old_set:
    description: Directory of the old factory set. Without it, the one that the device keeps.
    type: str
  rules:
    description: File of rules for what a merge cannot know. Without it, the one of the firmware.
    type: str
  on_conflict:
    description: Whose value counts where both have changed it; C(stop) changes nothing and fails.
    type: str
    choices: [user, factory, stop]
    default: user
  force:
    description: Merges even if the result has what the tool's C(lint) calls an error.
    type: bool
    default: false
extends_documentation_fragment:
  - camcfg.device.device
  - camcfg.device.attributes
  - camcfg.device.attributes.changes
author:
  - The authors of camcfg (@camcfg)
"""

EXAMPLES = r"""
- name: What would the new firmware do?
  camcfg.device.upgrade:
    state: rehearsed
  register: rehearsal

- name: Nobody's value is in conflict
  ansible.builtin.assert:
    that: rehearsal.conflicts | length == 0
"""

RETURN = r"""
would_change:
  description: Whether a merge changes files.
  returned: success
  type: bool
changes:
  description: What becomes of settings, each with C(what), C(place), C(before), C(after) and C(reason).
  returned: success
  type: list
  elements: dict
conflicts:
  description: The places that were changed on the device and by the factory set, differently.
  returned: success
  type: list
  elements: str
findings:
  description: What lint finds that it found neither on the device nor in the new set.
  returned: success
  type: list
  elements: str
files:
  description: The files that change.
  returned: success
  type: list
  elements: str
merged_before:
  description: The set in place is merged already; there is nothing to do.
  returned: success
  type: bool
"""
