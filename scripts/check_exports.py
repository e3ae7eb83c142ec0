#!/usr/bin/env python3
"""Checks that shared libraries export names of our namespaces only.

Instantiations of the standard library's templates pass as long as they are
weak: its headers mark them visible, and the linker merges them.

With --lists FOLDER, also that they export just the names in FOLDER/LIBRARY.txt;
--update writes these files instead.  CONTRIBUTING.md says who may.
"""

import argparse
import difflib
import pathlib
import re
import subprocess
import sys

NAMESPACES = [
    "Acl", "BgpShowCli", "Dorn", "Kiv", "KivStash", "OvBgpGlobals", "OvFmt", "OvStrings",
    "OvToggles", "Ovnet", "Routing", "Rpki", "Stash",
]

# Itanium C++ ABI: _Z, then what kind of thing it is (virtual table, type
# information, guard, thunk...), a Z for a function's local object, then the
# nested name, each part after its length.
KIND = r"_Z(?:T[VTISHW]|GV|GR|Th[n\d]+_|Tv[n\d]+_[n\d]+_)?Z*"
QUALIFIERS = r"[rVKRO]*"
OURS = re.compile(
    KIND + "N" + QUALIFIERS + "(?:" + "|".join(f"{len(n)}{n}" for n in NAMESPACES) + ")"
)
STANDARD = re.compile(KIND + "(?:N" + QUALIFIERS + r")?(?:S[tabsiod]|9__gnu_cxx|10__cxxabiv1)")
WEAK = "VvWwu"


def exported(library):
    """Pairs of (kind, name) of what LIBRARY defines for others."""
    listing = subprocess.run(
        ["nm", "--dynamic", "--defined-only", "--format=posix", library],
        check=True, capture_output=True, text=True,
    ).stdout
    return [(line.split()[1], line.split()[0]) for line in listing.splitlines()]


def ours(symbols):
    """The names of ours among SYMBOLS as C++ writes them, sorted, each once.

    Two symbols may have one name (the kinds of a constructor, say), and which of
    them there are is up to the compiler.
    """
    mangled = "\n".join(name for _, name in symbols if OURS.match(name))
    names = subprocess.run(
        ["c++filt"], input=mangled, check=True, capture_output=True, text=True
    ).stdout
    return sorted(set(names.splitlines()))


def strangers(library, symbols):
    """Says what LIBRARY exports that is not ours; how many there are."""
    found = 0
    if not any(OURS.match(name) for _, name in symbols):
        print(f"{library}: exports nothing of ours")
        found += 1
    for kind, name in symbols:
        if OURS.match(name) or (kind in WEAK and STANDARD.match(name)):
            continue
        print(f"{library}: exports {name} ({kind})")
        found += 1
    return found


def differences(names, listed):
    """Says how NAMES differ from the file LISTED; how often."""
    before = listed.read_text(encoding="utf-8").splitlines() if listed.is_file() else []
    lines = [line for line in difflib.unified_diff(before, names, lineterm="", n=0)][2:]
    changed = [line for line in lines if not line.startswith("@@")]
    for line in changed:
        print(f"{listed.name}: {line}")
    return len(changed)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("libraries", nargs="+", type=pathlib.Path)
    parser.add_argument("--lists", type=pathlib.Path)
    parser.add_argument("--update", action="store_true")
    options = parser.parse_args()
    problems = changes = 0
    for library in {library.resolve() for library in options.libraries}:
        symbols = exported(library)
        problems += strangers(library, symbols)
        print(f"{library.name}: {len(symbols)} symbols")
        if not options.lists:
            continue
        listed = options.lists / (library.name.partition(".so")[0].removeprefix("lib") + ".txt")
        names = ours(symbols)
        if options.update:
            listed.write_text("\n".join(names) + "\n", encoding="utf-8")
        else:
            changes += differences(names, listed)
    if changes:
        print(f"{changes} names came or went: CONTRIBUTING.md says what that takes")
    return 1 if problems or changes else 0


if __name__ == "__main__":
    sys.exit(main())
