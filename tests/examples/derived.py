"""Checks what `derived` prints against the samples: derived.py I.wvf ROW [LABEL]

The peak, its time, the 10-90 rise, the full width at half maximum and the integral are worked out here in double
precision; the field on the axis in the middle of the coil is a lower bound of the largest field. The label is that of
shot A008, which was charged to 9 kV.
"""

import math
import struct
import sys

COUNT = 100000
COIL = {"turns": 109, "radius": 0.10, "length": 0.30}


def read(path):
    """The step and the samples, which are the last of the file."""
    with open(path, "rb") as file:
        data = file.read()
    return struct.unpack_from("<f", data, 12)[0], struct.unpack("<%df" % COUNT, data[-4 * COUNT:])


def crossings(samples, level):
    """Positions of the first and the last crossing of a level, by linear interpolation."""
    up = next(i for i in range(1, len(samples)) if samples[i] > level)
    down = next(i for i in range(len(samples) - 2, -1, -1) if samples[i] > level)
    first = up - 1 + (level - samples[up - 1]) / (samples[up] - samples[up - 1])
    last = down + (level - samples[down]) / (samples[down + 1] - samples[down])
    return first, last


def main(path, row, label=None):
    step, samples = read(path)
    peak = max(samples)
    at = samples.index(peak)
    rise = crossings(samples, 0.9 * peak)[0] - crossings(samples, 0.1 * peak)[0]
    half = 0.5 * peak
    left = next(i for i in range(at, -1, -1) if samples[i] < half)
    right = next(i for i in range(at, len(samples)) if samples[i] < half)
    middle = 4e-7 * math.pi * COIL["turns"] * peak / math.hypot(COIL["length"], 2 * COIL["radius"])
    shown = [float(word) for word in row.split()[1:]]
    expected = [peak / 1e3, (at + 1) * step * 1e3, rise * step * 1e3, (right - left) * step * 1e3, sum(samples[1:]) * step]
    for number, (value, wanted) in enumerate(zip(shown, expected)):
        assert abs(value - wanted) <= 2e-3 * abs(wanted), f"column {number + 1} is {value}, not {wanted}"
    assert middle <= shown[5] <= 1.2 * middle, f"a field of {shown[5]} T, with {middle} T in the middle"
    if label is not None:
        wanted = f"Shot A008: peak {peak:.0f} A at 9.0 kV"
        assert label == wanted, f"the label is '{label}', not '{wanted}'"


if __name__ == "__main__":
    main(*sys.argv[1:])
