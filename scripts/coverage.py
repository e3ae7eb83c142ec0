#!/usr/bin/env python3
"""Says which lines and branches of the libraries the tests reach.

usage: coverage.py BUILD_FOLDER [FILE...]

Reads what the tests of the preset `coverage` counted: a table of all files that
are not reached whole, worst first, and of each library as a whole.  Fails if one
of these is below its FLOORS.  With FILEs, the text of these instead, and before
each line that is not reached whole how often it ran and which ways were never
gone.

A branch is one way that a condition of the source can go, `if constexpr` aside; the
ways that exceptions take are not counted.  What several programs or a template's
instances reach counts together, and what ends in an abort counts, too.
"""

import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIBRARIES = {"library": ("OvBgp", "BgpCommon"), "platform": ("platform",)}
FLOORS = {"lines": 95.0, "branches": 85.0}  # parts of a hundred


class File:
    def __init__(self, path):
        self.text = path.read_text(encoding="utf-8").splitlines()
        self.lines = collections.Counter()  # how often each ran
        self.branches = collections.Counter()  # (line, column, which way) -> how often

    def counts(self):
        """What was reached and what there is, of lines and of branches."""
        return [
            (sum(count > 0 for count in counted.values()), len(counted))
            for counted in (self.lines, self.branches)
        ]


def line_counts(segments):
    """How often each line ran, from the places where another count begins.

    A segment is (line, column, count, has count, is entry, is gap): its count holds
    up to the next one.  A line counts as often as the one that it began with or any
    that begins on it.
    """
    by_line = collections.defaultdict(list)
    for segment in segments:
        by_line[segment[0]].append(segment)
    counts, wrapping = {}, None
    for line in range(segments[0][0], segments[-1][0] + 1) if segments else ():
        here = by_line.get(line, [])
        entries = [count for _, _, count, has, entry, gap in here if has and entry and not gap]
        skipped = here and here[0][4] and not here[0][3]
        if not skipped and (entries or (wrapping and wrapping[3])):
            counts[line] = max(entries + ([wrapping[2]] if wrapping and wrapping[3] else []))
        wrapping = here[-1] if here else wrapping
    return counts


def read(build):
    """The files of the libraries, by their names."""
    binaries = sorted(path for folder in ("bin", "bin/fuzz") for path in (build / folder).iterdir()
                      if path.is_file())
    binaries += sorted((build / "lib").glob("*.so"))
    merged = build / "counts.profdata"
    subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", merged,
                    *sorted((build / "counts").glob("*.profraw"))], check=True)
    folders = [folder for library in LIBRARIES.values() for folder in library]
    objects = [word for path in binaries[1:] for word in ("-object", path)]
    exported = subprocess.run(
        ["llvm-cov", "export", f"-instr-profile={merged}", "-skip-functions", binaries[0], *objects],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    files = {}
    for each in json.loads(exported)["data"][0]["files"]:
        path = pathlib.Path(each["filename"]).resolve()  # whichever way a compiler went there
        if not any(path.is_relative_to(ROOT / folder) for folder in folders):
            continue
        file = files.setdefault(str(path.relative_to(ROOT)), File(path))
        for line, count in line_counts(each["segments"]).items():
            file.lines[line] += count
        count_branches(file, each["branches"])
        # Conditions that a macro brings stand where the macro is used.
        for expansion in each["expansions"]:
            line, column = expansion["source_region"][:2]
            count_branches(file, expansion["branches"], (line, column))
    return files


def count_branches(file, branches, at=None):
    for line, column, _, _, holds, fails, *_ in branches:
        line, column = at or (line, column)
        if "if constexpr" in file.text[line - 1]:
            continue
        for way, count in (("true", holds), ("false", fails)):
            file.branches[line, column, way] += count


def percent(reached, there):
    return 100.0 * reached / there if there else 100.0


def row(name, counts):
    cells = (f"{percent(*each):7.1f} {each[0]:5}/{each[1]:<5}" for each in counts)
    print(f"{name:52}", *cells)


def table(files):
    """Prints the table; whether the floors are reached."""
    print(f"{'':52} {'lines %':>19} {'branches %':>19}")
    good = True
    for library, folders in LIBRARIES.items():
        of_library = {name: file.counts() for name, file in files.items()
                      if pathlib.Path(name).parts[0] in folders}
        rows = sorted(of_library.items(), key=lambda item: [percent(*each) for each in item[1]])
        for name, counts in rows:
            if any(reached < there for reached, there in counts):
                row(name, counts)
        total = [tuple(map(sum, zip(*column))) for column in zip(*of_library.values())]
        row(f"== {library}, {len(rows)} files", total)
        for what, counts in zip(FLOORS, total):
            if percent(*counts) < FLOORS[what]:
                print(f"{library}: {percent(*counts):.1f} % of {what}, below {FLOORS[what]:.0f}")
                good = False
    return good


def show(name, file):
    print(f"== {name}")
    never = collections.defaultdict(list)
    for (line, column, way), count in sorted(file.branches.items()):
        if count == 0:
            never[line].append(f"{column} {way}")
    for number, text in enumerate(file.text, 1):
        if file.lines.get(number) == 0 or number in never:
            print(f"{number:5} {file.lines.get(number, ''):>8} |{text}")
            if number in never:
                print(f"{'':14} |  never: {', '.join(never[number])}")


def main(build, *names):
    files = read(pathlib.Path(build).resolve())
    if not names:
        return 0 if table(files) else 1
    for name in names:
        show(name, files[name])
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
