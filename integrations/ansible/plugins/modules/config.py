# Documentation only: the action of the same name does the work.

DOCUMENTATION = r"""
module: config
short_description: Brings the settings of a device to what a document says
version_added: 1.1.0
description:
  - Sends a document to C(camcfg import) on the device, which checks it as a whole and then makes the change as a
    whole or not at all.
  - A device that has the settings already is not written to.
options:
  state:
    description:
      - C(merged) adds and changes what the document names and deletes nothing, except for entries with
        C(absent=true).
      - C(replaced) makes each list that the document names what the document has. Entries that are not in it are
        deleted.
      - C(overridden) also gives factory values to what the document does not name. The network stays as it is
        unless it is named.
      - C(gathered) changes nothing and returns the settings as a document.
    type: str
    choices: [merged, replaced, overridden, gathered]
    default: merged
  document:
    description:
      - The document, as C(camcfg export) prints it. C(version) may be left out.
      - Texts from a vault are decrypted on the controller. The texts of passwords, and of keys in addresses, are
        masked in all results.
      - A template makes a text of a number unless C(jinja2_native) is set.
    type: dict
  src:
    description: A file with the document, in YAML or JSON, which may be encrypted with a vault.
    type: path
  sections:
    description: With I(state=gathered), only these, such as C(System), C(live) or C(live.srt).
    type: list
    elements: str
    default: []
  changed_only:
    description: With I(state=gathered), only what differs from the factory set.
    type: bool
    default: false
  secrets:
    description: With I(state=gathered), passwords too. Set C(no_log) on such a task.
    type: bool
    default: false
  force:
    description: Takes what the tool takes with C(--force) only, such as what its C(lint) calls an error.
    type: bool
    default: false
  confirm_within:
    description:
      - Makes the change on trial for so many seconds. The connection is then reset, and the change confirmed over a
        new one. If that does not come about in time, the device rolls the change back by itself.
      - What would change is asked first, so that there are three commands instead of one.
    type: int
  confirm_host:
    description: The address at which the device is reached after the change, if that is another one.
    type: str
  confirm_port:
    description: The port at which the device is reached after the change, if that is another one.
    type: int
extends_documentation_fragment:
  - camcfg.device.device
  - camcfg.device.attributes
  - camcfg.device.attributes.changes
author:
  - The authors of camcfg (@camcfg)
seealso:
  - module: camcfg.device.config_info
"""

EXAMPLES = r"""
- name: The same RTSP port everywhere
  camcfg.device.config:
    document:
      parameters:
        System:
          Rtsp: 8554

- name: The relay of the venue, and nobody sees its passphrase
  camcfg.device.config:
    document:
      live:
        srt:
          - id: 1
            hostname: "{{ venue_relay }}"
            password: "{{ vault_srt_passphrase }}"

- name: All that differs from the factory set, from version control
  camcfg.device.config:
    state: overridden
    src: "{{ inventory_hostname }}.yml"

- name: Another address, which rolls itself back if it was wrong
  camcfg.device.config:
    document:
      network:
        cards:
          Lan0:
            ipMode: StaticIp
            ipAddr: "{{ new_address }}"
            netMask: 255.255.255.0
            gateWay: "{{ new_gateway }}"
    confirm_within: 120
    confirm_host: "{{ new_address }}"

- name: Delete an SRT instance
  camcfg.device.config:
    document:
      live:
        srt:
          - id: 1
            absent: true
"""

RETURN = r"""
changes:
  description: What changed, or would in check mode. Secrets are masked.
  returned: unless I(state=gathered)
  type: list
  elements: dict
  contains:
    place:
      description: The setting.
      type: str
    before:
      description: Its value before; null for what is new.
      type: raw
    after:
      description: Its value after; null for what is deleted.
      type: raw
  sample: [{place: parameters.System.Rtsp, before: 554, after: 8554}]
findings:
  description: What the tool's C(lint) says of the change.
  returned: unless I(state=gathered)
  type: list
  elements: raw
document:
  description: The settings.
  returned: with I(state=gathered)
  type: dict
confirmed:
  description: The change was confirmed over a new connection.
  returned: with I(confirm_within), if something was changed
  type: bool
place:
  description: What a refusal is about, if that is known.
  returned: on failure
  type: str
faults:
  description: All faults of the document.
  returned: on failure, if the document has faults
  type: list
  elements: dict
  contains:
    place:
      description: The setting.
      type: str
    reason:
      description: What is wrong with it.
      type: str
"""
