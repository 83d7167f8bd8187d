"""Playbooks on many devices that are directories, through the local connection."""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

import fleet
from fleet import CAMCFG, ROOTS, TREE, Fleet, camcfg, changed_since, play, value, write_playbook

HERE = pathlib.Path(__file__).resolve().parent
FEW = min(ROOTS, 12)
NEW_SECRET = "never-to-be-seen-1"
OLD_SECRET = "never-to-be-seen-0"

# A change of every file.
WIDE = {
    "parameters": {"System": {"Rtsp": 7554}},
    "presets": [{"id": 3, "zoom": 7554}],
    "live": {"srt": [{"id": 1, "latency": 7554}]},
}


def config(document, **options):
    return {"camcfg.device.config": {"document": document, **options}}


def script(path, text):
    path.write_text(f"#!/bin/sh\n{text}\n")
    path.chmod(0o755)
    return str(path)


class Local(unittest.TestCase):
    count = ROOTS

    def setUp(self):
        self.fleet = Fleet(self.id().rsplit(".", 1)[-1], self.count)
        self.hosts = set(self.fleet.roots)
        self.first, self.second, *_ = sorted(self.hosts)

    def run_play(self, playbook, *options, **settings):
        return play(self.fleet.inventory(), playbook, *options, **settings)

    def assert_counts(self, run, **expected):
        self.assertEqual({name: run.total(name) for name in expected}, expected, run.text)

    def port(self, host):
        return value(self.fleet.roots[host], "System/Rtsp")

    def assert_stayed(self, before, hosts):
        self.assertFalse(changed_since(before, self.fleet.checksums()) & set(hosts))


class Idempotence(Local):
    def test_the_first_run_changes_every_device_and_the_second_none(self):
        self.assert_counts(self.run_play("rtsp_port"), changed=ROOTS, failed=0, unreachable=0)
        self.assertEqual({self.port(host) for host in self.hosts}, {8554})
        before = self.fleet.checksums()
        self.assert_counts(self.run_play("rtsp_port"), changed=0, ok=ROOTS, failed=0)
        self.assert_stayed(before, self.hosts)

    def test_each_device_has_the_relay_of_its_venue(self):
        self.assert_counts(self.run_play("venue_relay"), changed=ROOTS, failed=0)
        for host in self.hosts:
            expected = f"relay.{self.fleet.venue(host)}.example.net"
            self.assertEqual(value(self.fleet.roots[host], "live.srt[1].hostname"), expected)
        self.assert_counts(self.run_play("venue_relay"), changed=0, failed=0)


class Modules(Local):
    count = FEW

    def run_tasks(self, *tasks):
        """On one device; the results are those of the recap, and of what the tasks assert themselves."""
        run = self.run_play(write_playbook("tasks", tasks), "--limit", self.first)
        self.assert_counts(run, failed=0, unreachable=0)
        return run

    def presets(self):
        return {preset["id"]: preset for preset in camcfg(self.fleet.roots[self.first], "preset", "list")}

    def test_presets_are_merged_replaced_and_deleted(self):
        before = self.presets()
        merge = {"camcfg.device.presets": {"presets": [{"id": 3, "zoom": 77}, {"id": 40, "description": "Choir"}]}}
        self.assertEqual(self.run_tasks(merge, merge).total("changed"), 1)
        now = self.presets()
        self.assertEqual(set(now), {*before, 40})
        self.assertEqual(now[3], {**before[3], "zoom": 77})
        delete = {"camcfg.device.presets": {"state": "deleted", "presets": [{"id": 40}]}}
        self.assertEqual(self.run_tasks(delete).total("changed"), 1)
        self.assertEqual(set(self.presets()), set(before))
        replace = {"camcfg.device.presets": {"state": "replaced", "presets": [{"id": 3}]}}
        self.assertEqual(self.run_tasks(replace, replace).total("changed"), 1)
        self.assertEqual(self.presets(), {3: now[3]})

    def test_states_say_what_becomes_of_what_is_not_named(self):
        root = self.fleet.roots[self.first]
        camcfg(root, "set", "System/WebHttp=81", "network.hostname=kept")
        entry = camcfg(root, "export", "live.srt")["live"]["srt"][1]
        document = {"live": {"srt": [entry]}}
        self.assertEqual(self.run_tasks(config(document)).total("changed"), 0)
        self.assertEqual(self.run_tasks(config(document, state="replaced")).total("changed"), 1)
        self.assertEqual(camcfg(root, "export", "live.srt")["live"]["srt"], [entry])
        self.assertEqual(value(root, "System/WebHttp"), 81)
        self.assertEqual(self.run_tasks(config(document, state="overridden")).total("changed"), 1)
        self.assertEqual(value(root, "System/WebHttp"), 80)
        self.assertEqual(value(root, "network.hostname"), "kept")

    def test_what_is_read_is_for_assert(self):
        camcfg(self.fleet.roots[self.first], "set", "System/Rtsp=1554")
        run = self.run_tasks(
            {"camcfg.device.config": {"state": "gathered", "changed_only": True}, "register": "read"},
            {"ansible.builtin.assert": {
                "that": "read.document == {'version': 1, 'parameters': {'System': {'Rtsp': 1554}}}"}},
            {"camcfg.device.status_info": {}, "register": "device"},
            {"ansible.builtin.assert": {"that": [
                "device.health == 'well'", "device.error_count == 0", "device.findings == []",
                "device.status.pending is none"]}})
        self.assertEqual(run.total("changed"), 0)

    def test_a_new_factory_set_is_rehearsed_and_merged(self):
        root = self.fleet.roots[self.first]
        shutil.copytree(root / "app/resource/defcfg", root / "old")
        path = root / "app/resource/defcfg/business_param.xml"
        path.write_text(path.read_text().replace('Cur="554"', 'Cur="555"'))
        upgrade = {"old_set": str(root / "old")}
        rehearse = {"camcfg.device.upgrade": {**upgrade, "state": "rehearsed"}}
        merge = {"camcfg.device.upgrade": upgrade}
        self.assertEqual(self.run_tasks(rehearse).total("changed"), 0)
        self.assertEqual(self.port(self.first), 554)
        self.assertEqual(self.run_tasks(merge, merge).total("changed"), 1)
        self.assertEqual(self.port(self.first), 555)

    def test_the_role_lint_fails_with_what_it_finds(self):
        path = self.fleet.roots[self.first] / "cfg0/preset_cfg.xml"
        path.write_text(path.read_text().replace('Id="1"', 'Id="0"', 1))
        role = {"ansible.builtin.import_role": {"name": "camcfg.device.lint"}}
        run = self.run_play(write_playbook("lint", [role]))
        self.assertEqual(run.hosts("failed"), {self.first}, run.text)
        self.assertIn("[equal-id]", run.message(self.first))


class Previews(Local):
    def test_check_mode_reports_and_changes_no_byte(self):
        before = self.fleet.checksums()
        run = self.run_play("rtsp_port", "--check", "--diff")
        self.assert_counts(run, changed=ROOTS, failed=0)
        self.assertIn("-parameters.System.Rtsp: 554\n+parameters.System.Rtsp: 8554", run.text)
        self.assert_stayed(before, self.hosts)

    def test_no_secret_is_shown(self):
        for root in self.fleet.roots.values():
            camcfg(root, "set", f"live.srt[1].password={OLD_SECRET}")
        tasks = [
            config({"live": {"srt": [{"id": 1, "password": NEW_SECRET}]}}),
            {**config({"live": {"srt": [{"id": 1, "password": NEW_SECRET, "port": 0}]}}), "ignore_errors": True},
            {"camcfg.device.config_info": {}},
        ]
        run = self.run_play(write_playbook("secret", tasks), "--diff", "-vvv")
        self.assert_counts(run, changed=ROOTS, failed=0, ignored=ROOTS)
        self.assertIn('+live.srt[1].password: "********" (changed)', run.text)
        self.assertNotIn(NEW_SECRET, run.text)
        self.assertNotIn(OLD_SECRET, run.text)
        self.assertNotIn("change-me", run.text)

    def test_drift_is_reported_and_left(self):
        self.assert_counts(self.run_play("rtsp_port"), changed=ROOTS)
        camcfg(self.fleet.roots[self.first], "set", "System/Rtsp=1554")
        site = fleet.WORK / "site.json"
        site.write_text(json.dumps({"parameters": {"System": {"Rtsp": 8554}}}))
        before = self.fleet.checksums()
        run = self.run_play("drift", "-e", f"drift_document={site}")
        self.assertEqual(run.hosts("changed"), {self.first}, run.text)
        self.assertIn(f"{self.first} differs: parameters.System.Rtsp", run.text)
        self.assert_stayed(before, self.hosts)


class Selections(Local):
    def test_a_limit_keeps_the_others_as_they_are(self):
        before = self.fleet.checksums()
        run = self.run_play("rtsp_port", "--limit", "opera")
        members = self.fleet.members("opera")
        self.assertEqual(set(run.counts), members)
        self.assertEqual(changed_since(before, self.fleet.checksums()), members)

    def test_a_rollout_ends_at_the_first_device_that_is_not_well(self):
        site = fleet.WORK / "site.json"
        site.write_text(json.dumps({"parameters": {"System": {"Rtsp": 8554}}}))
        order = [host for venue in fleet.VENUES for host in sorted(self.fleet.members(venue))]
        sick = order[1]
        (self.fleet.roots[sick] / "cfg0/preset_cfg.xml").write_text("<Preset>")
        run = self.run_play("rollout", "-e", f"rollout_document={site}", "-e", '{"rollout_serial": [1, 2]}')
        self.assertNotEqual(run.status, 0)
        self.assertEqual(run.hosts("failed"), {sick}, run.text)
        self.assertEqual(self.port(order[0]), 8554)
        self.assertEqual({self.port(host) for host in order[3:]}, {554})


class Failures(Local):
    def test_a_corrupt_device_fails_by_itself_and_says_why(self):
        root = self.fleet.roots[self.first]
        for copy in ("cfg0", "cfg1"):
            (root / copy / "business_param.xml").write_text("<Config><Sys")
        before = self.fleet.checksums()
        run = self.run_play("rtsp_port")
        self.assert_counts(run, changed=ROOTS - 1, failed=1, unreachable=0)
        self.assertIn(f"{self.first}: ", run.message(self.first))
        self.assertIn("/cfg0/business_param.xml is not well-formed", run.message(self.first))
        self.assert_stayed(before, [self.first])

    def test_hosts_that_cannot_take_a_document_say_why_and_stay(self):
        other, old, foreign, nothing, full = names = sorted(self.hosts)[:5]
        directory = self.fleet.directory
        variables = self.fleet.variables
        variables[other]["site"] = {"parameters": {"Turret": {"Speed": 3}},
                                    "network": {"cards": {"Lan7": {"mtu": 1400}}}}
        variables[old]["camcfg_executable"] = script(
            directory / "old",
            f'case " $* " in *" --mode "*) set -- --json import --unknown;; esac\nexec {CAMCFG} "$@"')
        variables[foreign]["camcfg_executable"] = script(directory / "foreign", "echo 'Welcome to switch 7'")
        variables[nothing]["camcfg_executable"] = "/usr/bin/no-camcfg"
        self.fill(self.fleet.roots[full])
        before = self.fleet.checksums()
        task = config("{{ site | default({'parameters': {'System': {'Rtsp': 8554}}}) }}")
        run = self.run_play(write_playbook("misfits", [task]))
        self.assertEqual(run.hosts("failed"), set(names), run.text)
        self.assertEqual(run.hosts("changed"), self.hosts - set(names))
        for host, reason in ((other, "the document does not fit this device: parameters.Turret"),
                             (old, "camcfg 1.1.0 or later is needed"),
                             (foreign, "gave no answer in JSON (status 0): Welcome to switch 7"),
                             (nothing, "'/usr/bin/no-camcfg' cannot be run there"),
                             (full, "no room for /cfg1/business_param.xml")):
            self.assertTrue(run.message(host).startswith(f"{host}: "), run.message(host))
            self.assertIn(reason, run.message(host))
        self.assert_stayed(before, names)

    def fill(self, root):
        """Puts the backups on a file system that has no room left."""
        backups = root / "cfg1"
        kept = {path.name: path.read_bytes() for path in backups.iterdir()}
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", backups], check=True)
        self.addCleanup(subprocess.run, ["umount", backups], check=True)
        for name, data in kept.items():
            (backups / name).write_bytes(data)
        with open(backups / "ballast", "wb", buffering=0) as ballast:
            try:
                while ballast.write(bytes(4096)):
                    pass
            except OSError:
                pass

    def test_a_text_where_a_number_must_be_names_the_setting_that_helps(self):
        task = config({"parameters": {"System": {"Rtsp": "{{ 8554 }}"}}})
        run = self.run_play(write_playbook("text", [task]), "--limit", self.first, ANSIBLE_JINJA2_NATIVE="false")
        self.assertIn("set jinja2_native", run.message(self.first))


class PowerCuts(Local):
    MOMENTS = (
        "write 1 cfg1/.camcfg/contents/new",
        "write 1 cfg1/.camcfg/journal.new",
        "syncfs 1 cfg1/.camcfg",
        "write 1 cfg0/business_param.xml",
        "write 2 cfg0/business_param.xml",
        "write 1 cfg0/preset_cfg.xml",
        "write 2 cfg0/mpp_cfg.xml",
        "copy_file_range 1 cfg1/business_param.xml",
        "copy_file_range 1 cfg1/mpp_cfg.xml",
    )

    def state(self, host):
        root = self.fleet.roots[host]
        return {value(root, place) for place in ("System/Rtsp", "presets[3].zoom", "live.srt[1].latency")}

    def test_a_device_whose_power_fails_during_the_save_is_whole_afterwards(self):
        victims = dict(zip(sorted(self.hosts), self.MOMENTS))
        before = {host: self.state(host) for host in victims}
        for host, moment in victims.items():
            call, count, name = moment.split()
            path = self.fleet.roots[host] / name
            self.fleet.variables[host]["camcfg_executable"] = script(
                self.fleet.directory / f"{host}-cut",
                f'exec {sys.executable} {HERE}/cut_power.py {call} {count} {path} {CAMCFG} "$@"')
        playbook = write_playbook("wide", [config(WIDE)])
        run = self.run_play(playbook)
        self.assertEqual(run.hosts("failed"), set(victims), run.text)
        for host in victims:
            self.assertIn(f"{host}: '", run.message(host))
            self.assertIn("ended by a signal", run.message(host))
        journals = {host for host in victims if (self.fleet.roots[host] / "cfg1/.camcfg/journal").exists()}
        self.assertEqual(len(journals), len(self.MOMENTS) - 3)
        for host in victims:
            root = self.fleet.roots[host]
            self.assertEqual(camcfg(root, "boot")["health"], "well")
            self.assertIn(self.state(host), ({7554}, before[host]))
            self.assertEqual(camcfg(root, "status")["health"], "well")
            del self.fleet.variables[host]["camcfg_executable"]
        self.assertTrue(all(self.state(host) == {7554} for host in journals))
        self.assert_counts(self.run_play(playbook), failed=0, ok=ROOTS)
        self.assertTrue(all(self.state(host) == {7554} for host in self.hosts))


class Keeping(Local):
    count = FEW

    def backup(self, *options):
        directory = fleet.WORK / self.fleet.directory.name / "backups"
        run = self.run_play("backup", "-e", f"backup_dir={directory}", *options)
        self.assert_counts(run, failed=0)
        return run, {host: list((directory / host).iterdir()) for host in self.hosts}

    def test_backups_are_by_host_and_date_and_have_no_secret(self):
        _, files = self.backup()
        for host in self.hosts:
            (path,) = files[host]
            self.assertRegex(path.name, r"^\d{4}-\d\d-\d\d\.json$")
            self.assertEqual(path.stat().st_mode & 0o777, 0o600)
            self.assertNotIn("change-me", path.read_text())
            self.assertEqual(json.loads(path.read_text())["parameters"]["System"]["Rtsp"], 554)

    def test_a_backup_in_a_vault_brings_everything_back(self):
        camcfg(self.fleet.roots[self.first], "set", f"live.srt[1].password={OLD_SECRET}")
        run, files = self.backup("-e", "camcfg_backup_vault_secret=open-sesame", "-vvv", "--diff")
        self.assertNotIn(OLD_SECRET, run.text)
        (path,) = files[self.first]
        self.assertTrue(path.read_text().startswith("$ANSIBLE_VAULT;"))
        camcfg(self.fleet.roots[self.first], "set", "live.srt[1].password=lost", "System/Rtsp=1554")
        key = fleet.WORK / "vault-key"
        key.write_text("open-sesame")
        task = {"camcfg.device.config": {"state": "overridden", "src": str(path)}}
        run = self.run_play(write_playbook("restore", [task]), "--limit", self.first, "--vault-password-file", key)
        self.assert_counts(run, changed=1, failed=0)
        restored = camcfg(self.fleet.roots[self.first], "export")
        self.assertEqual(restored["live"]["srt"][1]["password"], OLD_SECRET)
        self.assertEqual(self.port(self.first), 554)

    def test_a_firmware_is_rehearsed_without_a_change(self):
        for name in ("old", "new"):
            target = self.fleet.directory / name / "resource"
            target.parent.mkdir()
            subprocess.run(["cp", "-R", TREE / "resource", target], check=True)
        path = self.fleet.directory / "new/resource/defcfg/business_param.xml"
        text = path.read_text()
        self.assertEqual(text.count('Cur="554"'), 1)
        path.write_text(text.replace('Cur="554"', 'Cur="555"'))
        camcfg(self.fleet.roots[self.first], "set", "System/Rtsp=8554")
        before = self.fleet.checksums()
        run = self.run_play("rehearse", "-e", f"old_firmware={self.fleet.directory}/old", "-e",
                            f"new_firmware={self.fleet.directory}/new", "-e", f"local_camcfg={CAMCFG}", "-e",
                            f"rehearsal_dir={self.fleet.directory}/rehearsal")
        self.assert_counts(run, failed=0, changed=0)
        self.assertIn(f"{self.first}: 1 settings change, 1 in conflict: parameters.System.Rtsp", run.text)
        self.assertIn(f"{self.second}: 1 settings change, 0 in conflict", run.text)
        self.assert_stayed(before, self.hosts)


if __name__ == "__main__":
    os.umask(0o022)
    unittest.main()
