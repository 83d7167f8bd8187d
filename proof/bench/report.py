#!/usr/bin/env python3
"""Turns what the benchmarks measured into tables, curves and a verdict.

    report.py tables TIMINGS.json PEERS.json [DIRECTORY]
        Prints the tables; draws the growth curves into DIRECTORY, if given, with gnuplot.
    report.py start TOOL DEVICE
        Times the tool from its start to its first answer on a device.
    report.py changes TOOL DEVICE
        Times a large import against a small change, in turns on a device.
    report.py instructions COUNTS
        Prints the table of instruction counts (lines "CASE SIZE LIBRARY FLOOR") and fails when a
        target is missed.
"""
import collections
import json
import math
import statistics
import subprocess
import sys
import time

SECTIONS = ["stream_sources", "stream_caches", "websocket", "rtsp", "rtmp", "ndi", "srt"]
# The most that a call may cost, in instructions, against the same done by hand.
LIMITS = {
    **{f"{section}_load": 0.9 for section in SECTIONS},
    "stream_sources_load_over_parsing": 1.76, "stream_caches_load_over_parsing": 1.62,
    "websocket_load_over_parsing": 1.73, "rtsp_load_over_parsing": 1.57,
    "rtmp_load_over_parsing": 1.49, "ndi_load_over_parsing": 1.38, "srt_load_over_parsing": 1.48,
    "stream_sources_dump": 1.08, "stream_sources_moved_dump": 1.35,
    "stream_caches_dump": 1.07, "stream_caches_moved_dump": 1.14,
    "websocket_dump": 1.08, "websocket_moved_dump": 1.30,
    "rtsp_dump": 1.05, "rtsp_moved_dump": 1.09,
    "ndi_dump": 1.06, "ndi_moved_dump": 1.11,
    "srt_dump": 1.05, "srt_moved_dump": 1.08,
}
# The most that a growth may differ from a straight line, as the exponent of the size.
LARGEST_EXPONENT = 1.05

CURVES = {
    "parameters": ["parameter_read", "parameter_write", "parameter_by_name", "verification"],
    "presets": ["preset_query", "preset_unused_id", "preset_set"],
    "sessions": [*(f"{section}_load" for section in SECTIONS), "stream_sources_dump", "srt_dump"],
}


def table(headings, rows):
    cells = [headings] + [[str(cell) for cell in row] for row in rows]
    widths = [max(len(row[i]) for row in cells) for i in range(len(headings))]
    rule = ["-" * width for width in widths]
    for row in cells[:1] + [rule] + cells[1:]:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")
    print()


def exponent(sizes, values):
    """By which power of the size the value grew between the two largest sizes."""
    return math.log(values[-1] / values[-2]) / math.log(sizes[-1] / sizes[-2])


def load_timings(path):
    times = collections.defaultdict(lambda: {"library": {}, "floor": {}})
    others = {}
    with open(path, encoding="utf-8") as file:
        for run in json.load(file)["benchmarks"]:
            parts = run["name"].removesuffix("/real_time").split("/")
            if len(parts) > 1 and parts[1] in ("library", "floor"):
                times[parts[0]][parts[1]][int(parts[2])] = run["real_time"]
            else:
                others["/".join(parts)] = run
    return times, others


def print_cases(times):
    rows = []
    for name, both in times.items():
        sizes = sorted(both["library"])
        for size in sizes:
            library, floor = both["library"][size], both["floor"][size]
            rows.append([name, size, f"{library:.1f}", f"{floor:.1f}", f"{library / floor:.2f}"])
    print("Time of a call, in microseconds, compared with the same done by hand with tinyxml2:\n")
    table(["case", "size", "library", "by hand", "ratio"], rows)


def print_concurrency(others):
    rows = []
    for name, run in others.items():
        if name.startswith("concurrent_read"):
            parts = name.split("/")
            rows.append([parts[1].replace("_", " "), parts[-1].removeprefix("threads:"),
                         f"{1e6 / run['real_time']:.0f}"])
    print("Documents of 128 parameters opened for reading, per millisecond:\n")
    table(["files", "threads", "opened"], rows)
    undisturbed = others["read_beside_waiter/0"]["real_time"]
    waited = others["read_beside_waiter/1"]["real_time"]
    print(f"A read while another thread waits for another file: {waited:.1f} us; while none does: "
          f"{undisturbed:.1f} us; ratio {waited / undisturbed:.2f}\n")


def print_peers(path):
    with open(path, encoding="utf-8") as file:
        peers = json.load(file)
    own = peers[0]
    rows = []
    for peer in peers:
        row = [peer["name"]]
        for what in ("read", "write", "unsynced"):
            row += [f"{peer[what]:.0f}", f"{peer[what] / own[what]:.2f}"]
        rows.append(row)
    print("128 parameters: one read cold, one changed durably, one changed without sync(), in "
          "microseconds:\n")
    table(["library", "read", "ratio", "durable", "ratio", "no sync()", "ratio"], rows)


def draw(times, directory):
    for curve, names in CURVES.items():
        names = [name for name in names if name in times]
        data = "".join(
            "".join(f"{size} {time}\n" for size, time in sorted(times[name]["library"].items()))
            + "e\n" for name in names)
        plots = ", ".join(f"'-' with linespoints title '{name.replace('_', ' ')}'"
                          for name in names)
        script = f"""set terminal svg size 760,420 font 'sans-serif,13' background 'white'
set output '{directory}/growth-{curve}.svg'
set logscale xy
set grid
set key outside right top
set xlabel '{curve} in the file'
set ylabel 'time of a call [microseconds]'
plot {plots}
{data}"""
        subprocess.run(["gnuplot"], input=script, text=True, check=True)


def tables(timings, peers, directory=None):
    times, others = load_timings(timings)
    print_cases(times)
    print_concurrency(others)
    print_peers(peers)
    if directory is not None:
        draw(times, directory)


def instructions(path):
    counts = collections.defaultdict(dict)
    with open(path, encoding="utf-8") as file:
        for line in file:
            name, size, library, floor = line.split()
            counts[name][int(size)] = (int(library), int(floor))
    rows = []
    missed = []
    for name, by_size in counts.items():
        sizes = sorted(by_size)
        for size in sizes:
            library, floor = by_size[size]
            ratio = library / floor
            rows.append([name, size, library, floor, f"{ratio:.4f}"])
            if ratio > LIMITS.get(name, math.inf):
                missed.append(f"{name} of {size}: {ratio:.4f} is above {LIMITS[name]}")
        if len(sizes) > 1:
            grown = exponent(sizes, [by_size[size][0] for size in sizes])
            if grown > LARGEST_EXPONENT:
                missed.append(f"{name}: grows by the size to the power of {grown:.2f}")
    print("Instructions of a call, compared with the same done by hand with tinyxml2:\n")
    table(["case", "size", "library", "by hand", "ratio"], rows)
    for line in missed:
        print("MISSED: " + line)
    return 1 if missed else 0


def start(tool, device):
    commands = {
        "nothing: /bin/true": ["/bin/true"],
        "camcfg --version": [tool, "--version"],
        "camcfg get System Rtsp": [tool, "--root", device, "get", "System", "Rtsp"],
        "camcfg list": [tool, "--root", device, "list"],
        "camcfg verify": [tool, "--root", device, "verify"],
    }
    times = collections.defaultdict(list)
    for _ in range(25):
        for name, command in commands.items():
            begin = time.perf_counter()
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            times[name].append((time.perf_counter() - begin) * 1e3)
    rows = [[name, f"{statistics.median(times[name]):.1f}"] for name in commands]
    print("The tool from its start to its end on the sample device:\n")
    table(["command", "milliseconds"], rows)


def large_document(number):
    """A document that changes 128 presets and 40 sessions, if it was another number before."""
    presets = [{"id": i, "description": f"Preset {i}, {number}", "pan": i, "tilt": number,
                "zoom": 0, "focus": 0, "focusMode": 0} for i in range(128)]
    channels = [{"id": 0, "name": "video"}, {"id": 8, "name": "audio"}]
    sessions = [{"name": f"ch{i}, {number}", "channels": channels} for i in range(40)]
    return {"version": 1, "presets": presets, "live": {"rtsp": sessions},
            "parameters": {"System": {"Rtsp": 8000 + number}}}


def changes(tool, device):
    names = ["a change of one setting", "an import that changes all three files"]
    times = {name: [] for name in names}
    for turn in range(42):
        document = json.dumps(large_document(turn % 2))
        for name, words, text in ((names[0], ["set", f"System/WebHttp={9000 + turn}"], ""),
                                  (names[1], ["import", "-"], document)):
            begin = time.perf_counter()
            subprocess.run([tool, "--root", device, *words], input=text, text=True, check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            times[name].append((time.perf_counter() - begin) * 1e3)
    medians = [statistics.median(times[name][2:]) for name in names]
    print("128 presets and 40 sessions at once, and a single setting, both with sync():\n")
    table(["command", "milliseconds", "ratio"],
          [[name, f"{median:.1f}", f"{median / medians[0]:.2f}"]
           for name, median in zip(names, medians)])


if __name__ == "__main__":
    commands = {"tables": tables, "start": start, "changes": changes,
                "instructions": instructions}
    if len(sys.argv) < 3 or sys.argv[1] not in commands:
        sys.exit(__doc__)
    sys.exit(commands[sys.argv[1]](*sys.argv[2:]))
