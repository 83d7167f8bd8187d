"""Runs the tool up to a system call, where the power fails: it is killed with all that it started.

    cut_power.py CALL COUNT FILE CAMCFG [ARGUMENT...]

CALL is stopped when it is made on FILE for the COUNTth time. The exit status is then that of a killed shell.
"""

import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time

LIMIT = 60


def main():
    call, count, path, *command = sys.argv[1:]
    with tempfile.TemporaryDirectory() as directory:
        log = pathlib.Path(directory, "calls")
        log.touch()
        tracer = ["strace", "-f", "-o", log, "-P", path, "-e", f"trace={call}", "-e",
                  f"inject={call}:signal=STOP:when={count}"]
        tool = subprocess.Popen([*tracer, *command], start_new_session=True, stderr=subprocess.DEVNULL)
        end = time.monotonic() + LIMIT
        while tool.poll() is None and time.monotonic() < end:
            if "stopped by SIGSTOP" in log.read_text():
                os.killpg(tool.pid, signal.SIGKILL)
                tool.wait()
                return 128 + signal.SIGKILL
            time.sleep(0.005)
        return tool.wait(timeout=1)


sys.exit(main())
