"""Holds what the module for motion capture makes of files against the files themselves.

    motion_values.py SENMARK MODULES PATH...

SENMARK is the program, MODULES the folder of modules, each PATH a .bvh file or a folder that holds some; the
folder bvh in that of the environment variable SENMARK_REAL_DATA comes last, if there is one. Every file is
converted twice, as it is and with world positions asked for by a file beside it. Compared are: all groups and their
nesting, offsets, lists of channels, rotation orders, frame time and count, every number of every frame to half a
millionth (or the fifty millionths that a number nearer to 0 than 0.0001 may lose), the time of every frame, and the
world positions, which are computed here with quaternions. Ends with 1 at the first difference.
"""

import json
import math
import os
import shutil
import subprocess
import sys
import tempfile
from fractions import Fraction

WHOLE_RATES = (24, 25, 30, 50, 60, 100, 120, 125)
RATES = [Fraction(rate) for rate in WHOLE_RATES] + [Fraction(rate * 1000, 1001) for rate in (24, 30, 60, 120)]


class Joint:
    def __init__(self, name, parent):
        self.name = name
        self.parent = parent
        self.children = []
        self.offset = None
        self.channels = []
        self.first = 0


class Recording:
    """A BVH file, read line by line: one statement or one frame each."""

    def __init__(self, text):
        lines = [line.strip() for line in text.replace("\r\n", "\n").replace("\r", "\n").split("\n")]
        start = next(i for i, line in enumerate(lines) if line.upper() == "MOTION")
        self.roots, self.joints, self.width = [], [], 0
        self.read_hierarchy(lines[1:start])
        head = {}
        at = start + 1
        while len(head) < 2:
            if lines[at]:
                key, value = lines[at].split(":")
                head[key] = value.strip()
            at += 1
        self.stated = int(head["Frames"])
        self.frame_time = head["Frame Time"]
        self.frames = [[float(word) for word in line.split()] for line in lines[at:] if line]
        assert all(len(frame) == self.width for frame in self.frames)

    def read_hierarchy(self, lines):
        current = None
        for line in lines:
            key, _, rest = line.partition(" ")
            words = rest.split()
            if key in ("ROOT", "JOINT"):
                current = self.begin(rest.strip(), current)
            elif key == "End":
                current = self.begin(current.name + " End Site", current)
            elif key == "OFFSET":
                current.offset = [float(word) for word in words]
            elif key == "CHANNELS":
                current.channels = words[1:]
                assert len(current.channels) == int(words[0])
                current.first = self.width
                self.width += len(current.channels)
            elif key == "}":
                current = current.parent
            else:
                assert key in ("", "{"), line

    def begin(self, name, parent):
        joint = Joint(name, parent)
        self.joints.append(joint)
        (parent.children if parent else self.roots).append(joint)
        return joint

    def rate(self):
        """Of the usual rates the one whose frame time is nearest."""
        seconds = Fraction(self.frame_time)
        rate = min(RATES, key=lambda rate: abs(1 / rate - seconds))
        assert abs(1 / rate - seconds) * 2000 < seconds, self.frame_time
        return rate


def product(a, b):
    """Of two quaternions."""
    aw, ax, ay, az = a
    bw, bx, by, bz = b
    return (
        aw * bw - ax * bx - ay * by - az * bz,
        aw * bx + ax * bw + ay * bz - az * by,
        aw * by - ax * bz + ay * bw + az * bx,
        aw * bz + ax * by - ay * bx + az * bw,
    )


def turned(quaternion, vector):
    w, x, y, z = quaternion
    return product(product(quaternion, (0, *vector)), (w, -x, -y, -z))[1:]


def axis_of(channel):
    return "XYZ".index(channel[0].upper())


def is_of(channel, kind):
    return channel[1:].lower() == kind


def adds_positions(recording):
    """Whether joints below the roots move from their offsets, rather than to places that are near them."""
    near_offset = near_zero = 0.0
    for joint in recording.joints:
        for i, channel in enumerate(joint.channels):
            if joint.parent and is_of(channel, "position"):
                value = recording.frames[0][joint.first + i]
                near_offset += abs(value - joint.offset[axis_of(channel)])
                near_zero += abs(value)
    return near_offset > near_zero


def world_positions(recording):
    """For each frame the positions of all joints, by joint."""
    adds = bool(recording.frames) and adds_positions(recording)
    for frame in recording.frames:
        poses = {None: ((1.0, 0.0, 0.0, 0.0), (0.0, 0.0, 0.0))}
        for joint in recording.joints:
            rotation, origin = poses[joint.parent]
            move = list(joint.offset or (0.0, 0.0, 0.0))
            turn = rotation
            for i, channel in enumerate(joint.channels):
                axis, value = axis_of(channel), frame[joint.first + i]
                if is_of(channel, "position"):
                    move[axis] = value + (move[axis] if adds and joint.parent else 0)
                else:
                    half = math.radians(value) / 2
                    part = [math.cos(half), 0.0, 0.0, 0.0]
                    part[axis + 1] = math.sin(half)
                    turn = product(turn, part)
            move = turned(rotation, move)
            poses[joint] = (turn, tuple(a + b for a, b in zip(origin, move)))
        yield {joint: poses[joint][1] for joint in recording.joints}


class Result:
    """A converted file."""

    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            document = json.load(file)
        self.nodes = document["dataOutline"]
        info = document["dynamicDataInfo"]
        assert info["useTimecodeB"] is True
        code = info["timecodeInfo"]
        assert code["dropFrame"] is False
        self.rate = Fraction(code["frameRate"]["value"], code["frameRate"]["scale"])
        self.samples = {item["sampleSetID"]: item["samples"] for item in document["dataDynamicSamples"]}

    def seconds(self, text):
        hours, minutes, seconds, frames = (int(part) for part in text.split(":"))
        nominal = math.floor(self.rate + Fraction(1, 2))
        return ((hours * 60 + minutes) * 60 + seconds) * nominal + frames


def expect(holds, *what):
    if not holds:
        raise AssertionError(" ".join(str(part) for part in what))


def is_close(number, text, more=0.0):
    """Whether a number of the file stands in the text, to the resolution that is promised."""
    allowed = 5.0000001e-7 if abs(number) >= 1e-4 else 5e-5 + 1e-12
    return abs(number - float(text)) <= max(allowed, abs(number) * 1e-15) + more


def child(nodes, name):
    found = [node for node in nodes if node["displayName"] == name]
    expect(len(found) == 1, len(found), "nodes named", name)
    return found[0]


class Comparison:
    def __init__(self, recording, result, world):
        self.recording = recording
        self.result = result
        self.world = world
        self.count = 0

    def run(self):
        recording, nodes = self.recording, self.result.nodes
        expect(self.result.rate == recording.rate(), self.result.rate, "is not", recording.rate())
        expect(child(nodes, "frame time [s]")["value"] == recording.frame_time, "frame time")
        expect(child(nodes, "frame count")["value"] == str(recording.stated), "frame count")
        warned = any(node["displayName"] == "warning" for node in nodes)
        expect(warned == (recording.stated != len(recording.frames)), "warning")
        self.compare_joints(nodes, recording.roots)
        return self.count

    def compare_joints(self, nodes, joints):
        groups = [node for node in nodes if node["objectType"] == "dataGroup"]
        expect([node["displayName"] for node in groups] == [joint.name for joint in joints], "names of joints")
        for group, joint in zip(groups, joints):
            self.compare_joint(group["children"], joint)

    def compare_joint(self, nodes, joint):
        if joint.offset is not None:
            node = child(nodes, joint.name + " offset")
            expect(len(node["value"]) == 3, "numbers of an offset")
            for number, value in zip(joint.offset, node["value"]):
                self.compare(number, value, joint.name, "offset")
        if joint.channels:
            expect(child(nodes, joint.name + " channels")["value"] == " ".join(joint.channels), joint.name)
        for kind, name in (("position", " position"), ("rotation", " rotation [deg]")):
            places = [i for i, channel in enumerate(joint.channels) if is_of(channel, kind)]
            if not places:
                continue
            names = [joint.channels[i] for i in places]
            rows = [[frame[joint.first + i] for i in places] for frame in self.recording.frames]
            self.compare_stream(child(nodes, joint.name + name), names, rows)
            if kind == "rotation":
                order = "".join(name[0] for name in names)
                expect(child(nodes, joint.name + " rotation order")["value"] == order, joint.name)
        if self.world is not None:
            rows = [positions[joint] for positions in self.world]
            # Sines and sums differ in their last bits.
            self.compare_stream(child(nodes, joint.name + " world position"), ["X", "Y", "Z"], rows, 1e-8)
        else:
            expect(not any(node["displayName"].endswith("world position") for node in nodes), "world positions")
        self.compare_joints(nodes, joint.children)

    def compare_stream(self, node, names, rows, more=0.0):
        properties = node["dataType"]["numberArrayProperties"]
        expect(properties["arrayDisplayNames"] == names, properties["arrayDisplayNames"], names)
        samples = self.result.samples[node["sampleSetID"]]
        expect(len(samples) == len(rows), node["displayName"], len(samples), "samples of", len(rows))
        for index, (sample, row) in enumerate(zip(samples, rows)):
            expect(self.result.seconds(sample["time"]) == index, node["displayName"], sample["time"], "frame", index)
            expect(len(sample["value"]) == len(row), "elements")
            for number, text in zip(row, sample["value"]):
                self.compare(number, text, node["displayName"], "frame", index, more=more)

    def compare(self, number, text, *what, more=0.0):
        expect(is_close(number, text, more), *what, number, "became", text)
        self.count += 1


def convert(program, modules, path, folder):
    output = os.path.join(folder, "output.tdjson")
    command = [program, "--modules", modules, "convert", "--force", path, output]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    expect(done.returncode == 0, done.stderr)
    return Result(output)


def compare_file(program, modules, path):
    with open(path, encoding="utf-8", newline="") as file:
        recording = Recording(file.read())
    counts = []
    with tempfile.TemporaryDirectory() as folder:
        copy = os.path.join(folder, os.path.basename(path))
        shutil.copyfile(path, copy)
        counts.append(Comparison(recording, convert(program, modules, copy, folder), None).run())
        with open(copy + ".senmark.json", "w", encoding="utf-8") as options:
            options.write('{"worldPositions": true}')
        world = list(world_positions(recording))
        counts.append(Comparison(recording, convert(program, modules, copy, folder), world).run())
    print(f"{os.path.basename(path)}: {counts[0]} numbers, with world positions {counts[1]}")


def main():
    program, modules = sys.argv[1:3]
    paths = []
    real = [os.path.join(os.environ["SENMARK_REAL_DATA"], "bvh")] if "SENMARK_REAL_DATA" in os.environ else []
    for path in sys.argv[3:] + real:
        if os.path.isdir(path):
            paths += sorted(os.path.join(path, name) for name in os.listdir(path) if name.endswith(".bvh"))
        elif os.path.exists(path):
            paths.append(path)
    expect(paths, "no files")
    for path in paths:
        try:
            compare_file(program, modules, path)
        except (AssertionError, KeyError) as difference:
            print(f"{path}: {difference!r}")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
