"""What the actions of this collection have in common: one command to the device, one answer."""

from __future__ import annotations

import json
import shlex

from ansible.module_utils.common.parameters import remove_values
from ansible.plugins.action import ActionBase

from ansible_collections.camcfg.device.plugins.plugin_utils.document import secrets_of

COMMON = {
    "root": {"type": "str"},
    "executable": {"type": "str"},
}

DEFAULTS = {"root": None, "executable": "camcfg"}

NEEDED = "1.1.0"

# Never empty: without data a connection may ask for a terminal, which mixes messages into the answer.
NO_INPUT = b"\n"


class Refused(Exception):
    """A device did not do what it was asked; the rest becomes members of the result."""

    def __init__(self, text, **members):
        super().__init__(text)
        self.members = members


class DeviceAction(ActionBase):
    """An action that runs on the controller and needs nothing but camcfg on the device."""

    TRANSFERS_FILES = False
    _supports_check_mode = True
    _supports_async = False

    options: dict = {}
    rules: dict = {}
    secrets: frozenset = frozenset()

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        self.task_vars = task_vars or {}
        self.host = self.task_vars.get("inventory_hostname", "the device")
        self.params = self.validate_argument_spec({**COMMON, **self.options}, **self.rules)[1]
        for option in COMMON:
            self.params[option] = self.params[option] or self.variable(option)
        try:
            self.require_input()
            result.update(self.act())
        except Refused as refusal:
            result.update(refusal.members, failed=True, msg=f"{self.host}: {refusal}")
        return remove_values(result, self.secrets)

    def act(self):
        raise NotImplementedError

    def variable(self, option):
        value = self.task_vars.get(f"camcfg_{option}")
        return self._templar.template(value) if value else DEFAULTS[option]

    def require_input(self):
        if not self._connection.has_pipelining:
            raise Refused(
                f"the connection '{self._connection.transport}' cannot send a document on standard "
                "input; use ssh, local or chroot"
            )

    def line(self, *words):
        """The shell's line for a command of the tool."""
        root = self.params["root"]
        options = ["--root", root] if root else []
        return " ".join(map(shlex.quote, [self.params["executable"], *options, "--json", *words]))

    def send(self, line, data=NO_INPUT):
        return self._low_level_execute_command(line, in_data=data)

    def ask(self, *words, data=NO_INPUT):
        """The answer of one command; a refusal is raised."""
        done = self.send(self.line(*words), data)
        answer = self.accepted(self.answers(done, 1)[0])
        if done["rc"] != 0:
            raise Refused(messages(done), rc=done["rc"])
        return answer

    def answers(self, done, count):
        """The JSON values of an output, which must be `count`."""
        values, rest = [], done["stdout"].strip()
        decoder = json.JSONDecoder()
        try:
            while rest:
                value, end = decoder.raw_decode(rest)
                values.append(value)
                rest = rest[end:].strip()
        except ValueError:
            values = []
        if len(values) != count or not all(isinstance(value, dict) for value in values):
            raise Refused(self.no_answer(done), rc=done["rc"])
        return values

    def no_answer(self, done):
        """Why there is no answer: no tool, one that is older than --json, or something else."""
        executable = self.params["executable"]
        said = " ".join((done["stderr"].strip() or done["stdout"].strip()).split())[:300]
        if done["rc"] in (126, 127):
            return f"no camcfg device: '{executable}' cannot be run there ({said}); nothing was changed"
        if done["rc"] == 2:
            return too_old(said)
        if done["rc"] < 0 or done["rc"] > 128:
            return (f"'{executable}' was ended by a signal (status {done['rc']}); 'camcfg boot' on the device "
                    "completes or discards the change")
        return f"no camcfg device: '{executable}' gave no answer in JSON (status {done['rc']}): {said or 'nothing'}"

    def accepted(self, answer):
        """An answer that is no refusal, and has no faults."""
        error = answer.get("error")
        if error:
            text = error.get("text", "")
            if error.get("status") == 2:
                raise Refused(too_old(text), place=error.get("place"), rc=2)
            raise Refused(text, place=error.get("place"), rc=error.get("status"))
        faults = answer.get("faults")
        if faults:
            raise Refused(faults_text(faults, answer.get("moreFaults", 0)), faults=faults, rc=1,
                          place=faults[0].get("place"))
        return answer

    def dry_run(self):
        return ["--dry-run"] if self._task.check_mode else []

    def send_document(self, document, mode, *options):
        """Brings the device to a document; the result of the task."""
        answer = self.ask("import", "--mode", mode, "--yes", *options, *self.dry_run(), "-",
                          data=self.encoded(document))
        return self.imported(answer)

    def encoded(self, document):
        """The bytes of a document, whose secrets are masked from then on."""
        self.secrets = secrets_of(document)
        return json.dumps(document).encode()

    def imported(self, answer):
        result = {
            "changed": answer["changed"],
            "changes": answer["changes"],
            "findings": answer["findings"],
        }
        for finding in answer["findings"]:
            self._display.warning(f"{self.host}: {finding_text(finding)}")
        return self.with_diff(result)

    def with_diff(self, result):
        if self._task.diff and result["changes"]:
            result["diff"] = {
                "before_header": f"{self.host} before",
                "after_header": f"{self.host} after",
                "before": diff_side(result["changes"], "before"),
                "after": diff_side(result["changes"], "after"),
            }
        return result


def messages(done):
    """What the tool says on standard error, without its notes and those of the connection."""
    lines = (line.partition("camcfg: ")[2] for line in done["stderr"].splitlines() if line.startswith("camcfg: "))
    said = "; ".join(line for line in lines if ": note: " not in line and ": warning: " not in line)
    return said or f"status {done['rc']} without a reason"


def too_old(text):
    return (f"its camcfg does not know this command ({text}); camcfg {NEEDED} or later is needed; "
            "nothing was changed")


def faults_text(faults, more):
    others = len(faults) - 1 + more
    text = f"the document does not fit this device: {faults[0]['place']}: {faults[0]['reason']}"
    if others:
        text += f" (and {others} more faults)"
    if any("must be a number, not \"" in fault["reason"] or "must be true or false, not \"" in fault["reason"]
           for fault in faults):
        text += "; if a template made this a text, set jinja2_native"
    return f"{text}; nothing was changed"


def finding_text(finding):
    if not isinstance(finding, dict):
        return str(finding)
    return f"{finding.get('file', '')}:{finding.get('line', '')}: {finding.get('text', finding)}"


def diff_side(changes, side):
    return "".join(diff_line(change, side) for change in changes if change[side] is not None)


def diff_line(change, side):
    """Secrets look the same on both sides."""
    mark = " (changed)" if side == "after" and change["before"] == change["after"] else ""
    return f"{change['place']}: {json.dumps(change[side], ensure_ascii=False)}{mark}\n"
