#!/usr/bin/env python3
"""Draws the series of a benchmark run, one SVG for each series.

usage: plot_bench.py RESULTS FOLDER, where RESULTS is the file that `./dev bench --json` wrote.

Both axes are logarithmic.
"""

import collections
import html
import json
import math
import pathlib
import re
import sys

WIDTH, HEIGHT = 760, 420
LEFT, RIGHT, TOP, BOTTOM = 70, 240, 40, 70
COLORS = ["#0b5fa5", "#c0392b", "#d68910", "#7d3c98", "#7f8c8d"]

# A series is named "WORK by QUANTITY".
QUANTITIES = {
    "length": "communities in the list",
    "number held": "values in the table",
    "threads": "threads",
}


def curves(lines):
    """series -> contender -> [(x, median)]"""
    found = collections.defaultdict(lambda: collections.defaultdict(list))
    for line in lines:
        record = json.loads(line)
        if record["kind"] == "time" and "series" in record:
            point = record["x"], record["median"]
            found[record["series"]][record["contender"]].append(point)
    return found


def ticks(low, high):
    """The powers of ten around the interval, with 2 and 5 between them for a short interval."""
    decades = range(math.floor(math.log10(low)), math.ceil(math.log10(high)) + 1)
    steps = (1, 2, 5) if len(decades) <= 4 else (1,)
    return [step * 10**decade for decade in decades for step in steps]


class Axis:
    """A logarithmic scale from `low` to `high` along the pixels `first` to `last`."""

    def __init__(self, values, first, last, marks=None):
        self.marks = marks or ticks(min(values), max(values))
        self.low = min(min(values), self.marks[0] if marks else min(values))
        self.high = max(max(values), self.marks[-1] if marks else max(values))
        if self.low == self.high:
            self.high = self.low * 2
        self.marks = [mark for mark in self.marks if self.low <= mark <= self.high]
        self.first, self.last = first, last

    def at(self, value):
        part = math.log(value / self.low) / math.log(self.high / self.low)
        return self.first + part * (self.last - self.first)


def text(x, y, words, anchor="middle", size=12, color="#333"):
    words = html.escape(words)
    return (
        f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" '
        f'fill="{color}">{words}</text>'
    )


def line(x1, y1, x2, y2, color="#ddd"):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{color}"/>'


def grid(across, up):
    for mark in across.marks:
        yield line(across.at(mark), TOP, across.at(mark), HEIGHT - BOTTOM)
        yield text(across.at(mark), HEIGHT - BOTTOM + 18, f"{mark:,.0f}")
    for mark in up.marks:
        yield line(LEFT, up.at(mark), WIDTH - RIGHT, up.at(mark))
        yield text(LEFT - 8, up.at(mark) + 4, f"{mark:g}", "end")


def curve(name, points, color, across, up):
    places = [(across.at(x), up.at(y)) for x, y in points]
    path = " ".join(f"{x:.1f},{y:.1f}" for x, y in places)
    yield f'<polyline points="{path}" fill="none" stroke="{color}" stroke-width="2"/>'
    for x, y in places:
        yield f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{color}"/>'


def axis_titles(series):
    quantity = series.rpartition(" by ")[2]
    x, y = (LEFT + WIDTH - RIGHT) / 2, (TOP + HEIGHT - BOTTOM) / 2
    yield text(x, HEIGHT - BOTTOM + 46, f"{QUANTITIES.get(quantity, quantity)} (logarithmic scale)")
    title = text(0, 0, "time per operation in ns (logarithmic scale)")
    yield f'<g transform="translate(18 {y:.1f}) rotate(-90)">{title}</g>'


def legend(names, up):
    """The names at the ends of their curves, moved apart where they would overlap."""
    last = -math.inf
    for name, value, color in sorted(names, key=lambda entry: -entry[1]):
        last = max(up.at(value) + 4, last + 14)
        yield text(WIDTH - RIGHT + 10, last, name, "start", 12, color)


def drawing(series, contenders):
    all_points = [point for points in contenders.values() for point in points]
    xs = sorted({x for x, _ in all_points})
    across = Axis(xs, LEFT, WIDTH - RIGHT, xs)
    up = Axis([y for _, y in all_points], HEIGHT - BOTTOM, TOP)
    colors = dict(zip(contenders, COLORS))
    yield (
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
        'font-family="sans-serif">'
    )
    yield f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>'
    yield text(WIDTH / 2, 22, series, size=15)
    yield from axis_titles(series)
    yield from grid(across, up)
    for name, points in contenders.items():
        yield from curve(name, sorted(points), colors[name], across, up)
    ends = [(name, sorted(points)[-1][1], colors[name]) for name, points in contenders.items()]
    yield from legend(ends, up)
    yield "</svg>"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    results, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    found = curves(results.read_text(encoding="utf-8").splitlines())
    if not found:
        sys.exit(f"{results}: no curve in it")
    for series, contenders in found.items():
        # A single point makes no curve.
        contenders = {name: points for name, points in contenders.items() if len(points) > 1}
        if not contenders:
            continue
        name = re.sub(r"[^a-z0-9]+", "-", series.lower()).strip("-")
        path = folder / f"performance-{name}.svg"
        path.write_text("\n".join(drawing(series, contenders)) + "\n", encoding="utf-8")
        print(path)


if __name__ == "__main__":
    main()
