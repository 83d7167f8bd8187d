"""A copy of the project in which one file at a time is changed and built."""
import os
import pathlib
import subprocess

from changes import Change

CONFIGURATION = [
    "-G", "Ninja",
    "-D", "CMAKE_BUILD_TYPE=Debug",
    "-D", "CMAKE_CXX_FLAGS_DEBUG=-O0",
    "-D", "CAMCFG_TESTS=ON",
    # The tests' programs need no linking when the library's code changes, nor to be asked again
    # which tests they have.
    "-D", "CMAKE_LINK_DEPENDS_NO_SHARED=ON",
    "-D", "CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
]


class Failure(Exception):
    """Something without which nothing can be said about the tests."""


def project_files(project: pathlib.Path) -> list[str]:
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=project, check=True, capture_output=True, text=True).stdout
    return [name for name in listed.split("\0") if (project / name).is_file()]


class Tree:
    def __init__(self, root: pathlib.Path) -> None:
        self.root = root
        self.build_directory = root / "build"
        self._changed: dict[str, str] = {}  # files that differ from the project's, as they were

    def copy(self, project: pathlib.Path, files: list[str]) -> None:
        """Brings the copy up to date; what has not changed keeps its time, and is not rebuilt."""
        for name in files:
            contents = (project / name).read_bytes()
            target = self.root / name
            if target.is_file() and target.read_bytes() == contents:
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(contents)
            target.chmod((project / name).stat().st_mode)

    def set_up(self, targets: list[str]) -> None:
        """Builds the unchanged project."""
        configure = ["cmake", "-S", str(self.root), "-B", str(self.build_directory), *CONFIGURATION]
        launcher = self.root / "cmake/Ccache.cmake"
        if launcher.is_file():
            configure += ["-D", f"CMAKE_PROJECT_TOP_LEVEL_INCLUDES={launcher}"]
        environment = {"CCACHE_BASEDIR": str(self.root), "CCACHE_NOHASHDIR": "1"}
        for command in (configure, self._build_command(targets)):
            done = self._run(command, environment)
            if done.returncode != 0:
                raise Failure(f"{' '.join(command)}\n{done.stdout[-4000:]}")

    def build(self, change: Change, targets: list[str]) -> bool:
        """Builds with one change, and no other, in place; false if that does not compile."""
        for name in [name for name in self._changed if name != change.file]:
            (self.root / name).write_text(self._changed.pop(name))
        path = self.root / change.file
        original = self._changed.setdefault(change.file, path.read_text())
        path.write_text(change.apply(original))
        return self._run(self._build_command(targets), {"CCACHE_DISABLE": "1"}).returncode == 0

    def restore(self) -> None:
        for name, original in self._changed.items():
            (self.root / name).write_text(original)
        self._changed.clear()

    def _build_command(self, targets: list[str]) -> list[str]:
        return ["ninja", "-C", str(self.build_directory), "-j", "2", *targets]

    @staticmethod
    def _run(command: list[str], environment: dict[str, str]) -> subprocess.CompletedProcess[str]:
        return subprocess.run(command, env={**os.environ, **environment}, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False)
