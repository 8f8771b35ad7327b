#!/usr/bin/env python3
"""Prints the rows of `Turned` in ParticleGroupRecord.cpp: the first, second, fourth and fifth column of a particle
before and after a change of geometry, as bit patterns. Products and sums are those of doubles; each result, and each
sine and cosine, is rounded to single precision."""
import math
import struct


def single(x):
    return struct.unpack("<f", struct.pack("<f", x))[0]


def bits(x):
    return "0x%08X" % struct.unpack("<I", struct.pack("<f", x))[0]


def rectangular(r, a, u, v):
    c = single(math.cos(a))
    s = single(math.sin(a))
    return single(c * r), single(s * r), single(c * u - s * v), single(s * u + c * v)


def polar(x, y, u, v):
    angle = single(math.atan2(y, x))
    s = single(math.sin(angle))
    c = single(math.cos(angle))
    return single(math.sqrt(y * y + x * x)), angle, single(s * v + c * u), single(c * v - s * u)


ROWS = [
    (1, 0, 2, 3),
    (0, 0, 1, 2),
    (-2, 0, 1, 0),
    (-2, -0.0, 1, 0.25),
    (0, -4, 0.5, 7),
    (3, 4, 5, 6),
    (0.1, -0.2, 0.3, 0.7),
    (-1.25, 2.75, -3.3, 1.7),
    (1e-3, 1000.5, 1e-4, -12345.678),
    (123456.7, 6.2831855, 0.001, 99.9),
    (2.5, 1e6, 1, -1),
    (1e20, 1e20, 1e-20, 1e20),
    (1e-30, 3e-30, 1, 1),
]
for name, function in (("0", rectangular), ("1", polar)):
    for row in ROWS:
        before = tuple(single(x) for x in row)
        after = function(*before)
        print("    {%s, {%s}, {%s}}," % (name, ", ".join(map(bits, before)), ", ".join(map(bits, after))))
