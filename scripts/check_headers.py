#!/usr/bin/env python3
"""Checks the headers that the project installs.

They are installed from BUILD (a configured build folder) into a scratch folder. There,
with --list, their names must be those of tests/installed-headers.txt (--update writes
that file instead); with --compile, each of them must compile alone, without a warning,
as a user's compiler with many warnings switched on sees it.
"""

import argparse
import concurrent.futures
import difflib
import os
import pathlib
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parent.parent
LISTED = TOP / "tests" / "installed-headers.txt"
WARNINGS = ["-Wall", "-Wextra", "-Wconversion", "-Wshadow", "-Wnon-virtual-dtor", "-pedantic",
            "-Werror"]


def installed(build, prefix):
    """The folder of the installed headers, and their paths in it, sorted."""
    subprocess.run(["cmake", "--install", build, "--prefix", prefix, "--component", "development"],
                   check=True, stdout=subprocess.DEVNULL)
    (root,) = pathlib.Path(prefix).glob("include/ovbgp")
    return root, sorted(str(path.relative_to(root)) for path in root.rglob("*") if path.is_file())


def list_differs(headers):
    """Says how HEADERS differ from the list; whether they do."""
    before = LISTED.read_text(encoding="utf-8").splitlines() if LISTED.is_file() else []
    changes = [line for line in difflib.unified_diff(before, headers, lineterm="", n=0)
               if line[0] in "+-" and line[:3] not in ("+++", "---")]
    for line in changes:
        print(f"{LISTED.name}: {line}")
    return bool(changes)


def complaint(compiler, root, header):
    """What COMPILER says of a source that includes HEADER only; empty if nothing."""
    done = subprocess.run(
        [compiler, "-std=c++20", "-fsyntax-only", *WARNINGS, f"-I{root}", "-x", "c++", "-"],
        input=f'#include "{header}"\n', capture_output=True, text=True)
    return done.stderr if done.returncode else ""


def broken(compilers, root, headers):
    """Prints what the compilers say of each header alone; how many headers fail."""
    pairs = [(compiler, header) for compiler in compilers for header in headers]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        texts = list(pool.map(lambda pair: complaint(pair[0], root, pair[1]), pairs))
    for (compiler, header), text in zip(pairs, texts):
        if text:
            print(f"{compiler}: {header}:\n{text}")
    return sum(map(bool, texts))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--update", action="store_true")
    parser.add_argument("--compile", nargs="+", metavar="COMPILER", default=[])
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as prefix:
        root, headers = installed(options.build, prefix)
        if not headers:
            sys.exit("no header was installed")
        if options.update:
            LISTED.write_text("\n".join(headers) + "\n", encoding="utf-8")
        failed = options.list and list_differs(headers)
        failed = bool(broken(options.compile, root, headers)) or failed
    print(f"{len(headers)} headers")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
