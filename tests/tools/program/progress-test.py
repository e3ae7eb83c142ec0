#!/usr/bin/env python3
"""Checks that the progress line is shown on a terminal, and only there.

    progress-test.py TOOL

Exits with 77, which skips the test, on a machine without pseudo-terminals, such as a
bare chroot.
"""

import os
import re
import struct
import subprocess
import sys
import time

SKIPPED = 77
RECORD = struct.pack(">IHHI", 1000, 16, 5, 24) + struct.pack(">IIHH", 1, 2, 0, 1) + bytes(12)


def run(tool, options, terminal):
    """What a slow run writes on its standard error."""
    reader, writer = os.openpty() if terminal else os.pipe()
    with subprocess.Popen([tool, "mrt", *options, "-"], stdin=subprocess.PIPE,
                          stdout=subprocess.DEVNULL, stderr=writer) as process:
        for _ in range(3):
            process.stdin.write(RECORD * 10)
            process.stdin.flush()
            time.sleep(0.4)
        process.stdin.close()
        process.wait()
    os.close(writer)
    text = b""
    try:
        while piece := os.read(reader, 4096):
            text += piece
    except OSError:  # the end of a terminal
        pass
    os.close(reader)
    return process.returncode, text.decode()


def terminals_are_there():
    try:
        for end in os.openpty():
            os.close(end)
    except OSError as error:
        print(f"no pseudo-terminals here: {error}")
        return False
    return True


def main():
    tool = sys.argv[1]
    if not terminals_are_there():
        return SKIPPED
    failures = 0
    for options, terminal, shows in [([], True, True), (["--json"], True, True),
                                     (["--no-progress"], True, False), ([], False, False)]:
        status, text = run(tool, options, terminal)
        erased = not text or text.endswith(" \r")
        if status != 0 or shows != bool(re.search(r"\r0\.0 MB, [12]1 records", text)) or not erased:
            failures += 1
            print(f"{options} terminal={terminal}: status {status}, {text!r}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
