"""Checks what examples/shot.pro printed against the bytes of the waveform that it stored, computed anew.

    shot_pro.py OUTPUT FILE.wvf

The stored samples are compared with the oscillation that the script describes; everything that the library computed
from them has to agree bit by bit, in single precision rounded at each step.
"""
import math
import re
import struct
import sys

N, STEP = 2000, 5e-7
failures = []


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def expect(what, found, expected):
    if found != expected:
        failures.append("%s: got %r, not %r" % (what, found, expected))


def stored(name):
    with open(name, "rb") as file:
        data = file.read()
    expect("version, skip length and count", struct.unpack_from("<hhi", data, 0), (4, 0, N))
    expect("step", struct.unpack_from("<f", data, 12)[0], single(STEP))
    expect("start", struct.unpack_from("<f", data, 28)[0], 0.0)
    return struct.unpack("<%df" % N, data[-4 * N:])


def resampled(y, step, start, by, count):
    """The trace from 0 in steps, on another grid; the position is advanced by additions."""
    ratio, position, out = single(by / step), single(start / step), []
    for _ in range(count):
        i = math.floor(position)
        f = single(position - i)
        inside = 0 <= position < len(y) - 1
        out.append(single(single(single(1 - f) * y[i]) + single(f * y[i + 1])) if inside else 0.0)
        position = single(position + ratio)
    return out


def falling_through(y, step, value):
    """The time at which a trace that starts above a value first goes below it."""
    k = next(i for i in range(1, len(y)) if y[i] < value)
    f = single(single(value - y[k - 1]) / single(y[k] - y[k - 1]))
    return single(single(f + (k - 1)) * step)


def main(output, file):
    y = stored(file)
    for i, value in enumerate(y):
        t = i * STEP
        if abs(value - 1500 * math.exp(-t / 1e-4) * math.cos(2 * math.pi * 2e4 * t)) > 0.005:
            failures.append("sample %d is %r" % (i, value))
            break
    with open(output) as text:
        lines = text.read().splitlines()

    step = single(STEP)
    grid = [single(float(value)) for value in re.findall(r"^  t = .* s   U = *(\S+) V$", "\n".join(lines), flags=re.M)]
    expect("coarse grid", grid, resampled(y, step, single(-1.0e-5), single(1.23e-5), 12))

    formulas = re.findall(r"^(\S+) += +(\S+)$", "\n".join(lines), flags=re.M)
    expect("formulas", {formula: single(float(value)) for formula, value in formulas}, {
        "ChargeVoltage": 1.5,
        "ChargeVoltage*1000": 1500.0,
        "U\\mx": max(y),
        "U\\mn": min(y),
        "U\\mx/(ChargeVoltage*1000)": single(max(y) / 1500.0),
        "U\\t%[50]": falling_through(y, step, single(single(50 * max(y)) / 100)),
        "Pressure::0.25": 0.25,
    })
    for line in ("Stored: 2000 samples in steps of 500.0 ns from 0.0 s", "Pressure                   has no value"):
        expect("lines '%s'" % line, lines.count(line), 1)
    expect("last line", lines[-1], "All is well.")
    expect("number of lines", len(lines), 2 + 12 + 7 + 2)
    sys.exit("\n".join(failures) or 0)


main(sys.argv[1], sys.argv[2])
