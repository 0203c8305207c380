"""Compares tables, cell by cell, with what the module `series` makes of them.

    python3 tests/reference/series_values.py SENMARK MODULES WORK FOLDER...

SENMARK is the program, MODULES the folder with the module, WORK a folder for scratch files. Of each file in KNOWN that
lies in one of the FOLDERs, and of tables that this script makes, every time and every value of every column is held
against the converted file. How a known file is read is written down here for each of them: nothing is guessed, and the
cells are cut by Python's own module for separated values. Files in DECLINED have to come out without samples.
"""

import csv
import datetime
import json
import os
import subprocess
import sys
from decimal import Decimal, InvalidOperation, ROUND_HALF_UP

UTC = datetime.timezone.utc
EPOCH = datetime.datetime(1970, 1, 1, tzinfo=UTC)
GAPS = {"", "-", "--", "na", "n/a", "nan", "null", "none"}
NANO = 10**9


class Wrong(Exception):
    pass


def moment(date):
    """Nanoseconds from 1970."""
    delta = date.replace(tzinfo=UTC) - EPOCH
    return (delta.days * 86400 + delta.seconds) * NANO + delta.microseconds * 1000


def by_format(column, layout):
    return lambda row: moment(datetime.datetime.strptime(row[column], layout))


def by_formats(date, clock, layout):
    return lambda row: moment(datetime.datetime.strptime(row[date] + " " + row[clock], layout))


def counted(column, unit):
    def read(row):
        return int((Decimal(row[column].replace(",", ".")) * unit).to_integral_value(ROUND_HALF_UP))
    return read


class Table:
    def __init__(self, time_columns, read_time, delimiter=",", encoding="utf-8-sig", mark=".", units=None):
        self.time_columns = time_columns
        self.read_time = read_time
        self.delimiter = delimiter
        self.encoding = encoding
        self.mark = mark
        self.units = units or {}

    def read(self, path):
        with open(path, encoding=self.encoding, newline="") as file:
            rows = list(csv.reader(file, delimiter=self.delimiter))
        names = [name.strip() for name in rows[0]]
        body = [[cell.strip() for cell in row] for row in rows[1:]]
        body = [row + [""] * (len(names) - len(row)) for row in body if any(row)]
        return names, body


DAY = "%d/%m/%Y"
BIKES = {"delimiter": ",", "time_columns": [0], "read_time": by_format(0, DAY)}
KNOWN = {
    "air_quality_hourly.csv": Table([0, 1], by_formats(0, 1, "%d/%m/%Y %H:%M:%S")),
    "ais_boat_positions_bom.csv": Table([1], by_format(1, "%d/%m/%Y %H:%M")),
    "bike_counters_2012_latin1.csv": Table([0], by_format(0, DAY), delimiter=";", encoding="latin-1"),
    "bike_counters_2012_utf8bom.csv": Table(**BIKES),
    "bike_counters_2012_utf16be.csv": Table(**BIKES, encoding="utf-16"),
    "bike_counters_2012_utf16le.tsv": Table([0], by_format(0, DAY), delimiter="\t", encoding="utf-16"),
    "fires_satellite_1_day.csv": Table([5, 6], by_formats(5, 6, "%Y-%m-%d %H%M")),
    "imu_9dof_100hz.csv": Table([0], counted(0, NANO)),
    "weather_central_park_2016_crlf.csv": Table([0], by_format(0, "%d-%m-%Y")),
    "weather_death_valley_2021.csv": Table([2], by_format(2, "%Y-%m-%d")),
    "weather_montreal_2012_hourly.csv": Table([0], by_format(0, "%Y-%m-%d %H:%M:%S")),
    "weather_sitka_2021.csv": Table([2], by_format(2, "%Y-%m-%d")),
}
KNOWN.update({name.replace(".csv", "_start.csv"): table for name, table in KNOWN.items()})
DECLINED = {"quoted_newlines_bigrams.csv", "accelerometer_100hz.txt", "earthquakes_significant.txt",
            "unemployment_2009.tsv", "android_forwarder_crlf.log", "gnss_multi_crlf.log", "gps_moving_sirf2.log",
            "rtk_receiver.txt"}


def number(text, mark="."):
    """The value and its decimals, or None for what is no number that a data file can hold."""
    if mark == "," and "." in text:
        return None
    text = text.replace(mark, ".")
    if "_" in text or not any(digit.isdigit() for digit in text) or not text.isascii():
        return None
    try:
        value = Decimal(text)
    except InvalidOperation:
        return None
    if not value.is_finite() or abs(value) >= Decimal(10) ** 16:
        return None
    return value, max(0, -value.as_tuple().exponent)


def sample_text(text):
    """Full-width quotes, and square brackets too where they do not match."""
    depth = 0
    for char in text:
        depth += (char == "[") - (char == "]")
        if depth < 0:
            break
    if depth:
        text = text.replace("[", "\uff3b").replace("]", "\uff3d")
    return text.replace('"', "\uff02")


def expected_streams(table, names, body):
    """For each column with samples: its kind, decimals and [(time, value)], by time, those of one time as they came."""
    times = [table.read_time(row) for row in body]
    streams = []
    for column, name in enumerate(names):
        if column in table.time_columns:
            continue
        cells = [row[column] for row in body]
        numbers = [number(cell, table.mark) for cell in cells]
        marks = sum(1 for cell, value in zip(cells, numbers) if value is None and cell.lower() not in GAPS)
        count = sum(value is not None for value in numbers)
        if count and count >= 9 * marks:
            samples = [(time, value[0]) for time, value in zip(times, numbers) if value is not None]
            decimals = min(15, max(value[1] for value in numbers if value is not None))
            streams.append((name, "number", decimals, sorted(samples, key=lambda sample: sample[0])))
        elif marks:
            samples = [(time, sample_text(cell)) for time, cell in zip(times, cells) if cell]
            streams.append((name, "text", None, sorted(samples, key=lambda sample: sample[0])))
    return streams, times


def display_name(name, units):
    if name in units:
        return f"{name} [{units[name]}]"
    for opening, closing in ("()", "[]"):
        if name.endswith(closing) and opening in name:
            base, unit = name[:-1].rsplit(opening, 1)
            if closing == "]" or (len(unit) <= 10 and unit.count(" ") <= 1):
                return f"{base.strip()} [{unit.strip()}]"
    return name


def convert(program, modules, path, output):
    if os.path.exists(output):
        os.remove(output)
    subprocess.run([program, "--modules", modules, "convert", path, output], check=True, stdout=subprocess.DEVNULL)
    with open(output, encoding="utf-8") as file:
        return json.load(file)


def time_digits(times):
    needed = max((9 - len(str(time % NANO).zfill(9)) + len(str(time % NANO).zfill(9).rstrip("0")) for time in times))
    span = max(times) // NANO - min(times) // NANO + 1
    digits = 0
    while digits < 9 and span * 10 ** (digits + 1) <= 2**31 - 1:
        digits += 1
    return max(1, min(needed, digits))


def time_text(time, digits):
    unit = 10 ** (9 - digits)
    units = (time + unit // 2) // unit
    second, fraction = divmod(units, 10**digits)
    date = EPOCH + datetime.timedelta(seconds=second)
    return f"{date.year:04}-{date:%m-%dT%H:%M:%S}.{fraction:0{digits}}Z"


def compare_value(where, kind, decimals, expected, got):
    if kind == "text":
        text = got["str"].encode()[: escaped_size_to_raw(got)].decode()
        if text != expected:
            raise Wrong(f"{where}: {text!r} in place of {expected!r}")
        return
    value = Decimal(got)
    difference = abs(value - expected)
    # Sixteen digits show what a double is in truth.
    noise = abs(expected) * Decimal(10) ** -15
    resolution = Decimal(5) * Decimal(10) ** (-decimals - 1)
    if abs(expected) < Decimal("0.0001"):
        resolution = max(resolution, Decimal("0.00005"))
    elif decimals:
        resolution = Decimal(0)
    if difference > resolution + noise:
        raise Wrong(f"{where}: {got} in place of {expected}")


def escaped_size_to_raw(value):
    """The length counts escaped bytes; Python has taken the escapes away."""
    size = int(value["length"])
    raw = used = 0
    for byte in value["str"].encode():
        if used >= size:
            break
        used += 2 if byte in b'\b\t\n\f\r"\\' else 1
        raw += 1
    return raw


def check_table(program, modules, path, work, table):
    names, body = table.read(path)
    streams, times = expected_streams(table, names, body)
    data = convert(program, modules, path, os.path.join(work, "values.tdjson"))
    digits = data["dynamicDataInfo"]["utcInfo"]["precisionLength"]
    if digits != time_digits(times):
        raise Wrong(f"times have {digits} digits in place of {time_digits(times)}")
    nodes = {node["displayName"]: node for node in data["dataOutline"] if node["objectType"] == "dataDynamic"}
    sets = {each["sampleSetID"]: each["samples"] for each in data["dataDynamicSamples"]}
    wanted = [display_name(name, table.units) for name, *_ in streams]
    if list(nodes) != wanted:
        raise Wrong(f"columns {list(nodes)} in place of {wanted}")
    count = 0
    for shown, (name, kind, decimals, samples) in zip(wanted, streams):
        got = sets[nodes[shown]["sampleSetID"]]
        if len(got) != len(samples):
            raise Wrong(f"{name}: {len(got)} samples in place of {len(samples)}")
        for at, ((time, value), sample) in enumerate(zip(samples, got)):
            where = f"{name}, sample {at}"
            if sample["time"] != time_text(time, digits):
                raise Wrong(f"{where}: {sample['time']} in place of {time_text(time, digits)}")
            compare_value(where, kind, decimals, value, sample["value"])
            count += 1
    return count


def check_declined(program, modules, path, work):
    data = convert(program, modules, path, os.path.join(work, "values.tdjson"))
    if data["dynamicSamplesPresentB"] or not data["creator"].startswith("com."):
        raise Wrong("it was not declined")
    return 0


def make_lines(source, path):
    """Lines of JSON from the hourly weather: nested members, some that come and go, and numbers as numbers."""
    with open(source, encoding="utf-8", newline="") as file:
        rows = list(csv.reader(file))
    out, expected = [], []
    for index, row in enumerate(rows[1:]):
        body = [row[0].replace(" ", "T") + "Z", row[1], row[2], row[3] if index % 3 else "", row[7]]
        record = {"time": body[0], "temp": {"air": Decimal(body[1]), "dew": [Decimal(body[2])]}, "sky": body[4]}
        if body[3]:
            record["humidity"] = Decimal(body[3])
        elif index % 2:
            record["humidity"] = None
        out.append(json.dumps(record, default=str))
        expected.append(body)
    text = "\n".join(out)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)

    class Lines(Table):
        def read(self, _):
            names = ["time", "temp.air", "temp.dew.0", "sky", "humidity"]
            return names, [[body[0], body[1], body[2], body[4], body[3]] for body in expected]

    return Lines([0], by_format(0, "%Y-%m-%dT%H:%M:%SZ"))


def make_tables(work):
    """Tables in dialects that no known file has."""
    start = datetime.datetime(2024, 2, 28, 23, 59, 30)

    def put(name, text, encoding="utf-8"):
        path = os.path.join(work, name)
        with open(path, "w", encoding=encoding, newline="") as file:
            file.write(text)
        return path

    rows = []
    for index in range(400):
        date = start + datetime.timedelta(milliseconds=250 * index)
        rows.append((date, Decimal(index) / 8 - 20, "" if index % 7 == 0 else str(index * 3), f'say "{index}"'))
    comma = "".join(f'{d:%d.%m.%Y %H:%M:%S},{d.microsecond // 1000:03};{str(a).replace(".", ",")};{b};"{t}"\r\n'
                    .replace('say "', 'say ""').replace('""\r\n', '"""\r\n') for d, a, b, t in rows)
    path = put("comma.csv", "Zeit;Wert;Zahl;Text\r\n" + comma, "cp1252")

    class Comma(Table):
        def read(self, _):
            return ["Zeit", "Wert", "Zahl", "Text"], [
                [f"{d:%Y-%m-%d %H:%M:%S.%f}", str(a).replace(".", ","), b, t] for d, a, b, t in rows]

    yield path, Comma([0], by_format(0, "%Y-%m-%d %H:%M:%S.%f"), mark=",")

    # Epochs in every unit, not in order, with equal times.
    for unit, factor in (("s", NANO), ("ms", 10**6), ("us", 10**3), ("ns", 1)):
        counts = [(1700000000 * NANO + (index * 37 % 100) * 10**8) // factor for index in range(300)]
        text = f"timestamp_{unit},value\n" + "".join(f"{c},{index}\n" for index, c in enumerate(counts))
        yield put(f"epoch_{unit}.csv", text), Table([0], counted(0, factor))

    text = "# a log\n# t [ms] | a [m/s] | b\n" + "".join(f"{20 * i}|{i * 0.5}|{-i}\n" for i in range(100))

    class Piped(Table):
        def read(self, _):
            return ["t [ms]", "a [m/s]", "b"], [[str(20 * i), str(i * 0.5), str(-i)] for i in range(100)]

    yield put("piped.log", text), Piped([0], counted(0, 10**6))


def main(program, modules, work, folders):
    checks = []
    for folder in folders:
        for root, _, files in os.walk(folder):
            for name in sorted(files):
                path = os.path.join(root, name)
                if name in KNOWN:
                    checks.append((path, lambda path=path, name=name: check_table(program, modules, path, work,
                                                                                  KNOWN[name])))
                elif name in DECLINED:
                    checks.append((path, lambda path=path: check_declined(program, modules, path, work)))
                if name == "weather_montreal_2012_hourly.csv":
                    lines = os.path.join(work, "lines.jsonl")
                    table = make_lines(path, lines)
                    checks.append((lines, lambda table=table, lines=lines: check_table(program, modules, lines, work,
                                                                                       table)))
    for path, table in make_tables(work):
        checks.append((path, lambda path=path, table=table: check_table(program, modules, path, work, table)))
    failures = 0
    for path, check in checks:
        try:
            print(f"{os.path.basename(path)}: {check()} values agree")
        except Wrong as wrong:
            failures += 1
            print(f"{os.path.basename(path)}: {wrong}")
    print(f"{len(checks)} files, {failures} of them wrong")
    return 0 if checks and not failures else 1


if __name__ == "__main__":
    if len(sys.argv) < 5:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4:]))
