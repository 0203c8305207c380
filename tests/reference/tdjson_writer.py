"""The bytes of a version 2 .tdjson file, and the rules by which digits, signs and ranges follow from values.

All text is bytes: what is no UTF-8 passes through.
"""

import math

LARGEST = 1.7976931348623157e308  # a range that no value has entered yet: minimum LARGEST, maximum -LARGEST

ESCAPES = {8: b"\\b", 9: b"\\t", 10: b"\\n", 12: b"\\f", 13: b"\\r", 34: b'\\"', 92: b"\\\\"}


class Failure(Exception):
    """An error as the host sees it, by its code."""

    def __init__(self, code, why):
        super().__init__(f"code {code}: {why}")
        self.code = code


class Undecided(Exception):
    """An input about which the rules leave more than one answer."""


def escaped(text):
    return b"".join(ESCAPES.get(byte, bytes([byte])) for byte in text)


def number_text(value):
    """16 significant digits, without the zeros behind the point. The last step looks at the text alone, so
    1.5e+20 loses the zero of its exponent."""
    text = format(float(value), ".16g")
    point = text.find(".")
    if point >= 0:
        while len(text) > point and text[-1] in "0.":
            text = text[:-1]
    return text.encode()


def is_negative(value):
    """True for -0.0 as well: what counts is the minus sign of the printed value."""
    return math.copysign(1.0, value) < 0


def digit_counts(value):
    text = number_text(value)
    if is_negative(value):
        text = text[1:]
    point = text.find(b".")
    return (len(text), 0) if point < 0 else (point, len(text) - point - 1)


class Pattern:
    def __init__(self):
        self.integer = 0
        self.decimal = 0
        self.signed = False

    def add(self, value):
        integer, decimal = digit_counts(value)
        self.integer = max(self.integer, integer)
        self.decimal = max(self.decimal, decimal)
        self.signed = self.signed or is_negative(value)

    def json(self):
        return b'"pattern":{' + b",".join([boolean(b"isSigned", self.signed), number(b"digitsDecimal", self.decimal),
                                          number(b"digitsInteger", self.integer)]) + b"}"

    def padded(self, value):
        text = number_text(value)
        sign = 1 if text.startswith(b"-") else 0
        point = text.find(b".")
        if point < 0:
            integer, decimal = len(text) - sign, 0
            if self.decimal:
                text += b"."
        else:
            decimal = len(text) - point - 1
            integer = len(text) - decimal - sign - 1
        text = text[:sign] + b"0" * (self.integer - integer) + text[sign:] + b"0" * (self.decimal - decimal)
        return b"+" + text if self.signed and not sign else text


class Range:
    def __init__(self):
        self.min = LARGEST
        self.max = -LARGEST

    def add(self, value):
        if value < self.min:
            self.min = value
        if value > self.max:
            self.max = value

    def json(self):
        bounds = b"{" + number(b"min", self.min) + b"," + number(b"max", self.max) + b"}"
        return b'{"occurring":' + bounds + b',"legal":' + bounds + b"}"


def quoted(text):
    return b'"' + text + b'"'


def string(key, text):
    return quoted(key) + b":" + quoted(text)


def number(key, value):
    return quoted(key) + b":" + number_text(value)


def boolean(key, value):
    return quoted(key) + (b":true" if value else b":false")


def array_properties(pattern, ranges, names, is_point):
    return (b'"numberArrayProperties":{' + pattern.json() + b',"arrayRanges":{"ranges":['
            + b",".join(each.json() for each in ranges) + b"]}," + number(b"arraySize", len(ranges))
            + b',"arrayDisplayNames":[' + b",".join(quoted(escaped(name)) for name in names) + b"]"
            + (b',"isPoint":true' if is_point else b"") + b"}")


class Group:
    def __init__(self, match_name, display_name):
        self.match_name = match_name
        self.display_name = escaped(display_name)
        self.children = []

    def json(self):
        """Empty if nothing below it is written."""
        children = joined(self.children)
        if children is None:
            return b""
        return (b"{" + string(b"objectType", b"dataGroup") + b"," + string(b"matchName", self.match_name) + b","
                + string(b"displayName", self.display_name) + b',"children":[' + children + b"]}")


class Static:
    """A value that does not change: `kind` and what follows it inside "dataType", and the value's own text."""

    def __init__(self, match_name, display_name, kind, properties, value):
        self.match_name = match_name
        self.display_name = escaped(display_name)
        self.kind = kind
        self.properties = properties
        self.value = value

    def json(self):
        return (b"{" + string(b"objectType", b"dataStatic") + b"," + string(b"matchName", self.match_name) + b","
                + string(b"displayName", self.display_name) + b',"dataType":{' + string(b"type", self.kind)
                + (b"," + self.properties if self.properties else b"") + b'},"value":' + self.value + b"}")


def static_number(match_name, display_name, value):
    pattern, occurring = Pattern(), Range()
    pattern.add(value)
    occurring.add(value)
    properties = b'"numberStringProperties":{' + pattern.json() + b',"range":' + occurring.json() + b"}"
    return Static(match_name, display_name, b"number", properties, number_text(value))


def static_string(match_name, display_name, value):
    value = escaped(value)
    properties = (b'"paddedStringProperties":{' + number(b"maxDigitsInStrLength", len(str(len(value)))) + b","
                  + number(b"maxLen", len(value)) + b"," + boolean(b"eventMarkerB", False) + b"}")
    return Static(match_name, display_name, b"string", properties, quoted(value))


def static_boolean(match_name, display_name, value):
    return Static(match_name, display_name, b"boolean", b"", b"true" if value else b"false")


def static_array(match_name, display_name, values, names, is_point):
    pattern, ranges = Pattern(), []
    for value in values:
        pattern.add(value)
        ranges.append(Range())
        ranges[-1].add(value)
    return Static(match_name, display_name, b"numberArray", array_properties(pattern, ranges, names, is_point),
                  b"[" + b",".join(number_text(value) for value in values) + b"]")


class DynamicArray:
    """A stream of number arrays; always linear, without an expected frequency."""

    def __init__(self, match_name, display_name, set_id, names, is_point):
        if not match_name or match_name[:1].isdigit() or not match_name.isalnum():
            raise Failure(2022, "match name of a stream")
        self.match_name = match_name
        self.display_name = escaped(display_name)
        self.set_id = set_id
        self.names = names
        self.is_point = is_point
        self.pattern = Pattern()
        self.ranges = [Range() for _ in names]
        self.samples = []

    def add(self, time, values):
        for value, occurring in zip(values, self.ranges):
            self.pattern.add(value)
            occurring.add(value)
        self.samples.append((time, list(values)))

    def json(self):
        if not self.samples:
            return b""
        return (b"{" + b",".join([
            string(b"objectType", b"dataDynamic"), string(b"matchName", self.match_name),
            string(b"displayName", self.display_name), string(b"sampleSetID", self.set_id),
            string(b"interpolation", b"linear"), boolean(b"hasExpectedFrequencyB", False),
            number(b"sampleCount", len(self.samples)),
            b'"dataType":{' + string(b"type", b"numberStringArray") + b","
            + array_properties(self.pattern, self.ranges, self.names, self.is_point) + b"}"]) + b"}")

    def set_json(self):
        samples = (b"{" + string(b"time", time) + b',"value":['
                   + b",".join(quoted(self.pattern.padded(value)) for value in values) + b"]}"
                   for time, values in self.samples)
        return b"{" + string(b"sampleSetID", self.set_id) + b',"samples":[' + b",".join(samples) + b"]}"


def joined(children):
    """The texts of a list of children with their commas, or None if none of them is written.

    A comma goes by the position of the child: when the first one is not written, that of the second stays.
    """
    parts = []
    for position, child in enumerate(children):
        one = child.json()
        if one:
            parts.append((b"," if position else b"") + one)
    return b"".join(parts) or None


VERSION = b'{"version":"tdjson2.0.0"'


def header(time_info=None):
    """What stands in the file from the moment the root is made."""
    return VERSION + b"," + boolean(b"dynamicSamplesPresentB", time_info is not None) + (
        b',"dynamicDataInfo":{' + boolean(b"useTimecodeB", True) + b',"timecodeInfo":{"frameRate":{'
        + number(b"value", time_info[0]) + b"," + number(b"scale", time_info[1]) + b"},"
        + boolean(b"dropFrame", time_info[2]) + b"}}" if time_info else b"")


def whole_file(creator, children, time_info=None, streams=()):
    """time_info: rate as numerator, denominator and drop flag, or None for a file without samples."""
    if not children:
        raise Failure(2021, "nothing below the root")
    outline = joined(children)
    if outline is None:
        raise Failure(2000, "nothing below the root is written")
    sets = [stream.set_json() for stream in streams if stream.samples]
    if sets:
        text = header(time_info) + b',"dataDynamicSamples":[' + b",".join(sets) + b"]"
    else:
        text = header()
    return text + b"," + string(b"creator", escaped(creator)) + b',"dataOutline":[' + outline + b"]}"
