#!/usr/bin/env python3
"""Puts known faults into a copy of the project, one at a time, and shows that the
tests catch each.

The faults are in mutations.toml beside this script: FILE, the OLD text, which must
occur in it exactly once, the NEW text, and TESTS, each a test binary and a filter.  A
fault is caught if one of these tests fails, crashes or hangs.  One that survives, or
does not apply, or does not compile, makes this script fail; but one with a REASON is
known to survive, and fails only if it is caught.

The copy and its build stay in build/mutate, so that a second run is quick.
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import time
import tomllib

TOP = pathlib.Path(__file__).resolve().parent.parent
SCRATCH = TOP / "build" / "mutate"
COPY = SCRATCH / "tree"
BUILD = COPY / "build" / "debug"
# A test that still runs after this many seconds will not end.
PATIENCE = 120


def faults_of(list_file):
    faults = tomllib.loads(list_file.read_text())["fault"]
    names = [fault["name"] for fault in faults]
    assert len(set(names)) == len(names), "two faults of one name"
    return faults


def problems_of(fault):
    """What keeps a fault from being put into the project as it is now."""
    file = TOP / fault["file"]
    if not file.is_file():
        return f"no file {fault['file']}"
    times = file.read_text().count(fault["old"])
    if times != 1:
        return f"the old text is {times} times in {fault['file']}"
    return "" if fault["old"] != fault["new"] else "old and new text are the same"


def copy_project():
    """Brings the copy up to date; files that are as they were keep their times."""
    listing = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "-z"],
        cwd=TOP, check=True, capture_output=True, text=True).stdout
    files = {name for name in listing.split("\0") if name and (TOP / name).is_file()}
    for name in files:
        source, target = TOP / name, COPY / name
        if not target.is_file() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)
    for path in [p for p in COPY.rglob("*") if p.is_file()]:
        name = path.relative_to(COPY)
        if name.parts[0] != "build" and str(name) not in files:
            path.unlink()


def quietly(command, **options):
    return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          errors="replace", **options)


def configure():
    configured = quietly(["cmake", "--preset", "debug", "-DOVBGP_BUILD_EXAMPLES=OFF",
                          "-DOVBGP_WERROR=OFF"], cwd=COPY)
    if configured.returncode != 0:
        sys.exit(configured.stdout + configured.stderr)


def build(targets, jobs):
    """An empty text, or what the compiler says."""
    # The same object whatever the folder is called, for those who use ccache.
    environment = os.environ | {"CCACHE_BASEDIR": str(COPY), "CCACHE_NOHASHDIR": "1"}
    built = quietly(["cmake", "--build", str(BUILD), "--parallel", str(jobs), "--target", *targets],
                    env=environment)
    return "" if built.returncode == 0 else built.stdout + built.stderr


def verdict(test):
    """How a test ends: "passed", or why it did not; and what it printed."""
    binary, pattern = test.split()
    try:
        run = quietly([str(BUILD / "bin" / binary), f"--gtest_filter={pattern}", "--gtest_brief=1"],
                      timeout=PATIENCE, cwd=BUILD)
    except subprocess.TimeoutExpired:
        return "hung", ""
    output = run.stdout + run.stderr
    if run.returncode < 0:
        return f"ended by signal {-run.returncode}", output
    if "0 tests from 0 test suites ran" in run.stdout:
        sys.exit(f"{test}: there is no such test")
    return "passed" if run.returncode == 0 else "failed", output


def outcome_of(fault, jobs):
    """Puts the fault in, builds and tests, and takes it out again."""
    file = COPY / fault["file"]
    original = file.read_text()
    file.write_text(original.replace(fault["old"], fault["new"]))
    try:
        binaries = sorted({test.split()[0] for test in fault["tests"]})
        errors = build(binaries, jobs)
        if errors:
            return "does not compile:\n" + errors
        for test in fault["tests"]:
            ending, _ = verdict(test)
            if ending != "passed":
                return f"caught ({test.split()[1]} {ending})"
        return "survived"
    finally:
        file.write_text(original)


def is_as_expected(fault, outcome):
    return outcome == "survived" if "reason" in fault else outcome.startswith("caught")


def check_without_faults(faults, jobs):
    tests = sorted({test for fault in faults for test in fault["tests"]})
    errors = build(sorted({test.split()[0] for test in tests}), jobs)
    if errors:
        sys.exit(errors)
    for test in tests:
        ending, output = verdict(test)
        if ending != "passed":
            sys.exit(f"{output}{test} without a fault: {ending}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--check", action="store_true", help="only see that all faults apply")
    parser.add_argument("--only", default="", metavar="TEXT",
                        help="those with TEXT in their names or files")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    arguments = parser.parse_args()

    faults = faults_of(TOP / "scripts" / "mutations.toml")
    wrong = [(fault["name"], problem) for fault in faults if (problem := problems_of(fault))]
    for name, problem in wrong:
        print(f"{name}: {problem}")
    if wrong or arguments.check:
        print(f"{len(faults)} faults, {len(wrong)} do not apply")
        return 1 if wrong else 0

    faults = [f for f in faults if arguments.only in f["name"] or arguments.only in f["file"]]
    copy_project()
    configure()
    check_without_faults(faults, arguments.jobs)
    unexpected = 0
    for fault in faults:
        start = time.monotonic()
        outcome = outcome_of(fault, arguments.jobs)
        as_expected = is_as_expected(fault, outcome)
        unexpected += not as_expected
        note = "" if as_expected else "  <<<"
        if "reason" in fault:
            note += f"  ({fault['reason']})"
        seconds = time.monotonic() - start
        print(f"{seconds:5.0f} s  {fault['file']}: {fault['name']}: {outcome}{note}", flush=True)
    print(f"{len(faults)} faults, {unexpected} not as expected")
    return 1 if unexpected else 0


if __name__ == "__main__":
    sys.exit(main())
