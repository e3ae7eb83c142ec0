#!/usr/bin/env python3
"""Checks the program with closed descriptors, full disks, little memory and unusual numbers.

    surroundings-test.py TOOL SAMPLE
"""

import os
import resource
import subprocess
import sys
import tempfile

CANNOT_WRITE = "bgp-communities: cannot write: "


def run(command, out=subprocess.DEVNULL, closed=(), memory=None):
    """Status and messages, with the descriptors `closed` closed and at most `memory` octets of data."""
    def prepare():
        for descriptor in closed:
            os.close(descriptor)
        if memory:
            resource.setrlimit(resource.RLIMIT_DATA, (memory, memory))
    ended = subprocess.run(command, stdout=out, stderr=subprocess.PIPE, preexec_fn=prepare,
                           timeout=60, check=False)
    return ended.returncode, ended.stderr.decode()


def expect(what, wanted, got):
    """1 unless status and the beginning of the messages are as wanted."""
    if wanted[0] == got[0] and got[1].startswith(wanted[1]) and bool(wanted[1]) == bool(got[1]):
        return 0
    print(f"{what}: {got}, not {wanted}")
    return 1


def lacking_output(tool, sample):
    """Each way to print, onto a full disk and to a reader that is gone."""
    failures = 0
    for arguments in [["--help"], ["--version"], ["mrt", "--help"], ["show", "1:2"],
                      ["mrt", sample], ["mrt", "--routes", sample]]:
        with open("/dev/full", "wb") as full:
            failures += expect(f"{arguments} on a full disk", (4, CANNOT_WRITE),
                               run([tool, *arguments], full))
        reader, writer = os.pipe()
        os.close(reader)
        failures += expect(f"{arguments} for nobody", (0, ""), run([tool, *arguments], writer))
        os.close(writer)
    return failures


def closed_descriptors(tool, sample, store):
    """A store is what was to be kept, not what was to be printed."""
    failures = 0
    for closed, status, message in [((0,), 0, ""), ((1,), 4, CANNOT_WRITE), ((2,), 3, ""),
                                    ((0, 1, 2), 4, "")]:
        # A file that is missing is something to say on standard error.
        files = [sample, "/no/file"] if 2 in closed else [sample]
        got = run([tool, "store", "write", store, *files], closed=closed)
        failures += expect(f"store write without {closed}", (status, message), got)
        failures += expect(f"store read after {closed}", (0, ""),
                           run([tool, "store", "read", store]))
        os.remove(store)
    return failures


def sizes(tool, sample, store):
    """What a store may grow to is refused before anything is done."""
    failures = 0
    for size, status, message in [("0", 2, "--size: "), ("-1", 2, "--size: "),
                                  ("99999999999999999", 2, "--size: "), ("1000000", 0, ""),
                                  ("4096", 4, f"bgp-communities: {store}: ")]:
        got = run([tool, "store", "write", "--size", size, store, sample])
        failures += expect(f"--size {size}", (status, message), got)
        if os.path.exists(store):
            os.remove(store)
    return failures


def lacking_memory(tool, sample):
    """Expressions that need more memory than there is, to be compiled or to be matched."""
    memory = 16 << 20
    if run([tool, "--version"], memory=memory)[0] != 0:
        return 0  # a sanitizer needs more to start
    failures = 0
    for expression, status, message in [("1", 0, ""),
                                        ("a{1,1900}", 4, "bgp-communities: out of memory"),
                                        ("^([0-9:]| )*[01][0-9: ]{300}x", 4,
                                         "bgp-communities: out of memory")]:
        got = run([tool, "mrt", "--routes", "--match", expression, sample], memory=memory)
        failures += expect(f"--match {expression} with little memory", (status, message), got)
    return failures


def main():
    tool, sample = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    with tempfile.TemporaryDirectory() as folder:
        store = os.path.join(folder, "store")
        failures = (lacking_output(tool, sample) + closed_descriptors(tool, sample, store) +
                    sizes(tool, sample, store) + lacking_memory(tool, sample))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
