#!/usr/bin/env python3
"""Makes TraceParameterValues.h: what the two-letter parameters of traces have to give, to the last bit.

    python3 generate_trace_parameters.py > TraceParameterValues.h

Each parameter is spelled out step by step as it is promised: in single precision, rounded after each operation, and
in double precision where a step is promised to be double. The arithmetic, the lookups on a trace and a good part of the
traces are those of generate_waveform_values.py. Nothing here comes from the library. A sample that a trace doesn't have
counts as 0.
"""

import math

from generate_waveform_values import (
    DFMAX, INF, NAN, TRACES, Trace, above, add, avg, bits, distinct, div, finite, mul, noise, of_bits, quoted, r, sub,
    table, time_at_val, time_at_val_r, val_at_time, word, words, xy_time_at_val, xy_time_at_val_r,
)  # fmt: skip

PI = of_bits(0x40490FDB)


# ---- Single precision, further ---------------------------------------------------------------------------------


def single(i):
    """A count as a float."""
    return r(float(i))


def product(wide, x):
    """A double constant times a float, narrowed at the end."""
    return r(wide * x)


def square(x):
    return r(x * x)


def root(x):
    return x if math.isnan(x) or math.isinf(x) else r(math.sqrt(x))


def floored(x):
    return x if math.isnan(x) or math.isinf(x) or x == 0 else float(math.floor(x))


# ---- The computed parameters -------------------------------------------------------------------------------------


def initial_time(w):
    return add(add(w.delay, w.start_time), w.delay2)


def behind(w, position):
    return add(w.first_time(), mul(single(position), w.step))


def rise(w, high, low):
    late = time_at_val(w, product(high, w.top))
    return sub(late, time_at_val(w, product(low, w.top)))


def integral(w):
    total = 0.0
    for i in range(1, w.n()):
        total = add(total, w.y(i))
    return mul(total, w.step)


def peak_of_integral(w):
    run, best = 0.0, 0.0
    for i in range(1, w.n()):
        run = add(run, w.y(i))
        if best > run:
            continue
        best = run
    return mul(best, w.step)


def radial_integral(w):
    radius = w.first_time()
    if not radius > 0:
        radius = 0.0
    area = mul(mul(mul(PI, w.y(0)), radius), radius)
    width = mul(mul(PI, 2.0), w.step)
    for i in range(1, w.n()):
        term = mul(mul(width, w.y(i)), w.step)
        at = (single(i) - 0.5) + radius  # double
        area = r(area + term * at)  # double, then single
    return area


def standard_deviation(w):
    total = 0.0
    for i in range(w.n()):
        total = add(total, w.y(i))
    mean = div(total, single(w.n()))
    squares = 0.0
    for i in range(w.n()):
        squares = add(squares, square(sub(w.y(i), mean)))
    if w.n() > 1:
        squares = div(squares, single(w.n() - 1))
    return 0.0 if squares < 0 else root(squares)


def weighted_time(w):
    total, moment = 0.0, 0.0
    for i in range(w.n()):
        total = add(total, w.y(i))
        moment = add(moment, mul(add(mul(single(i), w.step), w.first_time()), w.y(i)))
    return 0.0 if total == 0 else div(moment, total)


def width_at_half(w):
    half = mul(w.top, 0.5)
    peak = w.at_top

    def crossing(i):
        fraction = div(sub(half, w.y(i - 1)), sub(w.y(i), w.y(i - 1)))
        return r(fraction + (single(i) - 1.0))  # double, then single

    right, left = r(single(w.n()) - 1.0), 0.0
    for q in range(peak, 0, -1):
        if half > w.y(q - 1):
            left = crossing(q)
            break
    for at in range(peak, w.n()):
        if half > w.y(at):
            right = crossing(at)
            break
    return mul(sub(right, left), w.step)


def time_of_sample_before(w, t):
    return add(mul(floored(div(sub(t, w.first_time()), w.step)), w.step), w.first_time())


def percent(w, p):
    return div(mul(p, w.top), 100.0)


PLAIN = {
    "st": lambda w: w.first_time(),
    "it": initial_time,
    "ts": lambda w: w.shift,
    "is": lambda w: w.start_time,
    "pt": lambda w: w.delay,
    "ft": lambda w: w.last_time(),
    "mx": lambda w: w.top,
    "mn": lambda w: w.bottom,
    "tp": lambda w: w.step,
    "tm": lambda w: behind(w, w.at_top),
    "tn": lambda w: behind(w, w.at_bottom),
    "19": lambda w: rise(w, 0.9, 0.1),
    "28": lambda w: rise(w, 0.8, 0.2),
    "av": lambda w: avg(w, w.first_time(), w.last_time()),
    "in": integral,
    "ri": radial_integral,
    "pi": peak_of_integral,
    "sd": standard_deviation,
    "wa": weighted_time,
    "fh": width_at_half,
}
OF_TIME = {
    "vt": val_at_time,
    "la": lambda w, t: avg(w, w.first_time(), t),
    "ta": lambda w, t: avg(w, t, w.last_time()),
    "lt": time_of_sample_before,
}
OF_VALUE = {"tv": time_at_val, "bv": time_at_val_r}
OF_PERCENT = {
    "t%": lambda w, p: time_at_val(w, percent(w, p)),
    "b%": lambda w, p: time_at_val_r(w, percent(w, p)),
}


# ---- On a pair ---------------------------------------------------------------------------------------------------


def xy_rise(w, x, high, low):
    late = xy_time_at_val(w, product(high, w.top), x)
    return sub(late, xy_time_at_val(w, product(low, w.top), x))


def xy_percent(w, p):
    return div(mul(p, 100.0), w.top)


XY_PLAIN = {
    "st": lambda w, x: x.y(0),
    "ft": lambda w, x: x.y(w.n() - 1),
    "tm": lambda w, x: x.y(w.at_top),
    "tn": lambda w, x: x.y(w.at_bottom),
    "19": lambda w, x: xy_rise(w, x, 0.9, 0.1),
    "28": lambda w, x: xy_rise(w, x, 0.8, 0.2),
}
XY_OF_POSITION = {
    "vt": lambda w, x, at: val_at_time(w, time_at_val(x, at)),
    "la": lambda w, x, at: avg(w, w.first_time(), time_at_val(x, at)),
    "ta": lambda w, x, at: avg(w, time_at_val(x, at), w.last_time()),
}
XY_OF_VALUE = {
    "tv": lambda w, x, v: xy_time_at_val(w, v, x),
    "bv": lambda w, x, v: xy_time_at_val_r(w, v, x),
}
XY_OF_PERCENT = {
    "t%": lambda w, x, p: xy_time_at_val(w, xy_percent(w, p), x),
    "b%": lambda w, x, p: xy_time_at_val_r(w, xy_percent(w, p), x),
}


# ---- What is asked ---------------------------------------------------------------------------------------------


def pulse(n, at, width, seed):
    rough = noise(n, seed, 0.08)
    return [3.7 / (1.0 + ((i - at) / width) ** 2) - 0.2 + rough[i] for i in range(n)]


MORE = [
    Trace("pulse", pulse(40, 13.3, 3.1, 2), step=2.5e-4, shift=1e-3, start=-2e-3, delay=3e-4, delay2=-1e-4),
    Trace("long noise", noise(300, 5, 7), step=1e-3, start=0.37),
    Trace("peak first", [9, 7, 4, 2, 1], step=0.3, start=1.1),
    Trace("peak last", [1, 2, 4, 7, 9], step=0.3, start=-1.1),
    Trace("twin peaks", [0, 3, 8, 1, 8, 3, 0.5], step=0.7, start=0.2),
    Trace("flat top", [0, 1, 6, 6, 6, 2, 0], step=0.1, shift=3),
    Trace("samples at half", [0, 1, 4, 8, 4, 4, 1], step=0.1),
    Trace("never below half", [6, 7, 9, 8, 5], step=0.5, start=7),
    Trace("below half on the left", [1, 7, 9, 8, 5], step=0.3),
    Trace("below half on the right", [6, 7, 9, 8, 4], step=0.3),
    Trace("below zero", [-4, -3, -1, -5, -2], step=0.1, start=3),
    Trace("below zero, peak last", [-4, -3, -2, -1], step=0.1),
    Trace("below zero, peak first", [-1, -2, -3, -4], step=0.1),
    Trace("both signs", [5, -3, 4, -8, 12.3, 3, -1], step=0.3, start=-0.5),
    Trace("integral below zero", [3, -1, -2, 0.5, 0.25], step=0.3),
    Trace("sum of zero", [1, -1, 2, -2], step=0.5, start=3),
    Trace("all zero", [0, 0, 0, 0], step=0.3, start=1),
    Trace("too small to scale", [4e-31, 5e-31, 3e-31, 2.6e-31], step=0.3, start=1),
    Trace("too small, falling below half", [4e-31, 5e-31, 1e-31, 3e-31], step=0.3, start=1),
    Trace("too small, begins below half", [1e-31, 5e-31, 4e-31, 3e-31], step=0.3, start=1),
    Trace("negative start", noise(9, 13, 5), step=0.2, start=-3.3),
    Trace("start past zero", noise(9, 17, 5), step=0.02, shift=0.05, start=0.013, delay=0.3, delay2=0.11),
    Trace("start summed to zero", [1, 3, 2, 5], step=0.5, shift=-1, start=0.5, delay=0.25, delay2=0.25),
    Trace("order of the start", [1, 3, 2, 5], step=0.5, shift=0.1, start=1e8, delay=-1e8, delay2=0.3),
    Trace("starts above a tenth", [3, 5, 10, 6, 1], step=0.3),
    Trace("crosses often", [1, 5, 2, 9, 3, 7, 1.5], step=0.9, start=-2),
    Trace("wide range of sums", [1e8, 1, 1, 1, -1e8, 3e-3, 1, 0.1, 0.1], step=0.1, start=0.7),
    Trace("peak said elsewhere", [1, 6, 3, 5, 2, 4, 1], step=0.5, extremes=(5, 1.5, 4, 3)),
    Trace("peak said to be none", [3, 6, 1, 5, 2], step=0.5, extremes=(6, 1, 0, 0)),
    Trace("maximum is no number", [1, 6, 3, 5, 2], step=0.5, extremes=(NAN, 1, 2, 1)),
    Trace("maximum is infinite", [1, 6, 3, 5, 2], step=0.5, extremes=(INF, -INF, 2, 1)),
    Trace("maximum of zero", [-1, 0, -3, -2, -5], step=0.5),
    Trace("minimum above maximum", [1, 6, 3, 5, 2], step=0.5, extremes=(1, 6, 1, 2)),
    Trace("one of zero", [0], step=0.3, start=1),
    Trace("one below zero", [-3.3], step=0.3, start=0.7),
    Trace("one bad", [-DFMAX], step=0.3, start=0.7),
    Trace("one, negative start", [3.3], step=0.3, start=-0.7),
    Trace("two equal", [2, 2], step=0.3, start=-0.7),
    Trace("two rising", [-0.3, 2.2], step=0.3, start=0.7),
    Trace("three with a hat", [0.2, 3.3, 1.1], step=0.3, start=-0.7, delay=0.9),
    Trace("loop", [0, 2, 3, 1, -1, 0.5, 0.1], step=0.1),
    Trace("positions falling", [7.7, 5.5, 3.3, 1.1, -2.2], step=0.1),
    Trace("flat positions", [4, 4, 4, 4, 4], step=0.1),
]  # fmt: skip
SHARED = {
    "rising", "falling", "flat", "noisy", "hat", "none", "header alone", "one", "one with zero below", "two", "three",
    "three rising", "bad samples", "begins and ends bad", "all bad", "never scaled", "stale extremes", "denormal step",
    "huge step", "overflowing step", "step of zero", "step below zero", "huge values", "unlike magnitudes",
}  # fmt: skip
ALL = [w for w in TRACES if w.name in SHARED] + MORE
PERCENTS = [33.3, 50, 90, 100.1, -20]
STRANGE = ["inf", "-inf", "nan", "1e400", "1e-400", "-0"]
STRANGE_ON = {"rising", "bad samples", "one", "maximum is no number"}


def numbers(values):
    return distinct(finite(values))


def times(w):
    s, e, d = w.first_time(), w.last_time(), w.step
    inside = [add(s, mul(r(k), d)) for k in (0.3, 1.7)]
    outside = [sub(s, mul(r(0.25), d))] + [add(e, mul(r(k), d)) for k in (0.5, 1.5)]
    return numbers([s, e] + inside + outside)


def values(w):
    a, b = w.y(0), w.y(1)
    between = [add(a, mul(r(0.3), sub(b, a))), product(0.7, w.top), r((w.top + w.bottom) / 2)]
    return numbers([a, w.y(w.n() - 1)] + between + [w.top, w.bottom, above(w.top) if w.top < INF else INF])


def percents_of_pair(w):
    """Such arguments that the value sought lies on the trace, and two others."""
    return numbers([r(v * w.top / 100) for v in values(w)[:4]] + [0.0, 50.0])


def argument(v):
    text = f"{v:.9g}"
    assert bits(r(float(text))) == bits(v)
    return text


def asked(w, plain, *with_arguments):
    """The text of each parameter asked for, the function of its code, and its argument in a tuple, empty for none."""
    for code, f in plain.items():
        yield code, f, ()
    for codes, arguments in with_arguments:
        for text in [argument(a) for a in arguments] + (STRANGE if w.name in STRANGE_ON else []):
            for code, f in codes.items():
                yield f"{code}[{text}]", f, (r(float(text)),)


def asked_of(w):
    return asked(w, PLAIN, (OF_TIME, times(w)), (OF_VALUE, values(w)), (OF_PERCENT, [r(p) for p in PERCENTS]))


def asked_of_pair(w, x):
    of_value, of_percent = (XY_OF_VALUE, values(w)), (XY_OF_PERCENT, percents_of_pair(w))
    return asked(w, XY_PLAIN, (XY_OF_POSITION, values(x)), of_value, of_percent)


def pairs():
    """Each trace with the next of its length, the last with the first."""
    for w in ALL:
        alike = [x for x in ALL if x.n() == w.n()]
        yield w, alike[(alike.index(w) + 1) % len(alike)]


def answers(questions, *traces):
    """The cells of a row: text and value, five on a line."""
    empty = traces[0].n() == 0
    cells = [f"{{{quoted(text)}, {word(-DFMAX if empty else f(*traces, *arg))}}}" for text, f, arg in questions]
    lines = [", ".join(cells[i : i + 5]) for i in range(0, len(cells), 5)]
    return "{\n         " + ",\n         ".join(lines) + "}"


HEAD = '''// Made by generate_trace_parameters.py; change that instead.
// clang-format off
/// What the parameters of traces have to give, to the last bit: floats as their bit patterns. Any NaN stands for every
/// NaN.
#pragma once

#include <vector>

#include "data/WaveformValues.h"

namespace trace_parameter_values {

using waveform_values::Bits;
using waveform_values::Trace;

struct Answer {
    char const *text;
    Bits value;
};

struct Row {
    char const *trace;
    std::vector<Answer> answers;
};

/// `curve` gives the positions.
struct PairRow {
    char const *trace, *curve;
    std::vector<Answer> answers;
};'''


def main():
    print(HEAD)
    table("Trace", "Traces", (
        [quoted(w.name), word(w.step), word(w.shift), word(w.start_time), word(w.delay), word(w.delay2), word(w.top),
         word(w.bottom), str(w.at_top), str(w.at_bottom), words(w.samples)] for w in ALL))  # fmt: skip
    table("Row", "Rows", ([quoted(w.name), answers(asked_of(w), w)] for w in ALL))
    table("PairRow", "PairRows", (
        [quoted(w.name), quoted(x.name), answers(asked_of_pair(w, x), w, x)] for w, x in pairs()))  # fmt: skip
    print("\n} // namespace trace_parameter_values")


if __name__ == "__main__":
    main()
