#!/usr/bin/env python3
"""Converts one file to the .tdjson file that the library has to make of it, byte for byte.

    convert.py IN OUT

Writes OUT, or prints the code of the error that a host gets instead and ends with 1. An input about which the rules
leave a choice is named on standard error and ends with 2.
"""

import os
import re
import sys

import json_tree
import motion
import separated_values
import tdjson_reader
import tdjson_writer as writer

CREATOR = b"com.velmo.sensor."


def table(delimiter, creator):
    def convert(data):
        try:
            return separated_values.convert(data, delimiter, CREATOR + creator)
        except separated_values.Unreadable:
            return b""  # given up before the root was made
    return convert


# By name: whether a file is taken, and its conversion.
HANDLERS = {
    "bvh": (motion.begins_like_motion, lambda data: motion.convert(data, CREATOR + b"bvh")),
    "csv": (lambda data: True, table(b",", b"csv")),
    "json": (json_tree.begins_like_json, lambda data: json_tree.convert(data, CREATOR + b"json")),
    "tsv": (lambda data: True, table(b"\t", b"tsv")),
    "txt": (lambda data: True, table(b"\t", b"tsv")),
}


def extension_of(path):
    name = re.split(r"[/\\]", path)[-1]
    return name.rsplit(".", 1)[1].lower() if "." in name else ""


def converted(path):
    """The bytes of the result; raises what the host gets instead."""
    with open(path, "rb") as file:
        data = file.read()
    if tdjson_reader.is_version_2(data):
        tdjson_reader.check(data)
        return data
    extension = extension_of(os.path.abspath(path))
    if extension == "tdjson":
        raise writer.Undecided("a file of version 1 is not converted")
    if extension not in HANDLERS or not HANDLERS[extension][0](data):
        # The one for tables takes everything, so that nothing behind it in the order of names is asked.
        extension = next(name for name in sorted(HANDLERS) if HANDLERS[name][0](data))
    result = HANDLERS[extension][1](data)
    tdjson_reader.is_version_2(result)
    tdjson_reader.check(result)
    return result


def main(arguments):
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    sys.setrecursionlimit(10000)
    try:
        result = converted(arguments[1])
    except writer.Failure as failure:
        print(failure.code)
        print(failure, file=sys.stderr)
        return 1
    except writer.Undecided as undecided:
        print(f"undecided: {undecided}", file=sys.stderr)
        return 2
    with open(arguments[2], "wb") as file:
        file.write(result)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
