#!/usr/bin/env python3
"""Checks that shared libraries export names of our namespaces only.

Instantiations of the standard library's templates pass as long as they are
weak: its headers mark them visible, and the linker merges them.
"""

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


def main():
    strangers = 0
    for library in sys.argv[1:]:
        symbols = exported(library)
        if not any(OURS.match(name) for _, name in symbols):
            print(f"{library}: exports nothing of ours")
            strangers += 1
        for kind, name in symbols:
            if OURS.match(name) or (kind in WEAK and STANDARD.match(name)):
                continue
            print(f"{library}: exports {name} ({kind})")
            strangers += 1
        print(f"{library}: {len(symbols)} symbols")
    return 1 if strangers or len(sys.argv) < 2 else 0


if __name__ == "__main__":
    sys.exit(main())
