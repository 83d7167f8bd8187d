"""Devices for the tests of the collection: directories with the files of one, and playbooks run on them."""

import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess

TREE = pathlib.Path(__file__).resolve().parents[2]
COLLECTION = TREE / "integrations/ansible"
CAMCFG = TREE / "build/camcfg"
VENUES = ("arena", "opera", "stadium", "studios")

WORK = pathlib.Path(os.environ["FLEET_WORK"])
ROOTS = int(os.environ.get("FLEET_ROOTS", "12"))
SERVERS = int(os.environ.get("FLEET_SERVERS", "2"))
FORKS = int(os.environ.get("FLEET_FORKS", "10"))


def lay_out(root):
    """A device with factory settings, as after its first start."""
    for copy in ("cfg0", "cfg1"):
        shutil.copytree(TREE / "resource/defcfg", root / copy)
    for part in ("defcfg", "language"):
        shutil.copytree(TREE / "resource" / part, root / "app/resource" / part)
    return root


def camcfg(root, *words, document=None):
    """The JSON answer of the tool on a device."""
    return ask([CAMCFG, "--root", root], *words, document=document)


def ask(tool, *words, document=None):
    done = subprocess.run([*tool, "--json", *words], timeout=60, text=True, capture_output=True, check=False,
                          input=json.dumps(document) if document else "")
    if done.returncode != 0:
        raise AssertionError(f"{tool}: {words}: status {done.returncode}: {done.stdout}{done.stderr}")
    return json.loads(done.stdout)


def value(root, place):
    return camcfg(root, "get", place)["value"]


def checksum(root):
    """Of all names, modes, times and bytes below a directory."""
    digest = hashlib.sha256()
    for path in sorted(root.rglob("*")):
        status = path.lstat()
        digest.update(f"{path.relative_to(root)} {status.st_mode} {status.st_mtime_ns}\n".encode())
        if path.is_file() and not path.is_symlink():
            digest.update(path.read_bytes())
    return digest.hexdigest()


class Run:
    """A playbook that was run: its output, and the counts of its recap by host."""

    RECAP = re.compile(r"^(\S+)\s+: (ok=.*)$", re.M)

    def __init__(self, done):
        self.status = done.returncode
        self.text = done.stdout + done.stderr
        if "Failure using method" in self.text:
            raise AssertionError(f"a result cannot be shown:\n{self.text}")
        self.counts = {
            host: {name: int(number) for name, number in (pair.split("=") for pair in counts.split())}
            for host, counts in self.RECAP.findall(self.text)
        }

    def total(self, name):
        return sum(counts[name] for counts in self.counts.values())

    def hosts(self, name):
        return {host for host, counts in self.counts.items() if counts[name]}

    def message(self, host):
        """Why a task failed on a host."""
        found = re.search(rf'^fatal: \[{re.escape(host)}\]: (?:(?!^fatal: ).)*?"msg": "(.*?[^\\])"', self.text,
                          re.M | re.S)
        return found.group(1) if found else None


def environment():
    return {
        **os.environ,
        "ANSIBLE_CONFIG": str(COLLECTION / "examples/ansible.cfg"),
        "ANSIBLE_COLLECTIONS_PATH": str(WORK / "collections"),
        "ANSIBLE_HOME": str(WORK / "home"),
        "ANSIBLE_LOCAL_TEMP": str(WORK / "home/tmp"),
        "ANSIBLE_FORKS": str(FORKS),
        "ANSIBLE_NOCOLOR": "1",
        "ANSIBLE_LOCALHOST_WARNING": "0",
    }


def install_collection():
    subprocess.run(["ansible-galaxy", "collection", "install", "--force", COLLECTION, "-p", WORK / "collections"],
                   check=True, timeout=120, env=environment(), stdout=subprocess.DEVNULL)


def command(inventory, playbook, *options):
    """That runs a playbook of the collection, by its name, or a file."""
    name = str(playbook) if isinstance(playbook, pathlib.Path) else f"camcfg.device.{playbook}"
    return ["ansible-playbook", "-i", inventory, *map(str, options), name]


def play(inventory, playbook, *options, **settings):
    done = subprocess.run(command(inventory, playbook, *options), check=False, text=True, capture_output=True,
                          stdin=subprocess.DEVNULL, timeout=600, cwd=WORK, env={**environment(), **settings})
    return Run(done)


def write_playbook(name, tasks, hosts="encoders", **keywords):
    """A playbook of its own; JSON is YAML, too."""
    path = WORK / f"{name}.yml"
    path.write_text(json.dumps([{"hosts": hosts, "gather_facts": False, **keywords, "tasks": tasks}]))
    return path


class Fleet:
    """So many directories with the files of a device, shared out among venues."""

    def __init__(self, name, count):
        self.directory = WORK / name
        shutil.rmtree(self.directory, ignore_errors=True)
        self.roots = {f"enc{number:03}": self.directory / f"enc{number:03}" for number in range(1, count + 1)}
        for root in self.roots.values():
            lay_out(root)
        self.variables = {host: {"camcfg_root": str(root)} for host, root in self.roots.items()}

    def venue(self, host):
        return VENUES[int(host[3:]) % len(VENUES)]

    def members(self, venue):
        return {host for host in self.roots if self.venue(host) == venue}

    def inventory(self):
        venues = {
            venue: {
                "hosts": {host: self.variables[host] for host in sorted(self.members(venue))},
                "vars": {"venue_relay": f"relay.{venue}.example.net", "venue_relay_port": 9001 + number},
            }
            for number, venue in enumerate(VENUES)
        }
        variables = {"ansible_connection": "local", "camcfg_executable": str(CAMCFG), "rtsp_port": 8554}
        path = self.directory / "inventory.json"
        path.write_text(json.dumps({"all": {"children": {"encoders": {"children": venues, "vars": variables}}}}))
        return path

    def checksums(self):
        return {host: checksum(root) for host, root in self.roots.items()}


def changed_since(before, after):
    return {host for host in before if before[host] != after[host]}
