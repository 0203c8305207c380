"""Tables as trees: a group for each column, a static node for each cell."""

import re

import tdjson_writer as writer

MARKS = ((b"\xEF\xBB\xBF", "utf-8"), (b"\xFE\xFF", "big"), (b"\xFF\xFE", "little"))
QUOTE, LINE_FEED, CARRIAGE_RETURN = 0x22, 0x0A, 0x0D
NAME_LIMIT = 1023


class Unreadable(Exception):
    """The table cannot be read: the converter gives up without a word."""


def encoding_of(data):
    """The first mark that matches; bytes of a mark that matched only in part stay consumed."""
    at = 0
    for mark, name in MARKS:
        matched = True
        for byte in mark:
            if at < len(data) and data[at] == byte:
                at += 1
            else:
                matched = False
                break
        if matched:
            return name
    return ""


class Units:
    """Bytes or 16-bit units with a reading position."""

    def __init__(self, units):
        self.units = units
        self.at = 0

    def more(self):
        return self.at < len(self.units)

    def peek(self):
        return self.units[self.at] if self.more() else None

    def get(self):
        unit = self.units[self.at]
        self.at += 1
        return unit


def quotation(stream):
    """From behind an opening quote to the closing one, which stays in the text, as do doubled ones."""
    text = []
    while stream.more():
        text.append(stream.get())
        if text[-1] == QUOTE:
            if stream.peek() != QUOTE:
                break
            text.append(stream.get())
    return text


def line_units(stream, dropped=()):
    line = []
    while stream.more():
        unit = stream.get()
        if unit in dropped:
            continue
        if unit == QUOTE:
            line.append(unit)
            line += quotation(stream)
        elif unit == LINE_FEED:
            if stream.peek() == CARRIAGE_RETURN:
                stream.get()
            break
        elif unit == CARRIAGE_RETURN:
            break
        else:
            line.append(unit)
    return line


def lines_of(data):
    """All lines as UTF-8; in files without UTF-16 the bytes as they stand."""
    encoding = encoding_of(data)
    if encoding in ("", "utf-8"):
        stream = Units(data[3:] if encoding else data)
        first = True
        while first or stream.more():
            first = False
            yield bytes(line_units(stream))
        return
    if len(data) % 2:
        raise writer.Undecided("half a unit of UTF-16 at the end")
    units = [int.from_bytes(data[i:i + 2], encoding) for i in range(0, len(data), 2)]
    for i, unit in enumerate(units):
        if encoding == "little" and ((unit == 0x2200 and i and units[i - 1] == QUOTE)
                                     or (unit == 0x0D00 and i and units[i - 1] == LINE_FEED)):
            raise writer.Undecided("a unit that is a quote or a carriage return with its bytes exchanged")
        if 0xD800 <= unit < 0xDC00 and i + 1 < len(units) and 0xDC00 <= units[i + 1] < 0xE000:
            raise writer.Undecided("UTF-16 beyond the basic plane")
    if any(0xD800 <= unit < 0xE000 for unit in units):
        raise Unreadable("half a surrogate pair")
    stream = Units(units)
    first = True
    while first or stream.more():
        first = False
        yield "".join(map(chr, line_units(stream, (0xFFFE, 0xFEFF)))).encode("utf-8")


def split(line, delimiter):
    fields = []
    i = 0
    last = False

    def next_delimiter(start):
        found = line.find(delimiter, start)
        return (len(line), True) if found < 0 else (found, False)

    while i < len(line) and not last:
        token = b""
        if line[i] == QUOTE:
            j = i + 1
            while j < len(line):
                if line[j] == QUOTE:
                    j += 1
                    if j < len(line) and line[j] != QUOTE:
                        end, last = next_delimiter(j)
                        token += line[j:end]
                        j = end
                        break
                if j != len(line):
                    token += line[j:j + 1]
                j += 1
            i = j + 1
        else:
            end, last = next_delimiter(i)
            token = line[i:end]
            i = end + 1
        fields.append(token)
    return fields


DECIMAL = re.compile(rb"[ \t\n\v\f\r]*([+-]?(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?)")
HEXADECIMAL = re.compile(rb"[ \t\n\v\f\r]*([+-]?0[xX](?:[0-9a-fA-F]+\.?[0-9a-fA-F]*|\.[0-9a-fA-F]+)(?:[pP][+-]?[0-9]+)?)")
WORD = re.compile(rb"[ \t\n\v\f\r]*([+-]?(?:infinity|inf|nan(?:\([0-9a-zA-Z_]*\))?))", re.IGNORECASE)


def number_of(cell):
    """The cell as a number, or None if it is none as a whole or out of range."""
    for form in (HEXADECIMAL, WORD, DECIMAL):
        match = form.fullmatch(cell)
        if not match:
            continue
        text = match.group(1).decode()
        if form is WORD:
            return float(text.split("(")[0])
        try:
            value = float.fromhex(text) if form is HEXADECIMAL else float(text)
        except OverflowError:
            return None
        if value in (float("inf"), float("-inf")):
            return None
        if abs(value) < 2.2250738585072014e-308:
            if value and form is DECIMAL:
                raise writer.Undecided("a number that is too small to be exact")
            if not value and re.search(r"[1-9]", re.split("[eE]", text)[0]):
                return None
        return value
    return None


def convert(data, delimiter, creator):
    lines = lines_of(data)
    headers = split(next(lines), delimiter)
    if b"" in headers:
        headers = headers[:headers.index(b"")]
    rows = []
    numeric = [True] * len(headers)
    for line in lines:
        if not line:
            continue
        fields = split(line, delimiter)
        fields += [b""] * (len(headers) - len(fields))
        for column in range(len(headers)):
            if numeric[column] and fields[column] and number_of(fields[column]) is None:
                numeric[column] = False
        rows.append(fields)

    counter = 0

    def new_name():
        nonlocal counter
        counter += 1
        return b"data%d" % (counter - 1)

    columns = []
    for column, header in enumerate(headers):
        if b"\0" in header:
            raise writer.Undecided("a header with a zero byte")
        group = writer.Group(new_name(), header)
        for index, row in enumerate(rows):
            display_name = (header + b" %d" % index)[:NAME_LIMIT]
            cell = row[column]
            if numeric[column]:
                group.children.append(writer.static_number(new_name(), display_name, number_of(cell) if cell else 0.0))
            else:
                if b"\0" in cell:
                    raise writer.Undecided("a cell with a zero byte")
                group.children.append(writer.static_string(new_name(), display_name, cell))
        columns.append(group)
    return writer.whole_file(creator, columns)
