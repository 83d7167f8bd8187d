"""The tests of a tree: each in a process of its own, until the first that fails."""
import concurrent.futures
import dataclasses
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import threading
import time

from tree import Failure

# Seconds. Longer tests mostly wait for a lock that is not to be had: they come last, and side by
# side.
SLOW = 2.0
SLOW_AT_ONCE = 12
# How long a test may take: a changed library may wait for ever, or go round in circles.
LIMIT = 8.0
LIMIT_FACTOR = 10

# A changed library may also ask for all memory, or fill a disk.
CONFINED = ["prlimit", "--core=0", f"--as={8 << 30}", f"--fsize={1 << 30}"]


@dataclasses.dataclass(frozen=True)
class Test:
    folder: str
    program: str  # from the build directory on
    name: str
    seconds: float = 0.0

    def limit(self) -> float:
        return LIMIT + LIMIT_FACTOR * self.seconds

    def __str__(self) -> str:
        return f"{pathlib.Path(self.program).name}.{self.name}"


class Processes:
    """Runs tests; the scratch devices of those that were ended are removed at the close."""

    def __init__(self, build_directory: pathlib.Path) -> None:
        self._build_directory = build_directory
        memory = "/dev/shm"
        self._scratch = tempfile.mkdtemp(
            prefix="mutation-", dir=memory if os.access(memory, os.W_OK) else None)
        self._running: set[subprocess.Popen[bytes]] = set()
        self._lock = threading.Lock()
        self._stopped = False

    def __enter__(self) -> "Processes":
        return self

    def __exit__(self, *_: object) -> None:
        shutil.rmtree(self._scratch, ignore_errors=True)

    def run(self, test: Test, limit: float) -> str:
        """How a test failed; empty if it passed, or was stopped with the rest."""
        with self._lock:
            if self._stopped:
                return ""
            process = subprocess.Popen(
                [*CONFINED, str(self._build_directory / test.program),
                 f"--gtest_filter={test.name}", "--gtest_brief=1"],
                cwd=(self._build_directory / test.program).parent,
                env={**os.environ, "TMPDIR": self._scratch}, start_new_session=True,
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            self._running.add(process)
        try:
            status = process.wait(limit)
        except subprocess.TimeoutExpired:
            end(process)
            return "time limit"
        finally:
            with self._lock:
                self._running.discard(process)
                stopped = self._stopped
        if stopped or status == 0:
            return ""
        return "crash" if status < 0 else "failure"

    def stop(self) -> None:
        with self._lock:
            self._stopped = True
            for process in self._running:
                end(process, wait=False)


def end(process: subprocess.Popen[bytes], wait: bool = True) -> None:
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    if wait:
        process.wait()


@dataclasses.dataclass(frozen=True)
class Caught:
    test: Test
    how: str


def tests_of(build_directory: pathlib.Path, folders: list[str]) -> list[Test]:
    found = []
    for folder in folders:
        for program in sorted((build_directory / "tests" / folder).glob("*_test")):
            if program.is_file() and os.access(program, os.X_OK):
                relative = str(program.relative_to(build_directory))
                found += [Test(folder, relative, name) for name in names_of(program)]
    if not found:
        raise Failure(f"no tests in {build_directory}")
    return found


def names_of(program: pathlib.Path) -> list[str]:
    listed = subprocess.run([str(program), "--gtest_list_tests"], check=True, capture_output=True,
                            text=True).stdout
    names, suite = [], ""
    for line in listed.splitlines():
        name = line.split("#")[0].strip()
        if not line.startswith(" "):
            suite = name
        elif not name.startswith("DISABLED_") and not suite.startswith("DISABLED_"):
            names.append(suite + name)
    return names


def prove(build_directory: pathlib.Path, tests: list[Test], at_once: int) -> list[Test]:
    """The tests with the time each takes. All must pass before anything is changed."""
    with Processes(build_directory) as processes:

        def timed(test: Test) -> tuple[Test, str]:
            start = time.monotonic()
            how = processes.run(test, limit=300)
            return dataclasses.replace(test, seconds=time.monotonic() - start), how

        with concurrent.futures.ThreadPoolExecutor(at_once) as pool:
            outcomes = list(pool.map(timed, tests))
    failed = [f"{test}: {how}" for test, how in outcomes if how]
    if failed:
        raise Failure("the tests do not pass as they are:\n" + "\n".join(failed))
    return [test for test, _ in outcomes]


def first_failure(build_directory: pathlib.Path, tests: list[Test], folder: str,
                  at_once: int) -> Caught | None:
    """Runs the folder's own tests first, slow ones last."""
    ordered = sorted(tests, key=lambda test: (test.folder != folder, test.seconds))
    quick = [test for test in ordered if test.seconds < SLOW]
    slow = [test for test in ordered if test.seconds >= SLOW]
    with Processes(build_directory) as processes:
        return (until_failure(processes, quick, at_once) or
                until_failure(processes, slow, SLOW_AT_ONCE))


def until_failure(processes: Processes, tests: list[Test], at_once: int) -> Caught | None:
    caught: list[Caught] = []

    def run(test: Test) -> None:
        if caught:
            return
        how = processes.run(test, test.limit())
        # A failure counts when it comes again: a busy machine is no proof of a good test.
        if how and how != "time limit":
            how = processes.run(test, test.limit())
        if how:
            caught.append(Caught(test, how))
            processes.stop()

    with concurrent.futures.ThreadPoolExecutor(at_once) as pool:
        list(pool.map(run, tests))
    return caught[0] if caught else None
