"""What is known of running processes from /proc."""

import pathlib
import re

GONE = (FileNotFoundError, ProcessLookupError, PermissionError)


def parents():
    """The parent of each process."""
    found = {}
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            found[int(stat.parent.name)] = int(stat.read_text().rpartition(")")[2].split()[1])
        except GONE:
            pass
    return found


def children(pid):
    return [child for child, parent in parents().items() if parent == pid]


def tree(pid):
    """A process and all that descend from it."""
    links = parents()
    found = [pid]
    for member in found:
        found += [child for child, parent in links.items() if parent == member]
    return found


def memory(pid):
    """Bytes in memory, and the share of them that is this process's part of what several have."""
    try:
        text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    except GONE:
        return 0, 0
    return tuple(1024 * int(re.search(rf"^{name}:\s+(\d+)", text, re.M).group(1)) for name in ("Rss", "Pss"))
