#!/usr/bin/env python3
"""Checks which of our files include which.

A file includes only files of its own room and of rooms that precede it. No two files
include each other, directly or around a circle. Every quoted include is a file of
ours. A header in a folder named Private is included only by sources under the same
top folder, and by files outside the rooms.
"""

import pathlib
import re
import sys

# The rooms, in order. A file belongs to the longest of these folders that contains it, and
# may include only files of its own room and of rooms before it in this list. The headers
# directly in OvBgp/ and OvBgp/Parse/ are the library's public face, which is after all its
# rooms. Tests, benchmarks and examples are outside the rooms and may include everything.
FLOORS = [
    "platform",
    "BgpCommon",
    "OvBgp/Attribute",
    "OvBgp/Value",
    "OvBgp/SubList",
    "OvBgp/RouteTarget",
    "OvBgp/Parse/Rule",
    "OvBgp/Parse/Typed",
    "OvBgp/Parse/Plugin",
    "OvBgp/Parse/Container",
    "OvBgp/ValueTable",
    "OvBgp/List",
    "OvBgp/Snapshot",
    "OvBgp/Store",
    "OvBgp/Parse",
    "OvBgp",
    "tools/bgp-communities/input",
    "tools/bgp-communities/bgp",
    "tools/bgp-communities/mrt",
    "tools/bgp-communities/rib",
    "tools/bgp-communities/output",
    "tools/bgp-communities/store",
    "tools/bgp-communities/commands",
]
TOPS = list(dict.fromkeys(floor.split("/")[0] for floor in FLOORS))
OUTSIDE = ["tests", "bench", "fuzz", "examples", "gdb"]
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)


def room(path):
    """The longest folder of FLOORS that contains PATH, or None outside the rooms."""
    for folder in path.parents:
        if str(folder) in FLOORS:
            return str(folder)
    return None


def floor(path):
    return FLOORS.index(room(path)) if room(path) else len(FLOORS)


def pries(path, target):
    """Whether PATH includes a header that is private to another top folder."""
    return (
        "Private" in target.parts
        and room(path) is not None
        and path.parts[0] != target.parts[0]
        and (path.parts[0], target.parts[0]) != ("OvBgp", "BgpCommon")
    )


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
        for top in TOPS + OUTSIDE
        for ending in ("*.h", "*.cpp")
        for path in (root / top).rglob(ending)
    )
    problems = []
    graph = {path: includes(root, path, problems) for path in files}
    for path, targets in graph.items():
        for target in targets:
            if floor(target) > floor(path):
                problems.append(f"{path}: includes {target}, which stands above it")
            if pries(path, target):
                problems.append(f"{path}: includes {target}, which is private")
    for circle in circles(graph):
        problems.append("circle: " + " -> ".join(map(str, circle)))
    for problem in problems:
        print(problem)
    print(f"{len(files)} files, {sum(map(len, graph.values()))} includes, {len(problems)} problems")
    return 1 if problems or not files else 0


if __name__ == "__main__":
    sys.exit(main())
