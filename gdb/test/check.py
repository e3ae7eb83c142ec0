#!/usr/bin/env python3
"""Checks what gdb prints, with pretty-printers that gdb has loaded by itself.

usage: check.py PROGRAM FOLDER

PROGRAM is built from shown.cpp. FOLDER is where the library is installed; gdb loads
printers only from folders that it is configured to trust, so the check adds FOLDER.
"""

import re
import subprocess
import sys

# An expression, and a pattern that gdb's text for it must match.
EXPECTED = [
    ("content", r"= 0x030b000000000007$"),
    ("*value.object_", r"ExtCommColor 0x030b000000000007 \(extCommClassificationColor\)"),
    ("value", r"ExtCommColor \*\) 0x[0-9a-f]+, \d references"),
    ("*standard.object_", r"2 communities = \{100:1, 65535:65281\}$"),
    ("standard", r"CommList \*\) 0x[0-9a-f]+, 3 references.*100:1"),
    ("standard.object_->commVector_", r"2 elements = \{6553601, 4294967041\}$"),
    ("*large.object_", r"1 community = \{65536:2:3\}$"),
    ("*extended.object_", r"1 community = \{0x030b000000000007\}$"),
    ("*part.object_", r"1 community = \{0x030b000000000007\}$"),
    ("*ip6.object_", r"1 community = \{0x000220010db80000000000000000000000010102\}$"),
    ("none", r"= null$"),
    ("*empty.object_", r"0 communities$"),
]


def main():
    program, folder = sys.argv[1:]
    command = ["gdb", "--batch", "--nx", "-iex", f"add-auto-load-safe-path {folder}"]
    for line in ["set width 0", "break done", "run", "up", "info pretty-printer global"]:
        command += ["-ex", line]
    for expression, _ in EXPECTED:
        command += ["-ex", f"echo \\n@{expression}:", "-ex", f"print {expression}"]
    run = subprocess.run(command + [program], capture_output=True, text=True, check=False)
    shown = dict(re.findall(r"^@(\S+):\$\d+ (.*)$", run.stdout, re.MULTILINE))
    wrong = 0
    for expression, pattern in EXPECTED:
        if not re.search(pattern, shown.get(expression, "")):
            print(f"print {expression}\n  gave   {shown.get(expression)}\n  not as {pattern}")
            wrong += 1
    if wrong:
        print(run.stdout[-3000:], run.stderr[-3000:])
    print(f"{len(EXPECTED)} printed, {wrong} wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
