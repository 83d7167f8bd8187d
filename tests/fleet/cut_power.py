"""Runs the tool, and kills it with all that it started as soon as a file of the device is written.

    cut_power.py FILE CAMCFG [ARGUMENT...]
"""

import os
import signal
import subprocess
import sys


def signature(path):
    try:
        status = os.stat(path)
    except FileNotFoundError:
        return None
    return status.st_ino, status.st_size, status.st_mtime_ns


def main():
    path, *command = sys.argv[1:]
    before = signature(path)
    tool = subprocess.Popen(command, start_new_session=True)
    while tool.poll() is None:
        if signature(path) != before:
            os.killpg(tool.pid, signal.SIGKILL)
            tool.wait()
            return 128 + signal.SIGKILL
    return tool.returncode


sys.exit(main())
