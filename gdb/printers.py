"""Pretty-printers for gdb: counted pointers, values and lists of communities.

gdb loads this file with libOvPlatform, beside which it is installed; or by hand:
source gdb/printers.py.  Nothing here calls functions of the program, so values of
a core file print as well.
"""

import re

import gdb
import gdb.printing
import gdb.types


def octets(number, count):
    return f"0x{int(number) & (1 << 8 * count) - 1:0{2 * count}x}"


def base(value, name):
    """VALUE as its base class whose name, without template arguments, is NAME."""
    kind = gdb.types.get_basic_type(value.type)
    if re.fullmatch(f"{name}(<.*>)?", kind.name or ""):
        return value
    for field in kind.fields():
        if field.is_base_class:
            found = base(value.cast(field.type), name)
            if found is not None:
                return found
    return None


def dynamic(value):
    """VALUE as an object of the class that it was made as, if gdb can tell."""
    try:
        return value.cast(value.dynamic_type)
    except (gdb.error, RuntimeError):
        return value


def class_name(value):
    return str(dynamic(value).type.unqualified()).rpartition("::")[2]


def references(value):
    """References to a shared object, without the flags beside the count."""
    word = base(value, "Kiv::VFPtrInterface")["word_"]
    atomic = base(word, "std::atomic")
    word = base(atomic, "std::__atomic_base")["_M_i"]
    return int(word) & 0x5FFFFFFF


def size(vector):
    """How many elements a KivStash::Vector has."""
    return int(vector["size_"]) & 0x7FFFFFFF


def in_place(vector):
    """Whether they stand behind the count, in the object that has the vector."""
    return int(vector["size_"]) != size(vector)


def elements(vector):
    """The elements of a KivStash::Vector, for children()."""
    data = vector["elements_"]
    if in_place(vector):  # behind the count
        offset = max(vector["size_"].type.sizeof, data.type.target().alignof)
        data = gdb.Value(int(vector.address) + offset).cast(data.type)
    for index in range(size(vector)):
        yield f"[{index}]", data[index]


class Vector:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        count = size(self.value)
        capacity = int(self.value["capacity_"])
        if in_place(self.value) or capacity == 0xFFFFFFFF:  # in memory of the array's object
            capacity = count
        spare = f", room for {capacity}" if capacity != count else ""
        return f"{count} element{'s' * (count != 1)}{spare}"

    def children(self):
        return elements(self.value)

    def display_hint(self):
        return "array"


class Pointer:
    def __init__(self, value):
        self.object = value["object_"]

    def to_string(self):
        if int(self.object) == 0:
            return "null"
        target = dynamic(self.object.dereference())
        try:
            count = references(target)
        except gdb.error as problem:  # what it points to is no object, or not readable
            return f"({self.object.type}) {int(self.object):#x}: {problem}"
        held = f"{count} reference{'s' * (count != 1)}"
        return f"({target.type} *) {int(self.object):#x}, {held}"

    def children(self):
        if int(self.object) != 0:
            yield "object", dynamic(self.object.dereference())


class Content:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return octets(self.value["value_"], 8)


class Ip6Content:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        # The object is the octets, but for the local part's byte order.
        memory = gdb.selected_inferior().read_memory(self.value.address, 18).tobytes()
        return "0x" + memory.hex() + f"{int(self.value['localAdmin_']):04x}"


class Community:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        kind = class_name(self.value)
        names = gdb.lookup_type("Routing::Bgp::ExtCommClassification")
        classification = str(self.value["classification_"].cast(names)).rpartition("::")[2]
        return f"{kind} {Content(self.value['content_']).to_string()} ({classification})"


class Ip6Community:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        kind = class_name(self.value)
        return f"{kind} {Ip6Content(self.value['extCommIp6Content_']).to_string()}"


def standard_text(member):
    return f"{int(member) >> 16}:{int(member) & 0xFFFF}"


def large_text(member):
    return ":".join(str(int(member[field.name])) for field in member.type.fields())


def extended_text(member):
    return Content(member["object_"].dereference()["content_"]).to_string()


def ip6_text(member):
    return Ip6Content(member["object_"].dereference()["extCommIp6Content_"]).to_string()


class CommunityList:
    """A list: how many members, and what they are."""

    def __init__(self, value, text):
        self.value = value
        self.text = text

    def to_string(self):
        count = size(self.value["commVector_"])
        return f"{count} communit{'y' if count == 1 else 'ies'}"

    def children(self):
        for name, member in elements(self.value["commVector_"]):
            yield name, self.text(member)

    def display_hint(self):
        return "array"


def listing(text):
    return lambda value: CommunityList(value, text)


LISTS = [
    ("CommList", standard_text),
    ("LargeCommList", large_text),
    ("ExtCommList", extended_text),
    ("ExtCommClassificationList", extended_text),
    ("ExtCommIp6List", ip6_text),
    ("ExtCommIp6ClassificationList", ip6_text),
]


class Printers(gdb.printing.PrettyPrinter):
    """By the name of the class; typed communities by their base."""

    def __init__(self):
        super().__init__("OvBgpCommunity")
        self.by_name = {"Kiv::Ptr": Pointer, "KivStash::Vector": Vector}
        self.by_name["Routing::Bgp::ExtCommContent"] = Content
        self.by_name["Routing::Bgp::ExtCommIp6Content"] = Ip6Content
        for name, text in LISTS:
            self.by_name[f"Routing::Bgp::{name}"] = listing(text)
        self.by_base = {"Routing::Bgp::ExtComm": Community, "Routing::Bgp::ExtCommIp6": Ip6Community}

    def __call__(self, value):
        kind = gdb.types.get_basic_type(value.type)
        name = (kind.name or "").partition("<")[0]
        if kind.code != gdb.TYPE_CODE_STRUCT:
            return None
        if name in self.by_name:
            return self.by_name[name](value)
        # Derived classes have other names, in any namespace: ask only what has bases.
        if not kind.fields() or not kind.fields()[0].is_base_class:
            return None
        for ancestor, printer in self.by_base.items():
            if base(value, ancestor) is not None:
                return printer(value)
        return None


# For values of every program: those of its own, inlined code come from itself.
gdb.printing.register_pretty_printer(None, Printers(), replace=True)
