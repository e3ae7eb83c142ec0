#!/usr/bin/env python3
"""Runs the tool over all inputs of make-hostile.py, in each form of output.

    run-hostile.py TOOL

Each run must end with the expected status and messages, deliver every good route and
nothing else, and take little memory.
"""

import json
import os
import re
import resource
import subprocess
import sys
import tempfile

FORMS = [["--routes"], ["--json"], ["--json", "--summary"], ["--verify"]]
MEMORY_MAX = 400 * 1024  # KiB, with room for what sanitizers take


def problems_of(row, form, run):
    """What is wrong with one run, as texts."""
    if run.returncode != row["status"]:
        yield f"exit status {run.returncode}, not {row['status']}"
    lines = [line for line in run.stderr.decode().splitlines() if line]
    if row["message"] is None and lines:
        yield f"unexpected message {lines[0]!r}"
    if row["message"] is not None and not lines:
        yield "no message"
    for line in lines:
        if row["message"] is not None and not re.search(row["message"], line):
            yield f"message {line!r} is not {row['message']!r}"
    if form[0] == "--verify":
        return
    out = run.stdout.decode().splitlines()
    if form == ["--json", "--summary"]:
        if len(out) != (1 if row["status"] in (0, 3) else 0):
            yield f"{len(out)} summaries"
    elif len(out) != row["routes"]:
        yield f"{len(out)} routes, not {row['routes']}"
    if form[0] == "--json":
        for line in out:
            json.loads(line)


def main():
    tool = os.path.abspath(sys.argv[1])
    maker = os.path.join(os.path.dirname(os.path.abspath(__file__)), "make-hostile.py")
    failures = runs = 0
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, maker, folder], check=True)
        with open(os.path.join(folder, "manifest.jsonl"), encoding="ascii") as manifest:
            rows = [json.loads(line) for line in manifest]
        for row in rows:
            for form in FORMS:
                path = os.path.join(folder, row["name"])
                run = subprocess.run([tool, "mrt", *form, *row["options"], path],
                                     capture_output=True, timeout=60, check=False)
                runs += 1
                for problem in problems_of(row, form, run):
                    failures += 1
                    print(f"{row['name']} {' '.join(form)}: {problem}")
    memory = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
    if memory > MEMORY_MAX:
        failures += 1
        print(f"a run took {memory} KiB")
    print(f"{len(rows)} inputs, {runs} runs, at most {memory} KiB, {failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
