"""BVH files: joints as groups with a static offset, their channels as streams of number arrays."""

import math
import re

import tdjson_writer as writer

SPACE = b" \t\n\v\f\r"
ORDERS = ("XYZ", "XZY", "YZX", "YXZ", "ZXY", "ZYX")
TO_RADIANS = 0.017453292519943295
TO_DEGREES = 57.29577951308402  # a little off 180 / pi
# From the order in the file to X, Y, Z, by exchanges.
EXCHANGES = {"XYZ": (), "XZY": ((1, 2),), "YZX": ((1, 2), (0, 1)), "YXZ": ((0, 1),), "ZXY": ((0, 1), (1, 2)),
             "ZYX": ((0, 2),)}
ROUND_RATES = {2400: 24.0, 2500: 25.0, 2997: 29.97, 3000: 30.0, 5000: 50.0, 5994: 59.94, 6000: 60.0}


def first_word(line):
    words = re.split(rb"[ \t\n\v\f\r]+", line.strip(SPACE), maxsplit=1)
    return words[0]


def begins_like_motion(data):
    lines = data.split(b"\n")
    return first_word(lines[0]) == b"HIERARCHY" and len(lines) > 1 and first_word(lines[1]) == b"ROOT"


class Lines:
    """A text file that is read line by line. The last line has no end of its own: reading it meets the end of the
    file, reading on fails."""

    def __init__(self, data):
        self.data = data
        self.at = 0
        self.good = True
        self.failed = False

    def read(self):
        if not self.good or self.at == len(self.data):
            self.good = False
            self.failed = True
            return b""
        end = self.data.find(b"\n", self.at)
        if end < 0:
            line, self.at, self.good = self.data[self.at:], len(self.data), False
        else:
            line, self.at = self.data[self.at:end], end + 1
        return line


class Text:
    """One line, from which words and numbers are taken. After a failure nothing more is."""

    def __init__(self, line):
        self.line = line
        self.failed = False

    def start(self):
        self.line = self.line.lstrip(SPACE)
        if not self.line:
            self.failed = True
        return not self.failed

    def word(self):
        if self.failed or not self.start():
            return b""
        word = first_word(self.line)
        self.line = self.line[len(word):]
        return word

    def integer(self):
        match = None if self.failed or not self.start() else re.match(rb"[+-]?[0-9]+", self.line)
        if not match:
            self.failed = True
            return 0
        self.line = self.line[match.end():]
        return int(match.group())

    def number(self, unread):
        """The next number; `unread` if the line is at its end, 0 and a failure if something else comes."""
        if self.failed or not self.start():
            return unread
        match = re.match(rb"[+-]?[0-9]*(?:\.[0-9]*)?", self.line)
        end = match.end()
        if re.search(rb"[0-9]", match.group()):
            end += re.match(rb"(?:[eE][+-]?[0-9]*)?", self.line[end:]).end()
        if self.line[end:end + 1] in (b".", b"+", b"-"):
            raise writer.Undecided("a number that runs into the next one")
        text, self.line = self.line[:end], self.line[end:]
        if not re.fullmatch(rb"[+-]?(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?", text):
            self.failed = True
            return 0.0
        value = float(text)
        if math.isinf(value):
            self.failed = True
            return math.copysign(writer.LARGEST, value)
        return value


class Joint:
    def __init__(self, name):
        self.name = name
        self.offset = (0.0, 0.0, 0.0)
        self.position_order = None
        self.rotation_order = None
        self.children = []


def order_in(line, kind):
    for order in ORDERS:
        if b" ".join(axis.encode() + kind for axis in order) in line:
            return order
    return None


def read_joint(lines, name, end_site):
    joint = Joint(name)
    if b"{" not in lines.read():
        raise writer.Failure(1509, "opening brace of a joint missing")
    while True:
        line = lines.read()
        text = Text(line)
        word = text.word()
        if word == b"OFFSET":
            joint.offset = tuple(text.number(0.0) for _ in range(3))
            if text.word():
                raise writer.Failure(1509, "a fourth word behind an offset")
        elif word == b"CHANNELS" and not end_site:
            count = text.integer()
            if count not in (3, 6):
                raise writer.Failure(1509, "neither 3 nor 6 channels")
            if count == 6:
                joint.position_order = order_in(line, b"position")
            joint.rotation_order = order_in(line, b"rotation")
        elif word == b"JOINT" and not end_site:
            joint.children.append(read_joint(lines, text.word(), False))
        elif word == b"End":
            if text.word() != b"Site":
                raise writer.Failure(1509, "End without Site")
            joint.children.append(read_joint(lines, name + b"End", True))
        if word == b"}" or not lines.good:
            break
    if lines.failed:
        raise writer.Failure(1509, "end of the file inside a joint")
    return joint


def line_behind(lines, key):
    """What stands on the next line with the key, without the key; None when there is none. A line that ends with
    the file does not count."""
    while True:
        line = lines.read()
        if key in line or not lines.good:
            break
    return Text(line.replace(key, b"", 1)) if lines.good else None


def frame_rate(frame_time):
    hundredths = int(100.0 / frame_time)
    return ROUND_RATES.get(hundredths, float(hundredths // 100))


class Clock:
    def __init__(self, rate, frame_digits):
        self.rate = rate
        self.frame_digits = frame_digits
        self.hours = self.minutes = self.seconds = self.frames = 0
        self.first_frame = {29.97: 2, 59.94: 4}.get(rate, 0)

    def text(self):
        frames = str(self.frames)
        if len(frames) > self.frame_digits or self.hours > 99:
            raise writer.Undecided("a time that no field holds")
        return (f"{self.hours:02}:{self.minutes:02}:{self.seconds:02}:" + frames.rjust(self.frame_digits, "0")).encode()

    def step(self):
        if float(self.frames) < self.rate - 1.0:
            self.frames += 1
        elif self.seconds < 59:
            self.frames = 0
            self.seconds += 1
        elif self.minutes >= 59:
            self.hours += 1
            self.minutes = self.seconds = self.frames = 0
        else:
            self.frames = self.seconds = 0
            self.minutes += 1
            if self.minutes % 10:
                self.frames = self.first_frame


def product(a, b):
    result = [[0.0] * 3 for _ in range(3)]
    for row in range(3):
        for column in range(3):
            for k in range(3):
                result[row][column] += a[row][k] * b[k][column]
    return result


def euler_angles(angles, order):
    """angles: degrees in the order of X, Y, Z."""
    sines = [math.sin(angle * TO_RADIANS) for angle in angles]
    cosines = [math.cos(angle * TO_RADIANS) for angle in angles]
    about = {
        "X": [[1.0, 0.0, 0.0], [0.0, cosines[0], -sines[0]], [0.0, sines[0], cosines[0]]],
        "Y": [[cosines[1], 0.0, sines[1]], [0.0, 1.0, 0.0], [-sines[1], 0.0, cosines[1]]],
        "Z": [[cosines[2], -sines[2], 0.0], [sines[2], cosines[2], 0.0], [0.0, 0.0, 1.0]],
    }
    turned = product(product(about[order[0]], about[order[1]]), about[order[2]])
    r = [[turned[column][row] for column in range(3)] for row in range(3)]
    return (-math.atan2(r[2][1], r[2][2]) * TO_DEGREES,
            math.atan2(-r[2][0], math.sqrt(r[2][1] * r[2][1] + r[2][2] * r[2][2])) * TO_DEGREES,
            math.atan2(r[1][0], r[0][0]) * TO_DEGREES)


def rotation(values, order):
    angles = list(values)
    for a, b in EXCHANGES[order]:
        angles[a], angles[b] = angles[b], angles[a]
    return euler_angles(angles, order)


def position(values):
    return (values[0], -values[1], -values[2])


def names_of(order, what):
    return [axis.encode() + b"_" + what for axis in order]


def group_of(joint, streams):
    """streams: gets the streams of the joint and of those below it, with their rotation orders."""
    def named(suffix):
        return b"mn" + joint.name + suffix, joint.name + suffix

    group = writer.Group(*named(b""))
    group.children.append(writer.static_array(*named(b"OFFSET"), joint.offset, names_of("XYZ", b"OFFSET"), True))
    if joint.position_order is not None:
        streams.append((writer.DynamicArray(*named(b"POSITION"), b"%d" % len(streams),
                                            names_of(joint.position_order, b"POSITION"), True), None))
        group.children.append(streams[-1][0])
    if joint.rotation_order is not None:
        streams.append((writer.DynamicArray(*named(b"ROTATION"), b"%d" % len(streams),
                                            names_of("XYZ", b"ROTATION"), False), joint.rotation_order))
        group.children.append(streams[-1][0])
    group.children += [group_of(child, streams) for child in joint.children]
    return group


def convert(data, creator):
    lines = Lines(data)
    if first_word(lines.read()) != b"HIERARCHY":
        raise writer.Failure(1001, "no HIERARCHY")
    root_line = Text(lines.read())
    if root_line.word() != b"ROOT":
        raise writer.Failure(1001, "no ROOT")
    skeleton = read_joint(lines, root_line.word(), False)
    line_behind(lines, b"Frames:")
    text = line_behind(lines, b"Frame Time:")
    frame_time = text.number(0.0) if text else 0.0
    if not frame_time > 0.001:
        raise writer.Failure(1508, "no frame time")

    rate = frame_rate(frame_time)
    time_info = {29.97: (30000, 1001, True), 59.94: (60000, 1001, True)}.get(rate, (int(rate), 1, False))
    streams = []
    group = group_of(skeleton, streams)
    clock = Clock(rate, 3 if time_info[0] // time_info[1] > 99 else 2)
    while lines.good:
        line = Text(lines.read())
        values = []
        while True:
            value = line.number(None)
            if value is None or line.failed:
                break
            values.append(value)
        if not values:
            continue
        if len(values) != 3 * len(streams):
            raise writer.Failure(1509, "wrong count of numbers on a motion line")
        for index, (stream, order) in enumerate(streams):
            triple = values[3 * index:3 * index + 3]
            stream.add(clock.text(), rotation(triple, order) if order else position(triple))
        clock.step()
    return writer.whole_file(creator, [group], time_info, [stream for stream, _ in streams])
