class ModuleDocFragment:
    DOCUMENTATION = r"""
options: {}
attributes:
  action:
    description: There is an action of this name, which runs on the controller.
    support: full
  async:
    description: Supports being run with the C(async) keyword.
    support: none
  platform:
    description: The device that can be managed.
    platforms: camcfg
    support: full
"""

    CHANGES = r"""
options: {}
attributes:
  check_mode:
    description: In check mode the device says what would change; not a byte of it is written.
    support: full
  diff_mode:
    description: Shows each setting that changes, before and after. Secrets are masked.
    support: full
"""

    READS = r"""
options: {}
attributes:
  check_mode:
    description: Changes nothing, so that it does the same in check mode.
    support: full
  diff_mode:
    description: There is nothing to show, since nothing is changed.
    support: N/A
"""
