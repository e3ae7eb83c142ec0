#!/usr/bin/env python3
"""Runs the tool over hostile inputs, in each form of output.

    run-hostile.py TOOL

Each run must end with the expected status and messages, deliver every intact route and
nothing else, and take little memory.
"""

import gzip
import json
import os
import random
import re
import resource
import struct
import subprocess
import sys
import tempfile

FORMS = [["--routes"], ["--json"], ["--json", "--summary"], ["--verify"]]
MEMORY_MAX = 400 * 1024  # KiB, with room for what sanitizers take

STANDARD, EXTENDED, IPV6_EXTENDED, LARGE = 8, 16, 25, 32
MEMBER_SIZES = {STANDARD: 4, EXTENDED: 8, IPV6_EXTENDED: 20, LARGE: 12}
MESSAGE_AS4 = (16, 4)
PEER_INDEX_TABLE, RIB_IPV4 = (13, 1), (13, 2)


def record(kind, body, length=None):
    """An MRT record of (type, subtype); `length` is what it claims to be long."""
    return struct.pack(">IHHI", 1000, *kind, len(body) if length is None else length) + body


def attribute(kind, value, flags=0xC0, length=None):
    length = len(value) if length is None else length
    return struct.pack(">BBH" if flags & 0x10 else ">BBB", flags, kind, length) + value


def update(attributes, announced=b"\x08\x0a", withdrawn=b""):
    body = struct.pack(">H", len(withdrawn)) + withdrawn
    body += struct.pack(">H", len(attributes)) + attributes + announced
    message = b"\xff" * 16 + struct.pack(">HB", 19 + len(body), 2) + body
    head = struct.pack(">IIHH", 65001, 65002, 0, 1) + bytes([192, 0, 2, 1, 192, 0, 2, 2])
    return record(MESSAGE_AS4, head + message)


def peers(count):
    body = struct.pack(">IHH", 1, 0, count)
    return record(PEER_INDEX_TABLE, body + b"\x00" + bytes([0, 0, 0, 1, 192, 0, 2, 1, 0, 99]))


def rib(entries, prefix=b"\x08\x0a", count=None):
    body = struct.pack(">I", 0) + prefix
    body += struct.pack(">H", len(entries) if count is None else count)
    return record(RIB_IPV4, body + b"".join(entries))


def rib_entry(peer, attributes):
    return struct.pack(">HIH", peer, 0, len(attributes)) + attributes


GOOD = update(attribute(STANDARD, b"\x00\x01\x00\x02"), b"\x08\x0b")
TABLE = peers(1) + rib([rib_entry(0, attribute(STANDARD, b"\x00\x01\x00\x02"))])
MEMBERS = "attribute of {} octets: not a positive multiple of {}"


def at(number, what):
    return rf"record {number} at octet \d+: {what}"


def inside(damaged):
    """A damaged record between two good ones, which are delivered."""
    return GOOD + damaged + GOOD


# The functions from here on yield inputs: the name, the octets, the expected exit status, a
# regular expression that each line on standard error matches (None if no line is expected), the
# number of intact routes, and more options of `bgp-communities mrt`.
def frames():
    yield "truncated-header", GOOD + GOOD[:7], 3, at(2, "record header cut short: 7 of 12"), 1
    yield "truncated-record", GOOD + GOOD[:-1], 3, at(2, "record body cut short"), 1
    yield ("length-past-the-end", GOOD + record(MESSAGE_AS4, b"abc", 1000), 3,
           at(2, "record body cut short: 3 of 1000"), 1)
    yield ("length-ffffffff", GOOD + record(MESSAGE_AS4, b"abc", 0xFFFFFFFF) + GOOD, 3,
           at(2, "record length 4294967295 is more than"), 1)
    yield ("length-16-megabytes-claimed", GOOD + record(MESSAGE_AS4, b"abc", 1 << 24), 3,
           at(2, "record body cut short: 3 of 16777216"), 1)
    yield "record-of-zero-length", inside(record(MESSAGE_AS4, b"")), 3, at(2, "BGP4MP record"), 2
    yield "record-of-unknown-type", inside(record((99, 0), b"x")), 3, at(2, "unknown record"), 2
    yield "record-of-unknown-subtype", inside(record((16, 99), b"x")), 3, at(2, "BGP4MP of unk"), 2


def attributes():
    """Announcements with damaged attributes count as withdrawn, hence 3 routes."""
    for kind, size in MEMBER_SIZES.items():
        for length in (0, size - 1, size + 1):
            yield (f"attribute-{kind}-of-{length}",
                   inside(update(attribute(kind, bytes(length)))), 3,
                   at(2, ".*" + MEMBERS.format(length, size)), 3)
        yield (f"attribute-{kind}-past-the-message",
               inside(update(attribute(kind, bytes(size), length=2 * size))), 3,
               at(2, rf"path attributes: {2 * size} octets wanted, {size} left"), 3)
        yield (f"attribute-{kind}-with-flags-of-none",
               inside(update(attribute(kind, bytes(size), flags=0))), 3,
               at(2, ".*without the flags optional and transitive"), 3)
    one_octet = b"\xd0\x08\x04\x00\x01\x00\x02"
    yield ("extended-length-of-one-octet", inside(update(one_octet)), 3,
           at(2, "path attributes: 1024 octets wanted"), 3)
    twice = attribute(STANDARD, bytes(4)) + attribute(STANDARD, bytes(8))
    yield "attribute-twice", inside(update(twice)), 3, at(2, "path attribute 8 repeated"), 3
    # A message of 65,535 octets has no room for 16,383 values, an entry of a table has.
    many = attribute(STANDARD, b"".join(struct.pack(">I", i) for i in range(16382)), flags=0xD0)
    yield "values-16382", peers(1) + rib([rib_entry(0, many)]), 0, None, 1
    full = struct.pack(">HI", 0, 0) + struct.pack(">H", 65535)
    most = attribute(STANDARD, b"".join(struct.pack(">I", i) for i in range(16383)), flags=0xD0)
    yield ("values-16383-past-the-entry", TABLE + rib([full + most[:65535]]) + GOOD, 3,
           at(3, "path attributes: 65532 octets wanted, 65531 left"), 2)


def tables():
    entry = rib_entry(0, attribute(STANDARD, b"\x00\x01\x00\x02"))
    yield "table-without-peers", rib([entry]) + GOOD, 3, at(1, "peer 0 is not in the peer index, which has 0"), 1
    yield ("peers-65535", peers(65535) + rib([entry]), 3,
           at("[12]", ".*(wanted|not in the peer index)"), 0)
    yield ("entries-65535", TABLE + rib([entry], count=65535) + GOOD, 3,
           at(3, "RIB record: 2 octets wanted, 0 left"), 3)
    yield ("prefix-length-200", inside(update(b"", b"\xc8" + bytes(25))), 3,
           at(2, "prefix length 200 is more than 32"), 2)
    yield ("prefix-length-200-in-a-table", TABLE + rib([entry], b"\xc8" + bytes(25)), 3,
           at(3, "prefix length 200 is more than 32"), 1)


def files():
    packed = gzip.compress(GOOD * 100, mtime=0)
    yield "truncated.gz", packed[:-4], 3, at(101, ".*truncated gzip"), 100
    damaged = bytearray(packed)
    damaged[-6] ^= 0xFF
    yield "corrupted.gz", bytes(damaged), 3, at(101, ".*broken gzip: incorrect"), 100
    most = [b"".join(struct.pack(">I", i) for i in range(first, first + 16000))
            for first in range(100)]
    lists = b"".join(update(attribute(STANDARD, value, flags=0xD0)) for value in most)
    yield "long-lists.gz", gzip.compress(lists, mtime=0), 0, None, 100
    yield "empty", b"", 0, None, 0
    yield "random", random.Random(1).randbytes(4096), 3, at(1, "record"), 0
    yield "text", b"This is a text and no routing data.\n" * 30, 3, at(1, "record length"), 0


def expressions():
    """Options that are refused before anything is read."""
    for name, options in {
        "expression-open": ["--match", "("], "expression-star": ["--match", "a{99999}"],
        "expression-no-utf8": ["--match", "\udcff"], "expression-deep": ["--match", "(" * 5000],
        "kind-unknown": ["--kind", "wide"], "prefix-long": ["--prefix", "10.0.0.0/33"],
        "prefix-bits": ["--prefix", "10.0.0.1/8"], "peer-large": ["--peer", "4294967296"],
        "top-negative": ["--top", "-1"],
    }.items():
        yield name, GOOD, 2, "^(--|Run with|[^ ]+ )", 0, options


def problems_of(status, message, routes, form, run):
    """What is wrong with one run, as texts."""
    if run.returncode != status:
        yield f"exit status {run.returncode}, not {row['status']}"
    lines = [line for line in run.stderr.decode().splitlines() if line]
    if message is None and lines:
        yield f"unexpected message {lines[0]!r}"
    if message is not None and not lines:
        yield "no message"
    for line in lines:
        if message is not None and not re.search(message, line):
            yield f"message {line!r} is not {row['message']!r}"
    if form[0] == "--verify":
        return
    out = run.stdout.decode().splitlines()
    if form == ["--json", "--summary"]:
        if len(out) != (1 if status in (0, 3) else 0):
            yield f"{len(out)} summaries"
    elif len(out) != routes:
        yield f"{len(out)} routes, not {row['routes']}"
    if form[0] == "--json":
        for line in out:
            json.loads(line)


def main():
    tool = os.path.abspath(sys.argv[1])
    rows = [*frames(), *attributes(), *tables(), *files(), *expressions()]
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        os.mkdir(os.path.join(folder, "directory"))
        for name, octets, *_ in rows:
            with open(os.path.join(folder, name), "wb") as file:
                file.write(octets)
        rows.append(("directory", b"", 4, "directory: Is a directory", 0))
        for name, _, status, message, routes, *options in rows:
            for form in FORMS:
                command = [tool, "mrt", *form, *sum(options, []), os.path.join(folder, name)]
                run = subprocess.run(command, capture_output=True, timeout=60, check=False)
                for problem in problems_of(status, message, routes, form, run):
                    failures += 1
                    print(f"{name} {' '.join(form)}: {problem}")
    memory = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
    if memory > MEMORY_MAX:
        failures += 1
        print(f"a run took {memory} KiB")
    print(f"{len(rows)} inputs in {len(FORMS)} forms, at most {memory} KiB, {failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
