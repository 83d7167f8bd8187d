"""A change that the device takes back by itself unless it can be reached afterwards."""

from __future__ import annotations

import time

from ansible.errors import AnsibleConnectionFailure
from ansible.plugins.connection import ConnectionBase

from ansible_collections.camcfg.device.plugins.plugin_utils.device import Refused, messages

PAUSE = 1

# In the line of an answer that says that a change is on trial.
PENDING = '"pending":{'


class Trial:
    def __init__(self, action, document, mode, options):
        self.action = action
        self.data = action.encoded(document)
        self.change = ["import", "--mode", mode, "--yes", *options]
        self.seconds = action.params["confirm_within"]

    def result(self):
        """What would change is asked first: an answer to the change itself may not arrive any more."""
        action = self.action
        planned = action.ask(*self.change, "--dry-run", "-", data=self.data)
        result = action.imported(planned)
        if not planned["changed"] or action._task.check_mode:
            return result
        end = time.monotonic() + self.seconds
        self.start()
        self.confirm(end)
        return {**result, "confirmed": True}

    def start(self):
        """The tool goes on waiting on the device, while its output up to the trial is returned."""
        tool = self.action.line("try", "--for", f"{self.seconds}s", "--", *self.change, "-")
        line = f"{{ {{ {tool} <&3 3<&- 2>&1 & }} | sed '/{PENDING}/q'; }} 3<&0"
        try:
            done = self.action.send(line, self.data)
        except AnsibleConnectionFailure:
            return
        answer = self.action.accepted(self.action.answers(parted(done), 1)[0])
        self.action.accepted(answer["answer"])
        if answer["pending"] is None:
            raise Refused(messages(parted(done)))

    def confirm(self, end):
        self.reconnect()
        reason = "there was no time"
        while time.monotonic() < end:
            try:
                self.action.ask("confirm")
                return
            except AnsibleConnectionFailure as failure:
                reason = " ".join(str(failure).split())
                time.sleep(PAUSE)
            except Refused as refusal:
                raise Refused(f"the change was not confirmed: {refusal}", **refusal.members) from None
        raise Refused(
            f"the change was not confirmed within {self.seconds} s, since the device could not be "
            f"reached: {reason}; the device rolls it back", changed=False)

    def reconnect(self):
        connection = self.action._connection
        reset(connection)
        for option, name in (("host", "confirm_host"), ("port", "confirm_port")):
            if self.action.params[name] is not None:
                connection.set_option(option, self.action.params[name])


def reset(connection):
    """Ends a connection, also one that has no reset of its own, as every command makes a new one there."""
    if type(connection).reset is ConnectionBase.reset:
        connection.close()
    else:
        connection.reset()


def parted(done):
    """An output in which messages and answers are mixed; an answer is a line."""
    lines = done["stdout"].splitlines()
    return {**done, "stdout": "\n".join(line for line in lines if line.startswith("{")),
            "stderr": "\n".join(line for line in lines if not line.startswith("{"))}
