#!/usr/bin/env python3
"""Makes WaveformValues.h: what the arithmetic of a trace has to give, to the last bit.

    python3 generate_waveform_values.py > WaveformValues.h

Every operation below is spelled out step by step as it is promised, in single precision: each sum, difference,
product and quotient of two single-precision values is computed in double precision and rounded to single at once,
which for these four operations gives the correctly rounded single-precision result. Nothing here comes
from the library. A sample that a trace doesn't have counts as 0, and a floating value that doesn't fit an int
becomes the most negative int.
"""

import math
import struct

INT_MIN = -(2**31)
INT_MAX = 2**31 - 1
INF = math.inf
NAN = math.nan


# ---- Single precision ------------------------------------------------------------------------------------------


def r(x):
    """x, rounded to single precision."""
    try:
        return struct.unpack("<f", struct.pack("<f", x))[0]
    except OverflowError:
        return math.copysign(INF, x)


def bits(x):
    if math.isnan(x):
        return 0x7FC00000
    return struct.unpack("<I", struct.pack("<f", x))[0]


def of_bits(b):
    return struct.unpack("<f", struct.pack("<I", b))[0]


def above(x):
    """The next single-precision value above a finite x."""
    b = bits(x)
    if x == 0:
        return of_bits(1)
    return of_bits(b + 1 if x > 0 else b - 1)


def below(x):
    return -above(-x)


def add(a, b):
    return r(a + b)


def sub(a, b):
    return r(a - b)


def mul(a, b):
    return r(a * b)


def div(a, b):
    if b == 0:
        if a == 0 or math.isnan(a) or math.isnan(b):
            return NAN
        return math.copysign(INF, a) * math.copysign(1.0, b)
    if math.isinf(a) and math.isinf(b):
        return NAN
    return r(a / b)


def fits(x):
    return not math.isnan(x) and not math.isinf(x) and -2147483649.0 < x < 2147483648.0


def floor_int(x):
    return math.floor(x) if fits(x) and math.floor(x) >= INT_MIN else INT_MIN


def trunc_int(x):
    return math.trunc(x) if fits(x) else INT_MIN


DFMAX = of_bits(0x7F7843B0)
assert DFMAX == r(3.3e38)


def usable(x):
    return -9.9e34 < x < 9.9e34


# ---- A trace -----------------------------------------------------------------------------------------------------


class Trace:
    def __init__(self, name, samples, step=1.0, shift=0.0, start=0.0, delay=0.0, delay2=0.0, extremes=None):
        self.name = name
        self.samples = [r(s) for s in samples]
        self.step, self.shift, self.start_time = r(step), r(shift), r(start)
        self.delay, self.delay2 = r(delay), r(delay2)
        if extremes is None:
            top, bottom, at_top, at_bottom = self.extremes()
        else:
            top, bottom, at_top, at_bottom = extremes
        self.top, self.bottom, self.at_top, self.at_bottom = r(top), r(bottom), at_top, at_bottom

    def extremes(self):
        """As Scale() finds them; the samples stay."""
        return scaled(self.samples)[1:5]

    def n(self):
        return len(self.samples)

    def y(self, i):
        return self.samples[i] if 0 <= i < len(self.samples) else 0.0

    def first_time(self):
        return add(add(add(self.start_time, self.shift), self.delay), self.delay2)

    def last_time(self):
        return add(self.first_time(), mul(r(float(self.n() - 1)), self.step))

    def folded(self):
        return add(add(self.start_time, self.delay), self.delay2)

    def position(self, t):
        return div(sub(t, self.first_time()), self.step)


def index(w, t):
    return floor_int(w.position(t))


def point_at_time(w, t):
    s = w.first_time()
    if s > t:
        return 0
    if t > add(mul(r(float(w.n() - 1)), w.step), s):
        return w.n() - 1
    point = trunc_int(w.position(t))
    return 0 if point == INT_MIN else point  # a time that is no number, or no steps to count, is still a sample's


def val_at_time(w, t):
    x = w.position(t)
    i = floor_int(x)
    if i < 0 or i > w.n():
        return 0.0
    if i == w.n():
        return w.y(i)
    f = sub(x, r(float(i)))
    return add(mul(sub(1.0, f), w.y(i)), mul(f, w.y(i + 1)))


def beyond(w, v):
    return v > w.top or w.bottom > v


def forward(w, v):
    """k and f of the crossing, searched from the first sample on."""
    rising = v > w.y(0)
    i = 1
    while i < w.n() - 1:
        if (rising and w.y(i) > v) or (not rising and v > w.y(i)):
            break
        i += 1
    return i, div(sub(v, w.y(i - 1)), sub(w.y(i), w.y(i - 1)))


def backward(w, v, last):
    """The same from the last sample back, as long as the position is above `last`."""
    rising = v > w.y(w.n() - 1)
    i = w.n() - 2
    while i > last:
        if (rising and w.y(i) > v) or (not rising and v > w.y(i)):
            break
        i -= 1
    return i, div(sub(v, w.y(i)), sub(w.y(i + 1), w.y(i)))


def time_at_val(w, v):
    if beyond(w, v):
        return add(w.last_time(), w.step)
    if v == w.y(0):
        return w.first_time()
    k, f = forward(w, v)
    return add(mul(add(f, r(float(k - 1))), w.step), w.first_time())


def time_at_val_r(w, v):
    if beyond(w, v):
        return sub(w.first_time(), w.step)
    if v == w.y(w.n() - 1):
        return w.last_time()
    k, f = backward(w, v, 1)
    return add(mul(add(f, r(float(k))), w.step), w.first_time())


def xy_time_at_val(w, v, x):
    if beyond(w, v):
        return x.y(x.n() - 1)
    if v == w.y(0):
        return x.y(0)
    k, f = forward(w, v)
    return add(mul(sub(1.0, f), x.y(k)), mul(f, x.y(k - 1)))


def xy_time_at_val_r(w, v, x):
    if beyond(w, v):
        return x.y(0)
    if v == w.y(w.n() - 1):
        return x.y(x.n() - 1)
    k, f = backward(w, v, 0)
    return add(mul(sub(1.0, f), x.y(k + 1)), mul(f, x.y(k)))


def avg(w, t1, t2):
    s = w.first_time()
    a = t1 if t1 > s else s
    e = add(mul(r(float(w.n() - 1)), w.step), s)
    b = t2 if e > t2 else e
    i0 = max(index(w, a), 0)
    i1 = min(index(w, b), w.n())
    if i0 == i1:
        return w.y(i0)
    total = 0.0
    for i in range(i0, i1):
        total = add(total, w.y(i))
    return div(total, r(float(i1 - i0)))


def time_fill(w, first):
    first = max(first, 0)
    s = add(add(add(w.shift, w.start_time), w.delay), w.delay2)
    return [add(s, mul(r(float(i)), w.step)) for i in range(first, w.n())]


def align(w, n, start, step):
    """Outcome (0 nothing, 1 the length alone, 2 a new grid), start time, step, shift, samples."""
    untouched = (0, w.start_time, w.step, w.shift, w.samples)
    if step <= 0:
        return untouched
    n = max(n, 0)
    if start == w.first_time() and step == w.step and n == w.n():
        return untouched
    folded = w.folded()
    if start == add(w.shift, folded) and step == w.step:
        return 1, folded, w.step, w.shift, (w.samples + [0.0] * n)[:n]
    s = add(add(add(folded, w.shift), 0.0), 0.0)
    ratio = div(step, w.step)
    pos = div(sub(start, s), w.step)
    last = r(float(w.n() - 1))
    out = []
    while pos < 0 and len(out) < n:
        out.append(0.0)
        pos = add(pos, ratio)
    while last > pos and len(out) < n:
        i = floor_int(pos)
        f = sub(pos, r(float(i)))
        out.append(add(mul(sub(1.0, f), w.y(i)), mul(f, w.y(i + 1))))
        pos = add(pos, ratio)
    if pos == last and len(out) < n:
        out.append(w.samples[-1])
    out += [0.0] * (n - len(out))
    return 2, start, step, 0.0, out


def scaled(samples):
    """Samples, largest, smallest, their positions, tick size."""
    top, bottom, at_top, at_bottom = -DFMAX, DFMAX, 0, 0
    out = []
    for p, s in enumerate(samples, 1):
        if not usable(s):
            s = -DFMAX
        out.append(s)
        if s > top:
            top, at_top = s, p
        if bottom > s and s > -9.9e33:
            bottom, at_bottom = s, p
    m = max(abs(top), abs(bottom))
    if m < 1e-30:
        m = r(1e-30)
        at_top = 0
    e = int(math.log10(m))
    if m < 1.0:
        e -= 1
    p = r(float(f"1e{e}"))
    k = int(div(m, p))
    if k < 0 or k > 4:
        tick = p
    elif k <= 1:
        tick = r(p * 0.2)
    else:
        tick = r(p * 0.5)
    return out, top, bottom, at_top, at_bottom, tick


def set_factors(samples, old, new):
    """Factor, attenuation and offset, and the samples."""
    cal, att, off = old
    new_cal = new[0] if new[0] != 0 and usable(new[0]) else cal
    new_att = new[1] if new[1] != 0 and usable(new[1]) else att
    new_off = div(new[2], mul(att, cal)) if usable(new[2]) else off
    shift = mul(mul(sub(new_off, off), cal), att)
    factor = div(mul(new_cal, new_att), mul(cal, att))
    return new_cal, new_att, new_off, [mul(sub(s, shift), factor) for s in samples]


# ---- What is asked ---------------------------------------------------------------------------------------------


def noise(n, seed, scale=1.0):
    out = []
    for _ in range(n):
        seed = (seed * 1103515245 + 12345) % 2**31
        out.append(r((seed / 2**30 - 1.0) * scale))
    return out


TRACES = [
    Trace("rising", [-1, 0, 0.5, 2, 3.25, 7], step=0.25),
    Trace("falling", [9.1, 8.7, 5.3, 1.1, 0.7, -2.9], step=0.1, shift=0.7, start=-1.3, delay=0.01, delay2=0.02),
    Trace("flat", [2, 2, 2, 2], step=0.5, start=10),
    Trace("noisy", noise(12, 7), step=1e-6, shift=1e-7, start=-3e-6, delay=1.5e-7, delay2=-2.5e-7),
    Trace("hat", [0, 1, 4, 9, 4, 1, 0], step=1),
    Trace("valley", [3, 1, -2, 0.5, 6, 2.5], step=2, start=-4),
    Trace("none", []),
    Trace("header alone", [], step=0.5, start=3, extremes=(5, -5, 2, 1)),
    Trace("one", [2.5], step=0.25, start=1),
    Trace("one with zero below", [2.5], step=0.25, start=1, extremes=(3, -1, 1, 1)),
    Trace("two", [1.5, -0.5], step=0.1, start=0.3),
    Trace("three", [0.25, 3, 1], step=0.1, shift=-0.2),
    Trace("three rising", [-3, 0.125, 5], step=3, start=100, delay=0.5),
    Trace("four with a step", [1, 5, 2, 3], step=1),
    Trace("bad samples", [1, -DFMAX, 3, 2, -DFMAX, 5], step=1),
    Trace("begins and ends bad", [-DFMAX, 1, 2, -DFMAX], step=1),
    Trace("all bad", [-DFMAX, -DFMAX, -DFMAX], step=1),
    Trace("never scaled", [1, INF, NAN, -INF, 2, 3], step=1, extremes=(2, 0, 5, 1)),
    Trace("stale extremes", [0, 5, 1, 8, 2], step=0.5, start=1, extremes=(4, 0.5, 2, 3)),
    Trace("tiny step", [1, 3, 2, 5], step=1e-30, start=2e-30),
    Trace("denormal step", [1, 3, 2, 5], step=1e-42, start=3e-42),
    Trace("huge step", [1, 3, 2, 5], step=1e30, start=-1.5e30),
    Trace("overflowing step", [1, 3, 2, 5], step=3e38, start=0),
    Trace("late", [1, 2, 4, 8, 16, 32, 64], step=1e-3, start=10000, delay=0.0004, delay2=0.0003),
    Trace("step of zero", [1, 3, 2], step=0, start=1),
    Trace("step below zero", [1, 3, 2, 7], step=-0.5, start=1),
    Trace("tiny values", [1e-45, 3e-45, 1e-40, 2e-38, 1e-44], step=1),
    Trace("huge values", [-9.8e34, 9e34, 1e34, -3e33, 9.8e34], step=1),
    Trace("unlike magnitudes", [1e8, 1, 3, -1e8, 0.25, 1e8, 7, -3, 1e-3, -1e8, 5], step=0.125),
]
# For the way onto another grid alone.
GRID_TRACES = [
    Trace("start that depends on the order", [1, 2, 4], step=0.5, shift=-1e8, start=1, delay=1e8, delay2=1),
    Trace("last is minus zero", [3, 1, -0.0], step=1),
]
BY_NAME = {w.name: w for w in TRACES + GRID_TRACES}
GRIDS = ("rising", "falling", "noisy", "none", "header alone", "one", "two", "three rising", "bad samples",
         "denormal step", "huge step", "overflowing step", "late", "unlike magnitudes")  # fmt: skip
SPANS = GRIDS + ("step of zero", "step below zero", "huge values", "never scaled")
FILLS = ("rising", "falling", "none", "one", "late", "overflowing step", "step below zero")
CURVES = {"rising": ["one", "none", "rising"], "three": ["two", "noisy"], "hat": ["header alone", "noisy"]}


def chosen(names):
    return [BY_NAME[name] for name in names]


def distinct(values):
    seen, out = set(), []
    for v in values:
        if bits(v) not in seen:
            seen.add(bits(v))
            out.append(v)
    return out


def finite(values):
    return [v for v in values if not math.isnan(v) and not math.isinf(v)]


def times_of(w):
    s, e = w.first_time(), w.last_time()
    around = [sub(s, mul(2, w.step)), sub(s, mul(0.25, w.step)), add(s, mul(r(0.3), w.step)), add(s, w.step)]
    around += [add(s, mul(r(1.7), w.step)), add(s, mul(2, w.step)), sub(e, mul(0.5, w.step)), e]
    around += [add(e, mul(0.5, w.step)), add(e, w.step), add(e, mul(1.5, w.step)), add(e, mul(2, w.step))]
    edges = finite([s, e])
    beside = [below(x) for x in edges] + [above(x) for x in edges]
    return distinct(beside + [s] + around + [1e30, -1e30, INF, -INF, NAN])


def values_of(w):
    ends = finite([w.top, w.bottom])
    out = w.samples[:6] + w.samples[-1:]
    out += [r((a + b) / 2) for a, b in zip(w.samples[:6], w.samples[1:7])]
    out += [add(a, mul(r(0.3), sub(b, a))) for a, b in zip(w.samples[:3], w.samples[1:4])]
    out += ends + [above(x) for x in ends] + [below(x) for x in ends] + [0.0, -0.0, INF, -INF, NAN]
    return distinct(r(v) for v in out)


def spans_of(w):
    s, e, d = w.first_time(), w.last_time(), w.step

    def at(x):
        return add(s, mul(r(x), d))

    return [
        (s, e), (s, add(e, mul(10, d))), (-1e30, 1e30), (INF, -INF), (NAN, NAN), (at(0.2), at(0.7)), (at(1.2), at(1.7)),
        (at(0.5), at(2.5)), (at(1), at(3)), (at(2), at(1)), (at(3.5), s), (e, e), (e, add(e, d)), (at(-5), at(-2)),
        (add(e, mul(5, d)), add(e, mul(9, d))), (at(1000), -1e38), (1e38, 1e38),
    ]  # fmt: skip


def grids_of(w):
    s, d, n = add(w.folded(), w.shift), w.step, w.n()
    first = w.first_time()

    def at(x):
        return add(s, mul(r(x), d))

    return [
        (n, first, d), (n + 3, first, d), (max(n - 1, 0), first, d), (0, first, d), (-2, first, d),
        (n, s, d), (n + 1, s, d), (n, first, 0.0), (n, at(0.5), 0.0), (n, at(0.5), -d), (n, at(0.5), NAN), (n, NAN, d),
        (n, at(0.5), INF), (n, INF, d), (n, at(0.5), d), (n + 2, at(-1.5), d), (n + 2, at(-2), mul(0.5, d)),
        (6, at(0), mul(2, d)), (n, at(1), mul(0.5, d)), (24, at(0.1), mul(r(0.3), d)), (4, add(w.last_time(), d), d),
        (3, add(w.last_time(), mul(0.25, d)), mul(2, d)), (4, at(-100), d), (2, at(-3), d),
        (3, w.last_time(), mul(2, d)), (0, at(0.5), d), (-1, at(0.5), d), (3, -1e30, 1e30),
    ]  # fmt: skip


SCALES = [
    ("none", []),
    ("one", [2.5]),
    ("one below zero", [-2.5]),
    ("two rising", [1, 2]),
    ("two falling", [2, 1]),
    ("three", [1, 3, 2]),
    ("rising", [0.5, 1.5, 2.5, 3.5]),
    ("falling", [3.5, 2.5, 1.5, -0.5]),
    ("flat: ties keep the first", [4, 4, 4]),
    ("ties keep the first of each", [1, 7, -3, 7, -3]),
    ("noisy", noise(20, 3, 100)),
    ("all zero", [0, 0, 0]),
    ("zeros of both signs", [-0.0, 0.0, -0.0]),
    ("not a number", [1, NAN, 3]),
    ("not a number first", [NAN, 2, 1]),
    ("infinite", [1, INF, -INF, -2]),
    ("all bad", [NAN, INF, -INF]),
    ("one bad", [NAN]),
    ("marked bad", [1, -DFMAX, 2]),
    ("marked bad alone", [-DFMAX, -DFMAX]),
    ("as large as the mark", [1, DFMAX, 2]),
    ("just usable above", [1, below(r(9.9e34)) if r(9.9e34) >= 9.9e34 else r(9.9e34)]),
    ("just not usable above", [1, r(9.9e34) if r(9.9e34) >= 9.9e34 else above(r(9.9e34))]),
    ("just usable below", [1, -(below(r(9.9e34)) if r(9.9e34) >= 9.9e34 else r(9.9e34))]),
    ("just not usable below", [1, -(r(9.9e34) if r(9.9e34) >= 9.9e34 else above(r(9.9e34)))]),
    ("too low to be smallest", [1, -5e34, 2]),
    ("too low to be smallest, alone", [-5e34]),
    ("just low enough to be smallest", [1, -(below(r(9.9e33)) if r(9.9e33) >= 9.9e33 else r(9.9e33))]),
    ("just too low to be smallest", [1, -(r(9.9e33) if r(9.9e33) >= 9.9e33 else above(r(9.9e33)))]),
    ("largest just under the tiny limit", [below(r(1e-30)) if r(1e-30) >= 1e-30 else r(1e-30), 0]),
    ("largest just at the tiny limit", [r(1e-30) if r(1e-30) >= 1e-30 else above(r(1e-30)), 0]),
    ("tiny, below zero", [0, -1e-31]),
    ("denormal", [1e-45, -1e-45]),
    ("m is that of the smallest", [1, -30]),
] + [(f"m = {m:g}", [0, m]) for m in
     [1, 2, 5, 0.5, 1.5, 1.999, 3, 4, 4.999, 6, 9.99, 10, 20, 49, 50, 99, 100, 1000, 1e4, 1e5, 1e6, 1e10, 1e30, 9e34,
      0.1, 0.2, 0.3, 0.4, 0.9, 0.99, 0.01, 0.02, 0.05, 0.001, 1e-4, 1e-5, 3e-7, 1e-10, 2e-20, 1e-29, 4e-30, 5e-30]
] + [(f"m just under {m}", [below(float(m))]) for m in (1, 10, 5)]  # fmt: skip

FACTORS = [
    # what, old factor, attenuation, offset, new ones, samples
    ("from the start", (1, 1, 0), (2, 10, 0.5), [1, 2, 3]),
    ("awkward factors", (1.1, 0.7, 0.3), (1.3, 0.9, -0.2), [0.1, 0.2, 0.3, -4.7, 1e5]),
    ("awkward again", (3.3, 1 / 3, -1.7), (1 / 7, 11, 2.3), noise(9, 11, 3)),
    ("offset alone", (2, 5, 1), (0, 0, 30), [1, -2, 0]),
    ("offset alone, factor of minus zero", (2, 5, 1), (-0.0, -0.0, 30), [1, -2, 0]),
    ("factor alone", (2, 5, 1), (4, 0, NAN), [1, -2, 0]),
    ("attenuation alone", (2, 5, 1), (0, 2.5, NAN), [1, -2, 0]),
    ("nothing", (2, 5, 1), (0, 0, NAN), [1, -2, 0.1]),
    ("nothing usable", (2, 5, 1), (INF, -INF, INF), [1, -2, 0.1]),
    ("not a number", (2, 5, 1), (NAN, NAN, -INF), [1, -2, 0.1]),
    ("too large", (2, 5, 1), (1e35, -1e35, 1e35), [1, -2, 0.1]),
    ("marks", (2, 5, 1), (DFMAX, -DFMAX, -DFMAX), [1, -2, 0.1]),
    ("just usable", (1, 1, 0), (9.8e34, 1, 0), [1e-34, -1e-30]),
    ("below zero", (2, 5, 1), (-4, 2, -3), [1, -2, 0]),
    ("same again", (2, 5, 0.1), (2, 5, 1), [1, -2, 0.3]),
    ("no samples", (2, 5, 1), (4, 2, 3), []),
    ("one sample", (2, 5, 1), (4, 2, 3), [7]),
    ("bad samples too", (1, 1, 0), (0.5, 1, 1), [-DFMAX, NAN, INF, -INF, 2]),
    ("bad samples overflow", (1, 1, 0), (2, 1, 0), [-DFMAX, DFMAX]),
    ("tiny factors", (1e-20, 1e-20, 0), (1e-15, 1e-20, 1e-38), [1e-40, 2e-38, 1]),
    ("factor of zero from a file", (0, 1, 0.5), (2, 1, 3), [1, 0]),
    ("order of the products", (1e20, 1e20, 1), (1, 1, 5), [1, 2]),
]

TIME_BASES = [
    # what, samples, step, shift, start, delay, delay2
    ("new", 0, 1, 0, 0, 0, 0),
    ("new with samples", 3, 1, 0, 0, 0, 0),
    ("exact", 3, 0.25, 0.5, 2, 1, 4),
    ("tenths", 7, 0.1, 0.2, 0.3, 0.4, 0.7),
    ("order of the terms", 4, 0.1, 1, 1e8, -1e8, 3),
    ("other order of the terms", 4, 0.1, -1e8, 1, 1e8, 1),
    ("order of the delays", 4, 0.1, 0, 1e8, 3, 3),
    ("delays that swallow", 2, 0.1, 0, 0.1, 1e7, 2.5),
    ("many samples", 16777217, 0.1, 0, 0, 0, 0),
    ("below zero", 5, -0.1, -0.2, -0.3, -0.4, -0.7),
    ("tiny", 5, 1e-40, 1e-41, 1e-45, 3e-45, 1e-44),
    ("huge", 5, 1e38, 1e38, 3e38, 1e38, -1e38),
    ("zero of the other sign", 1, 1, -0.0, -0.0, -0.0, -0.0),
]


# ---- The header --------------------------------------------------------------------------------------------------


def word(x):
    return f"0x{bits(r(x)):08x}"


def words(values):
    return "{" + ", ".join(word(v) for v in values) + "}"


def text(values):
    """A list as a text: hundreds of rows with lists in them would cost the compiler minutes."""
    return quoted(" ".join(f"{bits(r(v)):08x}" for v in values))


def number(i):
    return "intMin" if i == INT_MIN else str(i)


def table(kind, name, rows):
    # Rows of a vector live in a function, so that nothing is built before a test asks for it.
    print(f"\ninline std::vector<{kind}> const &{name}()\n{{")
    print(f"    static std::vector<{kind}> const rows = {{")
    for row in rows:
        print("        {" + ", ".join(row) + "},")
    print("    };\n    return rows;\n}")


def quoted(name):
    return f'"{name}"'


HEAD = '''// Made by generate_waveform_values.py; change that instead.
// clang-format off
/// What the arithmetic of a trace has to give, to the last bit: floats as their bit patterns, lists of them as texts
/// in hex. Any NaN stands for every NaN.
#pragma once

#include <cstdint>
#include <vector>

namespace waveform_values {

using Bits = std::uint32_t;
using List = char const *; // words in hex, with blanks between
constexpr int intMin = -2147483647 - 1;

/// A trace that the rows below are about, named by `name`.
struct Trace {
    char const *name;
    Bits timeStep, timeShift, startTime, scopeDelay, scopeDelay2, maxValue, minValue;
    int pointOfMax, pointOfMin;
    std::vector<Bits> samples;
};

struct TimeRow {
    char const *trace;
    Bits time;
    int index, point;
    Bits value;
};

/// Crossings of `value`; the last two are read out of `curve`.
struct ValueRow {
    char const *trace, *curve;
    Bits value, forward, backward, curveForward, curveBackward;
};

struct AverageRow {
    char const *trace;
    Bits from, to, mean;
};

struct TimesRow {
    char const *trace;
    int first;
    List times;
};

enum class Outcome { Nothing, LengthAlone, NewGrid };

struct AlignRow {
    char const *trace;
    int n;
    Bits start, step;
    Outcome outcome;
    Bits startTime, timeStep, timeShift;
    List samples;
};

struct ScaleRow {
    char const *what;
    List before, after;
    Bits maxValue, minValue;
    int pointOfMax, pointOfMin;
    Bits scaleUnit;
};

struct FactorRow {
    char const *what;
    Bits calibration, attenuation, offset;
    Bits newCalibration, newAttenuation, newOffset;
    Bits calibrationAfter, attenuationAfter, offsetAfter;
    List before, after;
};

/// `start` and `end` of the trace; its start time with the delays folded in, as `ScopeZero` leaves it and a file
/// keeps it, and as `InitFrom` gives it; and the start time that is read back from the file.
struct TimeBaseRow {
    char const *what;
    int n;
    Bits timeStep, timeShift, startTime, scopeDelay, scopeDelay2;
    Bits start, end, folded, initFrom, readBack;
};'''


def main():
    print(HEAD)
    table("Trace", "Traces", (
        [quoted(w.name), word(w.step), word(w.shift), word(w.start_time), word(w.delay), word(w.delay2), word(w.top),
         word(w.bottom), str(w.at_top), str(w.at_bottom), words(w.samples)] for w in TRACES + GRID_TRACES))  # fmt: skip
    table("TimeRow", "TimeRows", (
        [quoted(w.name), word(t), number(index(w, r(t))), number(point_at_time(w, r(t))), word(val_at_time(w, r(t)))]
        for w in TRACES for t in times_of(w)))  # fmt: skip
    table("ValueRow", "ValueRows", (
        [quoted(w.name), quoted(c), word(v), word(time_at_val(w, v)), word(time_at_val_r(w, v)),
         word(xy_time_at_val(w, v, BY_NAME[c])), word(xy_time_at_val_r(w, v, BY_NAME[c]))]
        for w in TRACES for c in CURVES.get(w.name, ["noisy"]) for v in values_of(w)))  # fmt: skip
    table("AverageRow", "AverageRows", (
        [quoted(w.name), word(a), word(b), word(avg(w, r(a), r(b)))] for w in chosen(SPANS) for a, b in spans_of(w)))
    table("TimesRow", "TimesRows", (
        [quoted(w.name), number(first), text(time_fill(w, first))]
        for w in chosen(FILLS) for first in (0, 1, -1, INT_MIN, w.n() - 1, w.n(), INT_MAX)))  # fmt: skip
    aligned = []
    for w in chosen(GRIDS) + GRID_TRACES:
        for n, start, step in grids_of(w):
            outcome, *grid, samples = align(w, n, r(start), r(step))
            name = "Outcome::" + ("Nothing", "LengthAlone", "NewGrid")[outcome]
            aligned.append([quoted(w.name), str(n), word(start), word(step), name, *map(word, grid), text(samples)])
    table("AlignRow", "AlignRows", aligned)
    scale_rows = []
    for what, samples in SCALES:
        before = [r(s) for s in samples]
        after, top, bottom, at_top, at_bottom, tick = scaled(before)
        scale_rows.append([quoted(what), text(before), text(after), word(top), word(bottom), str(at_top),
                           str(at_bottom), word(tick)])  # fmt: skip
    table("ScaleRow", "ScaleRows", scale_rows)
    factor_rows = []
    for what, old, new, samples in FACTORS:
        old, new, before = [[r(x) for x in xs] for xs in (old, new, samples)]
        *stored, after = set_factors(before, old, new)
        factors = [word(x) for x in (*old, *new, *stored)]
        factor_rows.append([quoted(what), *factors, text(before), text(after)])
    table("FactorRow", "FactorRows", factor_rows)
    base_rows = []
    for what, n, step, shift, start, delay, delay2 in TIME_BASES:
        w = Trace(what, [], step, shift, start, delay, delay2)
        w.n = lambda count=n: count
        initial = add(add(w.delay, w.start_time), w.delay2)
        back = sub(sub(w.folded(), w.delay), w.delay2)
        base_rows.append([quoted(what), str(n), *map(word, (w.step, w.shift, w.start_time, w.delay, w.delay2)),
                          *map(word, (w.first_time(), w.last_time(), w.folded(), initial, back))])  # fmt: skip
    table("TimeBaseRow", "TimeBaseRows", base_rows)
    print("\n} // namespace waveform_values")


if __name__ == "__main__":
    main()
