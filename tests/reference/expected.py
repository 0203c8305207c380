#!/usr/bin/env python3
"""What stands in ../data/convert/expected: for each input NAME the file NAME.tdjson, or NAME.code with the code of
the error.

    expected.py write    converts every input anew; each file that changes is to be judged by the rules, by hand
    expected.py check    ends with 1 if inputs or expected files differ from what the scripts make
"""

import os
import sys

import cases
import convert
import tdjson_writer as writer

EXPECTED = os.path.join(cases.INPUTS, "..", "expected")


def results():
    sys.setrecursionlimit(10000)
    for name in sorted(os.listdir(cases.INPUTS)):
        try:
            yield name + ".tdjson", convert.converted(os.path.join(cases.INPUTS, name))
        except writer.Failure as failure:
            yield name + ".code", b"%d\n" % failure.code


def stored(folder):
    found = {}
    for name in os.listdir(folder):
        with open(os.path.join(folder, name), "rb") as file:
            found[name] = file.read()
    return found


def differences(what, wanted, found):
    names = [name for name in sorted(set(wanted) | set(found)) if wanted.get(name) != found.get(name)]
    for name in names:
        state = "missing" if name not in found else "not wanted" if name not in wanted else "different"
        print(f"{what} {name}: {state}")
    return len(names)


def main(arguments):
    if arguments[1:] == ["write"]:
        os.makedirs(EXPECTED, exist_ok=True)
        wanted = dict(results())
        for name in set(os.listdir(EXPECTED)) - set(wanted):
            os.remove(os.path.join(EXPECTED, name))
        for name, content in wanted.items():
            with open(os.path.join(EXPECTED, name), "wb") as file:
                file.write(content)
        return 0
    if arguments[1:] == ["check"]:
        count = differences("input", cases.all_inputs(), stored(cases.INPUTS))
        count += differences("expected", dict(results()), stored(EXPECTED))
        return 1 if count else 0
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv))
