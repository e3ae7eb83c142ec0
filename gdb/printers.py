"""Pretty-printers for gdb: counted pointers, values and lists of communities.

gdb loads this file together with libOvPlatform, because it is installed beside that
library. To load it by hand: source gdb/printers.py.

The printers read memory only and call no function of the program, so they also work on
core files and in a program whose heap is damaged. They know the layout of our classes
by the names of the members: if a member is renamed, gdb/test fails.
"""

import re

import gdb
import gdb.printing
import gdb.types


def octets(number, count):
    """NUMBER in hexadecimal with COUNT octets; negative numbers in two's complement."""
    return f"0x{int(number) & (1 << 8 * count) - 1:0{2 * count}x}"


def base(value, name):
    """VALUE as its base class NAME (without template arguments), or None if it has none.

    Searches depth first, also through bases of bases.
    """
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
    """VALUE as an object of its dynamic class, or VALUE itself if gdb cannot tell.

    gdb finds the dynamic class by the vtable, which may be unreadable in a core file.
    """
    try:
        return value.cast(value.dynamic_type)
    except (gdb.error, RuntimeError):
        return value


def class_name(value):
    """The name of VALUE's dynamic class, without its namespaces."""
    return str(dynamic(value).type.unqualified()).rpartition("::")[2]


def reference_word(value):
    """The 64-bit word of a counted object; its fields: Kiv/PtrInterface.h, Dorn/DedupHandle.h."""
    word = base(value, "Kiv::VFPtrInterface")["word_"]
    atomic = base(word, "std::atomic")
    return int(base(atomic, "std::__atomic_base")["_M_i"])


def references(value):
    """The reference count of a counted object, without the flags in the same word.

    The mask is that of Kiv/PtrInterface.h.
    """
    return reference_word(value) & 0x5FFFFFFF


def size(vector):
    """Number of elements of a KivStash::Vector; the top bit of size_ is a flag."""
    return int(vector["size_"]) & 0x7FFFFFFF


def in_place(vector):
    """Whether the elements follow the count inside the object (KivStash/Vector.h)."""
    return int(vector["size_"]) != size(vector)


def elements(vector):
    """Yields name and value of each element of a KivStash::Vector, for children()."""
    data = vector["elements_"]
    if in_place(vector):  # the elements follow the count, as their alignment allows
        offset = max(vector["size_"].type.sizeof, data.type.target().alignof)
        data = gdb.Value(int(vector.address) + offset).cast(data.type)
    for index in range(size(vector)):
        yield f"[{index}]", data[index]


class Vector:
    """A KivStash::Vector: its size, its spare capacity, and its elements."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        count = size(self.value)
        capacity = int(self.value["capacity_"])
        if in_place(self.value) or capacity == 0xFFFFFFFF:  # no capacity of its own
            capacity = count
        spare = f", room for {capacity}" if capacity != count else ""
        return f"{count} element{'s' * (count != 1)}{spare}"

    def children(self):
        return elements(self.value)

    def display_hint(self):
        return "array"


class Pointer:
    """A Kiv::Ptr: the dynamic class, address and reference count of its object."""

    def __init__(self, value):
        self.object = value["object_"]

    def to_string(self):
        if int(self.object) == 0:
            return "null"
        target = dynamic(self.object.dereference())
        try:
            count = references(target)
        except gdb.error as problem:  # the memory is unreadable, or has no counted object
            return f"({self.object.type}) {int(self.object):#x}: {problem}"
        held = f"{count} reference{'s' * (count != 1)}"
        return f"({target.type} *) {int(self.object):#x}, {held}"

    def children(self):
        if int(self.object) != 0:
            yield "object", dynamic(self.object.dereference())


class Content:
    """The content of an extended community, as 16 digits."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return octets(self.value["value_"], 8)


class Ip6Content:
    """The content of an IPv6 extended community, as 40 digits."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        # The first 18 octets are as on the wire; the local part is in host byte order.
        memory = gdb.selected_inferior().read_memory(self.value.address, 18).tobytes()
        return "0x" + memory.hex() + f"{int(self.value['localAdmin_']):04x}"


class Community:
    """An extended community: class, content and classification."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        kind = class_name(self.value)
        names = gdb.lookup_type("Routing::Bgp::ExtCommClassification")
        number = gdb.Value(reference_word(self.value) >> 56 & 0x3F)
        classification = str(number.cast(names)).rpartition("::")[2]
        return f"{kind} {Content(self.value['content_']).to_string()} ({classification})"


class Ip6Community:
    """An IPv6 extended community: class and content."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        kind = class_name(self.value)
        return f"{kind} {Ip6Content(self.value['extCommIp6Content_']).to_string()}"


# The next four functions give the text of one member of a list, by the kind of list.


def standard_text(member):
    return f"{int(member) >> 16}:{int(member) & 0xFFFF}"


def large_text(member):
    return ":".join(str(int(member[field.name])) for field in member.type.fields())


def extended_text(member):
    return Content(member["object_"].dereference()["content_"]).to_string()


def ip6_text(member):
    return Ip6Content(member["object_"].dereference()["extCommIp6Content_"]).to_string()


class CommunityList:
    """A community list: the number of its members, and the members by TEXT."""

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
    """A printer for lists whose members are shown by TEXT."""
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
    """Selects the printer: by the class's name, and for typed communities by a base class.

    Users of the library may derive further communities, in namespaces of their own.
    """

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
        # A derived class may have any name, so its bases decide. Most types have none.
        if not kind.fields() or not kind.fields()[0].is_base_class:
            return None
        for ancestor, printer in self.by_base.items():
            if base(value, ancestor) is not None:
                return printer(value)
        return None


# Registered for all programs, not for one library: types from inlined code belong to the
# program that was compiled with it.
gdb.printing.register_pretty_printer(None, Printers(), replace=True)
