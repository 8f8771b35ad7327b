#!/usr/bin/env python3
"""Makes tables of what the benchmark programs measured: our operations beside the bare ones.

    report.py [--write FILE] [--clock processor|wall] JSON...

JSON are the files that the programs wrote with --benchmark_out. The tables go to the terminal and, with --write, with
the machine they were taken on, into FILE as well. A ratio beyond its bound is marked with an asterisk. Times are those
of the processor unless asked otherwise; the time that passed says as much only if nothing else runs.
"""
import argparse
import json
import os
import platform
import subprocess
import tempfile
from dataclasses import dataclass
from statistics import median

INTRODUCTION = """\
# Performance

What the library's operations cost beside the bare work that they stand for: a file's bytes moved by `fwrite` and
`fread`, one `stat`, a plain loop over the samples. Both sides are measured in the same run and in turns, several times
over, and the medians stand here. The times are those of one machine; the ratios say more, and it is they that are
bounded: a ratio of 1.11 is nine tenths of the bare speed. In some rows the side called bare is one of ours too: many
beside few, which shows how a cost grows. Rows without a bound are for information.

Times are what the process has of the processor, in the system too, so that other programs don't come in. The files are
in memory or in the system's cache throughout, so that neither side waits for a disk. A peak of memory is how far that
of a process of its own rises, beside the bytes of the samples that it holds in the end.

`scripts/bench.sh` makes this page anew.
"""

COLUMNS = ("", "ours", "bare", "ratio", "bound")


@dataclass
class Row:
    what: str
    ours: str
    bare: str
    ratio: float
    bound: str
    beyond: bool

    def cells(self):
        return (self.what, self.ours, self.bare, f"{self.ratio:.2f}" + ("*" if self.beyond else ""), self.bound)


# ---- Figures ----


def with_unit(value, units):
    """The value in the largest unit in which it is at least 1."""
    for factor, unit in units:
        if value >= factor:
            break
    value /= factor
    return f"{value:.{3 if value < 1 else 2 if value < 10 else 1 if value < 100 else 0}f} {unit}"


def time_text(nanoseconds, unit):
    text = with_unit(nanoseconds, ((1e9, "s"), (1e6, "ms"), (1e3, "µs"), (1, "ns")))
    return f"{text} per {unit}" if unit else text


def memory_text(amount):
    return with_unit(amount, ((1e6, "MB"), (1e3, "kB"), (1, "bytes")))


# ---- Rows ----


def memory_row(what, runs):
    peak = median(run["peak"] for run in runs)
    needed, allowed = runs[0]["needed"], runs[0]["allowed"]
    bound = f"{memory_text(allowed)} above"
    return Row(what, memory_text(peak), memory_text(needed), peak / needed, bound, peak > needed + allowed)


def time_row(what, ours, bare, clock):
    first, second = (1e9 * median(run[clock] for run in runs) for runs in (ours, bare))
    at_most, unit = ours[0]["at_most"], ours[0].get("label", "")
    ratio = first / second
    bound = f"{at_most:.2f}" if at_most else ""
    return Row(what, time_text(first, unit), time_text(second, unit), ratio, bound, 0 < at_most < ratio)


def rows_of(runs, clock):
    """A row for each pair of which both sides were measured, in the order of the program."""
    sides = {}
    for run in sorted(runs, key=lambda run: run["family_index"]):
        if run.get("run_type") == "iteration" and not run.get("error_occurred"):
            what, side = run["run_name"].split("/")[:2]
            sides.setdefault(what, {}).setdefault(side, []).append(run)
    for what, measured in sides.items():
        if "memory" in measured:
            yield memory_row(what, measured["memory"])
        elif "ours" in measured and "bare" in measured:
            yield time_row(what, measured["ours"], measured["bare"], clock)


def load(files, clock):
    """The context of the last run, and the rows by what they are about."""
    context, tables = {}, {}
    for file in files:
        try:
            with open(file, encoding="utf-8") as opened:
                output = json.load(opened)
        except json.JSONDecodeError:  # nothing in this program matched a filter
            continue
        context = output["context"]
        rows = list(rows_of(output["benchmarks"], clock))
        if rows:
            tables.setdefault(context["concern"], []).extend(rows)
    return context, tables


# ---- Output ----


def print_tables(tables):
    lines = [row.cells() for rows in tables.values() for row in rows] + [COLUMNS]
    widths = [max(len(line[i]) for line in lines) for i in range(len(COLUMNS))]
    for concern, rows in tables.items():
        for line in [(concern.upper(),) + COLUMNS[1:]] + [row.cells() for row in rows]:
            cells = [line[0].ljust(widths[0])] + [cell.rjust(width) for cell, width in zip(line[1:], widths[1:])]
            print("  ".join(cells).rstrip())
        print()
    beyond = [row.what for rows in tables.values() for row in rows if row.beyond]
    print("Beyond their bounds: " + "; ".join(beyond) if beyond else "All bounds are met.")


def markdown(context, tables):
    lines = [INTRODUCTION, "| Machine | |", "|---|---|"]
    lines += [f"| {name} | {value} |" for name, value in machine(context)]
    for concern, rows in tables.items():
        lines += ["", f"## {concern}", "", "| " + " | ".join(COLUMNS) + " |", "|---|--:|--:|--:|--:|"]
        lines += ["| " + " | ".join(cell.replace("*", "\\*") for cell in row.cells()) + " |" for row in rows]
    return "\n".join(lines) + "\n"


# ---- The machine ----


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as info:
        for line in info:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return platform.machine()


def file_system(folder):
    answer = subprocess.run(["df", "--output=fstype", folder], capture_output=True, text=True, check=False)
    return answer.stdout.split("\n")[1].strip() if answer.returncode == 0 else "unknown"


def machine(context):
    return (
        ("Processor", processor()),
        ("Cores", context.get("num_cpus", os.cpu_count())),
        ("Kernel", f"{platform.system()} {platform.release()}"),
        ("Compiler", context["compiler"]),
        ("File system", file_system(tempfile.gettempdir())),
        ("Date", context["date"][:10]),
    )


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--write", metavar="FILE", help="the page to write")
    parser.add_argument("--clock", choices=("processor", "wall"), default="processor", help="the times to compare")
    parser.add_argument("files", metavar="JSON", nargs="+")
    options = parser.parse_args()
    context, tables = load(options.files, options.clock)
    if not tables:
        parser.exit(1, "report.py: nothing was measured\n")
    print_tables(tables)
    if options.write:
        with open(options.write, "w", encoding="utf-8") as page:
            page.write(markdown(context, tables))


if __name__ == "__main__":
    main()
