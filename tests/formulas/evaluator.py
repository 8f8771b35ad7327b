"""A second evaluator of formulas, to compare with the library's: it rewrites the text in the same way and was
written without looking at it. All text is bytes. Numbers are single precision, held as Python's floats.

    shot = Shot(folder_of_the_experiment, "009")
    evaluator = Evaluator(shot)
    evaluator.value(b"2*x+W\\mx"), evaluator.messages

What the language doesn't settle raises `Unsettled`.
"""

import ctypes
import ctypes.util
import math
import pathlib
import re
import struct
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "data"))

from generate_trace_parameters import OF_PERCENT, OF_TIME, OF_VALUE, PLAIN  # noqa: E402
from generate_waveform_values import DFMAX, INF, Trace, add, mul, r, sub, usable  # noqa: E402

UNDEFINED = -INF
ARG_OPEN, ARG_CLOSE, NEG_OPEN, NEG_CLOSE = b"\xC9", b"\xCA", b"\xCB", b"\xCC"
NUMBER_CHARS = b"1234567890."
OPERATOR_CHARS = b" +-*/^("
BACKSLASH = b"\\"


class Unsettled(Exception):
    """There is no right answer."""


# ---- Numbers -----------------------------------------------------------------------------------------------------

# Python raises exceptions where C has infinities and NaNs, and its functions may not be the C library's.
LIBM = ctypes.CDLL(ctypes.util.find_library("m"))
for name in ("sin", "cos", "tan", "log", "exp", "atan", "pow"):
    getattr(LIBM, name).restype = ctypes.c_double
    getattr(LIBM, name).argtypes = [ctypes.c_double] * (2 if name == "pow" else 1)

FUNCTIONS = {name: lambda x, f=getattr(LIBM, name): r(f(x)) for name in ("sin", "cos", "tan", "log", "exp")}
FUNCTIONS["atn"] = lambda x: r(LIBM.atan(x))  # the nearest single, which a C library's own atanf isn't always
FUNCTIONS["bol"] = lambda x: x

SPACE = rb"[ \t\n\v\f\r]*"
HEX = re.compile(SPACE + rb"[+-]?0x(?:[0-9a-f]+\.?[0-9a-f]*|\.[0-9a-f]+)(?:p[+-]?[0-9]+)?", re.I)
NAN = re.compile(SPACE + rb"([+-]?)nan(?:\([0-9a-z_]*\))?", re.I)
DECIMAL = re.compile(SPACE + rb"[+-]?(?:inf|infinity|(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:e[+-]?[0-9]+)?)", re.I)


def to_float(text):
    """What C reads from the whole text, None if it can't."""
    if DECIMAL.fullmatch(text):
        return r(float(text))
    nan = NAN.fullmatch(text)
    if nan:
        return math.copysign(math.nan, -1.0 if nan.group(1) == b"-" else 1.0)
    if HEX.fullmatch(text):
        try:
            return r(float.fromhex(text.decode()))
        except OverflowError:
            return math.copysign(INF, -1.0 if b"-" in text.split(b"0")[0] else 1.0)
    return None


def written(x):
    if math.isnan(x):
        return b"-nan" if math.copysign(1.0, x) < 0 else b"nan"
    return b"%.8g" % x


def divide(a, b):
    return r(a / b) if b != 0 else a * math.copysign(INF, b)


def power(a, b):
    return r(LIBM.pow(a, b))


# ---- Data files --------------------------------------------------------------------------------------------------


class Fields:
    """The bytes of a file, field after field."""

    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, form):
        values = struct.unpack_from("<" + form, self.data, self.at)
        self.at += struct.calcsize("<" + form)
        return values

    def pass_text(self, form):
        (length,) = self.take(form)
        self.at += max(0, length)


class TraceFile:
    def __init__(self, data):
        fields = Fields(data)
        version, skip = fields.take("hh")
        fields.at += skip
        n, t4, step, t5, cal, att, start, shift, top, bottom = fields.take("i9f")
        at_top, at_bottom, tick, _, scope, t1, t2, t3, offset, delay, delay2 = fields.take("iifh7f")
        fields.take("2f")
        for _ in range(4):
            fields.pass_text("h")
        fields.take("hii")
        delay2 = delay2 if abs(version) >= 4 else 0.0
        samples = fields.take(f"{n}f")
        self.trace = Trace("", samples, step or 1.0, shift, sub(sub(start, delay), delay2), delay, delay2,
                           (top, bottom, at_top, at_bottom))  # fmt: skip
        self.stored = {"t1": t1, "t2": t2, "t3": t3, "t4": t4, "t5": t5, "su": tick or 1.0, "cl": cal, "at": att,
                       "bl": offset, "sv": scope}  # fmt: skip

    def parameter(self, text):
        code, argument = text[:2].lower().decode("latin-1"), to_float(text[3:-1])
        if code in self.stored:
            return self.stored[code]
        if code in PLAIN:
            return PLAIN[code](self.trace)
        for functions in (OF_TIME, OF_VALUE, OF_PERCENT):
            if code in functions:
                return functions[code](self.trace, 0.0 if argument is None else argument)
        return -DFMAX


class MatrixFile:
    """Read as far as its first slice."""

    def __init__(self, data):
        fields = Fields(data)
        version, skip = fields.take("ii")
        fields.at += skip
        (rank,) = fields.take("i")
        axes = [self.axis(fields) for _ in range(rank)] + [(1.0, [0.0])] * (3 - rank)
        top, bottom = fields.take("2f")
        fields.take("f" if version >= 4 else "")
        tick, *free = fields.take("6f")
        self.stored = {f"t{i}": t for i, t in enumerate(free, 1)} | {"mx": top, "mn": bottom, "su": tick}
        for d, (letter, (step, coordinates)) in enumerate(zip("rcl", axes), 1):
            first_interval = sub(coordinates[1], coordinates[0]) if len(coordinates) > 1 else 0.0
            last = coordinates[0] if d == rank else coordinates[-1]
            quantities = {"c": float(len(coordinates)), "s": step, "b": coordinates[0], "1": first_interval, "e": last}
            self.stored |= {letter + quantity: value for quantity, value in quantities.items()}

    @staticmethod
    def axis(fields):
        n, step = fields.take("if")
        if step == 0:
            return step, fields.take(f"{n}f")
        (first,) = fields.take("f")
        return step, [add(mul(float(i), step), first) for i in range(n)]

    def parameter(self, text):
        return self.stored.get(text.lower().decode("latin-1"), -DFMAX)


class ParticleFile:
    def __init__(self, data):
        fields = Fields(data)
        _, skip = fields.take("ii")
        fields.at += skip
        _, n, _, _, _, *free = fields.take("3i7f")
        self.stored = {f"t{i}": t for i, t in enumerate(free, 1)} | {"np": float(n)}

    def parameter(self, text):
        try:
            return self.stored[text.lower().decode("latin-1")]
        except KeyError:
            raise Unsettled from None


# ---- A shot ------------------------------------------------------------------------------------------------------


class Shot:
    """What the files of an experiment say, as they are now; `name` is the current shot."""

    def __init__(self, experiment, name):
        self.name = name.encode()
        self.experiment = experiment.name.lower().encode()
        self.files = {}
        for path in experiment.rglob("*.*"):
            place = str(path.relative_to(experiment.parent)).replace("/", "\\").lower().encode()
            self.files[place] = path.read_bytes()
        scalars = self.files[self.folder(self.name) + b"\\scalars.ini"]
        self.lines = scalars.partition(b"[Fields]\r\n")[2].split(b"\r\n")
        self.read = {}

    def folder(self, shot):
        return self.experiment + b"\\shots\\shot" + shot.lower()

    def stored(self, key):
        begin = key.lower() + b"="
        found = [line for line in self.lines if line.lower().startswith(begin)]
        return found[0][len(begin):] if found and not key.startswith(b";") else b""

    def text(self, key):
        if key.lower() == b"shot":
            return self.name
        first, pair, second = key.partition(b"::")
        return self.stored(first) or self.stored(second) if pair else self.stored(key)

    def expanded(self, text):
        out = b""
        while True:
            plain, opening, rest = text.partition(b"![")
            out += plain
            if not opening:
                return out
            key, _, text = rest.partition(b"]")
            value = self.text(key)
            if not value:
                return b""
            out += value

    def stepped(self, offset):
        digits = re.search(rb"[0-9]+$", self.name)
        if offset == 0 or not digits:
            return self.name
        return self.name[: digits.start()] + b"%.*d" % (len(digits[0]), int(digits[0]) + offset)

    def clean(self, name):
        shot, _, file = name.rpartition(BACKSLASH)
        if not shot.startswith((b"<", b">")):
            return name
        offset = re.match(SPACE + rb"([+-]?[0-9]+)", shot[1:])
        if shot[1:] and not offset:
            return file
        if not shot[1:]:
            return self.stepped(1) + BACKSLASH + file
        return self.stepped(int(offset[1]) * (-1 if shot.startswith(b"<") else 1)) + BACKSLASH + file

    def path(self, name):
        """Where a data file lies, without extension; None for nowhere."""
        if name.startswith(b".\\"):
            place = self.experiment + BACKSLASH + name[2:].replace(b"/", BACKSLASH)
        elif name.startswith(b"..\\"):
            place = name[3:].replace(b"/", BACKSLASH)
        elif name.startswith((b".", b"\\\\")):
            return None
        else:
            shot, _, file = name.rpartition(BACKSLASH)
            if shot.endswith(BACKSLASH):
                return None
            place = self.folder(shot or self.name) + BACKSLASH + file
        if b"/" in place or any(element in (b"", b".", b"..") for element in place.split(BACKSLASH)):
            raise Unsettled
        return place.lower()

    def parameter(self, name, text):
        file = self.clean(name)
        if not file:
            return -DFMAX  # a new trace, without samples
        place = self.path(file)
        if place is None:
            return UNDEFINED
        for extension, kind in ((b".wvf", TraceFile), (b".dmt", MatrixFile), (b".dpt", ParticleFile)):
            data = self.files.get(place + extension)
            if data is None or (kind is TraceFile and file.startswith(b"@")):
                continue
            if place + extension not in self.read:
                self.read[place + extension] = kind(data)
            content = self.read[place + extension]
            if kind is not TraceFile or content.trace.n() > 0:
                return content.parameter(text)
        return UNDEFINED


# ---- The language, level by level --------------------------------------------------------------------------------


class Evaluator:
    def __init__(self, shot):
        self.shot = shot
        self.messages = 0

    def value(self, formula):
        text = self.shot.expanded(formula)
        if any(mark in text for mark in (ARG_OPEN, ARG_CLOSE, NEG_OPEN, NEG_CLOSE)):
            raise Unsettled
        v = self.parse_input(text)
        return v if usable(v) else -DFMAX

    def is_true(self, key):
        return self.shot.text(key).lower() == b"true"

    def complain(self):
        self.messages += 1
        return UNDEFINED

    def parse_input(self, text):
        """brackets, parentheses, c ? a ? b, a :: b"""
        if not text:
            return UNDEFINED
        number = to_float(text)
        if number is not None:
            return number
        at = text.rfind(b"[")
        while at >= 0:
            close = text.find(b"]", at)
            if close < 0:
                return self.complain()
            before, inside, behind = text[:at], text[at + 1 : close], text[close + 1 :]
            if not before and not behind:
                return self.parse_single(inside)
            if at >= 3 and text[at - 3 : at - 2] == BACKSLASH and text[at - 1 : at] not in OPERATOR_CHARS:
                text = before + ARG_OPEN + written(self.parse_input(inside)) + ARG_CLOSE + behind
            else:
                v = self.parse_single(inside)
                if not usable(v):
                    return UNDEFINED
                text = before + written(v) + behind
            at = text.rfind(b"[", 0, at)
        at = text.rfind(b"(")
        while at >= 0:
            close = text.find(b")", at)
            if close < 0:
                return self.complain()
            inside, behind = text[at + 1 : close], text[close + 1 :]
            name = text[at - 3 : at].lower().decode("latin-1") if at >= 3 else ""
            v = self.parse_input(inside)
            if not usable(v):
                if name != "bol":
                    return UNDEFINED
                v = 1.0 if self.is_true(inside) else 0.0
            before, result = text[:at], v
            if name in FUNCTIONS:
                before, result = text[: at - 3], FUNCTIONS[name](v)
            if behind.startswith(b"^") and result < 0:
                text = before + NEG_OPEN + written(result) + NEG_CLOSE + behind
            else:
                text = before + written(result) + behind
            at = text.rfind(b"(")
        number = to_float(text)
        if number is not None:
            return number
        if b"?" in text:
            condition, _, rest = text.partition(b"?")
            then, _, otherwise = rest.partition(b"?")
            v = self.parse_input(b"1" if self.is_true(condition) else condition)
            return self.parse_input(then if usable(v) and v > 0 else otherwise)
        if b"::" in text:
            first, _, second = text.partition(b"::")
            v = self.parse_input(first)
            return v if usable(v) else self.parse_input(second)
        return self.parse_addend(text)

    @staticmethod
    def behind_mark(text, i):
        """The place of the closing mark if an opening one stands at i, otherwise i."""
        if text[i : i + 1] not in (ARG_OPEN, NEG_OPEN):
            return i
        close = text.find(ARG_CLOSE if text[i : i + 1] == ARG_OPEN else NEG_CLOSE, i)
        return close if close >= 0 else len(text)

    def parse_addend(self, text):
        """a + b, a - b"""
        total, combine, start = 0.0, add, 0
        i = 0
        while i < len(text):
            i = self.behind_mark(text, i)
            c, before, after = text[i : i + 1], text[max(i - 1, 0) : i], text[i + 1 : i + 2]
            if c in (b" ", b"*", b"/", b"^") and after not in (ARG_OPEN, NEG_OPEN):
                i += 1
            elif c in (b"E", b"e") and before and before in NUMBER_CHARS:
                i += 1
            elif c == b"-" and i == 0:
                combine, start = sub, 1
            elif c == b"+" or (c == b"-" and before not in (b"+", b"-")):
                t = self.parse_factor(text[start:i])
                if not usable(t):
                    return UNDEFINED
                total, combine, start = combine(total, t), add if c == b"+" else sub, i + 1
            i += 1
        t = self.parse_factor(text[start:])
        return combine(total, t) if usable(t) else UNDEFINED

    def parse_factor(self, text):
        """a * b, a / b"""
        product, combine, start = 1.0, mul, 0
        i = 0
        while i < len(text):
            i = self.behind_mark(text, i)
            if text[i : i + 1] in (b"*", b"/"):
                t = self.parse_power(text[start:i])
                if not usable(t):
                    return UNDEFINED
                product, start = combine(product, t), i + 1
                combine = mul if text[i : i + 1] == b"*" else divide
            i += 1
        t = self.parse_power(text[start:])
        return combine(product, t) if usable(t) else UNDEFINED

    def parse_power(self, text):
        """a ^ b, from left to right; the first base may be invalid"""
        base, start = None, 0
        i = 0
        while i < len(text):
            if text[i : i + 1] == ARG_OPEN:
                i = self.behind_mark(text, i)
            if text[i : i + 1] == b"^":
                t = self.parse_single(text[start:i])
                if base is not None and not usable(t):
                    return UNDEFINED
                base, start = t if base is None else power(base, t), i + 1
            i += 1
        t = self.parse_single(text[start:])
        if base is None:
            return t
        return power(base, t) if usable(t) else UNDEFINED

    def parse_single(self, text):
        """a number, a name, a parameter"""
        if text.startswith(NEG_OPEN):
            text = text[1:-1]
        number = to_float(text)
        if number is not None:
            return number
        at = text.rfind(BACKSLASH)
        if at < 0:
            number = to_float(self.shot.text(text))
            return UNDEFINED if number is None else number
        if text.endswith(ARG_CLOSE):
            marked = bytearray(text)
            if at + 3 < len(marked):
                marked[at + 3] = ord("[")
            marked[-1] = ord("]")
            text = bytes(marked)
        return self.shot.parameter(text[:at], text[at + 1 :])
