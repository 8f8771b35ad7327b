"""What the tests of installation and packages share: the build that is tested, and a fresh place for what they make.

ctest hands the build over in variables of the environment (CMakeLists.txt).
"""

import os
import pathlib
import re
import shlex
import struct
import subprocess
import tempfile
import unittest
import unittest.mock

PROJECT = pathlib.Path(os.environ["VODREL_PROJECT"])
BUILD = pathlib.Path(os.environ["VODREL_BUILD"])
VERSION = os.environ["VODREL_VERSION"]
C_COMPILER = os.environ["VODREL_C_COMPILER"]
CXX_COMPILER = os.environ["VODREL_CXX_COMPILER"]
EMULATOR = [program for program in [os.environ["VODREL_EMULATOR"]] if program]
WINDOWS = os.environ["VODREL_WINDOWS"] == "1"

PROGRAM = ".exe" if WINDOWS else ""
# A program links the compiler's own libraries, so that it runs without their DLLs, and has to be told of each name that
# comes out of a DLL; only what the headers mark is found then.
LINK_OPTIONS = ["-static", "-Wl,--disable-auto-import"] if WINDOWS else []


def run(command, *, status=0, folder=None, **variables):
    """The standard output of a command, with messages added if it was to fail."""
    done = subprocess.run([str(word) for word in command], cwd=folder, env=dict(os.environ, **variables), text=True,
                          stdin=subprocess.DEVNULL, capture_output=True, errors="replace")
    wrong = done.returncode != 0 if status == 0 else done.returncode == 0
    assert not wrong, f"{shlex.join(map(str, command))}\nended with {done.returncode}\n{done.stdout}{done.stderr}"
    return done.stdout if status == 0 else done.stdout + done.stderr


def files_below(folder):
    return {path.relative_to(folder).as_posix() for path in folder.rglob("*") if not path.is_dir() or path.is_symlink()}


def public_headers():
    return set((PROJECT / "cmake" / "public-headers.txt").read_text().split())


def first_program(language, experiment):
    """One of the README's first programs, on another experiment."""
    text = (PROJECT / "README.md").read_text(encoding="utf-8").split("## A first program")[1]
    lines = re.search(rf"```{language}\n(.*?)```", text, re.DOTALL)[1]
    told = {"c": '"/tmp/Trial"', "cpp": r'"Z:\\tmp\\Trial"'}[language]
    assert told in lines, f"the README's program in {language} has another experiment"
    return lines.replace(told, '"Z:' + str(experiment).replace("/", r"\\") + '"')


FIRST_PROGRAMS_PRINT = "first try: 4 samples, at most 2.25 V"


class Tree:
    """An installed tree, as one who is told where it stands uses it."""

    def __init__(self, prefix):
        self.prefix = prefix
        (self.pkgconfig,) = prefix.rglob("pkgconfig")
        self.libraries = prefix / "bin" if WINDOWS else self.pkgconfig.parent

    def run(self, command, **options):
        """Runs a program that finds the library by the system's variable for that."""
        variable = {"WINEPATH": f"Z:{self.libraries}"} if WINDOWS else {"LD_LIBRARY_PATH": str(self.libraries)}
        return run([*EMULATOR, *command], **variable, **options)

    def pkg_config(self, *options):
        """The words that pkg-config answers, of this tree alone."""
        return shlex.split(run(["pkg-config", *options, "vodrelcore"], PKG_CONFIG_LIBDIR=str(self.pkgconfig)))

    def configure(self, source, build, *options, **expected):
        system = ["-DCMAKE_SYSTEM_NAME=Windows"] if WINDOWS else []
        return run(["cmake", "-S", source, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", *system,
                    f"-DCMAKE_C_COMPILER={C_COMPILER}", f"-DCMAKE_CXX_COMPILER={CXX_COMPILER}",
                    f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DCMAKE_EXE_LINKER_FLAGS={' '.join(LINK_OPTIONS)}",
                    *options], **expected)


class FreshPlace(unittest.TestCase):
    """Each test has a folder `place` of its own, with a blank in its name, and its own folder of the user's."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.place = pathlib.Path(scratch.name).resolve() / "a place"
        self.place.mkdir()
        variables = unittest.mock.patch.dict(os.environ, XDG_DATA_HOME=str(self.place))
        variables.start()
        self.addCleanup(variables.stop)

    def assert_discharges(self, tree, program):
        """The example `discharge` does what it is there for."""
        bank = self.place / "Bank"
        self.assertIn("Stored 8 shots.", tree.run([program, f"Z:{bank}" if WINDOWS else bank]))
        self.assertEqual(len(list(bank.glob("Shots/*/I.wvf"))), 8)

    def assert_stored(self, experiment):
        shot = experiment / "Shots" / "ShotA001"
        self.assertEqual((shot / "U.wvf").read_bytes()[-16:], struct.pack("<4f", 0, 1.5, 2.25, 1))
        self.assertIn("Comment=first try", (shot / "Scalars.ini").read_text())

    def assert_no_path_of_this_machine(self, folder):
        for name in sorted(files_below(folder)):
            content = (folder / name).read_bytes()
            for path in PROJECT, BUILD:
                self.assertNotIn(bytes(path), content, name)
