"""Installs a build, moves the tree to another folder, and uses it from outside projects there."""

import pathlib
import shutil
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True  # the sources stay as they are
from installing import (BUILD, C_COMPILER, CXX_COMPILER, FIRST_PROGRAMS_PRINT, LINK_OPTIONS, PROGRAM, PROJECT, VERSION,
                        FreshPlace, Tree, files_below, first_program, public_headers, run)  # noqa: E402

WARNINGS = ["-Wall", "-Wextra", "-Wconversion", "-Wshadow", "-pedantic", "-Werror"]


class InstalledTree(FreshPlace):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        folder = pathlib.Path(scratch.name).resolve()
        run(["cmake", "--install", BUILD, "--prefix", folder / "first"])
        shutil.move(folder / "first", folder / "then moved")
        cls.tree = Tree(folder / "then moved")
        cls.headers = cls.tree.prefix / "include" / "VodrelCore"

    def write_programs(self):
        """The sources of an outside project, and the experiment on which its programs work."""
        experiment = self.place / "Trial"
        shutil.copy(PROJECT / "tests" / "install" / "outside" / "CMakeLists.txt", self.place)
        (self.place / "first.c").write_text(first_program("c", experiment))
        (self.place / "second.cpp").write_text(first_program("cpp", experiment))
        return experiment

    def compile(self, compiler, standard, source):
        """Compiles a program as `cc source $(pkg-config ...)` does."""
        program = self.place / f"{source.stem}{PROGRAM}"
        run([compiler, f"-std={standard}", *WARNINGS, source, *self.tree.pkg_config("--cflags", "--libs"),
             *LINK_OPTIONS, "-o", program])
        return program

    def test_headers_are_those_of_the_list(self):
        self.assertEqual(files_below(self.headers), public_headers())

    def test_each_header_compiles_alone_and_without_a_warning(self):
        languages = [(CXX_COMPILER, "c++17", "cpp", public_headers()),
                     (C_COMPILER, "c99", "c", [name for name in public_headers() if name.startswith("interfaces/")])]
        for compiler, standard, ending, headers in languages:
            for header in sorted(headers):
                with self.subTest(header=header, standard=standard):
                    source = self.place / f"alone.{ending}"
                    source.write_text(f'#include "{header}"\n')
                    run([compiler, f"-std={standard}", *WARNINGS, "-fsyntax-only", *self.tree.pkg_config("--cflags"),
                         source])

    def test_found_by_find_package(self):
        experiment = self.write_programs()
        build = self.place / "build"
        self.tree.configure(self.place, build, f"-DWANTED={VERSION}")
        run(["cmake", "--build", build])
        self.tree.run([build / f"first{PROGRAM}"])
        self.assertEqual(self.tree.run([build / f"second{PROGRAM}"]).strip(), FIRST_PROGRAMS_PRINT)
        self.assert_stored(experiment)

    def test_found_by_pkg_config(self):
        self.write_programs()
        self.tree.run([self.compile(C_COMPILER, "c99", self.place / "first.c")])
        second = self.compile(CXX_COMPILER, "c++17", self.place / "second.cpp")
        self.assertEqual(self.tree.run([second]).strip(), FIRST_PROGRAMS_PRINT)

    def test_c_alone_is_enough(self):
        experiment = self.write_programs()
        self.tree.run([self.compile(C_COMPILER, "c99", self.place / "first.c")])
        self.assert_stored(experiment)

    def test_another_minor_version_is_refused(self):
        self.write_programs()
        major, minor, _ = VERSION.split(".")
        said = self.tree.configure(self.place, self.place / "build", f"-DWANTED={major}.{int(minor) + 1}", status=1)
        self.assertIn(f"version: {VERSION}", said)

    def test_examples_are_a_project_of_their_own(self):
        (source,) = {path.parent for path in self.tree.prefix.rglob("discharge.c")}
        build = self.place / "build"
        self.tree.configure(source, build)
        run(["cmake", "--build", build])
        self.assert_discharges(self.tree, build / f"discharge{PROGRAM}")

    def test_examples_are_there_as_programs(self):
        (program,) = self.tree.prefix.rglob(f"discharge{PROGRAM}")
        self.assert_discharges(self.tree, program)

    def test_nothing_names_the_machine_that_built_it(self):
        self.assert_no_path_of_this_machine(self.tree.prefix)

    def test_each_part_by_itself(self):
        parts = ["library", "development", "documentation", "examples"]
        seen = []
        for part in parts:
            run(["cmake", "--install", BUILD, "--prefix", self.place / part, "--component", part])
            seen += files_below(self.place / part)
        self.assertEqual(len(seen), len(set(seen)))
        self.assertEqual(set(seen), files_below(self.tree.prefix))


if __name__ == "__main__":
    unittest.main(verbosity=2)
