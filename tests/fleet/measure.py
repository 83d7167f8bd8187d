"""Prints what playbooks cost the controller, and a device, as tables."""

import pathlib
import re
import statistics
import subprocess
import threading
import time

import fleet
import ssh_test
from fleet import WORK, Fleet, Run, camcfg, command, environment, write_playbook
from processes import memory, tree

MEBIBYTE = 1 << 20
PAUSE = 0.1


class Sampler(threading.Thread):
    """The most memory that a process and all that descend from it had at one time."""

    def __init__(self, pid):
        super().__init__(daemon=True)
        self.pid = pid
        self.peak = [0, 0]
        self.ended = threading.Event()

    def run(self):
        while not self.ended.wait(PAUSE):
            sums = [sum(parts) for parts in zip(*map(memory, tree(self.pid)))]
            self.peak = [max(pair) for pair in zip(self.peak, sums)]


def measured(inventory, playbook, forks, **settings):
    """Seconds, peak memory and the result of a run."""
    begin = time.monotonic()
    tool = subprocess.Popen(command(inventory, playbook), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, cwd=WORK,
                            env={**environment(), **settings, "ANSIBLE_FORKS": str(forks)})
    sampler = Sampler(tool.pid)
    sampler.start()
    output, _ = tool.communicate(timeout=1200)
    sampler.ended.set()
    sampler.join()
    return time.monotonic() - begin, sampler.peak, Run(subprocess.CompletedProcess([], tool.returncode, output, ""))


def require(run, changed, ok):
    if (run.total("changed"), run.total("ok"), run.total("failed")) != (changed, ok, 0):
        raise SystemExit(f"not the expected result:\n{run.text}")


def local_rows():
    for count in (10, 50, 200):
        for forks in (10, 50):
            devices = Fleet("measured", count)
            first, peak, run = measured(devices.inventory(), "rtsp_port", forks)
            require(run, count, count)
            second, _, run = measured(devices.inventory(), "rtsp_port", forks)
            require(run, 0, count)
            yield (count, forks, f"{first:.1f}", f"{second:.1f}", *(f"{size / MEBIBYTE:.0f}" for size in peak))


def without_ansible():
    """Seconds that the tool itself takes for 200 devices, one after the other."""
    devices = Fleet("measured", 200)
    document = {"version": 1, "parameters": {"System": {"Rtsp": 8554}}}
    begin = time.monotonic()
    for root in devices.roots.values():
        if not camcfg(root, "import", "--mode", "merge", "-", document=document)["changed"]:
            raise SystemExit(f"{root} was not changed")
    return time.monotonic() - begin


def wrapper(directory):
    """An ssh that counts its calls and the bytes of each, one connection for each command."""
    path = directory / "counting-ssh"
    path.write_text(f'#!/bin/sh\nexec ssh -o ControlMaster=no -o ControlPath=none -v -E "{directory}/$$.log" "$@"\n')
    path.chmod(0o755)
    return path


def transferred(directory):
    """Bytes sent and received, by connection."""
    found = []
    for log in directory.glob("*.log"):
        found += re.findall(r"Transferred: sent (\d+), received (\d+) bytes", log.read_text())
    return [tuple(map(int, pair)) for pair in found]


def counted(test, name, playbook):
    directory = WORK / f"count-{name}"
    directory.mkdir()
    seconds, _, run = measured(test.inventory(), playbook, 10, ANSIBLE_SSH_EXECUTABLE=str(wrapper(directory)))
    if run.total("failed") + run.total("unreachable"):
        raise SystemExit(run.text)
    pairs = transferred(directory)
    sent, received = (statistics.median(column) for column in zip(*pairs))
    return len(pairs) / fleet.SERVERS, f"{sent:.0f}", f"{received:.0f}", f"{seconds:.1f}"


def ssh_rows():
    ssh_test.Ssh.setUpClass()
    test = ssh_test.Ssh()
    document = {"parameters": {"System": {"Rtsp": 8700}}}
    whole = next(iter(test.devices.values())).camcfg("export", "--no-secrets")
    tasks = {
        "nothing, over a connection": {"ansible.builtin.raw": "true"},
        "one port": {"camcfg.device.config": {"document": document}},
        "one port, unchanged": {"camcfg.device.config": {"document": document}},
        "a whole export, unchanged": {"camcfg.device.config": {"document": {**whole, "network": {}}}},
        "config_info": {"camcfg.device.config_info": {}},
        "status_info": {"camcfg.device.status_info": {}},
    }
    try:
        for number, (name, task) in enumerate(tasks.items()):
            yield name, *counted(test, number, write_playbook(f"count-{number}", [task]))
    finally:
        ssh_test.Ssh.doClassCleanups()


def table(head, rows):
    print("| " + " | ".join(head) + " |")
    print("|" + "---|" * len(head))
    for row in rows:
        print("| " + " | ".join(map(str, row)) + " |", flush=True)
    print()


def main():
    load = pathlib.Path("/proc/loadavg").read_text().split()[0]
    print(f"Load of the machine before: {load}\n")
    table(("devices", "forks", "changed, s", "unchanged, s", "memory, MiB", "shared counted once, MiB"), local_rows())
    print(f"The tool itself, on 200 devices one after the other: {without_ansible():.1f} s.\n")
    table(("task", "connections for a device", "bytes to it", "bytes from it", f"{fleet.SERVERS} devices, s"),
          ssh_rows())


if __name__ == "__main__":
    main()
