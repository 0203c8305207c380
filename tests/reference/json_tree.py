"""JSON documents as trees: objects and arrays are groups, the rest are static nodes."""

import re

import tdjson_writer as writer

SPACE = b" \n\r\t"
NUMBER = re.compile(rb"(-?)(0|[1-9][0-9]*)(?:\.([0-9]+))?(?:[eE]([+-]?[0-9]+))?")
SHORT_ESCAPES = {0x22: b'"', 0x5C: b"\\", 0x2F: b"/", 0x62: b"\b", 0x66: b"\f", 0x6E: b"\n", 0x72: b"\r", 0x74: b"\t"}


def begins_like_json(data):
    """The first byte that is no space, if it is a bracket and not the last byte of the file."""
    at = 0
    while at < len(data) - 1 and data[at] in SPACE:
        at += 1
    return at < len(data) - 1 and data[at] in b"[{"


class Parser:
    """Strict JSON up to the first zero byte; no check of the encoding. Objects become lists of pairs."""

    def __init__(self, data):
        self.data = data.split(b"\0")[0]
        self.at = 0

    def fail(self, why):
        raise writer.Failure(1506, f"{why} at byte {self.at}")

    def peek(self):
        return self.data[self.at:self.at + 1]

    def skip_space(self):
        while self.peek() and self.peek() in SPACE:
            self.at += 1

    def document(self):
        self.skip_space()
        value = self.value()
        self.skip_space()
        if self.peek():
            self.fail("more than one value")
        return value

    def value(self):
        start = self.peek()
        if start == b"{":
            return self.members()
        if start == b"[":
            return self.elements()
        if start == b'"':
            return self.string()
        for word, value in ((b"null", None), (b"true", True), (b"false", False)):
            if self.data.startswith(word, self.at):
                self.at += len(word)
                return value
        return self.number()

    def items(self, closing, item):
        found = []
        self.at += 1
        self.skip_space()
        if self.peek() == closing:
            self.at += 1
            return found
        while True:
            found.append(item())
            self.skip_space()
            if self.peek() == closing:
                self.at += 1
                return found
            if self.peek() != b",":
                self.fail("comma or closing bracket missing")
            self.at += 1
            self.skip_space()

    def elements(self):
        return ("array", self.items(b"]", self.value))

    def member(self):
        if self.peek() != b'"':
            self.fail("name missing")
        key = self.string()
        self.skip_space()
        if self.peek() != b":":
            self.fail("colon missing")
        self.at += 1
        self.skip_space()
        return (key, self.value())

    def members(self):
        return ("object", self.items(b"}", self.member))

    def hex4(self):
        digits = self.data[self.at:self.at + 4]
        if not re.fullmatch(rb"[0-9a-fA-F]{4}", digits):
            self.fail("hexadecimal digits missing")
        self.at += 4
        return int(digits, 16)

    def string(self):
        text = b""
        self.at += 1
        while True:
            byte = self.peek()
            if not byte or byte[0] < 0x20:
                self.fail("string without end")
            self.at += 1
            if byte == b'"':
                return text
            if byte != b"\\":
                text += byte
                continue
            escape = self.peek()
            self.at += 1
            if escape and escape[0] in SHORT_ESCAPES:
                text += SHORT_ESCAPES[escape[0]]
            elif escape == b"u":
                text += self.code_point()
            else:
                self.fail("unknown escape")

    def code_point(self):
        point = self.hex4()
        if 0xD800 <= point < 0xDC00:
            if self.data[self.at:self.at + 2] != b"\\u":
                self.fail("second half of a surrogate pair missing")
            self.at += 2
            low = self.hex4()
            if not 0xDC00 <= low < 0xE000:
                self.fail("second half of a surrogate pair missing")
            point = 0x10000 + (point - 0xD800) * 0x400 + low - 0xDC00
        elif 0xDC00 <= point < 0xE000:
            raise writer.Undecided("second half of a surrogate pair alone")
        elif point == 0:
            raise writer.Undecided("a zero byte in a string")
        return chr(point).encode("utf-8")

    def number(self):
        match = NUMBER.match(self.data, self.at)
        if not match:
            self.fail("no value")
        sign, integer, fraction, exponent = match.groups()
        if fraction is None and (self.data[match.end():match.end() + 1] in (b".", b"e", b"E")):
            self.fail("digit missing")
        if exponent is None and self.data[match.end():match.end() + 1] in (b"e", b"E"):
            self.fail("digit missing")
        self.at = match.end()
        if fraction is None and exponent is None:
            value = int(sign + integer)
            if not -2**63 <= value < 2**64:
                raise writer.Undecided("an integer of more than 64 bits")
            return float(value)  # an integer has no negative zero
        # The parser behind this multiplies or divides the digits by one power of ten. Inside these bounds both
        # are exact, and the one rounding is the same as that of a conversion of the whole text.
        digits = int(integer + (fraction or b""))
        scale = int(exponent or 0) - len(fraction or b"")
        if scale > 308:
            self.fail("number too big")
        if digits >= 2**53 or abs(scale) > 22:
            raise writer.Undecided("a number whose rounding depends on the parser")
        return float(match.group(0))


def add_items(parent, items, names):
    """items: pairs of display name and value. True if anything was added."""
    added = False
    for key, value in items:
        if value is None:
            continue
        if isinstance(value, tuple):
            if not value[1]:
                continue
            group = writer.Group(names(), key)
            if add_items(group.children, named_items(key, value), names):
                parent.append(group)
                added = True
            continue
        name = names()
        if isinstance(value, bool):
            node = writer.static_boolean(name, key, value)
        elif isinstance(value, bytes):
            node = writer.static_string(name, key, value)
        else:
            node = writer.static_number(name, key, value)
        parent.append(node)
        added = True
    return added


def named_items(name, container):
    """Elements of an array are named after it; members of an object have names of their own."""
    kind, items = container
    if kind == "object":
        return items
    return [(name + b" %d" % index, item) for index, item in enumerate(items)]


def convert(data, creator):
    counter = -1

    def new_name():
        nonlocal counter
        counter += 1
        return b"matchName%d" % counter

    document = Parser(data).document()
    children = []
    if not add_items(children, named_items(b"dataOutline", document), new_name):
        return writer.header()  # given up: only what the root wrote when it was made is there
    return writer.whole_file(creator, children)
