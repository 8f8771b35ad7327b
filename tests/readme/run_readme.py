"""Runs the examples under "What it can do" in the README, as one user would one after the other.

    run_readme.py README.md PROGRAM LIBRARY [GDL]

PROGRAM is made of the C++ lines (extract.py). The lines in Python, and with an interpreter of IDL those for it too, then
go on with the experiment that it leaves; what they print has to be what "gives" says. Without LIBRARY, as where programs
that don't know of sanitizers can't load it, C++ is all that is run.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # the sources stay as they are
from extract import blocks  # noqa: E402


def run(command, folder):
    environment = dict(os.environ, HOME=str(folder), XDG_DATA_HOME=str(folder))
    environment.pop("DISPLAY", None)
    done = subprocess.run(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    assert done.returncode == 0, f"{command[0]} ended with {done.returncode}\n{done.stdout}{done.stderr}"
    return done.stdout


def run_script(text, language, mark, command, last, folder):
    """Lines of a language, which print numbers."""
    lines = list(blocks(text, language))
    expected = [float(number) for _, line in lines for number in re.findall(mark + r" gives (\S+)$", line)]
    assert expected, f"no number is expected of {language}"
    script = folder / f"script.{'pro' if language == 'idl' else 'py'}"
    script.write_text("\n".join([line for _, line in lines] + last) + "\n")
    printed = [float(word) for word in run([*command, str(script)], folder).split()]
    assert printed == expected, f"{language} printed {printed}, not {expected}"
    return len(expected)


def main(readme, program, library=None, gdl=None):
    text = pathlib.Path(readme).read_text(encoding="utf-8")
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch).resolve()
        print(run([program], folder).strip(), "in C++")
        if library:
            (folder / "build").mkdir()
            (folder / "build" / "release").symlink_to(pathlib.Path(library).resolve().parent)
            print(run_script(text, "python", "#", [sys.executable], [], folder), "in Python")
        if gdl:
            print(run_script(text, "idl", ";", [gdl, "-quiet"], ["exit, status=0"], folder), "in IDL")


if __name__ == "__main__":
    main(*sys.argv[1:])
