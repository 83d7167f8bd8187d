#!/usr/bin/env python3
"""Prints what gcovr counted: a table by folder, then each line of which something was not reached.

    coverage_table.py COUNTS.json
"""
import collections
import dataclasses
import json
import sys


@dataclasses.dataclass
class Count:
    reached: int = 0
    all: int = 0

    def add(self, counts: list[int]) -> None:
        self.reached += sum(count > 0 for count in counts)
        self.all += len(counts)

    def cells(self) -> list[str]:
        percent = 100 * self.reached / self.all if self.all else 100.0
        return [str(self.all), str(self.reached), f"{percent:.1f} %"]


@dataclasses.dataclass
class Folder:
    lines: Count = dataclasses.field(default_factory=Count)
    branches: Count = dataclasses.field(default_factory=Count)


def branch_counts(line: dict) -> list[int]:
    return [branch["count"] for branch in line["branches"] if not branch.get("throw")]


def missed(file: str, line: dict) -> str | None:
    branches = branch_counts(line)
    left = sum(count == 0 for count in branches)
    if line["count"] > 0 and left == 0:
        return None
    what = "not reached" if line["count"] == 0 else f"{left} of {len(branches)} branches"
    with open(file, encoding="utf-8") as source:
        text = source.read().splitlines()[line["line_number"] - 1].strip()
    return f"{file}:{line['line_number']}: {what}: {text}"


def print_table(rows: list[list[str]]) -> None:
    widths = [max(len(row[i]) for row in rows) for i in range(len(rows[0]))]
    for row in rows[:1] + [["-" * width for width in widths]] + rows[1:]:
        cells = [row[0].ljust(widths[0])] + [
            cell.rjust(width) for cell, width in zip(row[1:], widths[1:])]
        print("| " + " | ".join(cells) + " |")


def main() -> None:
    with open(sys.argv[1], encoding="utf-8") as counts:
        files = json.load(counts)["files"]
    folders: dict[str, Folder] = collections.defaultdict(Folder)
    left = []
    for entry in files:
        for line in entry["lines"]:
            if line.get("gcovr/noncode"):
                continue
            for folder in (folders[entry["file"].split("/")[1]], folders["~all"]):
                folder.lines.add([line["count"]])
                folder.branches.add(branch_counts(line))
            left.append(missed(entry["file"], line))
    rows = [["folder", "lines", "reached", "", "branches", "reached", ""]]
    rows += [[name.lstrip("~"), *counts.lines.cells(), *counts.branches.cells()]
             for name, counts in sorted(folders.items())]
    print_table(rows)
    print("\nNot reached:")
    print("\n".join(line for line in left if line is not None))


if __name__ == "__main__":
    main()
