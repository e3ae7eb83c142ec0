#!/usr/bin/env python3
"""Prints a header or a Markdown page in the form that Doxygen wants.

Headers are documented by plain comments. A comment directly before a declaration
becomes a `///` comment; the comment at the top of a file documents the file. Only
`code` and names of documented things are special in a comment; everything else is text.
Macros that declare members or classes are written out, because Doxygen would otherwise
know neither these nor their documentation: those of OvBgp/ by their definitions, in which
`/* comments */` become documentation, and those of platform/ by the tables below.

In pages every heading gets an anchor, and links between files become links between
the pages that are made of them.
"""

import os.path
import pathlib
import re
import sys

COMMENT = re.compile(r"^(\s*)//(?!/)( ?)(.*)$")
TRAILING = re.compile(r'^(\s*[^\s/"][^"]*?[;,}])\s+// (?!NOLINT|IWYU)(.*)$')
# A comment before one of these lines documents nothing.
LONELY = re.compile(r"^\s*(#(?!define)|$|public:|private:|protected:|\}|namespace\b)")
# Lines that declare nothing for the reader of the reference.
DROPPED = re.compile(r"^\s*(#undef |extern template |friend (class|struct) )")
SPECIAL = re.compile(r"([\\@<>&#%]|(?<!\w)::)")
DEFINE = re.compile(r"^#define (\w+)")
ROW = re.compile(r"\b(enumMember|enumMarker|flagRow)\(([^()]*)\)")
CALL = re.compile(r"^(\s*)(\w+)\(")
ITEM = re.compile(r"(- |\d+\. )?")
SHOWN = ("platform", "OvBgp", "BgpCommon")

POINTERS = (
    "/** A counted pointer to an object of this class. */ using Ptr = Kiv::Ptr<{0}>; "
    "/** A counted pointer to a read-only object of this class. */ using PtrConst = Kiv::Ptr<const {0}>; "
)
BY_NAME = (
    "/** The member of {0} with this name. Throws Kiv::RangeException if there is none. */ "
    "{0} {1}(const Kiv::String& name);"
)
# What the macros of platform/ declare, by name: {0} is the first argument.
DECLARED = {
    "KIV_POINTERS": POINTERS,
    "KIV_OBJECT": "public: " + POINTERS + "private:",
    "KIV_ENUM_INSTANCE_BY_VALUE": (
        "/** The member of {0} with this number. Throws Kiv::RangeException if there is none. */ "
        "{0} {1}(U32 value); " + BY_NAME
    ),
    "KIV_ENUM_INSTANCE_BY_POSITION": (
        "/** The member of {0} at this position, in ascending order of the numbers. "
        "Throws Kiv::RangeException if there is none. */ {0} {1}(U32 position); " + BY_NAME
    ),
}


def text(line):
    """LINE without what Doxygen would take for commands and markup."""
    parts = re.split(r"(`[^`]*`)", line)
    return "".join(p if p.startswith("`") else SPECIAL.sub(r"\\\1", p) for p in parts)


def documented(indent, lines):
    """The comment LINES as documentation; lines that are indented, except in list items, are a listing."""
    shown, listing, margin = [], False, ""
    for position, line in enumerate(lines):
        if line and not line.startswith(" "):
            margin = " " * len(ITEM.match(line)[0])
        more = any(rest.startswith("  ") for rest in lines[position + 1:][:1])
        item = margin != "" and line.startswith(margin) and not line.startswith(margin + " ")
        inside = (line.startswith("  ") and not item) or (listing and line == "" and more)
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
    """The number of lines of a specialisation of std::hash, which needs no documentation."""
    if not re.match(r"(template <.*>|struct std::hash)", source[position]):
        return 0
    if "struct std::hash<" not in "".join(source[position:position + 2]):
        return 0
    return source.index("};", position) + 1 - position


def enumeration(name, rows):
    members = []
    for kind, arguments in rows:
        member, number = (part.strip() for part in arguments.split(","))
        valid = "" if kind == "enumMember" else " It has a name but is not a valid value."
        members.append(f"{member} = {number} /**< The number is {number}.{valid} */")
    return f"enum class {name} : U32 {{ {', '.join(members)} }};"


def flag_set(rows):
    shown = [
        "/** The name of the set in texts. */ static constexpr std::string_view flagSetName; "
        "/** Name and bit of each flag. */ static constexpr Kiv::FlagRow flagRows[];"
    ]
    for _, arguments in rows:
        get, put, bit = (part.strip() for part in arguments.split(","))
        shown.append(f"/** Whether the flag with the bit {bit} is set. */ constexpr bool {get}() const;")
        shown.append(f"/** Sets or clears the flag with the bit {bit}. */ constexpr void {put}(bool isSet);")
    return " ".join(shown)


def arguments_of(call):
    return [part.strip() for part in call[call.index("(") + 1:call.rindex(")")].split(",")]


def definition_at(source, position):
    """The number of lines of the macro definition at POSITION."""
    end = position + 1
    while source[end - 1].endswith("\\"):
        end += 1
    return end - position


def macros():
    """Name -> parameters and body, as lines, of the function-like macros of OvBgp/."""
    found = {}
    for header in sorted(pathlib.Path("OvBgp").rglob("*.h")):
        source = header.read_text(encoding="utf-8").splitlines()
        for position, line in enumerate(source):
            if head := re.match(r"#define (\w+)\(([^()]*)\)(.*)$", line):
                lines = source[position:position + definition_at(source, position)]
                body = [part.rstrip("\\").strip() for part in [head[3]] + lines[1:]]
                found[head[1]] = [name.strip() for name in head[2].split(",")], body
    return found


def with_documentation(body):
    """The lines of a macro's BODY in one line; lines of comments become documentation."""
    lines = [re.sub(r"^/\*(.*)\*/$", r"/**\1*/", line) for line in body]
    return re.sub(r"\*/ /\*\*", "", " ".join(lines))


def expanded(name, arguments):
    """The declarations of the macro NAME of OvBgp/."""
    parameters, body = MACROS[name]
    if parameters[-1] == "...":
        count = len(parameters) - 1
        arguments = arguments[:count] + [", ".join(arguments[count:])]
        parameters = parameters[:-1] + ["__VA_ARGS__"]
    given = dict(zip(parameters, arguments))
    shown = re.sub(r"\w+", lambda word: given.get(word[0], word[0]), with_documentation(body))
    inner = re.compile(r"\b(%s)\(([^()]*)\)" % "|".join([*MACROS, *DECLARED]))
    return inner.sub(lambda call: declared(call[0], []), shown)


def declared(call, rows):
    """What the macro CALL declares, or None; ROWS are those of the last list of rows."""
    name, arguments = CALL.match(call)[2], arguments_of(call)
    if name == "KIV_ENUM":
        return enumeration(arguments[0], rows)
    if name == "KIV_FLAG_SET_BODY":
        return flag_set(rows)
    if name in MACROS:
        return expanded(name, arguments) + call[call.rindex(")") + 1:]
    return DECLARED[name].format(*arguments) if name in DECLARED else None


def written_out(source):
    """SOURCE with the macros written out, each in its first line."""
    local = {line.split()[1] for line in source if line.startswith("#undef ")}
    rows, shown, position = [], [], 0
    while position < len(source):
        end = position + 1
        define, call = DEFINE.match(source[position]), CALL.match(source[position])
        if define:
            end += definition_at(source, position) - 1
        elif call:
            while source[end - 1].count(")") == 0 and end < len(source):
                end += 1
        lines = source[position:end]
        new = declared(" ".join(lines), rows) if call else None
        if define and define[1] in local:
            # A comment before rows documents their enumeration; one before another local macro nothing.
            rows = ROW.findall(" ".join(lines))
            new = "" if rows else "#"
        elif DROPPED.match(lines[0]):
            new = ""
        shown += lines if new is None else [new] + [""] * (len(lines) - 1)
        position = end
    return shown


def filtered(source):
    """The header SOURCE, a list of lines, with documentation."""
    kept = written_out(source)
    position = 0
    while position < len(kept):
        if hidden := hash_at(kept, position):
            yield from [""] * hidden
            position += hidden
            continue
        lines = block_at(kept, position)
        if not lines:
            trailing = TRAILING.match(kept[position])
            yield f"{trailing[1]}  ///< {text(trailing[2])}" if trailing else kept[position]
            position += 1
            continue
        next_line = position + len(lines)
        after = (kept[next_line] or source[next_line]) if next_line < len(kept) else ""
        indent = COMMENT.match(kept[position])[1]
        if position == 0:
            yield from ["/// \\file"] + documented("", lines)
        elif not LONELY.match(after) and not lines[0].startswith(("NOLINT", "clang-format")):
            yield from documented(indent, lines)
        else:
            yield from kept[position:position + len(lines)]
        position += len(lines)


def slug(title):
    """The anchor that repository browsers give a heading."""
    kept = re.sub(r"[^\w\- ]", "", title.replace("`", "").strip().lower())
    return kept.replace(" ", "-")


def label(page):
    return "page-" + slug(str(page.with_suffix("")).replace("/", "-"))


class Page:
    """A Markdown page at PATH, seen from the folder that Doxygen runs in."""

    def __init__(self, path):
        self.path = path

    def target(self, link):
        """The address, for Doxygen, of what LINK leads to."""
        if re.match(r"[a-z]+:", link):
            return link
        file, _, anchor = link.partition("#")
        there = pathlib.Path(os.path.normpath(self.path.parent / file)) if file else self.path
        if there.suffix == ".md":
            return f"@ref {label(there)}" + (f"-{anchor}" if anchor else "")
        if there.parts[0] == "examples":
            name = "/".join(there.parts[1:])
            return name.replace("_", "__").replace("/", "_2").replace(".", "_8") + "-example.html"
        return there.name if there.suffix == ".svg" else link

    def header(self, match):
        """A path in backticks, as a link if a reader can follow it."""
        path = pathlib.Path(match[1])
        known = path.parts[0] in SHOWN and path.is_file() or pathlib.Path("platform", path).is_file()
        if not known or "Private" in path.parts:
            return match[0]
        return f"[{match[1]}](@ref {match[1].removeprefix('platform/')})"

    def line(self, line):
        heading = re.match(r"^(#+) (.*)$", line)
        if heading:
            anchor = label(self.path) + ("" if len(heading[1]) == 1 else f"-{slug(heading[2])}")
            return f"{line} {{#{anchor}}}"
        line = re.sub(r"(?<!\[)`([\w/]+\.h)`(?!\])", self.header, line)
        return re.sub(r"\]\(([^()@ ]+)\)", lambda match: f"]({self.target(match[1])})", line)

    def filtered(self, lines):
        fenced = False
        for line in lines:
            if line.startswith("```"):
                fenced = not fenced
                yield line
            else:
                yield line if fenced else self.line(line)


MACROS = macros()

if __name__ == "__main__":
    given = pathlib.Path(os.path.relpath(sys.argv[1]))
    contents = given.read_text(encoding="utf-8").splitlines()
    print("\n".join(Page(given).filtered(contents) if given.suffix == ".md" else filtered(contents)))
