#!/usr/bin/env python3
"""Searches all interleavings of the models in models/, and of their wrong variants.

Each models/NAME.pml is a program for the model checker Spin. The search of the model as
it stands must be complete and find nothing. For each macro WRONG_... that the model names,
the search of the variant with that macro must find an error: a variant without one
would say that the model does not see what the protocol is there for.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
# -w: bits of the hash table's size; -m: the deepest path, far beyond what the models have.
SEARCH = ["-m200000", "-w26"]


def searched(model, macro):
    """What the search of MODEL with MACRO (or none) prints, and its seconds."""
    defines = [f"-D{macro}"] if macro else []
    with tempfile.TemporaryDirectory() as scratch:
        subprocess.run(["spin", *defines, "-a", model], cwd=scratch, check=True,
                       stdout=subprocess.DEVNULL)
        subprocess.run(["cc", "-O2", "-DSAFETY", "-DCOLLAPSE", "-o", "pan", "pan.c"],
                       cwd=scratch, check=True)
        start = time.monotonic()
        done = subprocess.run(["./pan", *SEARCH], cwd=scratch, capture_output=True, text=True)
    return done.stdout, time.monotonic() - start


def verdict(output):
    """"holds", what was violated, or why the search says nothing."""
    found = re.search(r"^pan:\d+: (.*?) \(at depth", output, re.MULTILINE)
    if found:
        return found.group(1)
    complete = re.search(r"errors: 0$", output, re.MULTILINE) and "not completed" not in output
    if not complete or "max search depth too small" in output or "out of memory" in output:
        return "not searched to the end"
    return "holds"


def check(model):
    """Prints a line for the model and each of its variants; how many are wrong."""
    macros = sorted(set(re.findall(r"\bWRONG_\w+", model.read_text(encoding="utf-8"))))
    macros = [macro for macro in macros if macro != "WRONG_"]
    problems = 0
    for macro in [None, *macros]:
        output, seconds = searched(model, macro)
        result = verdict(output)
        states = re.search(r"(\d+) states, stored", output)
        as_expected = (result == "holds") == (macro is None) and not result.startswith("not ")
        problems += not as_expected
        print(f"{seconds:6.1f} s {states.group(1) if states else '?':>10} states  "
              f"{model.stem} {macro or 'as it stands'}: {result}{'' if as_expected else '  <<<'}",
              flush=True)
    return problems


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.parse_args()
    models = sorted((TOP / "models").glob("*.pml"))
    problems = sum(check(model) for model in models)
    print(f"{len(models)} models, {problems} results not as expected")
    return 1 if problems or not models else 0


if __name__ == "__main__":
    sys.exit(main())
