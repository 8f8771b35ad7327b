"""Reads data files by the tables in docs/formats.md alone, and by nothing else.

    walk_formats.py DOCS/formats.md PROGRAM

Every worked example of the page is walked to its last byte. PROGRAM (RewriteFormats.cpp) then reads each example and
writes it back, and writes a richer file of each kind; these are walked in the same way and compared field by field.
"""

import math
import pathlib
import re
import struct
import subprocess
import sys
import tempfile

SCALARS = {"int8": "<b", "int16": "<h", "int32": "<i", "float32": "<f"}
TEXTS = {"text16": "<h", "text32": "<i"}


class Page:
    """The tables and the examples of the page, by extension or group name."""

    def __init__(self, text):
        self.tables = {}
        self.examples = {}
        name = None
        for line in text.splitlines():
            heading = re.match(r"##+ \.?(\w+)", line)
            if heading:
                name = heading.group(1)
            row = re.match(r"\| `(\w+)` \| `([^`]+)` \|", line)
            if row and name:
                self.tables.setdefault(name, []).append(row.groups())
        for kind, block in re.findall(r"```hex (\w+)\n(.*?)```", text, re.S):
            self.examples[kind] = b"".join(self.bytes_of(line) for line in block.splitlines())

    @staticmethod
    def bytes_of(line):
        """The hex pairs at the beginning of a line; a run of three blanks ends them."""
        return bytes.fromhex(re.split(r" {3,}", line)[0])


class Walk:
    """One walk over a file: fields in the order of the table."""

    def __init__(self, page, data):
        self.page = page
        self.data = data
        self.at = 0

    def take(self, form):
        value = struct.unpack_from(form, self.data, self.at)[0]
        self.at += struct.calcsize(form)
        return value

    def text(self, form):
        length = max(self.take(form), 0)
        self.at += length
        assert self.at <= len(self.data), "a text runs past the end"
        return self.data[self.at - length : self.at]

    def field(self, kind, names):
        condition = re.match(r"(.+) if ([^)]+)$", kind)
        if condition and "(" not in kind:
            kind = condition.group(1)
            if not eval(condition.group(2), {}, names):
                return None
        group = re.match(r"group (\w+) \* (.+)$", kind)
        if group:
            return [self.table(group.group(1)) for _ in range(eval(group.group(2), {}, names))]
        array = re.match(r"(\w+) \* (.+)$", kind)
        if array:
            scope = dict(names, product=lambda size: math.prod(size))
            if "dimensions" in names:
                scope["size"] = [dimension["size"] for dimension in names["dimensions"]]
            return [self.take(SCALARS[array.group(1)]) for _ in range(eval(array.group(2), {}, scope))]
        return self.text(TEXTS[kind]) if kind in TEXTS else self.take(SCALARS[kind])

    def table(self, name):
        names = {}
        for field, kind in self.page.tables[name]:
            names[field] = self.field(kind, names)
        return names

    def whole(self, name):
        fields = self.table(name)
        assert self.at == len(self.data), f".{name}: the table ends at byte {self.at} of {len(self.data)}"
        return fields


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


# What the program puts into its richer files, as far as a test can tell it apart.
RICH = {
    "wvf": {"version": -4, "count": 3, "samples": [0.5, -1.5, 2.5], "units": b"kA", "note": b"two\r\nlines", "t5": 5.0,
            "start": 1.75, "scopeDelay": 0.5, "scopeDelay2": 0.25, "timeShift": 8.0, "calibration": 3.0,
            "pointOfMax": 3, "pointOfMin": 2, "oldUnit": b"", "one": 1, "countAgain": 3, "oneAgain": 1},
    "dmt": {"version": 4, "rank": 3, "values": [float(i) for i in range(24)], "units": b"T", "t1": 1.0, "t5": 5.0,
            "maxValue": 23.0, "minValue": 0.0, "calibration": 1.0, "scaleUnit": 5.0},
    "dpt": {"version": 2, "geometry": 1, "count": 3, "columns": 8, "header1": 11.0, "header2": 12.0, "note": b"beam",
            "rows": [float(i) for i in range(24)], "maxValues": [float(16 + i) for i in range(8)],
            "minValues": [float(i) for i in range(8)]},
    "dgm": {"version": 1, "count": 2, "units": b"mm", "maxCoords": [4.0, 5.0, 6.0], "minCoords": [-1.0, -1.0, -1.0]},
}


def check_rich_groups(kind, fields):
    if kind == "dmt":
        sizes = [d["size"] for d in fields["dimensions"]]
        assert sizes == [2, 3, 4], sizes
        assert fields["dimensions"][0]["coordinates"] == [10.0]
        assert fields["dimensions"][2]["step"] == 0 and fields["dimensions"][2]["coordinates"] == [1.0, 2.0, 4.0, 8.0]
    if kind == "dgm":
        ball, cloud = fields["objects"]
        assert ball["name"] == b"ball" and ball["type"] == 1 and ball["params"] == [1.0]
        assert ball["attr1"] == single(0.1) and ball["attr3"] == 1 and ball["endAngle"] == 360.0
        assert cloud["type"] == 10 and cloud["params"] == [0.0, 0.0, 0.0, 3.0, 4.0, 5.0]
        assert cloud["position"] == [1.0, 1.0, 1.0]


def main(page_file, program):
    page = Page(pathlib.Path(page_file).read_text())
    kinds = list(RICH)
    assert sorted(page.examples) == sorted(kinds), "an example is missing"
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        for kind in kinds:
            (folder / f"example.{kind}").write_bytes(page.examples[kind])
        subprocess.run([program, str(folder)], check=True)
        for kind in kinds:
            given = Walk(page, page.examples[kind]).whole(kind)
            written = Walk(page, (folder / f"again.{kind}").read_bytes()).whole(kind)
            assert re.fullmatch(rb"\d\d/\d\d/\d{4} \d\d:\d\d:\d\d", written.pop("stamp")), kind
            given.pop("stamp")
            assert written == given, f".{kind} came back as {written}, not {given}"
            rich = Walk(page, (folder / f"rich.{kind}").read_bytes()).whole(kind)
            for field, value in RICH[kind].items():
                assert rich[field] == value, f".{kind}: {field} is {rich[field]}, not {value}"
            check_rich_groups(kind, rich)
            print(f".{kind}: {len(page.tables[kind])} fields walked")


if __name__ == "__main__":
    main(*sys.argv[1:])
