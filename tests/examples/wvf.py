"""Prints what a waveform's file holds, from its bytes alone.

    wvf.py FILE header     version, skip length, count, start, shift, step, largest, smallest, bytes of samples
    wvf.py FILE samples    one sample a line, with all its digits
"""
import struct
import sys


def text_length(data, at):
    return 2 + max(0, struct.unpack_from("<h", data, at)[0])


def samples_at(data):
    at = 94
    for _ in range(4):  # units, stamp, note, old unit name
        at += text_length(data, at)
    return at + 10


def main(name, what):
    with open(name, "rb") as file:
        data = file.read()
    first = samples_at(data)
    if what == "samples":
        count = (len(data) - first) // 4
        print("\n".join("%.9g" % value for value in struct.unpack_from("<%df" % count, data, first)))
        return
    version, skip, count = struct.unpack_from("<hhi", data, 0)
    step, = struct.unpack_from("<f", data, 12)
    start, shift, largest, smallest = struct.unpack_from("<ffff", data, 28)
    numbers = " ".join("%.9g" % value for value in (start, shift, step, largest, smallest))
    print(version, skip, count, numbers, len(data) - first)


main(sys.argv[1], sys.argv[2])
