"""Makes the table of NumberTexts.cpp: numbers, and what they look like as text by this interpreter's own formatting, which
rounds correctly and owes nothing to the C library of any system.

    generate_number_texts.py TABLE

A row is `{bits of the double, "%.8g", "%.16g", "%.17g", "%.3e"}`. The numbers are always the same.
"""

import math
import pathlib
import random
import struct
import sys

FORMATS = ["%.8g", "%.16g", "%.17g", "%.3e"]


def bits(value):
    return struct.unpack("<Q", struct.pack("<d", value))[0]


def of_bits(number):
    return struct.unpack("<d", struct.pack("<Q", number))[0]


def single(number):
    """The single-precision number of these bits."""
    return struct.unpack("<f", struct.pack("<I", number))[0]


def halfway():
    """Numbers that lie exactly between two texts of eight or of sixteen digits, and their neighbours."""
    for whole in (10000000, 12345678, 12345679, 49999999, 99999998, 99999999, 1, 3):
        for scale in (1, 2, 4, 8, 1024):
            yield (whole + 0.5) / scale
            yield (whole + 0.5) * scale
    for whole in (1000000000000000, 1234567890123456, 1234567890123457, 4503599627370495, 2251799813685247):
        yield whole + 0.5
        yield whole / 4 + 0.125
    for digits in range(1, 18):
        yield float("9" * digits)
        yield float("9" * digits + "5") / 10
        yield float("0." + "9" * digits)


def edges():
    yield from (0.0, -0.0, 1.0, -1.0, math.inf, -math.inf, 0.1, 0.2, 0.3, 1 / 3, 2 / 3, math.pi, 3.3e38, -3.3e38, 9.9e34)
    yield from (sys.float_info.max, -sys.float_info.max, sys.float_info.min, 5e-324, -5e-324, 2.5e-320, 1e-310)
    yield from (2.0**power for power in range(-1074, 1024, 7))
    yield from (10.0**power for power in range(-323, 309, 3))
    yield from (float(f"{sign}{digit}e{power}") for sign in ("", "-") for digit in (1, 5, 9.9999999, 1.00000005)
                for power in (-101, -100, -99, -10, -9, -5, -4, 7, 8, 9, 15, 16, 17, 99, 100, 101))


def everything():
    chance = random.Random(1)
    near = [neighbour for value in halfway() for neighbour in
            (value, of_bits(bits(value) - 1), of_bits(bits(value) + 1), -value)]
    yield from edges()
    yield from near
    for _ in range(600):
        yield of_bits(chance.getrandbits(64))
    for _ in range(100):
        yield of_bits(chance.getrandbits(52))  # denormal
    for _ in range(600):
        yield single(chance.getrandbits(32))
    for _ in range(100):
        yield single(chance.getrandbits(23))
    for _ in range(600):
        yield round(chance.uniform(-1000, 1000), chance.randrange(8))


def main(table):
    numbers = {bits(value): value for value in everything() if not math.isnan(value)}
    rows = ["{0x%016x, %s}," % (number, ", ".join('"%s"' % (form % value) for form in FORMATS))
            for number, value in numbers.items()]
    pathlib.Path(table).write_text("\n".join(rows) + "\n", encoding="ascii")


if __name__ == "__main__":
    main(*sys.argv[1:])
