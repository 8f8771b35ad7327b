"""Makes a program out of the C++ lines under "What it can do" in the README.

    extract.py README.md PROGRAM.cpp

A line that ends in "// gives X" is an expression whose value, as text, has to be X. The program prints what differs, and
at the end how many it has compared.
"""

import pathlib
import re
import sys

BEFORE = """// Made out of README.md.
#include <cstdio>

#include "VodrelCore.h"
#include "interfaces/VodrelC.h"

static int compared = 0;
static int wrong = 0;

static void compare(int line, DString const &told, char const *expected)
{
    ++compared;
    if (told == expected) return;
    ++wrong;
    std::printf("README.md:%d: '%s', not '%s'\\n", line, told.c_str(), expected);
}

int main()
{
    CoreInit("");
"""
AFTER = """    std::printf("%d compared\\n", compared);
    return wrong ? 1 : 0;
}
"""


def blocks(text, language):
    """The lines of the fenced blocks of a language under "What it can do", with their numbers."""
    section = inside = None
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith("## "):
            section = line[3:]
        elif line.startswith("```"):
            inside = None if inside is not None else line[3:]
        elif inside == language and section == "What it can do":
            yield number, line


def translate(number, line):
    told = re.fullmatch(r"(\s*)(.+);\s*// gives (.+)", line)
    if not told:
        assert "// gives" not in line, f"README.md:{number}: not an expression on a line of its own"
        return f"    {line}\n"
    indent, expression, expected = told.groups()
    return f'    {indent}compare({number}, DString({expression}), "{expected}");\n'


if __name__ == "__main__":
    lines = [translate(number, line) for number, line in blocks(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"), "cpp")]
    assert len(lines) > 50, "where are the examples?"
    pathlib.Path(sys.argv[2]).write_text(BEFORE + "".join(lines) + AFTER)
