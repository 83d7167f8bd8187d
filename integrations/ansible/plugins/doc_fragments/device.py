class ModuleDocFragment:
    DOCUMENTATION = r"""
options:
  root:
    description:
      - Directory below which the files of the device are, passed on as C(--root).
      - For devices that are directories of a machine, and for tests.
      - Without it the variable C(camcfg_root), if there is one.
    type: str
  executable:
    description:
      - Name or path of the tool on the device.
      - Without it the variable C(camcfg_executable), or else C(camcfg).
    type: str
requirements:
  - camcfg 1.1.0 or later on the device; no Python
notes:
  - The action runs on the controller. It sends one command over the connection, with the document on its
    standard input. Nothing is copied to the device, nothing stays there, and no remote temporary
    directory is used.
  - Connections that can send standard input work, such as C(ssh), C(local) and C(community.general.chroot).
    C(paramiko) cannot.
  - Set C(gather_facts) to C(false) in plays; gathering facts needs Python on the device.
  - C(module_defaults) of the group C(camcfg.device.device) hold for all modules.
"""
