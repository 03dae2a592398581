"""What gdb shows for the library's values.

Nothing here calls into the program, so that all of it works on a core file, too. Members are read
by the names that the public headers give them. Where there are none of such a name, or the program
has no symbols for the type, a value is left to gdb. Memory that holds no value, or none yet, is
shown as the reason why; no more of it is read than gdb's `print elements` allows.
"""

import datetime

import gdb
import gdb.printing


class Printer:
    """Takes the members by name in __init__, and makes the text of them in text()."""

    def to_string(self):
        try:
            return self.text()
        except RuntimeError as error:  # gdb's errors are of this kind
            return f"<{error}>"


def most_elements():
    """What `print elements`, or an option of the command, says; 0 or None without a limit."""
    if hasattr(gdb, "print_options"):  # gdb 13
        return gdb.print_options()["max_elements"]
    return gdb.parameter("print elements")


def most_bytes():
    """How long a value gdb reads at most."""
    limit = gdb.parameter("max-value-size")
    return limit if limit and limit > 0 else 1 << 30


# --- Strings -------------------------------------------------------------------------------------


def header_of(string):
    """What CQorStringData says about the buffer of a CQorStringT."""
    characters = string["m_pchData"]
    name = f"qor_text::CQorStringData<{characters.type.target()}>"
    return (characters.cast(gdb.lookup_type(name).pointer()) - 1).dereference()


class StringPrinter(Printer):
    """The text, and the state of its buffer behind it. Without children: machine interfaces show
    none of a text that has some."""

    def __init__(self, value):
        self.characters = value["m_pchData"]
        self.header = header_of(value)

    def text(self):
        if self.characters == 0:
            return "<no string: null>"
        if not self.is_string():
            refs, length, capacity = self.fields()
            return f"<no string: {refs} references, length {length}, capacity {capacity}>"
        return f"{self.quoted()} ({self.state()})"

    def quoted(self):
        _, length, _ = self.fields()
        shown = min(length, most_elements() or length, self.most_characters())
        text = self.array(shown).format_string(max_elements=0)
        return text if shown == length else text + "..."

    def fields(self):
        names = ("nRefs", "nDataLength", "nAllocLength")
        return (int(self.header[name]) for name in names)

    def is_string(self):
        refs, length, capacity = self.fields()
        if capacity == 0:  # the nil string
            return refs == -1 and length == 0
        return (refs == -1 or refs > 0) and 0 <= length <= capacity

    def state(self):
        refs, _, capacity = self.fields()
        if capacity == 0:
            return "nil"
        return f"{'locked' if refs == -1 else f'refs {refs}'}, capacity {capacity}"

    def most_characters(self):
        return most_bytes() // self.characters.type.target().sizeof - 1

    def array(self, length):
        """So many characters, and the zero behind them, if there is one: gdb leaves out a zero at
        the end, and that must not be one of the text."""
        last = length if self.characters[length] == 0 else length - 1
        array = self.characters.type.target().array(last)
        return self.characters.cast(array.pointer()).dereference()


def text_of(value):
    """A string's characters alone: in a table, the state of every buffer is in the way."""
    if not (value.type.strip_typedefs().name or "").startswith("qor_text::CQorStringT<"):
        return value
    printer = StringPrinter(value)
    try:
        if printer.characters == 0 or not printer.is_string():
            return value
        _, length, _ = printer.fields()
        return printer.array(min(length, printer.most_characters()))
    except RuntimeError:
        return value


class Buffer(gdb.Function):
    """The state of the buffer of a string: $qor_buffer(CQorStringT).

    nRefs is the number of strings that share it, -1 when it is locked or that of the nil string;
    nDataLength and nAllocLength are its length and its capacity in characters."""

    def __init__(self):
        super().__init__("qor_buffer")

    def invoke(self, string):
        return header_of(string)


Buffer()


# --- Settings ------------------------------------------------------------------------------------


class MapPrinter(Printer):
    """A map by name. It is walked here: a cross debugger may know nothing of the target's standard
    library, and this walk ends also in memory that is no map."""

    def __init__(self, container):
        tree = container["_M_t"]
        self.entry = tree.type.strip_typedefs().template_argument(1).pointer()
        self.header = tree["_M_impl"]["_M_header"]
        self.count = tree["_M_impl"]["_M_node_count"]

    def display_hint(self):
        return "map"

    def children(self):
        try:
            for i, node in enumerate(self.nodes()):
                entry = (node + 1).cast(self.entry)
                yield f"key {i}", text_of(entry["first"])
                yield f"value {i}", text_of(entry["second"])
        except RuntimeError as error:
            yield "where", "the map ends here"
            yield "why", str(error)

    def nodes(self):
        root = self.header["_M_parent"]
        if root == 0:
            return iter(())
        # A function's result has no address: there, the root is taken at its word.
        return self.subtree(root, self.header.address or root["_M_parent"])

    def subtree(self, node, parent):
        """In order. It comes to an end, for a node has one parent, and is one of its children."""
        left, right = node["_M_left"], node["_M_right"]
        if node["_M_parent"] != parent or left == right != 0:
            raise gdb.MemoryError("Not a node of this map")
        if left != 0:
            yield from self.subtree(left, node)
        yield node
        if right != 0:
            yield from self.subtree(right, node)


class StorePrinter(MapPrinter):
    def text(self):
        count = int(self.count)
        return f"CThreeTupleStore with {count} section{'s' if count != 1 else ''}"


class SectionPrinter(MapPrinter):
    """The name that is written, which need not be the one that the store finds the section by."""

    def __init__(self, value):
        super().__init__(value["values"])
        self.name = text_of(value["name"])

    def text(self):
        return self.name.format_string(max_elements=most_elements())


class ArrayPrinter(Printer):
    def __init__(self, value):
        storage = value["items_"]["_M_impl"]
        self.start, self.finish = storage["_M_start"], storage["_M_finish"]
        if self.start.type.strip_typedefs().target().sizeof == 0:  # of bool, it has no target
            raise gdb.error("The program does not say what the items are")

    def length(self):
        return int(self.finish - self.start)

    def text(self):
        length = self.length()
        return f"CQorArray of length {length}" if length >= 0 else f"<no array: length {length}>"

    def display_hint(self):
        return "array"

    def children(self):
        try:
            length = self.length()
        except RuntimeError:
            return
        for i in range(length):
            yield f"[{i}]", self.start[i]


# --- Numbers and times ---------------------------------------------------------------------------


class BignumPrinter(Printer):
    def __init__(self, value):
        self.digits, self.sign, self.top = value["digits"], value["sign"], value["top"]

    def text(self):
        top, sign = int(self.top), int(self.sign)
        if top < 0:
            return "NaN"
        places = self.digits.type.range()[1] + 1
        digits = [int(self.digits[i]) for i in range(min(top + 1, places))]
        if top == places:
            digits.append(sign)
        if top > places or max(digits) > 9:
            return f"<no number: top = {top}, a digit of {max(digits)}>"
        number = "".join(map(str, reversed(digits)))
        if top == places:
            return f"{number} (its first digit lies in sign)"
        if sign in (1, 255):
            return f"-{number}" if sign == 255 else number
        return f"{number} (sign {sign})"


def date_after(year, seconds):
    """The date so long after the beginning of the year; None outside the years 1 to 9999."""
    try:
        return datetime.datetime(year, 1, 1) + datetime.timedelta(seconds=seconds)
    except OverflowError:
        return None


class TimePrinter(Printer):
    def __init__(self, value):
        self.seconds = value["time_"]["seconds_"]

    def text(self):
        seconds = int(self.seconds)
        date = date_after(1970, seconds)
        return f"{date} UTC ({seconds})" if date else f"{seconds} s after 1970-01-01 UTC"


class SpanPrinter(Printer):
    def __init__(self, value):
        self.seconds = value["seconds_"]

    def text(self):
        total = int(self.seconds)
        minutes, seconds = divmod(abs(total), 60)
        hours, minutes = divmod(minutes, 60)
        days, hours = divmod(hours, 24)
        sign = "-" if total < 0 else ""
        return f"{sign}{days} d {hours:02}:{minutes:02}:{seconds:02} ({total} s)"


class FileTimePrinter(Printer):
    def __init__(self, value):
        self.low, self.high = value["dwLowDateTime"], value["dwHighDateTime"]

    def text(self):
        ticks = int(self.high) << 32 | int(self.low)
        if ticks >> 63:
            ticks -= 1 << 64  # as the library's functions read it
        seconds, fraction = divmod(ticks, 10**7)
        date = date_after(1601, seconds)
        if not date:
            return f"{ticks} x 100 ns after 1601-01-01 UTC"
        return f"{date}.{fraction:07} UTC ({ticks})"


class SystemTimePrinter(Printer):
    DATE = ("wYear", "wMonth", "wDay")
    TIME = ("wHour", "wMinute", "wSecond", "wMilliseconds")

    def __init__(self, value):
        self.fields = [value[name] for name in self.DATE + self.TIME + ("wDayOfWeek",)]

    def text(self):
        return "{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03}, wDayOfWeek {}".format(
            *map(int, self.fields))


# --- All of them ---------------------------------------------------------------------------------

PRINTERS = [
    ("CQorStringT", r"^qor_text::CQorStringT<(char|wchar_t)>$", StringPrinter),
    ("CThreeTupleStore", r"^qor_settings::CThreeTupleStore$", StorePrinter),
    ("TQorIniSection", r"^qor_settings::detail::IniSection$", SectionPrinter),
    ("CQorArray", r"^qor_templ::CQorArray<.*>$", ArrayPrinter),
    ("bignum_t", r"^bignum_t<\d+[uU]?>$", BignumPrinter),
    ("CTime", r"^base::CTime$", TimePrinter),
    ("CTimeSpan", r"^base::CTimeSpan$", SpanPrinter),
    ("FILETIME", r"^_FILETIME$", FileTimePrinter),
    ("SYSTEMTIME", r"^_SYSTEMTIME$", SystemTimePrinter),
]


def maker(printer):
    """Makes the printer of a value; none, so that gdb shows the members, of what has others."""

    def make(value):
        try:
            return printer(value)
        except RuntimeError:
            return None

    return make


def register(objfile):
    """For a library that was loaded; for all programs when objfile is None."""
    collection = gdb.printing.RegexpCollectionPrettyPrinter("qorutils")
    for name, pattern, printer in PRINTERS:
        collection.add_printer(name, pattern, maker(printer))
    gdb.printing.register_pretty_printer(objfile, collection, replace=True)
