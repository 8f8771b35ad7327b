"""Asks the library every example of docs/language.md and compares what it says with what the page says.

    run_language.py DOCS/language.md DOCS/parameters.md PROGRAM

The page describes a few shots in tables; they are built here, byte by byte as docs/formats.md has it, without the
library. PROGRAM (AskLanguage.cpp) is then asked one question for each row of the tables of examples. It is a failure if a
row or a table isn't understood, if a code of docs/parameters.md has no example that gives a value, and if an operator,
function or form of the language has none.
"""

import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile

SHOT = "A002"


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


NO_VALUE = single(-3.3e38)

# Tables by their heads: how many leading cells are the question, and the kind of question.
EXAMPLES = {
    ("Formula", "Value", "Why"): (1, "formula"),
    ("Formula", "Message"): (1, "formula"),
    ("Text", "Becomes", "Why"): (1, "text"),
    ("Label", "Shows", "Why"): (1, "label"),
    ("Data name", "File", "Why"): (1, "data name"),
    ("Braces", "Becomes", "Why"): (1, "braces"),
    ("Values", "Positions", "Parameter", "Value", "Why"): (3, "pair"),
    ("Store", "Number", "Formula", "Value", "Why"): (3, "store"),
}
PREPARED = {
    ("Key", "Value"): "keys",
    ("Trace", "Start", "Step", "Samples"): "traces",
    ("Matrix", "Axes", "Values"): "matrices",
    ("Particles", "Number"): "particles",
    ("Data", "Field", "Value"): "fields",
}
PLAIN = {("From", "Call")}
NUMERIC = ("formula", "pair", "store")

# What the language is made of; each needs a formula with a value that matches.
FORMS = {
    "number": r"[0-9]", "exponent": r"[0-9]e-?[0-9]", "name": r"[A-Za-z]\w+", "name with blanks": r"\w - \w",
    "+": r"\w\+\w", "-": r"\w-\w", "sign": r"-\w", "sign of a factor": r"\*-[0-9]", "*": r"\*", "/": r"/", "^": r"\^",
    "power of a power": r"\^\d+\^", "( )": r"\(.+\)", "value in a name": r"\w\([^)]+\)", "[ ]": r"\[[^]\\]+\]",
    "name in a name": r"[A-Za-z]\[\w\]", "sign of a bracket": r"\[x\]\^", "sign of a parenthesis": r"\(x\)\^",
    "sin": r"\bsin\(", "cos": r"\bcos\(", "tan": r"\btan\(", "log": r"\blog\(", "exp": r"\bexp\(", "atn": r"\batn\(",
    "bol": r"\bbol\(", "function in capitals": r"SIN\(", "? ?": r"\?.+\?", "?": r"^[^?]*\?[^?]*$", "::": r"::",
    "data\\parameter": r"\w\\\w\w", "shot\\data\\parameter": r"\w\\\w\\\w\w", "next shot": r">\\", "shot before": r"<1\\",
    "argument": r"\\..\[\w", "computed argument": r"\\..\[[0-9]+\+", "argument of an argument": r"\\..\[\w\\..\[",
    "reference": r"!\[", "trace in memory": r"@",
}


def fail(line, message):
    sys.exit(f"language.md:{line}: {message}")


def cells(line):
    return [cell.strip() for cell in line.strip().strip("|").split("|")]


def code(cell):
    """The text of a cell in backticks, None for anything else."""
    match = re.fullmatch(r"`([^`]+)`", cell)
    return match.group(1) if match else None


class Page:
    """The tables of the page: what is to be prepared, and the examples as (line, kind, question, expectation)."""

    def __init__(self, text):
        self.prepared = {name: [] for name in PREPARED.values()}
        self.examples = []
        head = None
        for number, line in enumerate(text.splitlines(), 1):
            if not line.startswith("|"):
                head = None
            elif head is None:
                head = tuple(cells(line))
                if head not in EXAMPLES and head not in PREPARED and head not in PLAIN:
                    fail(number, f"a table with the unknown head {head}")
            elif not re.fullmatch(r"[|\- ]+", line):
                self.row(number, head, cells(line))

    def row(self, number, head, row):
        if len(row) != len(head):
            fail(number, f"{len(row)} cells, not {len(head)}")
        if head in PREPARED:
            values = [code(cell) if cell else "" for cell in row]
            if None in values:
                fail(number, "a cell that isn't code")
            self.prepared[PREPARED[head]].append(values)
        elif head in EXAMPLES:
            n, kind = EXAMPLES[head]
            question = [code(cell) for cell in row[:n]]
            expected = (None, row[n]) if head[n] == "Message" else (self.expectation(number, kind, row[n]), "")
            if None in question:
                fail(number, "a question that isn't code")
            self.examples.append((number, kind, question, expected))

    @staticmethod
    def expectation(number, kind, cell):
        if kind in NUMERIC and cell == "no value":
            return None
        if kind not in NUMERIC and cell == "empty":
            return ""
        text = code(cell)
        if text is None:
            fail(number, "an answer that isn't code")
        return text


# ---- Files, as docs/formats.md lays them out


def floats(*values):
    return struct.pack(f"<{len(values)}f", *values)


def extremes(values):
    """The largest and the smallest value, and their positions, counted from 1."""
    if not values:
        return 0, 0, 0, 0
    largest, smallest = max(values), min(values)
    return largest, smallest, values.index(largest) + 1, values.index(smallest) + 1


def numbers(text):
    return [float(word) for word in text.split()]


def trace_file(start, step, samples, fields):
    get = lambda name, otherwise=0: fields.get(name, otherwise)
    largest, smallest, at_largest, at_smallest = extremes(samples)
    data = struct.pack("<hhi", 4, 0, len(samples)) + floats(get("t4"), step, get("t5"))
    data += floats(get("calibration", 1), get("attenuation", 1), start, get("timeShift"), largest, smallest)
    data += struct.pack("<iifh", at_largest, at_smallest, get("scaleUnit", 1), 0)
    data += floats(get("scopeValue"), get("t1"), get("t2"), get("t3"), get("offset"))
    data += floats(get("scopeDelay"), get("scopeDelay2"), get("scopeValue2"), get("scopeValue3"))
    data += struct.pack("<hhhh", 0, 0, 0, 0) + struct.pack("<hii", 1, len(samples), 1)
    return data + floats(*samples)


def axis(text):
    """The size of an axis and its bytes: "3 from 10 by 0.5", or the coordinates one by one."""
    uniform = re.fullmatch(r"(\d+) from (\S+) by (\S+)", text.strip())
    if uniform:
        size, first, step = int(uniform.group(1)), float(uniform.group(2)), float(uniform.group(3))
        return size, struct.pack("<i", size) + floats(step, first)
    coordinates = numbers(text)
    return len(coordinates), struct.pack("<i", len(coordinates)) + floats(0, *coordinates)


def matrix_file(axes, values, fields):
    get = lambda name, otherwise=0: fields.get(name, otherwise)
    sizes, dimensions = zip(*[axis(text) for text in axes.split(";")])
    count = 1
    for size in sizes:
        count *= size
    assert count == len(values), f"{len(values)} values on axes of {sizes}"
    data = struct.pack("<iii", 4, 0, len(sizes)) + b"".join(dimensions)
    data += floats(max(values), min(values), 1, get("scaleUnit", 1), *[get(f"t{i}") for i in range(1, 6)])
    return data + struct.pack("<iii", 0, 0, 0) + floats(*values)


def particle_file(count, fields):
    data = struct.pack("<iiiii", 2, 0, 0, count, 8) + floats(0, 0, *[fields.get(f"t{i}", 0) for i in range(1, 6)])
    return data + floats(*[0] * 16) + struct.pack("<iii", 0, 0, 0) + floats(*[0] * 8 * count)


class Shots:
    """The experiment of the page, in a folder."""

    def __init__(self, folder, prepared):
        self.folder = folder
        self.kept = []
        self.fields = {}
        for data, field, value in prepared["fields"]:
            self.fields.setdefault(data, {})[field] = float(value)
        # A settings file that is empty is waited for.
        (folder / f"{folder.name}.ini").write_bytes(b"[General]\r\nDescription=Shots of a page\r\n")
        lines = ["[Fields]"] + [f"{key}={value}" for key, value in prepared["keys"]]
        self.write("Scalars.ini", "".join(line + "\r\n" for line in lines).encode())
        for name, start, step, samples in prepared["traces"]:
            if name.startswith("@"):
                self.kept.append(["keep", name, start, step, *samples.split()])
            else:
                self.write(name + ".wvf", trace_file(float(start), float(step), numbers(samples), self.of(name)))
        for name, axes, values in prepared["matrices"]:
            self.write(name + ".dmt", matrix_file(axes, numbers(values), {} if name == "Both" else self.of(name)))
        for name, count in prepared["particles"]:
            self.write(name + ".dpt", particle_file(int(count), self.of(name)))

    def of(self, name):
        return self.fields.get(name, {})

    def write(self, name, data):
        shot, _, file = name.rpartition("\\")
        path = self.folder / "Shots" / f"Shot{shot or SHOT}" / file
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


# ---- Questions and answers


def system_path(path):
    """As the library spells it: with backslashes, and Z: for the root of a host without drives."""
    return str(path) if os.name == "nt" else "Z:" + str(path).replace("/", "\\")


def ask(program, folder, questions, home):
    environment = dict(os.environ, HOME=str(home), XDG_DATA_HOME=str(home))
    lines = "".join("\t".join(question) + "\n" for question in questions)
    answered = subprocess.run([program, system_path(folder), SHOT], input=lines, capture_output=True, text=True,
                              env=environment, check=True)
    answers = [line.split("\t") for line in answered.stdout.splitlines()]
    assert len(answers) == len(questions), f"{len(answers)} answers to {len(questions)} questions\n{answered.stdout}"
    return answers


def difference(kind, expected, answer, folder):
    """What is wrong with an answer, empty if it is right."""
    (wanted, message), (told, heard) = expected, answer
    if heard != message:
        return f"the message is '{heard}', not '{message}'"
    if kind in NUMERIC:
        if wanted is None:
            return "" if single(float(told)) == NO_VALUE else f"is {told}, and not without a value"
        shown = "%.8g" % single(float(told))
        return "" if shown == wanted else f"is {shown}, not {wanted}"
    if kind == "data name" and wanted:
        wanted = system_path(folder) + "\\" + wanted
    return "" if told == wanted else f"is '{told}', not '{wanted}'"


# ---- What the page has to cover


def codes_of(reference):
    """The two-letter codes of docs/parameters.md by section."""
    sections = {}
    section, tells_codes = None, False
    for line in reference.splitlines():
        if line.startswith("## "):
            section = line[3:]
        if not line.startswith("|"):
            tells_codes = False
        elif re.match(r"\| (Code|) ?\| ", line) and ("Code" in line or "Dimension 1" in line):
            tells_codes = True
        elif tells_codes:
            found = sections.setdefault(section, set())
            row = cells(line)
            if re.search(r"`t1` to `t5`", row[0]):
                found.update(f"t{i}" for i in range(1, 6))
            for cell in row if row[0] and not row[0].startswith("`") else row[:1]:
                found.update(re.findall(r"`([a-z0-9][a-z0-9%])(?:\[\w\])?`", cell))
    return sections


def covered_codes(page):
    """The codes for which the page gives a value, by the sections of docs/parameters.md."""
    data = {"Traces": "traces", "Matrices": "matrices", "Particle groups": "particles"}
    found = {section: set() for section in (*data, "Pairs of traces")}
    for _, kind, question, (wanted, _) in page.examples:
        if wanted is None:
            continue
        if kind == "pair":
            found["Pairs of traces"].add(question[2][:2])
        for section, prepared in data.items() if kind == "formula" else ():
            for name, *_ in page.prepared[prepared]:
                asked = re.findall(r"(?<![\w\\])" + re.escape(name) + r"\\(\w[\w%])", question[0])
                found[section].update(asked)
    return found


def check_coverage(page, reference):
    wanted = codes_of(reference)
    sizes = {"Traces": 38, "Pairs of traces": 13, "Matrices": 23, "Particle groups": 6}
    counted = {section: len(wanted.get(section, ())) for section in sizes}
    assert all(counted[section] >= size for section, size in sizes.items()), f"codes of parameters.md: {counted}"
    found = covered_codes(page)
    for section in sizes:
        missing = wanted[section] - found[section]
        assert not missing, f"{section}: no example of {sorted(missing)}"
    formulas = [question[0] for _, kind, question, (value, _) in page.examples if kind == "formula" and value is not None]
    for form, pattern in FORMS.items():
        assert any(re.search(pattern, text) for text in formulas), f"no formula with a value shows '{form}'"
    least = sum(counted.values()) + len(FORMS)
    assert len(page.examples) >= least, f"{len(page.examples)} examples, and {least} things to show"
    for kind in {kind for _, kind in EXAMPLES.values()}:
        assert any(example[1] == kind for example in page.examples), f"no example of the kind '{kind}'"
    return sum(counted.values())


def main(page_file, reference_file, program):
    page = Page(pathlib.Path(page_file).read_text(encoding="utf-8"))
    n_codes = check_coverage(page, pathlib.Path(reference_file).read_text(encoding="utf-8"))
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch).resolve() / "Page"
        folder.mkdir()
        shots = Shots(folder, page.prepared)
        questions = shots.kept + [[kind, *question] for _, kind, question, _ in page.examples]
        answers = ask(program, folder, questions, scratch)
    kept = len(shots.kept)
    assert all(told == "kept" for told, _ in answers[:kept]), "a trace can't be kept in memory"
    wrong = 0
    for (line, kind, question, expected), answer in zip(page.examples, answers[kept:]):
        message = difference(kind, expected, answer, folder)
        if message:
            print(f"language.md:{line}: {kind} {' | '.join(question)} {message}")
            wrong += 1
    print(f"{len(page.examples)} examples asked, {n_codes} codes and {len(FORMS)} forms shown")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main(*sys.argv[1:])
