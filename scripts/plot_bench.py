#!/usr/bin/env python3
"""Draws the curves of a run of the benchmarks, one SVG for each.

usage: plot_bench.py RESULTS FOLDER, where RESULTS is what `./dev bench --json` wrote.
"""

import collections
import html
import json
import math
import pathlib
import re
import sys

WIDTH, HEIGHT = 640, 400
LEFT, RIGHT, TOP, BOTTOM = 70, 120, 40, 50
COLORS = ["#0b5fa5", "#c0392b", "#d68910", "#7d3c98", "#7f8c8d"]


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
    """The powers of ten about the interval, and 2 and 5 between them if there is room."""
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


def legend(names, up):
    """The names at the ends of their curves, moved apart where they would touch."""
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
    yield text(LEFT - 8, TOP - 10, "ns", "end")
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
        # One contender that stands for a single point makes no curve.
        contenders = {name: points for name, points in contenders.items() if len(points) > 1}
        if not contenders:
            continue
        name = re.sub(r"[^a-z0-9]+", "-", series.lower()).strip("-")
        path = folder / f"performance-{name}.svg"
        path.write_text("\n".join(drawing(series, contenders)) + "\n", encoding="utf-8")
        print(path)


if __name__ == "__main__":
    main()
