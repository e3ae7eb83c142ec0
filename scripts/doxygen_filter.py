#!/usr/bin/env python3
"""Prints a header with its comments as Doxygen wants them.

In the headers a plain comment directly before a declaration documents it.  Such
comments become `///` ones here, so that the headers stay readable; the one on top
documents the file.  Text stays text: nothing in a comment is a command.
"""

import re
import sys

COMMENT = re.compile(r"^(\s*)//(?!/)( ?)(.*)$")
TRAILING = re.compile(r'^(\s*[^\s/"][^"]*?[;,}])\s+// (?!NOLINT|IWYU)(.*)$')
# What stands alone documents nothing.
LONELY = re.compile(r"^\s*(#|$|public:|private:|protected:|\}|namespace\b)")
SPECIAL = re.compile(r"([\\@<>&#%])")


def text(line):
    """LINE without what Doxygen would take for commands, markup and links."""
    parts = re.split(r"(`[^`]*`)", line)
    return "".join(p if p.startswith("`") else SPECIAL.sub(r"\\\1", p).replace("::", "\\::") for p in parts)


def documented(indent, lines):
    """The comment LINES as documentation; indented ones stand as they are."""
    shown, listing = [], False
    for position, line in enumerate(lines):
        more = any(rest.startswith("  ") for rest in lines[position + 1:][:1])
        inside = line.startswith("  ") or (listing and line == "" and more)
        if inside != listing:
            shown.append("~~~")
            listing = inside
        shown.append(line if inside else text(line))
    if listing:
        shown.append("~~~")
    return [f"{indent}/// {line}".rstrip() for line in shown]


def block_at(source, start):
    """The comment lines from START on; none if there is no comment."""
    lines = []
    while start + len(lines) < len(source):
        match = COMMENT.match(source[start + len(lines)])
        if not match:
            break
        lines.append(match[3])
    return lines


def hash_at(source, position):
    """The lines of a specialisation of std::hash, which is nothing to document."""
    if not re.match(r"(template <.*>|struct std::hash)", source[position]):
        return 0
    if "struct std::hash<" not in "".join(source[position:position + 2]):
        return 0
    return source.index("};", position) + 1 - position


def filtered(source):
    position = 0
    while position < len(source):
        if hidden := hash_at(source, position):
            yield from [""] * hidden
            position += hidden
            continue
        lines = block_at(source, position)
        if not lines:
            trailing = TRAILING.match(source[position])
            yield f"{trailing[1]}  ///< {text(trailing[2])}" if trailing else source[position]
            position += 1
            continue
        after = source[position + len(lines)] if position + len(lines) < len(source) else ""
        indent = COMMENT.match(source[position])[1]
        if position == 0:
            yield from ["/// \\file"] + documented("", lines)
        elif not LONELY.match(after) and not lines[0].startswith(("NOLINT", "clang-format")):
            yield from documented(indent, lines)
        else:
            yield from source[position:position + len(lines)]
        position += len(lines)


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as header:
        print("\n".join(filtered(header.read().splitlines())))
