#!/usr/bin/env python3
"""Checks which of our files include which.

An include points down the floors or stays on its own; no files include each
other, directly or around a circle; and every quoted include is a file of ours.
"""

import pathlib
import re
import sys

# Lowest first.  A folder stands on its own floor and on those below it.  Tests,
# benchmarks and examples stand outside the house and may look into all of it.
FLOORS = ["platform", "BgpCommon", "OvBgp", "tools"]
OUTSIDE = ["tests", "bench", "fuzz", "examples", "gdb"]
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)


def floor(path):
    top = path.parts[0]
    return FLOORS.index(top) if top in FLOORS else len(FLOORS)


def resolve(root, includer, name):
    """The file of ours that NAME means in INCLUDER, relative to ROOT, or None."""
    for base in (pathlib.Path("platform"), pathlib.Path("."), includer.parent):
        if (root / base / name).is_file():
            return base / name
    return None


def includes(root, path, problems):
    found = []
    for match in INCLUDE.finditer((root / path).read_text(encoding="utf-8")):
        quoted, angled = match.groups()
        target = resolve(root, path, quoted or angled)
        if quoted and target is None:
            problems.append(f'{path}: "{quoted}" is no file of ours')
        elif quoted and ".." in pathlib.Path(quoted).parts:
            problems.append(f'{path}: "{quoted}" does not start from an include root')
        elif target is not None:
            found.append(target)
    return found


def circles(graph):
    """One list of files for each circle of includes that a depth-first walk meets."""
    state, result = {}, []

    def walk(path, trail):
        state[path] = "open"
        for target in graph.get(path, []):
            if state.get(target) == "open":
                result.append(trail[trail.index(target):] + [target])
            elif target not in state:
                walk(target, trail + [target])
        state[path] = "done"

    for path in sorted(graph):
        if path not in state:
            walk(path, [path])
    return result


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(".")
    files = sorted(
        path.relative_to(root)
        for top in FLOORS + OUTSIDE
        for ending in ("*.h", "*.cpp")
        for path in (root / top).rglob(ending)
    )
    problems = []
    graph = {path: includes(root, path, problems) for path in files}
    for path, targets in graph.items():
        for target in targets:
            if floor(target) > floor(path):
                problems.append(f"{path}: includes {target}, which stands above it")
    for circle in circles(graph):
        problems.append("circle: " + " -> ".join(map(str, circle)))
    for problem in problems:
        print(problem)
    print(f"{len(files)} files, {sum(map(len, graph.values()))} includes, {len(problems)} problems")
    return 1 if problems or not files else 0


if __name__ == "__main__":
    sys.exit(main())
