"""Holds the page of the C interface against its header, and runs the examples of the page.

    check_c_page.py c-interface.md VodrelC.h EveryFunction.c libVodrelCore.so COMPILER [--flags FLAGS] [--preload FILES]

The page must describe exactly the functions of the header, with the same arguments, and tell of each what it returns
and what happens when it fails. Each block of C or Python must run and print the block of text that follows it.
EveryFunction.c must name each function. A library with sanitizers needs FLAGS for the compiler and FILES that are
loaded ahead of it.
"""

import argparse
import collections
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

Argument = collections.namedtuple("Argument", "name type")
Function = collections.namedtuple("Function", "result arguments")
Section = collections.namedtuple("Section", "result arguments directions body")


def functions_of(header):
    """The functions of a header, by name."""
    text = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
    functions = {}
    for result, name, arguments in re.findall(r"^(\w+) (\w+)\(([^)]*)\);", text, flags=re.M):
        parts = [re.fullmatch(r"(.*?)(\w+)", " ".join(one.split())) for one in arguments.split(",")]
        functions[name] = Function(result, [Argument(part[2], part[1].strip()) for part in parts if part[1]])
    return functions


def sections_of(page):
    """The descriptions of functions on the page, by name."""
    sections = {}
    for name, body in re.findall(r"^### `(\w+)`\n(.*?)(?=^##|\Z)", page, flags=re.S | re.M):
        if name in sections:
            raise SystemExit(f"{name} is described twice")
        rows = re.findall(r"^\| `(\w+)` \| `([^`]+)` \| ([^|]*) \|", body, flags=re.M)
        result = re.search(r"^Returns (?:`(\w+)`: |nothing\.)", body, flags=re.M)
        sections[name] = Section((result[1] or "void") if result else "", [Argument(*row[:2]) for row in rows],
                                 [row[2] for row in rows], body)
    return sections


def examples_of(page):
    """The blocks of code with what they print."""
    return re.findall(r"^```(c|python)\n(.*?)^```$.*?^```text\n(.*?)^```$", page, flags=re.S | re.M)


class Page(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.page = OPTIONS.page.read_text(encoding="utf-8")
        self.functions = functions_of(OPTIONS.header.read_text(encoding="ascii"))
        self.sections = sections_of(self.page)

    def test_the_header_has_25_functions(self):
        self.assertEqual(25, len(self.functions))

    def test_the_page_has_exactly_the_functions_of_the_header(self):
        self.assertEqual(sorted(self.functions), sorted(self.sections))

    def test_arguments_have_the_names_and_types_of_the_header(self):
        for name, function in self.functions.items():
            self.assertEqual(function.arguments, self.sections[name].arguments, name)

    def test_results_have_the_types_of_the_header(self):
        for name, function in self.functions.items():
            self.assertEqual(function.result, self.sections[name].result, name)

    def test_what_is_written_is_called_out(self):
        for name, section in self.sections.items():
            for argument, direction in zip(section.arguments, section.directions):
                expected = ("in",) if "*" not in argument.type or "const" in argument.type else ("out", "in, out")
                self.assertIn(direction, expected, f"{name}: {argument.name}")

    def test_each_description_tells_of_failure(self):
        for name, section in self.sections.items():
            self.assertRegex(section.body, r"(?m)^Fails: \S", name)

    def test_the_program_of_all_functions_names_each(self):
        program = OPTIONS.program.read_text(encoding="ascii")
        for name in self.functions:
            self.assertRegex(program, rf"\b{name};", name)


class Examples(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="vodrel-test-")
        self.addCleanup(self.folder.cleanup)
        self.environment = dict(os.environ, XDG_DATA_HOME=os.path.join(self.folder.name, "user"))

    def run_example(self, command, **environment):
        done = subprocess.run(command, cwd=self.folder.name, env={**self.environment, **environment}, timeout=120,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", check=False)
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        return done.stdout

    def run_c(self, code):
        source = pathlib.Path(self.folder.name, "example.c")
        program = str(source.with_suffix(""))
        source.write_text(code, encoding="utf-8")
        library = OPTIONS.library.parent
        warnings = ["-std=c99", "-pedantic", "-Wall", "-Wextra", "-Werror"]
        subprocess.run([OPTIONS.compiler, *warnings, *OPTIONS.flags.split(), str(source), "-I",
                        str(OPTIONS.header.parents[1]), "-L", str(library), "-lVodrelCore",
                        f"-Wl,-rpath,{library}", "-o", program], check=True)
        return self.run_example([program])

    def run_python(self, code):
        return self.run_example([sys.executable, "-c", code], LD_LIBRARY_PATH=str(OPTIONS.library.parent),
                                LD_PRELOAD=OPTIONS.preload, ASAN_OPTIONS="detect_leaks=0")

    def test_there_is_one_in_each_language(self):
        page = OPTIONS.page.read_text(encoding="utf-8")
        self.assertEqual(["c", "python"], [language for language, _, _ in examples_of(page)])
        self.assertEqual(2, len(re.findall(r"^```(?:c|python)$", page, flags=re.M)))

    def test_each_prints_what_the_page_says(self):
        for language, code, printed in examples_of(OPTIONS.page.read_text(encoding="utf-8")):
            with self.subTest(language):
                self.assertEqual(printed, {"c": self.run_c, "python": self.run_python}[language](code))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(usage=__doc__)
    for place in ("page", "header", "program", "library"):
        parser.add_argument(place, type=lambda name: pathlib.Path(name).resolve())
    parser.add_argument("compiler")
    parser.add_argument("--flags", default="")
    parser.add_argument("--preload", default="")
    OPTIONS = parser.parse_args()
    unittest.main(argv=sys.argv[:1])
