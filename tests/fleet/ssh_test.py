"""Playbooks on devices that are reached over SSH and have no Python."""

import json
import os
import pathlib
import shutil
import time
import unittest

import fleet
from fleet import SERVERS, changed_since, checksum, play, write_playbook
from ssh_device import PORT, Device, loopback, make_key

WITHIN = 10


class Ssh(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = fleet.WORK / "ssh"
        shutil.rmtree(cls.directory, ignore_errors=True)
        cls.directory.mkdir()
        pathlib.Path("/run/sshd").mkdir(exist_ok=True)
        cls.key = make_key(cls.directory / "client")
        host_key = make_key(cls.directory / "host")
        cls.devices = {}
        for number in range(1, SERVERS + 1):
            device = Device(cls.directory / f"enc{number:03}", number, host_key, cls.key)
            device.start()
            cls.addClassCleanup(device.stop)
            cls.devices[f"enc{number:03}"] = device
        cls.first = min(cls.devices)
        known = f"* {(cls.directory / 'host.pub').read_text()}"
        (cls.directory / "known_hosts").write_text(known)

    def inventory(self):
        hosts = {host: {"ansible_host": loopback(device.served), "new_address": device.moved_address}
                 for host, device in self.devices.items()}
        variables = {
            "ansible_user": "root", "ansible_port": PORT, "rtsp_port": 8554, "ansible_timeout": 5,
            "ansible_ssh_private_key_file": str(self.key),
            "ansible_ssh_common_args": f"-o UserKnownHostsFile={self.directory}/known_hosts -o IdentitiesOnly=yes",
        }
        path = self.directory / "inventory.json"
        path.write_text(json.dumps({"all": {"children": {"encoders": {"hosts": hosts, "vars": variables}}}}))
        return path

    def run_play(self, playbook, *options, **settings):
        return play(self.inventory(), playbook, *options, ANSIBLE_SSH_CONTROL_PATH_DIR=str(self.directory / "cp"),
                    **settings)

    def files(self):
        return {str(path): checksum(path) if path.is_dir() else path.read_bytes()
                for device in self.devices.values()
                for path in sorted(device.root.glob("*")) if path.name not in ("cfg0", "cfg1", "dev")}

    def settings(self):
        return {host: device.camcfg("export") for host, device in self.devices.items()}

    def test_a_device_has_no_python(self):
        for device in self.devices.values():
            self.assertFalse([path for path in device.root.rglob("*") if "python" in path.name])

    def test_the_same_playbook_changes_every_device_and_leaves_nothing_there(self):
        before = self.files()
        run = self.run_play("rtsp_port", "-e", "rtsp_port=8600")
        self.assertEqual(run.hosts("changed"), set(self.devices), run.text)
        for device in self.devices.values():
            self.assertEqual(device.camcfg("get", "System/Rtsp")["value"], 8600)
        run = self.run_play("rtsp_port", "-e", "rtsp_port=8600")
        self.assertEqual((run.total("changed"), run.total("ok")), (0, SERVERS), run.text)
        self.assertFalse(changed_since(before, self.files()))

    def test_a_host_that_is_off_is_unreachable_by_itself(self):
        inventory = self.inventory()
        text = json.loads(inventory.read_text())
        text["all"]["children"]["encoders"]["hosts"][self.first]["ansible_host"] = "127.77.9.9"
        inventory.write_text(json.dumps(text))
        run = play(inventory, "rtsp_port", ANSIBLE_SSH_CONTROL_PATH_DIR=str(self.directory / "cp"))
        self.assertEqual(run.hosts("unreachable"), {self.first}, run.text)
        self.assertEqual(run.hosts("ok"), set(self.devices) - {self.first})

    def change_address(self, *options):
        return self.run_play("change_address", "-e", "new_gateway=10.77.1.254", "-e", f"confirm_within={WITHIN}",
                             *options)

    def test_a_network_change_is_confirmed_at_the_new_address(self):
        old = {host: device.address for host, device in self.devices.items()}
        run = self.change_address("-e", '{"confirm_host": "{{ new_address | regex_replace(\'^10\', \'127\') }}"}')
        self.assertEqual(run.hosts("changed"), set(self.devices), run.text)
        for device in self.devices.values():
            self.assertEqual(device.configured(), device.moved_address)
            status = device.camcfg("status")
            self.assertIsNone(status["pending"])
            self.assertEqual(device.camcfg("history")["changes"][-1]["files"], ["/cfg0/business_param.xml"])
        time.sleep(WITHIN)
        self.assertEqual({device.configured() for device in self.devices.values()},
                         {device.moved_address for device in self.devices.values()})
        check = {"camcfg.device.status_info": {}}
        self.assertEqual(self.run_play(write_playbook("there", [check])).hosts("ok"), set(self.devices))
        self.move_back(old)

    def move_back(self, addresses):
        for host, device in self.devices.items():
            card = {"ipAddr": addresses[host], "gateWay": "10.77.0.254"}
            device.camcfg("import", "--mode", "merge", "-",
                          document={"version": 1, "network": {"cards": {"Lan0": card}}})
            self.wait_for(lambda device=device, host=host: device.served == addresses[host])

    def wait_for(self, condition):
        end = time.monotonic() + 3 * WITHIN
        while not condition():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.1)

    def test_a_network_change_that_is_not_confirmed_rolls_itself_back(self):
        before = self.settings()
        run = self.change_address("-e", "confirm_host=127.77.9.9")
        self.assertEqual(run.hosts("failed"), set(self.devices), run.text)
        for host, device in self.devices.items():
            self.assertIn(f"{host}: the change was not confirmed within {WITHIN} s", run.message(host))
            self.assertIn("the device rolls it back", run.message(host))
            self.wait_for(lambda device=device: device.served == device.address)
            changes = device.camcfg("history")["changes"]
            self.assertTrue(changes[-1]["command"].startswith("rollback of change"), changes[-1])
            self.assertIn("10.77.1.", json.dumps(device.camcfg("history", str(changes[-2]["number"]))))
        self.assertEqual(self.settings(), before)
        check = {"camcfg.device.status_info": {}}
        self.assertEqual(self.run_play(write_playbook("there", [check])).hosts("ok"), set(self.devices))


if __name__ == "__main__":
    os.umask(0o022)
    unittest.main()
