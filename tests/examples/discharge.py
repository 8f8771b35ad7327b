"""Checks a stored discharge against the closed solution of the circuit.

    discharge.py VOLTAGE-FILE CURRENT-FILE CHARGE-VOLTAGE

The noise that is left has to be as large as that of the instruments: 0.2 V and 1 A root mean square.
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


voltages, currents = zip(*solution(float(sys.argv[3])))
check("voltage", samples(sys.argv[1]), voltages, 0.2)
check("current", samples(sys.argv[2]), currents, 1.0)
