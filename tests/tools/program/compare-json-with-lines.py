#!/usr/bin/env python3
"""Compares `bgp-communities mrt --json` with `mrt --routes`, route by route.

    compare-json-with-lines.py TOOL FILE...

Each line and the object at the same position must have the same contents, and the communities of
each array must be those of the raw octets. Exit status 1 if any file differs.
"""

import calendar
import json
import subprocess
import sys
import time

ACTIONS = {"announce": "A", "withdraw": "W", "table": "B"}
# Member of the object, attribute type, octets a community.
KINDS = [
    ("communities", "8", 4),
    ("large_communities", "32", 12),
    ("extended_communities", "16", 8),
    ("ipv6_extended_communities", "25", 20),
]


def line_of(route):
    """The line that says what the object says."""
    seconds = calendar.timegm(time.strptime(route["time"], "%Y-%m-%dT%H:%M:%SZ"))
    fields = [str(seconds), ACTIONS[route["action"]], route["peer"]["ip"],
              str(route["peer"]["as"]), route["prefix"]]
    for name, _, _ in KINDS:
        members = route[name]
        fields.append(" ".join(m if isinstance(m, str) else m["text"] for m in members))
    return "|".join(fields)


def raw_agrees(route):
    for name, kind, size in KINDS:
        octets = route["raw"].get(kind, "")
        sent = {octets[i:i + 2 * size] for i in range(0, len(octets), 2 * size)}
        held = route[name]
        if len(sent) != len(held):
            return False
        if held and isinstance(held[0], dict) and sent != {member["hex"] for member in held}:
            return False
    return True


def output_of(tool, form, file):
    run = subprocess.Popen([tool, "mrt", form, file], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, encoding="utf-8")
    yield from run.stdout
    run.wait()
    yield f"exit status {run.returncode}"


def compare(tool, file):
    routes = differences = 0
    lines = output_of(tool, "--routes", file)
    objects = output_of(tool, "--json", file)
    for line, text in zip(lines, objects, strict=True):
        same = line == text
        if text.startswith("{"):
            routes += 1
            route = json.loads(text)
            same = line_of(route) == line.rstrip("\n") and raw_agrees(route)
        if not same:
            differences += 1
            if differences <= 10:
                print(line, text, sep="\n")
    print(f"{file}: {routes} routes, {differences} differ")
    return differences


def main():
    tool, *files = sys.argv[1:]
    return 1 if sum(compare(tool, file) for file in files) else 0


if __name__ == "__main__":
    sys.exit(main())
