"""Prints how many instructions commands of the tool take on devices with many parameters or sessions.

usage: measure_growth.py TOOL DIR PARAMETERS SESSIONS    devices are made in DIR

For each, the growth is judged from a tenth of that number on.
"""
import math
import os
import re
import shutil
import subprocess
import sys

from measure_lint import media

COMMANDS = ["list", "lint", "export", "report"]
STEEPEST = 1.1  # growth of the instructions: the size to this power


def parameters(count):
    """Sections of one, of 100, and a large one; each kind has a third."""
    third = count // 3
    lines = []
    for begin, end, size in ((0, third, 1), (third, 2 * third, 100), (2 * third, count, count + 1)):
        for first in range(begin, end, size):
            names = range(first, min(first + size, end))
            inner = [f'    <P{i:06} Cur="1" Def="1" Min="0" Max="9" Step="1"/>' for i in names]
            lines += [f"<Extra{first:06}>", *inner, f"</Extra{first:06}>"]
    return "\n".join([*lines, ""])


def write_copies(device, name, text):
    for directory in ("cfg0", "cfg1", "app/resource/defcfg"):
        with open(os.path.join(device, directory, name), "w", encoding="utf-8") as file:
            file.write(text)


def lay_out(device, kind, count):
    shutil.rmtree(device, ignore_errors=True)
    shutil.copytree("resource", os.path.join(device, "app/resource"))
    for directory in ("cfg0", "cfg1"):
        shutil.copytree("resource/defcfg", os.path.join(device, directory))
    if kind == "parameters":
        with open("resource/defcfg/business_param.xml", encoding="utf-8") as file:
            write_copies(device, "business_param.xml", file.read() + parameters(count))
    else:
        write_copies(device, "mpp_cfg.xml", media(count, "Default"))


def instructions(tool, device, command):
    """Of all its processes; callgrind counts a child from the start of its parent on."""
    run = subprocess.run(
        ["valgrind", "--vgdb=no", "--tool=callgrind", "--callgrind-out-file=/counts.%p",
         tool, "--root", device, command],
        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
    counts = re.findall(r"Collected *: *(\d+)", run.stderr)
    if run.returncode != 0 or not counts:
        sys.exit(f"{command}: exit status {run.returncode}\n{run.stderr}")
    return sum(map(int, counts))


def measure(tool, directory, kind, least):
    """Rows of a table, and whether all growth is permitted."""
    counts = {}
    for size in (0, least, 10 * least):
        device = os.path.join(directory, "device")
        lay_out(device, kind, size)
        for command in COMMANDS:
            counts[command, size] = instructions(tool, device, command)
    is_linear = True
    for command in COMMANDS:
        start, few, many = (counts[command, size] for size in (0, least, 10 * least))
        # What does not grow with them is not judged by them.
        grows = many > 2 * start
        power = math.log10((many - start) / (few - start)) if grows else 0
        is_linear = is_linear and power <= STEEPEST
        cells = [f"{count / 1e6:,.1f}" for count in (start, few, many)]
        print(f"| {command} | {10 * least:,} {kind} | {' | '.join(cells)} "
              f"| {f'{power:.2f}' if grows else '-'} |", flush=True)
    return is_linear


def main(tool, directory, parameter_count, session_count):
    print("Instructions, in millions:\n")
    print("| command | of | none | a tenth of them | all of them | power |")
    print("|---|---|---|---|---|---|")
    results = [measure(tool, directory, "parameters", int(parameter_count) // 10),
               measure(tool, directory, "sessions", int(session_count) // 10)]
    if not all(results):
        sys.exit(f"instructions grow as a power of more than {STEEPEST}")


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    main(*sys.argv[1:])
