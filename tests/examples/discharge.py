"""Checks a stored discharge against the closed solution of the circuit, and what the program tells of it.

    discharge.py VOLTAGE-FILE CURRENT-FILE CHARGE-VOLTAGE ROW [SENTENCE]

The noise that is left has to be as large as that of the instruments: 0.2 V and 1 A root mean square. The numbers in the
row of the table have to be those of the samples up to their last digit, and those of the solution up to the noise.
"""
import math
import struct
import sys

N, STEP = 100000, 1e-6
C, L, R = 20e-3, 1.2e-3, 60e-3


def samples(name):
    with open(name, "rb") as file:
        data = file.read()
    return struct.unpack("<%df" % N, data[-4 * N:])


def solution(charge):
    a = R / (2 * L)
    w = math.sqrt(1 / (L * C) - a * a)
    for i in range(N):
        t = i * STEP
        fall = charge * math.exp(-a * t)
        yield (fall * (math.cos(w * t) + a / w * math.sin(w * t)), fall / (w * L) * math.sin(w * t))


def check(what, found, expected, noise):
    left = [a - b for a, b in zip(found, expected)]
    rms = math.sqrt(sum(x * x for x in left) / N)
    mean = sum(left) / N
    largest = max(abs(x) for x in left)
    if abs(rms / noise - 1) > 0.02 or abs(mean) > noise / 50 or largest > 6 * noise:
        sys.exit("%s: rms %g, mean %g, largest %g besides the solution" % (what, rms, mean, largest))


def crossing(samples, level):
    """Where the samples first exceed a level, by linear interpolation, in s."""
    i = next(i for i in range(1, N) if samples[i] > level)
    return (i - 1 + (level - samples[i - 1]) / (samples[i] - samples[i - 1])) * STEP


def width(samples):
    """From the peak to both sides until half of it is passed, in s."""
    half = max(samples) / 2
    at = samples.index(max(samples))
    left = next(i for i in range(at, -1, -1) if samples[i] < half)
    right = next(i for i in range(at, N) if samples[i] < half)
    first = left + (half - samples[left]) / (samples[left + 1] - samples[left])
    last = right - 1 + (half - samples[right - 1]) / (samples[right] - samples[right - 1])
    return (last - first) * STEP


def derived(charge, samples):
    """The columns of the table, in its units."""
    peak = max(samples)
    rise = crossing(samples, 0.9 * peak) - crossing(samples, 0.1 * peak)
    charge_moved = math.fsum(samples[1:]) * STEP
    return charge, peak / 1e3, rise * 1e3, width(samples) * 1e3, charge_moved ** 2 / 2


def compare(row, expected, tolerances):
    for number, (shown, wanted, tolerance) in enumerate(zip(row, expected, tolerances)):
        if abs(shown - wanted) > tolerance:
            sys.exit("column %d is %g, not %g" % (number + 1, shown, wanted))


voltages, currents = map(list, zip(*solution(float(sys.argv[3]))))
found = samples(sys.argv[2])
check("voltage", samples(sys.argv[1]), voltages, 0.2)
check("current", found, currents, 1.0)

columns = [float(word) for word in sys.argv[4].split()[1:]]
if len(columns) != 6:
    sys.exit("the row has %d numbers" % len(columns))
from_samples = derived(float(sys.argv[3]), found)
compare(columns, from_samples, (0, 0.006, 0.006, 0.006, 0.6 + 2e-4 * from_samples[4]))
compare(columns, derived(float(sys.argv[3]), currents), (0, 0.01, 0.02, 0.02, 0.6 + 1e-3 * from_samples[4]))
if abs(columns[5] - max(currents) / 1e3) > 0.006:
    sys.exit("a peak by theory of %g kA, not %g" % (columns[5], max(currents) / 1e3))

if len(sys.argv) > 5:
    told = float(sys.argv[5].split()[4])
    if abs(told - math.fsum(found[1:]) * STEP) > 1e-4 * told:
        sys.exit("a charge of %g As, not %g" % (told, math.fsum(found[1:]) * STEP))
