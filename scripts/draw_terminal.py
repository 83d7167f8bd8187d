#!/usr/bin/env python3
"""Draws what a terminal shows, with its colours, as SVG: standard input to standard output."""
import html
import re
import sys

WIDTH, HEIGHT = 8.4, 19  # of a character
MARGIN = 16
BAR = 30
COLOURS = {"31": "#ff7b72", "32": "#7ee787", "33": "#e3b341", "34": "#79c0ff", "36": "#76e3ea"}
PLAIN, PROMPT = "#e6edf3", "#8b949e"


def pieces(line):
    """The parts of a line, each with its style as SVG attributes."""
    style = {}
    for part in re.split(r"(\x1b\[[0-9;]*m)", line):
        code = re.fullmatch(r"\x1b\[([0-9;]*)m", part)
        if not code:
            if part:
                yield part, "".join(f' {name}="{value}"' for name, value in style.items())
            continue
        for number in code[1].split(";"):
            if number in ("", "0"):
                style = {}
            elif number == "1":
                style["font-weight"] = "bold"
            elif number == "2":
                style["fill-opacity"] = "0.6"
            elif number in COLOURS:
                style["fill"] = COLOURS[number]


def drawn(line, row):
    y = BAR + MARGIN + row * HEIGHT
    if line.startswith("$ "):
        spans = f'<tspan fill="{PROMPT}">$ </tspan><tspan font-weight="bold">{html.escape(line[2:])}</tspan>'
    else:
        spans = "".join(f"<tspan{style}>{html.escape(text)}</tspan>" for text, style in pieces(line))
    return f'<text x="{MARGIN}" y="{y}" xml:space="preserve">{spans}</text>'


def main():
    lines = sys.stdin.read().rstrip("\n").split("\n")
    longest = max(len(re.sub(r"\x1b\[[0-9;]*m", "", line)) for line in lines)
    width = round(2 * MARGIN + longest * WIDTH)
    height = BAR + MARGIN + len(lines) * HEIGHT
    print(f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
          f'viewBox="0 0 {width} {height}">')
    print(f'<rect width="{width}" height="{height}" rx="8" fill="#0d1117"/>')
    for index, colour in enumerate(("#ff5f57", "#febc2e", "#28c840")):
        print(f'<circle cx="{MARGIN + 6 + index * 20}" cy="17" r="6" fill="{colour}"/>')
    print(f'<g font-family="ui-monospace,Menlo,Consolas,\'DejaVu Sans Mono\',monospace" font-size="14" '
          f'fill="{PLAIN}">')
    for row, line in enumerate(lines):
        print(drawn(line, row))
    print("</g>\n</svg>")


main()
