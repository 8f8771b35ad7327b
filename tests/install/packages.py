"""Makes the packages, unpacks them, and looks at them as a user does: packages.py DebianPackages | WindowsArchive"""

import re
import sys
import unittest
import zipfile

sys.dont_write_bytecode = True  # the sources stay as they are
from installing import (BUILD, C_COMPILER, LINK_OPTIONS, PROGRAM, PROJECT, VERSION, FreshPlace, Tree,
                        files_below, public_headers, run)  # noqa: E402

MAJOR = VERSION.split(".")[0]
PACKAGES = BUILD / "packages"


def make_packages(*options):
    """They are made in the same place each time, which compiles only what has changed."""
    run([PROJECT / "scripts" / "package.sh", *options, PACKAGES])


def documents(folder):
    names = {f"docs/{path.name}" for path in (PROJECT / "docs").glob("*.md")} | {"README.md", "CHANGELOG.md"}
    return {f"{folder}{name}" for name in names}


def examples(folder):
    return {f"{folder}{path.name}" for path in (PROJECT / "examples").iterdir()}


class DebianPackages(FreshPlace):
    @classmethod
    def setUpClass(cls):
        make_packages()
        cls.machine = run(["dpkg", "--print-architecture"]).strip()
        triplet = run(["dpkg-architecture", "-qDEB_HOST_MULTIARCH"]).strip()
        cls.library_folder = f"usr/lib/{triplet}"

    def package(self, name):
        return PACKAGES / f"{name}_{VERSION}_{self.machine}.deb"

    def unpack(self, *names):
        for name in names:
            run(["dpkg-deb", "-x", self.package(name), self.place / "root"])
        return self.place / "root"

    def fields(self, name):
        wanted = ["Package", "Version", "Architecture", "Section", "Priority"]
        return [run(["dpkg-deb", "-f", self.package(name), field]).strip() for field in wanted]

    def depends(self, name):
        return run(["dpkg-deb", "-f", self.package(name), "Depends"]).strip().split(", ")

    def test_these_and_no_others(self):
        made = {path.name for path in PACKAGES.glob("*.deb")}
        self.assertEqual(made, {self.package(f"libvodrelcore{MAJOR}").name, self.package("libvodrelcore-dev").name})

    def test_control_fields(self):
        for name, section in ((f"libvodrelcore{MAJOR}", "libs"), ("libvodrelcore-dev", "libdevel")):
            self.assertEqual(self.fields(name), [name, VERSION, self.machine, section, "optional"])

    def test_each_package_asks_for_what_it_needs(self):
        library = self.depends(f"libvodrelcore{MAJOR}")
        self.assertEqual([need.split()[0] for need in library], ["libc6", "libgcc-s1", "libstdc++6"])
        self.assertIn(f"libvodrelcore{MAJOR} (= {VERSION})", self.depends("libvodrelcore-dev"))

    def test_packages_of_programs_come_to_depend_on_the_library(self):
        run(["dpkg-deb", "-e", self.package(f"libvodrelcore{MAJOR}"), self.place / "control"])
        said = (self.place / "control" / "shlibs").read_text().strip()
        self.assertEqual(said, f"libVodrelCore {MAJOR} libvodrelcore{MAJOR} (>= {VERSION})")

    def test_files_of_the_library(self):
        root = self.unpack(f"libvodrelcore{MAJOR}")
        library = f"{self.library_folder}/libVodrelCore.so"
        self.assertEqual(files_below(root), {f"{library}.{MAJOR}", f"{library}.{VERSION}"})

    def test_files_of_development(self):
        root = self.unpack("libvodrelcore-dev")
        expected = {f"usr/include/VodrelCore/{header}" for header in public_headers()}
        expected |= {f"{self.library_folder}/{name}" for name in (
            "libVodrelCore.so", "pkgconfig/vodrelcore.pc", "cmake/VodrelCore/VodrelCoreConfig.cmake",
            "cmake/VodrelCore/VodrelCoreConfig-release.cmake", "cmake/VodrelCore/VodrelCoreConfigVersion.cmake",
            "vodrelcore/examples/derived", "vodrelcore/examples/discharge", "vodrelcore/examples/store_csv")}
        papers = "usr/share/doc/libvodrelcore-dev/"
        expected |= documents(papers) | examples(f"{papers}examples/")
        self.assertEqual(files_below(root), expected)

    def test_all_belongs_to_root_and_is_for_all_to_read(self):
        for name in (f"libvodrelcore{MAJOR}", "libvodrelcore-dev"):
            for line in run(["dpkg-deb", "-c", self.package(name)]).splitlines():
                mode, owner = line.split()[:2]
                self.assertIn(mode, ("drwxr-xr-x", "-rw-r--r--", "-rwxr-xr-x", "lrwxrwxrwx"), line)
                self.assertEqual(owner, "root/root", line)

    def test_programs_look_for_libraries_where_the_system_has_them(self):
        root = self.unpack(f"libvodrelcore{MAJOR}", "libvodrelcore-dev")
        binaries = [name for name in files_below(root) if (root / name).read_bytes()[:4] == b"\x7fELF"]
        self.assertEqual(len(binaries), 6)  # the library under three names, and three programs
        for name in binaries:
            self.assertNotRegex(run(["objdump", "-p", root / name]), "RPATH|RUNPATH", name)

    def test_nothing_names_the_machine_that_built_it(self):
        self.assert_no_path_of_this_machine(self.unpack(f"libvodrelcore{MAJOR}", "libvodrelcore-dev"))

    def test_the_example_in_c_runs(self):
        tree = Tree(self.unpack(f"libvodrelcore{MAJOR}", "libvodrelcore-dev") / "usr")
        self.assert_discharges(tree, tree.libraries / "vodrelcore" / "examples" / "discharge")

    def test_the_example_in_c_compiles(self):
        tree = Tree(self.unpack(f"libvodrelcore{MAJOR}", "libvodrelcore-dev") / "usr")
        source = tree.prefix / "share" / "doc" / "libvodrelcore-dev" / "examples" / "discharge.c"
        run([C_COMPILER, source, *tree.pkg_config("--cflags", "--libs"), "-lm", "-o", self.place / "mine"])
        self.assert_discharges(tree, self.place / "mine")


class WindowsArchive(FreshPlace):
    @classmethod
    def setUpClass(cls):
        make_packages("--windows")
        cls.name = f"VodrelCore-{VERSION}-win64"

    def unpack(self):
        (archive,) = PACKAGES.glob("*.zip")
        self.assertEqual(archive.name, f"{self.name}.zip")
        zipfile.ZipFile(archive).extractall(self.place)
        return self.place / self.name

    def test_files(self):
        expected = {f"include/VodrelCore/{header}" for header in public_headers()}
        expected |= {"bin/VodrelCore.dll", "bin/derived.exe", "bin/discharge.exe", "bin/store_csv.exe",
                     "lib/libVodrelCore.dll.a", "lib/pkgconfig/vodrelcore.pc"}
        expected |= {f"lib/cmake/VodrelCore/VodrelCoreConfig{ending}.cmake" for ending in ("", "-release", "Version")}
        self.assertEqual(files_below(self.unpack()), expected | documents("") | examples("examples/"))
        self.assertEqual({path.name for path in self.place.iterdir()}, {self.name})

    def test_nothing_names_the_machine_that_built_it(self):
        self.assert_no_path_of_this_machine(self.unpack())

    def test_the_library_needs_nothing_but_what_windows_has(self):
        told = run(["objdump", "-p", self.unpack() / "bin" / "VodrelCore.dll"])
        needed = {name.lower() for name in re.findall(r"DLL Name: (\w+)\.dll", told, re.IGNORECASE)}
        self.assertIn("kernel32", needed)
        self.assertLessEqual(needed, {"advapi32", "kernel32", "mpr", "msvcrt", "shell32", "user32"})

    def test_the_example_in_c_runs(self):
        folder = self.unpack()
        tree = Tree(folder)
        tree.libraries = self.place  # where there are none: the program has its DLL beside it
        self.assert_discharges(tree, folder / "bin" / "discharge.exe")

    def test_the_example_in_c_compiles(self):
        tree = Tree(self.unpack())
        mine = self.place / f"mine{PROGRAM}"
        source = tree.prefix / "examples" / "discharge.c"
        run([C_COMPILER, source, *tree.pkg_config("--cflags", "--libs"), *LINK_OPTIONS, "-o", mine])
        self.assert_discharges(tree, mine)


if __name__ == "__main__":
    unittest.main(verbosity=2)
