#!/usr/bin/env python3
"""Changes the library in one small way at a time and reports whether its tests notice.

    mutate.py [--count N] [--seed S] [--again] [FILE...]

Works in copies of the project, under build-mutation/. A change that does not compile does not
count. What survives is printed, with what explained.txt says of it; the exit status is 1 when less
than 95 % of the changes are noticed.
"""
import argparse
import concurrent.futures
import dataclasses
import pathlib
import queue
import random
import sys
import threading
import time

import explained
import report
import suite
import tree
from changes import Change, Source

LEAST_RATE = 95.0


def library_folders(root: pathlib.Path) -> list[str]:
    lines = (root / "src/folders.txt").read_text().splitlines()
    return [line for line in lines if line and not line.startswith("#")]


@dataclasses.dataclass(frozen=True)
class Project:
    """Where the sources are, which of them are changed, and which tests are to notice."""

    root: pathlib.Path
    scratch: pathlib.Path
    explanations: pathlib.Path
    folders: list[str]
    test_folders: list[str]
    workers: int = 2
    at_once: int = 2  # tests of one worker

    @property
    def targets(self) -> list[str]:
        return [f"tests/{folder}/all" for folder in self.test_folders]

    @property
    def results(self) -> pathlib.Path:
        return self.scratch / "results.json"

    def sources(self, files: list[str]) -> list[Source]:
        names = [name for name in sorted(files)
                 if name.endswith((".cpp", ".h"))
                 and name.startswith(tuple(f"src/{folder}/" for folder in self.folders))]
        return [Source(name, (self.root / name).read_text()) for name in names]


@dataclasses.dataclass
class Sample:
    """As many changes of one file as are wanted, out of all in the order to try them."""

    changes: list[Change]
    wanted: int


def shares(sources: list[Source], count: int) -> dict[str, int]:
    """Splits a count by the files' lines; the largest remainders are rounded up."""
    lines = {source.file: source.text.count("\n") for source in sources}
    exact = {file: count * number / sum(lines.values()) for file, number in lines.items()}
    result = {file: int(share) for file, share in exact.items()}
    by_remainder = sorted(exact, key=lambda file: (result[file] - exact[file], file))
    for file in by_remainder[: count - sum(result.values())]:
        result[file] += 1
    return result


def draw(sources: list[Source], count: int, seed: int) -> list[Sample]:
    wanted = shares(sources, count)
    samples = []
    for source in sources:
        changes = source.changes()
        random.Random(f"{seed} {source.file}").shuffle(changes)
        samples.append(Sample(changes, wanted[source.file]))
    return samples


def survivors_of(sources: list[Source], outcomes: list[report.Outcome]) -> list[Sample]:
    left = {(outcome.change.file, outcome.change.line, outcome.change.before, outcome.change.after)
            for outcome in outcomes if not outcome.caught}
    samples = []
    for source in sources:
        chosen = [change for change in source.changes()
                  if (change.file, change.line, change.before, change.after) in left]
        samples.append(Sample(chosen, len(chosen)))
    return samples


class Run:
    """Tries samples in several copies of the project at once."""

    def __init__(self, project: Project, files: list[str]) -> None:
        self._project = project
        self._files = files
        self._samples: queue.SimpleQueue[Sample] = queue.SimpleQueue()
        self._outcomes: list[report.Outcome] = []
        self._lock = threading.Lock()
        self._start = time.monotonic()

    def outcomes(self, samples: list[Sample]) -> list[report.Outcome]:
        for sample in sorted(samples, key=lambda sample: -sample.wanted):
            if sample.wanted > 0:
                self._samples.put(sample)
        trees = self._set_up_trees()
        with concurrent.futures.ThreadPoolExecutor(len(trees)) as pool:
            list(pool.map(lambda pair: self._work(*pair), trees))
        return self._outcomes

    # One after the other, so that the second finds what the compiler made for the first.
    def _set_up_trees(self) -> list[tuple[tree.Tree, list[suite.Test]]]:
        trees = []
        for number in range(self._project.workers):
            copy = tree.Tree(self._project.scratch / f"tree-{number}")
            copy.copy(self._project.root, self._files)
            copy.set_up(self._project.targets)
            tests = suite.tests_of(copy.build_directory, self._project.test_folders)
            trees.append((copy, suite.prove(copy.build_directory, tests, 4)))
            say(f"tree {number}: {len(tests)} tests pass before anything is changed")
        return trees

    def _work(self, copy: tree.Tree, tests: list[suite.Test]) -> None:
        try:
            while True:
                sample = self._samples.get_nowait()
                tried = 0
                for change in sample.changes:
                    if tried == sample.wanted:
                        break
                    tried += self._try(copy, tests, change)
        except queue.Empty:
            pass
        finally:
            copy.restore()

    def _try(self, copy: tree.Tree, tests: list[suite.Test], change: Change) -> bool:
        if not copy.build(change, self._project.targets):
            return False
        folder = change.file.split("/")[1]
        caught = suite.first_failure(copy.build_directory, tests, folder, self._project.at_once)
        outcome = (report.Outcome(change, report.SURVIVED) if caught is None else
                   report.Outcome(change, caught.how, str(caught.test)))
        with self._lock:
            self._outcomes.append(outcome)
            report.save(self._project.scratch / "so-far.json", self._outcomes)
            seconds = time.monotonic() - self._start
            say(f"{len(self._outcomes):4} {seconds:6.0f} s  {outcome.how:10} "
                f"{report.survivor_line(change)}  {outcome.test}")
        return True


def say(line: str) -> None:
    print(line, file=sys.stderr, flush=True)


def run(project: Project, count: int, seed: int, again: bool = False,
        only: list[str] | None = None) -> int:
    """Tries the changes and prints the results; returns the exit status."""
    project.scratch.mkdir(parents=True, exist_ok=True)
    files = tree.project_files(project.root)
    sources = project.sources(files)
    explanations = explained.read(project.explanations)
    explained.check(explanations, [change for source in sources for change in source.changes()])
    if only:
        sources = [source for source in sources if source.file in only]

    before = report.load(project.results) if again else []
    samples = survivors_of(sources, before) if again else draw(sources, count, seed)
    outcomes = [outcome for outcome in before if outcome.caught]
    outcomes += Run(project, files).outcomes(samples)
    report.save(project.results, outcomes)
    report.print_all(outcomes, explanations)

    caught = sum(outcome.caught for outcome in outcomes)
    rate = report.rate(caught, len(outcomes))
    print(f"{caught} of {len(outcomes)} changes were noticed: {rate:.1f} % "
          f"(at least {LEAST_RATE:.0f} % are to be)")
    return 0 if rate >= LEAST_RATE else 1


def main() -> int:
    parser = argparse.ArgumentParser(
        description="Reports whether the tests notice changes in the library.")
    parser.add_argument("--count", type=int, default=300, help="changes to make (300)")
    parser.add_argument("--seed", type=int, default=1, help="which of all possible ones (1)")
    parser.add_argument("--again", action="store_true",
                        help="only what survived the last time; the rest counts as it did then")
    parser.add_argument("files", nargs="*", help="only these files of the library")
    options = parser.parse_args()

    here = pathlib.Path(__file__).resolve().parent
    root = here.parent.parent
    folders = library_folders(root)
    project = Project(root, root / "build-mutation", here / "explained.txt", folders,
                      folders + ["system"])
    try:
        return run(project, options.count, options.seed, options.again, options.files)
    except tree.Failure as failure:
        print(f"mutate.py: {failure}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
