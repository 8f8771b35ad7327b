#!/usr/bin/env python3
"""Compares what one program writes, reads and computes as two systems build it.

    compare_systems.py LINUX_PROGRAM WINDOWS_PROGRAM

Both make a tree of files, and the trees are compared byte for byte. Then each of them extends and lists its own tree
and the other's, which has to come to the same. Every run sees its tree under one and the same path, since paths stand
in files. The Windows program runs under Wine (scripts/wine.sh). Ends with status 1, and says where, if anything
differs.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

WINE = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "wine.sh"
ZONES = ("NPT-5:45", "Europe/Berlin")
KINDS = ("Vodrel.ini", "E.ini", "Scalars.ini", "ScalarCache.ini", "Log.txt", "MPIHosts.txt", "Merged.txt",
         "Results.txt", ".wvf", ".dmt", ".dpt", ".dgm", "ShotA002_1/Scalars.ini")  # fmt: skip
SHOWN_BYTES = 24
SHOWN_LINES = 10

# The clock stands in both programs, so what may differ in a log is where it was written.
MASKS = [(re.compile(rb"(Vodrel running on ).*( by )"), rb"\1machine\2"),
         (re.compile(rb"(Vodrelpath is ).*( by )"), rb"\1folder\2")]  # fmt: skip


class System:
    def __init__(self, name, command):
        self.name = name
        self.command = command

    def run(self, *arguments, zone=ZONES[0]):
        """What the program prints, with the ends of lines of all systems alike."""
        run = subprocess.run([*self.command, *arguments], env=dict(os.environ, TZ=zone), stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, timeout=200)  # fmt: skip
        if run.returncode != 0:
            sys.exit(f"{self.name}: {' '.join(arguments)} ended with status {run.returncode}")
        return run.stdout.replace(b"\r\n", b"\n")


class Trees:
    """Trees on a shelf, by name. A program works on one of them in a folder that is always the same."""

    def __init__(self, folder):
        self.shelf = folder / "shelf"
        self.place = folder / "tree"
        self.shelf.mkdir()
        self.path = "Z:" + str(self.place).replace("/", "\\")

    def work(self, system, mode, source, target):
        """Runs the program on a copy of a tree, which goes to the shelf as another one."""
        if source:
            shutil.copytree(self.shelf / source, self.place)
        else:
            self.place.mkdir()
        system.run(mode, self.path)
        self.place.rename(self.shelf / target)

    def listed(self, system, name):
        shutil.copytree(self.shelf / name, self.place)
        for log in self.place.rglob("Log.txt"):
            log.write_bytes(masked(log.read_bytes()))  # its length is in the list
        stamp(self.place)
        before = content(self.place)
        output = system.run("list", self.path)
        compare_trees(f"{name} before", before, f"{name} after a list by {system.name}", content(self.place))
        shutil.rmtree(self.place)
        return output

    def __getitem__(self, name):
        return content(self.shelf / name)


def stamp(folder):
    """Gives each file and folder a time of its own, with parts of a second; a few lie before 1970."""
    paths = sorted([folder, *folder.rglob("*")], reverse=True)  # a folder after all that it holds
    for i, path in enumerate(paths):
        time = (1_000_000_000 + i * 7_654_321) * 1_000_000_000 + i * 34_567_891
        if i % 50 == 49:
            time = -(i * 1_000_003) * 1_000_000_000 - 400_000_000
        os.utime(path, ns=(time, time))


def masked(log):
    for pattern, mask in MASKS:
        log = pattern.sub(mask, log)
    return log


def content(folder):
    """The bytes of each file by its path, none for a folder."""
    found = {}
    for path in folder.rglob("*"):
        name = str(path.relative_to(folder))
        found[name] = None if path.is_dir() else path.read_bytes()
        if path.name == "Log.txt":
            found[name] = masked(found[name])
    return found


# ---- Differences

failures = []


def fail(text):
    failures.append(text)
    print(text, flush=True)


def some(names):
    more = f" and {len(names) - SHOWN_LINES} more" if len(names) > SHOWN_LINES else ""
    return ", ".join(repr(name) for name in names[:SHOWN_LINES]) + more


def first_difference(a, b):
    return next((i for i, (x, y) in enumerate(zip(a, b)) if x != y), min(len(a), len(b)))


def compare_files(name, name_a, a, name_b, b):
    if a is None or b is None:
        return fail(f"{name}: a folder in {name_a if a is None else name_b}, a file in the other")
    offset = first_difference(a, b)
    begin = max(0, offset - SHOWN_BYTES)
    fail(f"{name} differs from offset {offset} on ({len(a)} and {len(b)} bytes):\n"
         f"  {name_a}: {a[begin:offset + SHOWN_BYTES]!r}\n  {name_b}: {b[begin:offset + SHOWN_BYTES]!r}")  # fmt: skip


def compare_trees(name_a, a, name_b, b):
    for mine, my_name, others, other_name in ((a, name_a, b, name_b), (b, name_b, a, name_a)):
        alone = sorted(mine.keys() - others.keys())
        if alone:
            fail(f"In {my_name} alone, not in {other_name}: {some(alone)}")
    different = [name for name in sorted(a.keys() & b.keys()) if a[name] != b[name]]
    for name in different[:1]:
        compare_files(name, name_a, a[name], name_b, b[name])
    if len(different) > 1:
        print(f"  and others: {some(different[1:])}")


def compare_lines(what, name_a, a, name_b, b):
    lines_a, lines_b = a.split(b"\n"), b.split(b"\n")
    different = [i for i, (x, y) in enumerate(zip(lines_a, lines_b)) if x != y]
    if not different and len(lines_a) == len(lines_b):
        return
    fail(f"{what}: {len(different)} lines differ; {len(lines_a)} lines by {name_a}, {len(lines_b)} by {name_b}")
    for i in different[:SHOWN_LINES]:
        begin = max(0, first_difference(lines_a[i], lines_b[i]) - 200)
        for name, line in ((name_a, lines_a[i]), (name_b, lines_b[i])):
            print(f"  line {i + 1} by {name}: {line[begin:begin + 300].decode()}")


# ---- What is compared


def compare_results(linux, windows):
    for zone in ZONES:
        a = linux.run("results", zone=zone)
        compare_lines(f"Results in zone {zone}", linux.name, a, windows.name, windows.run("results", zone=zone))
    return a.count(b"\n")


def check_kinds(tree):
    """Two programs that write nothing would agree as well."""
    for kind in KINDS:
        if not any(data and name.endswith(kind) for name, data in tree.items()):
            fail(f"There is no {kind} with anything in it")


def compare_all(linux, windows, folder):
    trees = Trees(folder)
    systems = (linux, windows)
    for system in systems:
        trees.work(system, "make", None, system.name)
    compare_trees(linux.name, trees[linux.name], windows.name, trees[windows.name])
    for maker in systems:
        for system in systems:
            trees.work(system, "extend", maker.name, f"{maker.name}, extended by {system.name}")
    own = f"{linux.name}, extended by {linux.name}"
    others = [f"{windows.name}, extended by {linux.name}", f"{linux.name}, extended by {windows.name}",
              f"{windows.name}, extended by {windows.name}"]  # fmt: skip
    for other in others:
        compare_trees(own, trees[own], other, trees[other])
    for names in ([linux.name, windows.name], [own, *others[:2]]):
        lists = [(f"{name}, listed by {system.name}", trees.listed(system, name))
                 for name in names for system in systems]  # fmt: skip
        for name, output in lists[1:]:
            compare_lines("List", *lists[0], name, output)
    lines = compare_results(linux, windows)
    check_kinds(trees[own])
    print(f"{len(trees[own])} files and folders after all, {lists[0][1].count(10)} lines of a list, {lines} results: "
          f"{len(failures)} differences")  # fmt: skip


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    for program in sys.argv[1:]:
        if not os.path.isfile(program):
            sys.exit(f"There is no {program}. For the Linux half: scripts/build.sh release --target make_tree")
    linux = System("linux", [os.path.abspath(sys.argv[1])])
    windows = System("windows", [str(WINE), os.path.abspath(sys.argv[2])])
    with tempfile.TemporaryDirectory(prefix="vodrel-systems-") as folder:
        compare_all(linux, windows, pathlib.Path(folder).resolve())
    if failures:
        sys.exit("The two systems differ.")


main()
