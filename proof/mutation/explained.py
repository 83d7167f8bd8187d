"""Changes that no test can notice, and why: blocks of "name: text" lines with a blank between."""
import dataclasses
import pathlib
import re

from changes import Change
from tree import Failure

FIELDS = ("file", "before", "after", "reason")


@dataclasses.dataclass(frozen=True)
class Explanation:
    file: str
    before: str
    after: str
    reason: str

    def fits(self, change: Change) -> bool:
        return (self.file, self.before, self.after) == (change.file, change.before, change.after)


def read(path: pathlib.Path) -> list[Explanation]:
    if not path.is_file():
        return []
    text = re.sub(r"^#.*\n", "", path.read_text(), flags=re.MULTILINE)
    return [parse(block) for block in re.split(r"\n\s*\n", text) if block.strip()]


def parse(block: str) -> Explanation:
    joined = re.sub(r"\n[ \t]+", " ", block.strip())
    entries = dict(line.split(": ", 1) for line in joined.splitlines() if ": " in line)
    if tuple(entries) != FIELDS:
        raise Failure(f"an explanation has {', '.join(FIELDS)}, in this order:\n{block}")
    return Explanation(**{name: text.strip() for name, text in entries.items()})


def check(explanations: list[Explanation], changes: list[Change]) -> None:
    """Code that was explained may be gone."""
    stale = [entry for entry in explanations if not any(map(entry.fits, changes))]
    if stale:
        raise Failure("explained, but no longer a change that could be made:\n" + "\n".join(
            f"{entry.file}: {entry.before} -> {entry.after}" for entry in stale))


def reason_for(change: Change, explanations: list[Explanation]) -> str | None:
    return next((entry.reason for entry in explanations if entry.fits(change)), None)
