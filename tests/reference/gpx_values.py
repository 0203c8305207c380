"""Compares what the program makes of GPX files with the files themselves, value by value.

    gpx_values.py SENMARK MODULES FILE_OR_FOLDER...

The files are read here by xml.etree, and the tree that docs/gpx.md promises is built from them: every node in its order,
every number, text, sample and time. The converted file is read by json. A folder that is not there is left out.
"""

import datetime
import json
import os
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from fractions import Fraction

NUMBER = re.compile(r"[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?\Z")
TITLES = {"name": "Name", "cmt": "Comment", "desc": "Description", "src": "Source", "link": "Link",
          "number": "Number", "type": "Type", "author": "Author", "email": "Email", "url": "URL",
          "urlname": "URL name", "time": "Time", "keywords": "Keywords", "copyright": "Copyright"}
POINT_TEXTS = {"name": "Name", "cmt": "Comment", "desc": "Description", "src": "Source", "sym": "Symbol",
               "type": "Type", "fix": "Fix"}
POINT_NUMBERS = {"speed": "Speed [m/s]", "course": "Course [deg]", "magvar": "Magnetic variation [deg]",
                 "geoidheight": "Geoid height [m]", "sat": "Satellites", "hdop": "HDOP", "vdop": "VDOP",
                 "pdop": "PDOP", "ageofdgpsdata": "DGPS age [s]", "dgpsid": "DGPS station",
                 "hr": "Heart rate [bpm]", "heartrate": "Heart rate [bpm]", "cad": "Cadence [rpm]",
                 "cadence": "Cadence [rpm]", "power": "Power [W]", "powerinwatts": "Power [W]", "watts": "Power [W]",
                 "atemp": "Temperature [\u00b0C]", "temp": "Temperature [\u00b0C]",
                 "temperature": "Temperature [\u00b0C]", "wtemp": "Water temperature [\u00b0C]",
                 "depth": "Depth [m]", "bearing": "Bearing [deg]", "distance": "Distance [m]",
                 "hacc": "Horizontal accuracy [m]", "vacc": "Vertical accuracy [m]"}
HELD = {"Course [deg]", "Satellites", "DGPS station", "Bearing [deg]"}
EVENTS = {"Name", "Comment", "Description", "Symbol", "Type"}
POSITION = ["Latitude [deg]", "Longitude [deg]", "Elevation [m]"]
EPOCH = datetime.datetime(1970, 1, 1)


def local(element):
    return element.tag.rsplit("}", 1)[-1]


def trimmed(text):
    return (text or "").strip(" \t\r\n")


def number(text):
    """The exact number of a text, or None."""
    text = trimmed(text)
    return Fraction(text.lstrip("+")) if NUMBER.match(text) else None


def moment(text):
    """Seconds since 1970 of an ISO 8601 time, or None for an empty text."""
    text = trimmed(text)
    if not text:
        return None
    match = re.match(r"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d)(?:\.(\d+))?(?:Z|([+-])(\d\d):(\d\d))?\Z", text)
    date = datetime.datetime.strptime(match.group(1), "%Y-%m-%dT%H:%M:%S")
    seconds = Fraction(int((date - EPOCH).total_seconds()))
    if match.group(2):
        seconds += Fraction(int(match.group(2)), 10 ** len(match.group(2)))
    if match.group(3):
        offset = int(match.group(4)) * 3600 + int(match.group(5)) * 60
        seconds -= offset if match.group(3) == "+" else -offset
    return seconds


class Point:
    def __init__(self, element):
        self.place = [number(element.get("lat")), number(element.get("lon"))]
        self.elevation = None
        self.time = None
        self.time_text = ""
        self.texts = {}
        self.numbers = {}
        for child in element:
            name = local(child)
            if name == "link":
                continue
            if len(child) == 0 and name == "time":
                self.time = moment(child.text) if self.time is None else self.time
                self.time_text = self.time_text or trimmed(child.text)
            elif len(child) == 0 and name == "ele":
                self.elevation = number(child.text) if self.elevation is None else self.elevation
            elif len(child) == 0 and name in POINT_TEXTS:
                if trimmed(child.text):
                    self.texts.setdefault(POINT_TEXTS[name], cut(trimmed(child.text)))
            else:
                self.collect(child)

    def collect(self, element):
        for child in element:
            self.collect(child)
        value = number(element.text) if len(element) == 0 else None
        if value is not None and abs(value) < 10 ** 16:
            name = local(element)
            self.numbers.setdefault(POINT_NUMBERS.get(name.lower(), name), value)

    def static_position(self, name):
        with_elevation = self.elevation is not None
        values = self.place + ([self.elevation] if with_elevation else [])
        return ("numbers", name, values, POSITION[:len(values)])

    def static_content(self):
        nodes = [self.static_position("Position")]
        if self.time_text:
            nodes.append(("text", "Time", self.time_text))
        nodes += [("text", name, text) for name, text in self.texts.items()]
        nodes += [("number", name, value) for name, value in self.numbers.items()]
        return nodes

    def static_node(self, index):
        name = "Point %d" % index
        if not self.time_text and not self.texts and not self.numbers:
            return self.static_position(name)
        return ("group", name, self.static_content())


def cut(text, longest=255):
    return text.encode()[:longest].decode(errors="ignore")


def have_elevations(points):
    return all(point.elevation is not None for _, point in points)


def streams(points, with_elevations, always_named):
    """The streams of points with times, in the order in which they are met; points: pairs of number and point."""
    found = {}

    def add(kind, name, time, value):
        found.setdefault((kind, name), []).append((time, value))

    for index, point in points:
        if always_named:
            add("texts", "Name", point.time, point.texts.get("Name", "Waypoint %d" % index))
        position = point.place + ([point.elevation] if with_elevations else [])
        add("arrays", "Position", point.time, position)
        if not with_elevations and point.elevation is not None:
            add("numbers", "Elevation [m]", point.time, point.elevation)
        for name, text in point.texts.items():
            if not (always_named and name == "Name"):
                add("texts", name, point.time, text)
        for name, value in point.numbers.items():
            add("numbers", name, point.time, value)
    return [("stream", kind, name, sorted(samples, key=lambda sample: sample[0]))
            for (kind, name), samples in found.items()]


def properties(element, parent=""):
    """What stands in the metadata, a track or a route itself, as texts."""
    name = local(element)
    title = parent + " " + name if parent else TITLES.get(name, name)
    if name == "extensions":
        title = parent
    nodes = []
    attribute = {"link": trimmed(element.get("href")), "copyright": trimmed(element.get("author"))}.get(name, "")
    if name == "email" and element.get("id") is not None:
        attribute = trimmed(element.get("id")) + "@" + trimmed(element.get("domain"))
    if attribute:
        nodes.append(("text", title + " author" if name == "copyright" else title, attribute))
    for child in element:
        nodes += properties(child, title)
    if len(element) == 0 and trimmed(element.text):
        nodes.append(("text", title, trimmed(element.text)))
    return nodes


def bounds(element):
    names = [("minlat", "Minimum latitude"), ("minlon", "Minimum longitude"),
             ("maxlat", "Maximum latitude"), ("maxlon", "Maximum longitude")]
    return [("group", "Bounds", [("number", name + " [deg]", number(element.get(key))) for key, name in names])]


class Expected:
    def __init__(self, path):
        root = ElementTree.parse(path).getroot()
        self.creator = root.get("creator", "")
        self.times = []
        metadata = [("text", "GPX version", root.get("version"))] if root.get("version") else []
        waypoints = []
        parts = []
        tracks = routes = 0
        for child in root:
            name = local(child)
            if name == "wpt":
                waypoints.append(Point(child))
                if len(waypoints) == 1:
                    parts.append(None)
            elif name == "rte":
                routes += 1
                parts.append(self.part(child, "Route %d" % routes))
            elif name == "trk":
                tracks += 1
                parts.append(self.part(child, "Track %d" % tracks))
            elif name == "bounds":
                metadata += bounds(child)
            elif name == "metadata":
                for item in child:
                    metadata += bounds(item) if local(item) == "bounds" else properties(item)
            else:
                metadata += properties(child)
        nodes = [("group", "Metadata", metadata)] if metadata else []
        for part in parts:
            nodes.append(self.waypoint_group(waypoints) if part is None else part)
        self.nodes = [node for node in nodes if node[0] != "group" or node[2]]

    def waypoint_group(self, waypoints):
        timed = [(i + 1, point) for i, point in enumerate(waypoints) if point.time is not None]
        self.times += [point.time for _, point in timed]
        with_elevations = have_elevations(timed)
        made = dict((node[1:3], node) for node in streams(timed, with_elevations, True))
        nodes = []
        # Children stand in the order in which the waypoints bring them.
        for i, point in enumerate(waypoints):
            if point.time is None:
                nodes.append(("group", point.texts.get("Name", "Waypoint %d" % (i + 1)), point.static_content()))
                continue
            for node in streams([(i + 1, point)], with_elevations, True):
                if node[1:3] in made:
                    nodes.append(made.pop(node[1:3]))
        return ("group", "Waypoints", nodes)

    def part(self, element, fallback):
        nodes = []
        name = None
        segments = points = 0
        for child in element:
            kind = local(child)
            if kind == "trkseg":
                segments += 1
                name = name or fallback
                segment = self.segment(child)
                if segment:
                    nodes.append(("group", "Segment %d" % segments, segment))
            elif kind == "rtept":
                points += 1
                name = name or fallback
                nodes.append(Point(child).static_node(points))
            else:
                if kind == "name" and name is None:
                    name = cut(trimmed(child.text)) or None
                nodes += properties(child)
        return ("group", name or fallback, nodes)

    def segment(self, element):
        points = [Point(child) for child in element if local(child) == "trkpt"]
        timed = [(i + 1, point) for i, point in enumerate(points) if point.time is not None]
        if not timed:
            return [point.static_node(i + 1) for i, point in enumerate(points)]
        self.times += [point.time for _, point in timed]
        nodes = []
        if len(timed) != len(points):
            nodes.append(("number", "Points without time", Fraction(len(points) - len(timed))))
        return nodes + streams(timed, have_elevations(timed), False)

    def digits(self):
        """Digits behind the seconds: those of the times, fewer where a file of 32-bit fractions could not hold them."""
        digits = 0
        while any((time * 10 ** digits).denominator != 1 for time in self.times):
            digits += 1
        first, last = min(self.times), max(self.times)
        seconds = last.__floor__() - first.__floor__() + 1
        while digits and seconds * 10 ** digits > 2 ** 31 - 1:
            digits -= 1
        return digits


class Comparison:
    def __init__(self, path, data):
        self.path = path
        self.data = data
        self.sets = {entry["sampleSetID"]: entry["samples"] for entry in data.get("dataDynamicSamples", [])}
        self.values = 0
        self.faults = []

    def fail(self, where, message):
        self.faults.append("%s: %s: %s" % (os.path.basename(self.path), where, message))

    def check(self, holds, where, message):
        self.values += 1
        if not holds:
            self.fail(where, message)

    def number(self, where, source, value):
        got = Fraction(value)
        if abs(source) < Fraction(1, 10000):
            nearest = Fraction(0) if abs(source) < Fraction(1, 20000) else Fraction(1, 10000)
            expected = nearest if source >= 0 else -nearest
            # A double of one ten-thousandth is not that number itself.
            holds = abs(got - expected) < Fraction(1, 10 ** 15) or \
                abs(source) > Fraction(99999, 10 ** 9) and abs(got - source) <= Fraction(1, 10 ** 7)
        else:
            tolerance = max(Fraction(1, 2 * 10 ** 7), abs(source) * Fraction(2, 10 ** 16))
            holds = abs(got - source) <= tolerance * Fraction(1000001, 1000000)
        self.check(holds, where, "%s is %s in the file" % (value, float(source)))

    def tree(self, where, expected, actual):
        if len(expected) != len(actual):
            self.fail(where, "children are %s, not %s" % ([node["displayName"] for node in actual],
                                                          [node[2] if node[0] == "stream" else node[1]
                                                           for node in expected]))
            return
        for node, got in zip(expected, actual):
            self.node(where, node, got)

    def node(self, where, node, got):
        name = node[2] if node[0] == "stream" else node[1]
        where += "/" + name
        if got["displayName"] != name:
            self.fail(where, "is named " + got["displayName"])
            return
        kind = {"group": "dataGroup", "stream": "dataDynamic"}.get(node[0], "dataStatic")
        if got["objectType"] != kind:
            self.fail(where, "is " + got["objectType"])
        elif node[0] == "group":
            self.tree(where, node[2], got["children"])
        elif node[0] == "text":
            self.check(got["value"] == node[2], where, "%r is %r in the file" % (got["value"], node[2]))
        elif node[0] == "number":
            self.number(where, node[2], got["value"])
        elif node[0] == "numbers":
            self.check(len(got["value"]) == len(node[2]), where, "other elements")
            self.names(where, node[3], got)
            for source, value in zip(node[2], got["value"]):
                self.number(where, source, value)
        else:
            self.stream(where, node, got)

    def names(self, where, names, got):
        arrays = got["dataType"]["numberArrayProperties"]
        self.check(arrays["arrayDisplayNames"] == names and arrays["isPoint"], where, "other names of elements")

    def stream(self, where, node, got):
        _, kind, name, samples = node
        actual = self.sets.pop(got["sampleSetID"])
        self.check(len(actual) == len(samples) == got["sampleCount"], where, "%d samples" % len(actual))
        held = kind == "texts" or name in HELD
        self.check(got["interpolation"] == ("hold" if held else "linear"), where, got["interpolation"])
        if kind == "arrays":
            self.names(where, POSITION[:len(samples[0][1])], got)
        if kind == "texts":
            marks = got["dataType"]["paddedStringProperties"]["eventMarkerB"]
            self.check(marks == (name in EVENTS), where, "marks events: %s" % marks)
        for (time, source), sample in zip(samples, actual):
            self.time(where, time, sample["time"])
            if kind == "numbers":
                self.number(where, source, sample["value"])
            elif kind == "arrays":
                self.check(len(source) == len(sample["value"]), where, "other elements")
                for element, value in zip(source, sample["value"]):
                    self.number(where, element, value)
            else:
                self.text(where, source, sample["value"])

    def text(self, where, source, value):
        expected = source.replace('"', "\uff02")
        if not nested(expected):
            expected = expected.replace("[", "\uff3b").replace("]", "\uff3d")
        # The length is that of the text as JSON has it, escapes and all; the rest is filler.
        length = len(json.dumps(expected, ensure_ascii=False).encode()) - 2
        self.check(value["str"].startswith(expected) and not value["str"][len(expected):].strip(" ") and
                   int(value["length"]) == length, where, "%r is %r in the file" % (value, source))

    def time(self, where, source, text):
        digits = self.digits
        rounded = ((source * 10 ** digits + Fraction(1, 2)).__floor__()) / Fraction(10 ** digits)
        shape = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{%d}Z\Z" % max(1, digits)
        self.check(re.match(shape, text) is not None and moment(text) == rounded, where,
                   "%s is %s in the file" % (text, float(source)))

    def run(self, expected):
        self.digits = expected.digits() if expected.times else 0
        self.check(self.data.get("creator", "") == expected.creator, "creator", self.data.get("creator", ""))
        self.tree("", expected.nodes, self.data["dataOutline"])
        if self.sets:
            self.fail("samples", "more sets: " + ", ".join(self.sets))


def nested(text):
    depth = 0
    for character in text:
        depth += {"[": 1, "]": -1}.get(character, 0)
        if depth < 0:
            return False
    return depth == 0


def compare(senmark, modules, path):
    with tempfile.TemporaryDirectory() as folder:
        output = os.path.join(folder, "output.tdjson")
        run = subprocess.run([senmark, "--modules", modules, "convert", path, output], capture_output=True, text=True,
                             check=False)
        if run.returncode != 0:
            return 0, ["%s: %s" % (os.path.basename(path), run.stderr.strip())]
        with open(output, encoding="utf-8") as file:
            data = json.load(file)
    comparison = Comparison(path, data)
    comparison.run(Expected(path))
    return comparison.values, comparison.faults


def files_of(arguments):
    for argument in arguments:
        if os.path.isdir(argument):
            for name in sorted(os.listdir(argument)):
                if name.endswith(".gpx"):
                    yield os.path.join(argument, name)
        elif os.path.exists(argument):
            yield argument


def main():
    senmark, modules = sys.argv[1:3]
    faults = []
    total = 0
    for path in files_of(sys.argv[3:]):
        values, found = compare(senmark, modules, path)
        print("%-28s %6d values compared, %d faults" % (os.path.basename(path), values, len(found)))
        faults += found
        total += values
    for fault in faults[:40]:
        print(fault)
    sys.exit(1 if faults or total == 0 else 0)


if __name__ == "__main__":
    main()
