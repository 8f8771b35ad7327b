"""Whatever tells a version tells that of the project: versions.py Everywhere | OnLinux | OnWindows

Those of the packages, in their names and fields, are looked at by packages.py.
"""

import pathlib
import re
import struct
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True  # the sources stay as they are
from installing import BUILD, PROJECT, VERSION, WINDOWS, Tree, run  # noqa: E402

MAJOR, MINOR, PATCH = VERSION.split(".")


class Everywhere(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        prefix = pathlib.Path(scratch.name).resolve()
        run(["cmake", "--install", BUILD, "--prefix", prefix])
        cls.tree = Tree(prefix)

    def test_pkg_config(self):
        self.assertEqual(self.tree.pkg_config("--modversion"), [VERSION])

    def test_cmake_package(self):
        (file,) = self.tree.prefix.rglob("VodrelCoreConfigVersion.cmake")
        told = run(["cmake", "-DPACKAGE_FIND_NAME=VodrelCore", "-P", self.script(file)])
        self.assertIn(f"told: {VERSION}", told)

    def script(self, file):
        script = self.tree.prefix / "told.cmake"
        script.write_text(f'include("{file}")\nmessage(STATUS "told: ${{PACKAGE_VERSION}}")\n')
        return script

    def test_newest_entry_of_the_changes(self):
        entries = re.findall(r"^## ([0-9.]+)", (PROJECT / "CHANGELOG.md").read_text(), re.MULTILINE)
        self.assertEqual(entries[0], VERSION)

    def test_it_stands_in_one_place(self):
        """Nothing that builds or packs has it written out besides the project's line."""
        told = []
        places = [PROJECT / "docs" / "Doxyfile", PROJECT / "CMakeLists.txt", PROJECT / "CMakePresets.json"]
        for folder in "cmake", "scripts", "src", "tests/install", "examples":
            places += [path for path in sorted((PROJECT / folder).rglob("*")) if path.is_file()]
        for place in places:
            lines = place.read_text(errors="replace").splitlines()
            told += [line for line in lines if re.search(rf"(?<![0-9.]){re.escape(VERSION)}(?![0-9.])", line)]
        self.assertEqual(len(told), 1, told)
        self.assertRegex(told[0], r"^project\(")


class OnLinux(Everywhere):
    def test_names_of_the_library(self):
        names = {path.name for path in self.tree.libraries.glob("libVodrelCore.so*")}
        self.assertEqual(names, {"libVodrelCore.so" + ending for ending in ("", f".{MAJOR}", f".{VERSION}")})

    def test_name_by_which_programs_ask_for_it(self):
        told = run(["objdump", "-p", self.tree.libraries / "libVodrelCore.so"])
        self.assertEqual(re.findall(r"SONAME\s+(\S+)", told), [f"libVodrelCore.so.{MAJOR}"])

    def test_reference(self):
        run([PROJECT / "scripts" / "reference.sh", self.tree.prefix / "reference"])
        page = (self.tree.prefix / "reference" / "html" / "index.html").read_text()
        self.assertRegex(page, rf'id="projectnumber">[^<]*\b{re.escape(VERSION)}<')


class OnWindows(Everywhere):
    def setUp(self):
        self.library = (self.tree.libraries / "VodrelCore.dll").read_bytes()

    def test_number_in_the_properties_of_the_file(self):
        number = (int(MAJOR) << 16 | int(MINOR), int(PATCH) << 16)
        start = self.library.index(struct.pack("<2I", 0xFEEF04BD, 0x10000))
        self.assertEqual(struct.unpack_from("<4I", self.library, start + 8), number + number)

    def properties(self):
        """The texts: a name and a text, each ended by a zero and filled up to a multiple of four bytes."""
        names = ["CompanyName", "FileDescription", "FileVersion", "InternalName", "LegalCopyright", "OriginalFilename",
                 "ProductName", "ProductVersion"]
        told = {}
        for name in names:
            mark = (name + "\0").encode("utf-16-le")
            start = self.library.find(mark)
            if start >= 0:
                text = self.library[start + len(mark):start + len(mark) + 200].decode("utf-16-le", errors="replace")
                told[name] = text.lstrip("\0").split("\0")[0]
        return told

    def test_texts_in_the_properties_of_the_file(self):
        self.assertEqual(self.properties(), {
            "FileDescription": "Shot-data core for experiments", "FileVersion": VERSION, "InternalName": "VodrelCore",
            "OriginalFilename": "VodrelCore.dll", "ProductName": "VodrelCore", "ProductVersion": VERSION})

    def test_number_in_the_header_of_the_file(self):
        header = struct.unpack_from("<I", self.library, 0x3C)[0] + 24  # behind the signature and the file header
        self.assertEqual(struct.unpack_from("<2H", self.library, header + 44), (int(MAJOR), int(MINOR)))


if __name__ == "__main__":
    unittest.main(verbosity=2, defaultTest="OnWindows" if WINDOWS else "OnLinux")
