"""A device at an address of the loopback network: an SSH server whose sessions see the device's files only.

Its network follows its settings: the server is at the address of the first card, and moves when that changes.
"""

import os
import pathlib
import pwd
import shutil
import signal
import socket
import subprocess
import threading
import time

from fleet import CAMCFG, ask, lay_out
from processes import children

PORT = 2222
APPLETS = ("sh", "sed", "sleep", "head", "ls", "cat")
PAUSE = 0.2


def loopback(address):
    """Where a device is reached that has an address: 10.77.1.2 is 127.77.1.2."""
    return "127." + address.partition(".")[2]


def make_key(path):
    subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", path], check=True, timeout=30)
    return path


def libraries(program):
    done = subprocess.run(["ldd", program], check=True, capture_output=True, text=True, timeout=30)
    words = (word for line in done.stdout.splitlines() for word in line.split())
    return [pathlib.Path(word) for word in words if word.startswith("/")]


def install(root, source, target):
    path = root / str(target).lstrip("/")
    path.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(source, path)
    return path


def make_root(root):
    """The files of a device: its settings, camcfg with its libraries, and a shell."""
    lay_out(root)
    install(root, CAMCFG, "/usr/bin/camcfg")
    for library in libraries(CAMCFG):
        place = library if library.is_relative_to("/lib64") else pathlib.Path("/usr/lib", library.name)
        install(root, library, place)
    install(root, "/bin/busybox", "/bin/busybox")
    for applet in APPLETS:
        (root / "bin" / applet).symlink_to("busybox")
    shell = root / pwd.getpwuid(os.getuid()).pw_shell.lstrip("/")
    if not shell.exists():
        shell.parent.mkdir(parents=True, exist_ok=True)
        shell.write_text('#!/bin/sh\nexec /bin/sh "$@"\n')
        shell.chmod(0o755)
    for directory in ("dev", "tmp", "root"):
        (root / directory).mkdir()
    os.mknod(root / "dev/null", 0o20666, os.makedev(1, 3))
    (root / "dev/null").chmod(0o666)
    return root


class Device:
    def __init__(self, directory, number, host_key, client_key):
        self.directory = directory
        self.root = make_root(directory / "root")
        self.host_key, self.client_key = host_key, client_key
        self.server = None
        self.address = f"10.77.0.{number}"
        self.moved_address = f"10.77.1.{number}"
        card = {"ipMode": "StaticIp", "ipAddr": self.address, "netMask": "255.255.255.0", "gateWay": "10.77.0.254"}
        self.camcfg("import", "-", document={"version": 1, "network": {"cards": {"Lan0": card}}})
        self.configuration = directory / "sshd_config"
        self.stopping = threading.Event()
        self.follower = threading.Thread(target=self.follow)

    def camcfg(self, *words, document=None):
        """Sees of the system what the sessions see, which counts for a change on trial."""
        return ask(["chroot", self.root, "/usr/bin/camcfg"], *words, document=document)

    def configured(self):
        return self.camcfg("get", "network.cards.Lan0.ipAddr")["value"]

    def start(self):
        self.serve(self.configured())
        self.follower.start()

    def stop(self):
        self.stopping.set()
        self.follower.join()
        self.end_server()

    def follow(self):
        """The network service of the device."""
        while not self.stopping.wait(PAUSE):
            address = self.configured()
            if address != self.served:
                self.end_server()
                self.serve(address)

    def serve(self, address):
        self.configuration.write_text(
            f"ListenAddress {loopback(address)}:{PORT}\nHostKey {self.host_key}\nPidFile none\nUsePAM no\n"
            f"AuthorizedKeysFile {self.client_key}.pub\nStrictModes no\nPermitRootLogin prohibit-password\n"
            f"PasswordAuthentication no\nChrootDirectory {self.root}\nSubsystem sftp /nowhere\n")
        with open(self.directory / "sshd.log", "ab") as log:
            self.server = subprocess.Popen(["/usr/sbin/sshd", "-D", "-e", "-f", self.configuration],
                                           stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.served = address
        self.wait_for_server()

    def wait_for_server(self):
        for _ in range(100):
            try:
                socket.create_connection((loopback(self.served), PORT), timeout=1).close()
                return
            except OSError:
                time.sleep(0.05)
        raise AssertionError(f"{self.served}: sshd does not answer: {(self.directory / 'sshd.log').read_text()}")

    def end_server(self):
        """With its connections; what their sessions have started goes on, as when a cable is pulled."""
        for pid in [*children(self.server.pid), self.server.pid]:
            os.kill(pid, signal.SIGKILL)
        self.server.wait()
