"""Compares the library with a second evaluator on random formulas over a shot made for it, bit by bit.

    compare.py PROGRAM [--seed N] [--count N]

PROGRAM is EvaluateFormulas.cpp, the second evaluator is evaluator.py. A formula that they disagree on is shortened as
far as they go on disagreeing.
"""

import argparse
import os
import pathlib
import random
import struct
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True

from evaluator import DFMAX, Evaluator, Shot, Trace, Unsettled  # noqa: E402
from generate_waveform_values import bits  # noqa: E402

# ---- The experiment ------------------------------------------------------------------------------------------------

# Values of the shot. What the name of one says of its value is true.
NUMBERS = {
    "x": "2.5", "y": "-3", "n": "4", "half": "0.5", "zero": "0", "U2": "12.75", "Ae": "3", "a5": "7.25", "a4": "0.75",
    "a2.5": "1e1", "k 1": "6", "plasma current": "1.25", "gas -2": "5.5", "sinx": "0.125", "small": "-3.0000001E-5",
    "large": "7.6543217e+18", "third": "0.33333333333", "minus zero": "-0", "hex": "0x1A.8", "after blank": "  8",
    "Year": "2024", "5": "55", "25": "0.25", "e": "2.7182818", "b\xe4r": "1.5",
    "k2e": "1.75", "k2e-1": "33", "k2e+x": "-44.5", "nine digits": "1011.10004", "hundred": "115.200005", "xnan": "3",
}  # fmt: skip
IN_BRACKETS = {
    "rise-time": "0.0625", "a+b": "-9", "2*x": "21", "e^x": "3.5", "f(x)": "-1.5", "what?": "17", "c/d-e": "1e-3",
    "1e-5": "77", "a-3": "-0.1",
}  # fmt: skip
TEXTS = {
    "on": "True", "shut": "TRUE", "open": "false", "word": "some text", "blank": " ", "behind": "5 ", "empty": "",
    "too large": "1e36", "infinite": "-inf", "none": "nan", "overflow": "1e400", "twelve": "12abc",
    "name": "plasma", "index": "5", "sum": "x+2*n", "reference": "W\\t%[50]", "bracket": "[x", "parenthesis": "(y",
}  # fmt: skip


def text16(text):
    return struct.pack("<h", len(text)) + text


def text32(text):
    return struct.pack("<i", len(text)) + text


def trace_bytes(samples, version=4, step=1.0, shift=0.0, start=0.0, delay=0.0, delay2=0.0, free=(1, 2, 3, 4, 5)):
    t1, t2, t3, t4, t5 = free
    n, scaled = len(samples), Trace("", samples)
    return (
        struct.pack("<hhi9f", version, 0, n, t4, step, t5, 1.5, 10.0, start, shift, scaled.top, scaled.bottom)
        + struct.pack("<iifh7f", scaled.at_top, scaled.at_bottom, 0.2, 0, 0.05, t1, t2, t3, -0.75, delay, delay2)
        + struct.pack("<ff", 7.0, 8.0) + text16(b"kA") + text16(b"") + text16(b"a note") + text16(b"")
        + struct.pack(f"<hii{n}f", 1, n, 1, *samples)
    )  # fmt: skip


def axis_bytes(n, step, *coordinates):
    return struct.pack(f"<if{len(coordinates)}f", n, step, *coordinates)


def matrix_bytes(free, *axes):
    return (
        struct.pack("<3i", 4, 0, len(axes)) + b"".join(axes)
        + struct.pack("<9f", 9.25, -4.5, 1.0, 2.0, *free) + text32(b"T") + text32(b"") + text32(b"")
        + struct.pack("<8f", *range(8))
    )  # fmt: skip


def particle_bytes(count, free):
    return (
        struct.pack("<5i", 2, 0, 1, count, 8) + struct.pack("<23f", 11, 12, *free, *range(16)) + text32(b"mm")
        + text32(b"") + text32(b"") + bytes(32 * count)
    )  # fmt: skip


def make_experiment(folder, rng):
    """Three shots, of which "009" is to be the current one."""
    wave = [3.7 / (1 + ((i - 9.3) / 2.1) ** 2) - 0.2 + rng.uniform(-0.05, 0.05) for i in range(24)]
    noise = [rng.uniform(-7, 7) for _ in range(11)]
    late = [rng.choice((-2.0, 0.5, 1.0, 4.0, -DFMAX)) for _ in range(7)]
    square = (axis_bytes(2, 0.5, 10.0), axis_bytes(4, 0.0, 1.0, 2.0, 4.0, 8.5))
    cube = (axis_bytes(2, 0.0, -1.0, 3.0), axis_bytes(2, 0.25, 0.1), axis_bytes(2, 0.1, 5.0))
    files = {
        "009/W.wvf": trace_bytes(wave, step=2.5e-3, shift=1e-3, start=-2e-2, delay=3e-3, delay2=-1e-3),
        "009/V2e-1.wvf": trace_bytes(noise, step=0.1, start=1.1, free=(-0.5, 1e-7, 3e9, 0.1, -2)),
        "009/My trace.wvf": trace_bytes(sorted(noise), version=3, step=3, start=-7, delay2=1.0),
        "010/W.wvf": trace_bytes(late, step=0.5, start=3),
        "008/Late.wvf": trace_bytes([0, 1, 6, 6, 6, 2, 0.5], step=0.7),
        "009/M.dmt": matrix_bytes((0.1, 0.2, 0.3, 0.4, 0.5), *square),
        "010/@C.dmt": matrix_bytes((1, 2, 3, 4, 5), *cube),
        "009/@C.dmt": matrix_bytes((-1, -2, -3, -4, -5), *cube),
        "009/P.dpt": particle_bytes(3, (2.5, -1.25, 3e-6, 4e6, 0)),
        # Of files with one name the trace wins, if it has samples, then the matrix.
        "009/W.dmt": matrix_bytes((6, 7, 8, 9, 10), *square),
        "009/M.dpt": particle_bytes(5, (6, 7, 8, 9, 10)),
        "009/None.wvf": trace_bytes([]),
        "009/None.dmt": matrix_bytes((11, 12, 13, 14, 15), *square),
        "009/@C.wvf": trace_bytes(noise),
    }  # fmt: skip
    for name, content in files.items():
        file = folder / "Shots" / ("Shot" + name)
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)
    lines = [f"{key}={value}" for key, value in (NUMBERS | IN_BRACKETS | TEXTS).items()]
    rng.shuffle(lines)
    scalars = "\r\n".join(["[Others]", "x=99", "unknown=98", "[Fields]", *lines])
    (folder / "Shots" / "Shot009" / "Scalars.ini").write_bytes(scalars.encode("latin-1"))
    (folder / f"{folder.name}.ini").write_bytes(b"[Groups]\r\n")


# ---- Formulas ------------------------------------------------------------------------------------------------------

PLACES = r"W|w|V2e-1|My trace|010\W|>\W|>1\w|<1\Late|008\Late|.\Shots\Shot010\W".split("|")
RARE_PLACES = r"|Missing|\W|007\W|>2\W|<\W|>z\W|..\E\Shots\Shot009\W|W.wvf|@C|\\h\W".split("|")
PLAIN_CODES = "t1 t2 t3 t4 t5 st it ts is pt ft su mx mn cl at tp bl sv tm tn 19 28 av in ri pi sd wa fh".split()
ARGUMENT_CODES = "vt tv t% bv b% la ta lt".split()
MATRIX_CODES = "t1 t2 t3 t4 t5 su mx mn rc rs rb r1 re cc cs cb c1 ce lc ls lb l1 le".split()
FUNCTIONS = "sin cos tan log exp atn bol Sin LOG eXp ATN".split()
EXPONENTS = "2|-1|0.5|3|-2|1e-1|half|-y|0|[n]|(1-y)|x".split("|")
NESTED = "a[index]|a[n]|a[x]|[n]|[[index]]|a[y]|x::y|unknown::x|word::x".split("|")
REFERENCES = (
    "![index]|![sum]|![x]|[![name] current]|(![sum])|a![index]|![shot]|![x::y]|![reference]|![unknown::U2]|![bracket]]|"
    "![parenthesis])|![unknown]|![x"
).split("|")
CONDITIONS = "on|open|shut|word|zero|x|y|on::zero".split("|")
FALLING_BACK = r"unknown|word|1/0|unknown+1|Missing\mx|W\zz|behind".split("|")
STRANGE_NUMBERS = "0x1F|0X.8p3|inf|nan|1e35|1e-46|9.8e34|1e39|16777217|infinity".split("|")
STRANGE_ARGUMENTS = r"|unknown|1/0|nan|-inf|1e-3 |W\mx|-1e-2|0x10|-0".split("|")
# What is seldom met otherwise: bases that aren't tested, signs that stay with their base, codes cut short.
ODDITIES = (
    r"unknown^-0.5|unknown^-3|unknown^0|word^-2^3|\mx^-0.5|\mx^-3|W\zz^-2|W\z^[y]|W\z^-[n]|infinite^-1|(unknown)^-2|"
    r"[unknown]^-2|1e36?1?2|too large?3?4|infinite?5?6|1/0?7?8|(y)^2|(y)^n|2*(1-n)^2|3/(y)^3|x^(y)^2|(-2)^(-1)|n-(y)^2|"
    r"(0-0)^2|k2e*-3|k2e*2|k2e-x|log(y)|xlog(y)|bol(on)|bol(shut)|BOL(open)|bol(word)|bol(word::on)|"
    r"bol(unknown::shut)|bol()|W\1e[-3]|W\1e[1e-3]|W\t%[[y]]^2|-W\tn^-2|W\m\[5]|[third]*3|a(0-4)|a(x)|5--3|5+-3|--3|"
    r"5-+3|nine digits*1|(nine digits)|[nine digits]-1e3|(hundred)-115|hundred-115"
).split("|")
SOUP = (
    r"x|y|n|a5|[|]|(|)|[x]|(y)|+|-|*|/|^|?|::| |\|W\|t%|mx|![|sin(|bol(|1|2.5|1e-5|e|E|E+|-|.|True|on|%|<|>"
).split("|") + ["\t", "\xff"]


class Formulas:
    """Random formulas. Most are such as users write and have a value; some are spoiled, and a few are soup."""

    def __init__(self, rng):
        self.rng = rng
        self.any = rng.choice

    def chance(self, share):
        return self.rng.random() < share

    def formula(self):
        if self.chance(0.03):
            parameter = self.any(PLACES) + "\\" + self.any(PLAIN_CODES)
            text = "[" + (parameter if self.chance(0.5) else self.any(list(NUMBERS))) + "]"
        elif self.chance(0.04):
            text = "".join(self.any(SOUP) for _ in range(self.rng.randint(0, 12)))
        else:
            text = self.expression(self.any((1, 1, 2, 2, 3)))
        if self.chance(0.2):
            for _ in range(self.any((1, 1, 1, 2, 3))):
                text = self.spoiled(text)
        return text.encode("latin-1")

    def spoiled(self, text):
        i, j = sorted(self.rng.randint(0, len(text)) for _ in range(2))
        way = self.rng.randrange(6)
        if way == 0:
            return text[:i] + text[i + 1 :]
        if way == 1:
            return text[:i] + text[i + 1 : i + 2] + text[i : i + 1] + text[i + 2 :]
        if way == 2:
            return text[:i] + text[j:]
        if way == 3:
            return text[:j] + text[i:]
        return text[:i] + self.any(SOUP) + text[i:]

    def expression(self, depth):
        if depth and self.chance(0.07):
            condition = self.any(CONDITIONS) if self.chance(0.7) else self.sum(depth - 1)
            branches = [self.sum(depth - 1), self.expression(depth - 1)]
            return "?".join([condition] + branches[: 1 if self.chance(0.05) else 2])
        if depth and self.chance(0.07):
            first = self.any(FALLING_BACK) if self.chance(0.7) else self.sum(depth - 1)
            return first + "::" + self.expression(depth - 1)
        return self.sum(depth)

    def sum(self, depth):
        text = self.any(("-", "-", " ", "--", "+")) if self.chance(0.1) else ""
        text += self.product(depth)
        while self.chance(0.35):
            text += self.any("+-")
            if self.chance(0.1):
                text += self.any(("-", " ", " -")) + self.number() if self.chance(0.75) else "-" + self.product(depth)
            else:
                text += self.product(depth)
        return text

    def product(self, depth):
        text = self.factor(depth)
        while self.chance(0.3):
            text += self.any("**/")
            signed = self.any(("-", "-", "+", " ", " -")) + self.number()
            text += signed if self.chance(0.12) else self.factor(depth)
        return text

    def factor(self, depth):
        text = self.atom(depth)
        while self.chance(0.1):
            text += "^" + (self.any(EXPONENTS) if self.chance(0.9) else self.atom(0))
        return text

    def atom(self, depth):
        kind = self.rng.random()
        if not depth and 0.45 <= kind < 0.7:
            kind /= 2
        if kind < 0.25:
            return self.number()
        if kind < 0.45:
            return self.name()
        if kind < 0.58:
            return self.any(("", "", "", "", "a", "3")) * self.chance(0.3) + "(" + self.expression(depth - 1) + ")"
        if kind < 0.70:
            inside = self.any(("on", "open", "word", "x")) if self.chance(0.1) else self.expression(depth - 1)
            return self.any(FUNCTIONS) + "(" + inside + ")"
        if kind < 0.93:
            return self.parameter(depth)
        if kind < 0.95:
            return self.any(ODDITIES)
        if kind < 0.98:
            return "[" + self.any(NESTED) + "]"
        return self.any(REFERENCES)

    def number(self):
        digits = self.any((str(self.rng.randint(0, 12)), f"{self.rng.uniform(0, 10):.3g}", f"{self.rng.random():.9g}",
                           f".{self.rng.randint(0, 99)}", f"{self.rng.randint(0, 99)}."))  # fmt: skip
        if self.chance(0.15):
            digits += self.any("eE") + self.any(("", "+", "-", "-")) + str(self.rng.randint(0, 7))
        if self.chance(0.02):
            return self.any(STRANGE_NUMBERS)
        return digits

    def name(self):
        kind = self.rng.random()
        if kind < 0.55:
            return self.cased(self.any(tuple(NUMBERS)))
        if kind < 0.85:
            return "[" + self.cased(self.any(tuple(NUMBERS) + tuple(IN_BRACKETS))) + "]"
        if kind < 0.92:
            return self.any(("shot", "[Shot]", "SHOT"))
        text = self.any(tuple(TEXTS) + tuple(IN_BRACKETS) + ("unknown",))
        return text if self.chance(0.5) else "[" + text + "]"

    def cased(self, text):
        return text.swapcase() if self.chance(0.1) and text.isascii() else text

    def parameter(self, depth):
        kind = self.rng.random()
        place = self.any(PLACES) if self.chance(0.96) else self.any(RARE_PLACES)
        if kind < 0.55:
            text = place + "\\" + self.cased(self.any(PLAIN_CODES))
        elif kind < 0.85:
            return place + "\\" + self.cased(self.any(ARGUMENT_CODES)) + "[" + self.argument(depth) + "]"
        elif kind < 0.96:
            text = self.any(("M", "m", "@C", "010\\@C", "None")) + "\\" + self.cased(self.any(MATRIX_CODES))
        else:
            text = "P\\" + self.cased(self.any(("t1", "t2", "t3", "t4", "t5", "np")))
        # In brackets it is a single name, whatever signs it holds.
        return "[" + text + "]" if self.chance(0.2) else text

    def argument(self, depth):
        if depth and self.chance(0.3):
            return self.expression(depth - 1)
        if self.chance(0.1):
            return self.any(STRANGE_ARGUMENTS)
        uniform = self.rng.uniform
        return self.any((str(self.rng.randint(-5, 105)), f"{uniform(-0.03, 0.05):.4g}", f"{uniform(-7, 9):.9g}"))


# ---- The comparison ------------------------------------------------------------------------------------------------


class Comparison:
    def __init__(self, program, folder):
        self.folder = folder
        self.experiment = folder / "E"
        self.program = program
        self.shot = None

    def of_library(self, formulas):
        """Bits and number of messages of each."""
        nowhere = self.folder / "Nowhere"
        nowhere.mkdir(exist_ok=True)
        run = subprocess.run(
            [self.program, str(self.experiment), "009"],
            cwd=nowhere,
            env=dict(os.environ, XDG_DATA_HOME=str(self.folder / "User")),
            input="".join(f.hex() + "\n" for f in formulas),
            stdout=subprocess.PIPE,
            text=True,
            check=True,
        )
        answers = [tuple(line.split()) for line in run.stdout.splitlines()]
        assert len(answers) == len(formulas), f"{len(answers)} answers for {len(formulas)} formulas"
        return answers

    def of_evaluator(self, formula):
        """The same; None where there is no right answer."""
        self.shot = self.shot or Shot(self.experiment, "009")
        evaluator = Evaluator(self.shot)
        try:
            return f"{bits(evaluator.value(formula)):08X}", str(evaluator.messages)
        except Unsettled:
            return None

    def disagreements(self, formulas):
        for formula, found in zip(formulas, self.of_library(formulas)):
            wanted = self.of_evaluator(formula)
            if wanted not in (None, found):
                yield formula, found, wanted

    def shortest(self, formula, found, wanted):
        while True:
            shorter = [formula[:i] + formula[i + n :] for n in (8, 4, 2, 1) for i in range(len(formula) - n + 1)]
            left = next(self.disagreements(shorter), None)
            if left is None:
                return formula, found, wanted
            formula, found, wanted = left


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(10**9))
    parser.add_argument("--count", type=int, default=10000)
    arguments = parser.parse_args()
    repeat = f"{sys.executable} {__file__} {arguments.program} --seed {arguments.seed} --count {arguments.count}"
    print(f"Seed {arguments.seed}; again: {repeat}", flush=True)
    rng = random.Random(arguments.seed)
    with tempfile.TemporaryDirectory() as folder:
        comparison = Comparison(os.path.abspath(arguments.program), pathlib.Path(folder).resolve())
        make_experiment(comparison.experiment, rng)
        source = Formulas(rng)
        formulas = [source.formula() for _ in range(arguments.count)]
        failures = list(comparison.disagreements(formulas))
        for failure in failures[:5]:
            print("Formula: %r\n  library %s, evaluator %s (bits, messages)" % failure)
            print("  shortest: %r: library %s, evaluator %s" % comparison.shortest(*failure))
        answers = [comparison.of_evaluator(formula) for formula in formulas]
        settled = [answer for answer in answers if answer]
        valid = sum(value != f"{bits(-DFMAX):08X}" for value, _ in settled)
        messages = sum(count != "0" for _, count in settled)
        print(f"{len(formulas)} formulas: {valid} with a value, {messages} with messages, "
              f"{answers.count(None)} left out, {len(failures)} disagreements", flush=True)  # fmt: skip
        if failures or valid < len(formulas) / 2:
            sys.exit(f"Failed; again: {repeat}")


main()
