"""The results of the changes: kept in a file, printed as tables."""
import collections
import dataclasses
import json
import pathlib
from typing import Callable

from changes import Change
from explained import Explanation, reason_for

SURVIVED = "survived"


@dataclasses.dataclass(frozen=True)
class Outcome:
    change: Change
    how: str  # SURVIVED, or how a test noticed
    test: str = ""

    @property
    def caught(self) -> bool:
        return self.how != SURVIVED


def save(path: pathlib.Path, outcomes: list[Outcome]) -> None:
    path.write_text(json.dumps([dataclasses.asdict(outcome) for outcome in outcomes], indent=1))


def load(path: pathlib.Path) -> list[Outcome]:
    return [Outcome(Change(**entry.pop("change")), **entry)
            for entry in json.loads(path.read_text())]


def survivor_line(change: Change) -> str:
    removed = "removed a statement: " if change.kind == "statement" else ""
    return f"{change.file}:{change.line}: {removed}{change.before} -> {change.after}"


def rate(caught: int, count: int) -> float:
    return 100.0 * caught / count if count else 0.0


def print_table(headings: list[str], rows: list[list[str]]) -> None:
    widths = [max(len(row[i]) for row in [headings] + rows) for i in range(len(headings))]
    for row in [headings, ["-" * width for width in widths]] + rows:
        cells = [row[0].ljust(widths[0])] + [
            cell.rjust(width) for cell, width in zip(row[1:], widths[1:])]
        print("| " + " | ".join(cells) + " |")
    print()


def print_by(heading: str, key: Callable[[Outcome], str], outcomes: list[Outcome],
             explanations: list[Explanation]) -> None:
    groups: dict[str, list[Outcome]] = collections.defaultdict(list)
    for outcome in outcomes:
        groups[key(outcome)].append(outcome)
    rows = [row_of(name, groups[name], explanations) for name in sorted(groups)]
    rows.append(row_of("all", outcomes, explanations))
    print_table([heading, "changes", "failure", "crash", "time limit", "explained", "survived",
                 "caught"], rows)


def row_of(name: str, outcomes: list[Outcome], explanations: list[Explanation]) -> list[str]:
    by_how = collections.Counter(outcome.how for outcome in outcomes)
    left = [outcome.change for outcome in outcomes if not outcome.caught]
    explained = sum(reason_for(change, explanations) is not None for change in left)
    counts = [len(outcomes), by_how["failure"], by_how["crash"], by_how["time limit"], explained,
              len(left) - explained]
    percent = f"{rate(len(outcomes) - len(left), len(outcomes)):.1f} %"
    return [name, *map(str, counts), percent]


def print_all(outcomes: list[Outcome], explanations: list[Explanation]) -> None:
    print_by("folder", lambda outcome: outcome.change.file.split("/")[1], outcomes, explanations)
    print_by("kind", lambda outcome: outcome.change.kind, outcomes, explanations)
    left = sorted((outcome.change for outcome in outcomes if not outcome.caught),
                  key=lambda change: (change.file, change.line, change.start))
    reasons = [(change, reason_for(change, explanations)) for change in left]
    print("Survived:")
    for change, reason in reasons:
        if reason is None:
            print(survivor_line(change))
    print("\nExplained:")
    for change, reason in reasons:
        if reason is not None:
            print(f"{survivor_line(change)}\n    {reason}")
    print()
