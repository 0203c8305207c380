"""What the reader refuses. A file of the format is read for this alone: the result is an error or nothing.

Two things of the reader's scanner matter most: it does not know empty objects and arrays, and it loses bytes behind
a negative exponent, so that most outlines with a number like 1e-05 are refused.
"""

import tdjson_writer as writer

SPACE = b" \n\r\t"
DEEPEST = 100
SYNTAX = 32


class Scanner:
    def __init__(self, data):
        self.data = data
        self.at = 0

    def fail(self, why):
        raise writer.Failure(SYNTAX, f"{why} at byte {self.at}")

    def peek(self):
        return self.data[self.at] if self.at < len(self.data) else -1

    def is_digit(self, low=0x30):
        return low <= self.peek() <= 0x39

    def skip_space(self):
        while self.at < len(self.data) and self.data[self.at] in SPACE:
            self.at += 1

    def colon(self):
        self.skip_space()
        if self.peek() != ord(":"):
            self.fail("colon missing")
        self.at += 1
        self.skip_space()

    def string(self):
        if self.peek() != ord('"'):
            self.fail("quote missing")
        self.at += 1
        text = bytearray()
        while self.at < len(self.data):
            byte = self.data[self.at]
            if byte == ord("\\"):
                self.at += 1
                known = b'"\\bfnrt'.find(bytes([self.peek()])) if self.at < len(self.data) else -1
                if known >= 0:
                    text.append(b'"\\\b\f\n\r\t'[known])
                    self.at += 1
                # What follows another backslash is read as a plain byte.
                continue
            if byte < 0x20:
                self.fail("control character in a string")
            if byte == ord('"'):
                self.at += 1
                return bytes(text)
            text.append(byte)
            self.at += 1
        self.fail("string without end")

    def boolean(self):
        for word, value in ((b"false", False), (b"true", True)):
            if self.data.startswith(word, self.at) and self.at + len(word) < len(self.data):
                self.at += len(word)
                return value
        self.fail("no boolean")

    def number(self):
        start = self.at
        if self.peek() == ord("-"):
            self.at += 1
        if self.peek() == ord("0"):
            self.at += 1
        elif self.is_digit():
            while self.is_digit():
                self.at += 1
        else:
            self.fail("no number")
        fraction = 0
        if self.peek() == ord("."):
            self.at += 1
            if not self.is_digit():
                self.fail("fraction missing")
            while self.is_digit():
                self.at += 1
                fraction += 1
        mantissa = float(self.data[start:self.at])
        if self.peek() not in (ord("e"), ord("E")):
            return mantissa
        self.at += 1
        negative = self.peek() == ord("-")
        self.at += 1
        if not self.is_digit():
            self.fail("exponent missing")
        exponent = self.peek() - 0x30
        self.at += 1
        if negative:
            while self.is_digit(0x31):
                self.at += 2
        else:
            while self.is_digit():
                exponent = exponent * 10 + self.peek() - 0x30
                if exponent > 308 + fraction:
                    self.fail("number too big")
                self.at += 1
        return mantissa  # the outline's counts have no exponents, and of the other numbers none is looked at

    def value(self, depth):
        byte = self.peek()
        if byte == ord('"'):
            return self.string()
        if byte == ord("["):
            return self.array(depth + 1)
        if byte in (ord("t"), ord("f")):
            return self.boolean()
        if byte == ord("{"):
            return self.object(depth + 1)
        return self.number()

    def items(self, depth, opening, closing, item):
        if depth > DEEPEST:
            self.fail("nested too deep")
        if self.peek() != ord(opening):
            self.fail(f"no {opening}")
        self.at += 1
        while True:
            self.skip_space()
            item(depth)
            self.skip_space()
            if self.peek() == ord(closing):
                self.at += 1
                return
            if self.peek() != ord(","):
                self.fail("comma or closing bracket missing")
            self.at += 1

    def object(self, depth):
        members = []

        def member(depth):
            key = self.string()
            self.colon()
            members.append((key, self.value(depth)))

        self.items(depth, "{", "}", member)
        return dict(reversed(members))  # of two members with one key the first is found

    def array(self, depth):
        elements = []
        self.items(depth, "[", "]", lambda depth: elements.append(self.value(depth)))
        return elements


def need(holder, key, kind):
    if not isinstance(holder, dict):
        raise writer.Failure(43, f"no object around {key}")
    if key not in holder:
        raise writer.Failure(28, f"{key} missing")
    if not isinstance(holder[key], kind) or (kind is float and isinstance(holder[key], bool)):
        raise writer.Failure(43, f"type of {key}")
    return holder[key]


def is_version_2(data):
    """By the first key alone; whatever begins with a brace has to have one."""
    if not data:
        raise writer.Failure(54, "empty file")
    scanner = Scanner(data)
    scanner.skip_space()
    if scanner.peek() != ord("{"):
        return False
    scanner.at += 1
    scanner.skip_space()
    key = scanner.string()
    scanner.colon()
    return key == b"version" and scanner.string().lower() == b"tdjson2.0.0"


def check_range(holder):
    for key in (b"occurring", b"legal"):
        bounds = need(holder, key, dict)
        need(bounds, b"min", float)
        need(bounds, b"max", float)


def check_pattern(holder):
    pattern = need(holder, b"pattern", dict)
    need(pattern, b"isSigned", bool)
    need(pattern, b"digitsInteger", float)
    need(pattern, b"digitsDecimal", float)


def check_nodes(nodes, names, streams):
    for node in nodes:
        kind = need(node, b"objectType", bytes)
        if kind not in (b"dataStatic", b"dataDynamic", b"dataGroup"):
            raise writer.Failure(44, "objectType")
        need(node, b"displayName", bytes)
        name = need(node, b"matchName", bytes)
        if name[:1].isdigit() or (name and not name.isalnum()):
            raise writer.Failure(42, "match name")
        if name in names:
            raise writer.Failure(40, f"match name {name} twice")
        names.add(name)
        if kind == b"dataGroup":
            check_nodes(need(node, b"children", list), names, streams)
            continue
        data_type = need(node, b"dataType", dict)
        value_type = need(data_type, b"type", bytes)
        if value_type in (b"number", b"numberString"):
            properties = need(data_type, b"numberStringProperties", dict)
            check_pattern(properties)
            check_range(need(properties, b"range", dict))
        elif value_type in (b"string", b"paddedString"):
            properties = need(data_type, b"paddedStringProperties", dict)
            need(properties, b"maxLen", float)
            need(properties, b"maxDigitsInStrLength", float)
            need(properties, b"eventMarkerB", bool)
        elif value_type in (b"numberArray", b"numberStringArray"):
            properties = need(data_type, b"numberArrayProperties", dict)
            check_pattern(properties)
            need(properties, b"arraySize", float)
            if not all(isinstance(each, bytes) for each in need(properties, b"arrayDisplayNames", list)):
                raise writer.Failure(43, "arrayDisplayNames")
            for each in need(need(properties, b"arrayRanges", dict), b"ranges", list):
                check_range(each)
        if kind == b"dataDynamic":
            streams[need(node, b"sampleSetID", bytes)] = node
            need(node, b"sampleCount", float)
        else:
            need(node, b"value", {b"number": float, b"string": bytes, b"numberArray": list, b"boolean": bool}[value_type])


def sample_section(scanner):
    """The bytes between the brackets. Brackets count wherever they stand."""
    depth, at = 1, scanner.at + 1
    while depth:
        opening, closing = (scanner.data.find(bracket, at) for bracket in (b"[", b"]"))
        if closing < 0:
            scanner.fail("end of the samples missing")
        if 0 <= opening < closing:
            depth, at = depth + 1, opening + 1
        else:
            depth, at = depth - 1, closing + 1
    section = scanner.data[scanner.at + 1:at - 1]
    scanner.at = at
    return section


def check_samples(section, streams, time_length):
    scanner = Scanner(section)
    while scanner.at < len(section):
        scanner.at += 1
        scanner.string()
        scanner.colon()
        set_id = scanner.string()
        if set_id not in streams:
            raise writer.Failure(49, "samples without a node")
        scanner.at += len(b',"samples":[')
        node = streams[set_id]
        properties = node[b"dataType"][b"numberArrayProperties"]
        pattern = properties[b"pattern"]
        decimal = pattern[b"digitsDecimal"]
        width = 2 + pattern[b"isSigned"] + pattern[b"digitsInteger"] + decimal + (1 if decimal else 0)
        size = properties[b"arraySize"]
        sample = 20 + time_length + width * size + size + 1
        count = node[b"sampleCount"]
        scanner.at += int(sample * count + count - 1)
        if section[scanner.at:scanner.at + 2] != b"]}":
            raise writer.Failure(39, "outline and samples disagree")
        scanner.at += 3


def check(data):
    """Reads a version 2 file as it stands after a conversion, or one that was never converted."""
    scanner = Scanner(data)
    scanner.skip_space()
    scanner.at += 1
    found, streams, section = {}, {}, None
    while True:
        scanner.skip_space()
        key = scanner.string()
        scanner.colon()
        if key in (b"version", b"creator"):
            found[key] = scanner.string()
        elif key == b"dynamicSamplesPresentB":
            found[key] = scanner.boolean()
        elif key == b"dynamicDataInfo":
            found[key] = scanner.object(0)
        elif key == b"dataOutline":
            found[key] = scanner.array(0)
            check_nodes(found[key], set(), streams)
        elif key == b"dataDynamicSamples":
            section = sample_section(scanner)
        else:
            scanner.fail(f"unknown key {key}")
        scanner.skip_space()
        if scanner.peek() == ord("}"):
            break
        if scanner.peek() != ord(","):
            scanner.fail("comma or closing bracket missing")
        scanner.at += 1
    if scanner.data[scanner.at + 1:].strip(SPACE):
        scanner.fail("something behind the last brace")
    if b"dataOutline" not in found or b"dynamicSamplesPresentB" not in found:
        scanner.fail("a key is missing")
    if section is not None:
        rate = found[b"dynamicDataInfo"][b"timecodeInfo"][b"frameRate"]
        check_samples(section, streams, 12 if rate[b"value"] // rate[b"scale"] > 99 else 11)
