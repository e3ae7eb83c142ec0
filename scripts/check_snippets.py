#!/usr/bin/env python3
"""Checks that what README and docs show is what is compiled and run.

A fenced block in one of the languages below stands behind a line that says what it
is a copy of, which a reader of the rendered page does not see:

  <!-- region FILE NAME -->   the lines of FILE from [NAME] to [/NAME]; CI compiles
                              and runs the file
  <!-- run -->                a session: lines after "$ " are run here, and the others
                              are what came out

Blocks without a language are drawings, forms and outlines.  --update rewrites blocks
instead of checking them.
"""

import argparse
import os
import pathlib
import re
import subprocess
import sys
import textwrap

LANGUAGES = ["cpp", "cmake", "make", "sh", "console"]
BLOCK = re.compile(
    r"(?P<head>^(?P<mark><!-- *(?P<what>.*?) *-->\n+)?```(?P<language>\w+)\n)(?P<body>.*?)(?P<tail>^```$)",
    re.MULTILINE | re.DOTALL,
)
MARK = r"^[ \t]*(?://|#) \[%s\]$\n"


def region(root, file, name):
    text = (root / file).read_text(encoding="utf-8")
    found = re.findall(
        MARK % re.escape(name) + "(.*?)" + MARK % re.escape("/" + name), text, re.MULTILINE | re.DOTALL
    )
    if len(found) != 1:
        raise ValueError(f"{file} has {len(found)} regions [{name}]")
    inner = re.sub(MARK % "/?[a-z0-9-]+", "", found[0], flags=re.MULTILINE)
    return textwrap.dedent(inner).strip("\n") + "\n"


def session(root, tools, body):
    """What comes of the commands in BODY: they, each with its output."""
    environment = os.environ | {"PATH": f"{tools}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    shown = []
    for command in re.findall(r"^\$ (.*(?:\\\n.*)*)$", body, re.MULTILINE):
        run = subprocess.run(
            ["bash", "-c", command], cwd=root, env=environment, text=True, timeout=60,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, check=False,
        )
        shown.append(f"$ {command}\n{run.stdout}")
    return "".join(shown)


def wanted(root, tools, match):
    what = (match["what"] or "").split()
    if what[:1] == ["region"] and len(what) == 3:
        return region(root, what[1], what[2])
    if what == ["run"]:
        return session(root, tools, match["body"]) if tools else match["body"]
    raise ValueError(f"a block in {match['language']} that says not what it is a copy of")


def check(root, page, tools, update):
    """Prints what is wrong in PAGE; returns how many blocks there are, and how many are wrong."""
    text = page.read_text(encoding="utf-8")
    problems = []
    blocks = [match for match in BLOCK.finditer(text) if match["language"] in LANGUAGES]
    for match in reversed(blocks):
        line = text.count("\n", 0, match.start()) + 1
        try:
            should = wanted(root, tools, match)
        except (ValueError, OSError) as problem:
            problems.append(f"{page}:{line}: {problem}")
            continue
        if should == match["body"]:
            continue
        if update:
            page_text = page.read_text(encoding="utf-8")
            page.write_text(
                page_text[: match.start("body")] + should + page_text[match.end("body"):],
                encoding="utf-8",
            )
        else:
            problems.append(f"{page}:{line}: differs from {match['what']}, which is now\n{should}")
    print(*reversed(problems), sep="\n", end="\n" if problems else "")
    return len(blocks), len(problems)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tools", help="where the tool is; sessions are not run without")
    parser.add_argument("--update", action="store_true")
    options = parser.parse_args()
    tools = options.tools and pathlib.Path(options.tools).resolve()
    root = pathlib.Path(__file__).resolve().parent.parent
    pages = sorted(root.glob("*.md")) + sorted(root.glob("docs/*.md"))
    counts = [check(root, page, tools, options.update) for page in pages]
    blocks, problems = (sum(column) for column in zip(*counts))
    print(f"{len(pages)} pages, {blocks} blocks, {problems} problems")
    return 1 if problems or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
