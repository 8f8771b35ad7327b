"""A client in Python, with nothing installed but the interpreter: ctypes and the shared library.

    client.py libVodrelCore.so [unittest's arguments]

Works in a fresh folder with a per-user folder of its own. Files written are looked at without the library, by struct.
"""

import ctypes
import os
import pathlib
import re
import struct
import sys
import tempfile
import unittest
from ctypes import POINTER, byref, c_char, c_char_p, c_float, c_int

C_TYPES = {"void": None, "int": c_int, "float": c_float, "char const *": c_char_p, "char *": POINTER(c_char),
           "int *": POINTER(c_int), "float *": POINTER(c_float), "float const *": POINTER(c_float)}

NO_VALUE = struct.unpack("<f", bytes.fromhex("B04378FF"))[0]


def single(value):
    """A number rounded to single precision."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def floats(values):
    return (c_float * len(values))(*values)


def load(path):
    """The library, with the types of its functions as the header gives them."""
    library = ctypes.CDLL(path)
    header = pathlib.Path(__file__).parents[2] / "src" / "interfaces" / "VodrelC.h"
    text = re.sub(r"/\*.*?\*/", "", header.read_text(encoding="ascii"), flags=re.S)
    for result, name, arguments in re.findall(r"^(\w+) (\w+)\(([^)]*)\);", text, flags=re.M):
        function = getattr(library, name)
        function.restype = C_TYPES[result]
        function.argtypes = [C_TYPES[re.sub(r"\w+$", "", " ".join(one.split())).strip()]
                             for one in arguments.split(",") if one.strip() != "void"]
    return library


class Client:
    """The flat functions as a Python program would wrap them."""

    def __init__(self, library):
        self.lib = library

    def text(self, function, subject, room=1000):
        """What a function answers that hands out a text."""
        buffer = ctypes.create_string_buffer(b"^" * (room + 10), room + 10)
        length = c_int(room)
        function(subject, byref(length), buffer)
        if buffer.raw[length.value:] != b"^" * (room + 10 - length.value):
            raise AssertionError("something was written behind the text")
        return buffer.raw[:length.value].decode("ascii")

    def string(self, code):
        return self.text(self.lib.GetStringC, code)

    def waveform(self, name, n, start, step):
        out = floats([-77.0] * (n + 1))
        self.lib.GetWaveformC(name, n, start, step, out)
        if out[n] != -77.0:
            raise AssertionError("something was written behind the samples")
        return out[:n]

    def waveform_info(self, name):
        n, start, step = c_int(), c_float(), c_float()
        self.lib.GetWaveformInfoC(name, byref(n), byref(start), byref(step))
        return n.value, start.value, step.value

    def set_matrix(self, name, axes, values):
        self.lib.SetMatrixC(name, *(part for axis in axes for part in axis), floats(values))

    def matrix(self, name, sizes, room):
        out = floats([-77.0] * room)
        self.lib.GetMatrixC(name, *(part for n in sizes for part in (n, 0.0, 0.0)), out)
        return out[:]

    def matrix_info(self, name):
        axes = [(c_int(), c_float(), c_float()) for _ in range(3)]
        self.lib.GetMatrixInfoC(name, *(byref(part) for axis in axes for part in axis))
        return [tuple(part.value for part in axis) for axis in axes]

    def particles(self, name, count, first, room):
        out = floats([-77.0] * (8 * room))
        asked = c_int(count)
        self.lib.GetPGroupC(name, byref(asked), first, out)
        return [out[8 * i:8 * i + 8] for i in range(asked.value)]

    def particles_info(self, name):
        n, geometry, header2, header1 = c_int(), c_int(), c_float(), c_float()
        self.lib.GetPGroupInfoC(name, byref(n), byref(geometry), byref(header2), byref(header1))
        return n.value, geometry.value, header2.value, header1.value

    def formula(self, text):
        return self.lib.GetScalarDataC(text)


class ClientTest(unittest.TestCase):
    """Each test has an experiment of its own, below one start of the library, with the shot A001."""

    number = 0

    @classmethod
    def setUpClass(cls):
        cls.client = Client(LIBRARY)

    def setUp(self):
        ClientTest.number += 1
        self.experiment = FOLDER / "Data" / f"Run{ClientTest.number}"
        self.lib = LIBRARY
        self.lib.SetExperimentC(os.fsencode(self.experiment))
        self.assertEqual(1, self.lib.CreateShotC(b"A001"))

    def shot_file(self, name, shot="A001"):
        return (self.experiment / "Shots" / f"Shot{shot}" / name).read_bytes()


class Start(ClientTest):
    def test_the_library_is_the_right_one(self):
        self.assertEqual(316, self.lib.TestFuncC())
        self.assertEqual("Test string from Vodrel", self.client.string(99))
        self.assertEqual("Test", self.client.text(self.lib.GetStringC, 99, 4))
        self.assertEqual("", self.client.string(7))

    def test_the_start_has_set_the_folders_and_a_new_log(self):
        self.assertTrue(self.client.string(0).endswith("\\vodrel"))
        self.assertTrue(self.client.string(4).endswith("\\user\\Vodrel"))
        self.assertTrue(self.client.string(5).endswith("\\user\\Vodrel\\MPIHosts.txt"))
        log = (FOLDER / "user" / "Vodrel" / "Log.txt").read_bytes().split(b"\r\n")
        self.assertTrue(log[0].startswith(b"Log initialized at "))
        self.assertIn(b"InitializeVodrelC called from external code at ", log[3])

    def test_a_second_start_with_the_same_path_only_writes_a_line(self):
        self.lib.InitializeVodrelC(os.fsencode(FOLDER / "VODREL"))
        log = (FOLDER / "user" / "Vodrel" / "Log.txt").read_bytes().split(b"\r\n")
        self.assertTrue(log[-2].startswith(b"InitializeVodrelC called again by "))
        self.assertEqual("A001", self.client.string(1))

    def test_texts_for_the_log_get_there(self):
        self.lib.NotifyC(5, 0, b"a line from Python")
        self.lib.CSleep(1)
        self.assertIn(b"a line from Python by ", (FOLDER / "user" / "Vodrel" / "Log.txt").read_bytes())

    def test_the_host_list_names_as_many_nodes_as_are_asked(self):
        self.assertEqual(4, self.lib.GetNodesC(4))
        hosts = (FOLDER / "user" / "Vodrel" / "MPIHosts.txt").read_bytes().split(b"\r\n")
        self.assertEqual(4, len(hosts))
        self.assertEqual(1, len(set(hosts)))


class Experiments(ClientTest):
    def test_an_experiment_has_its_folders(self):
        self.assertEqual(self.experiment.name, self.client.string(6))
        self.assertTrue(self.client.string(3).endswith("\\Data\\" + self.experiment.name))
        names = sorted(entry.name for entry in self.experiment.iterdir())
        self.assertEqual(["Macros", "Query", self.experiment.name + ".ini", "Shots"], names)

    def test_no_folder_closes_the_experiment(self):
        self.lib.SetExperimentC(b"")
        self.assertEqual(["", "", "", ""], [self.client.string(code) for code in (1, 2, 3, 6)])


class Shots(ClientTest):
    def test_shots_are_created_once_and_selected(self):
        self.assertEqual(1, self.lib.CreateShotC(b"A002"))
        self.assertEqual("A002", self.client.string(1))
        self.assertEqual(0, self.lib.CreateShotC(b"A001"))
        self.assertEqual(1, self.lib.SetShotC(b"A001"))
        self.assertEqual(0, self.lib.SetShotC(b"A003"))
        self.assertEqual("A001", self.client.string(1))
        self.assertTrue(self.client.string(2).endswith("\\Shots\\ShotA001"))

    def test_a_star_takes_an_existing_shot(self):
        self.lib.SetStringDataC(b"Run", b"7")
        self.lib.CreateShotC(b"A002")
        self.assertEqual(1, self.lib.CreateShotC(b"*A001"))
        self.assertEqual("7", self.client.text(self.lib.GetStringDataC, b"Run"))


class Strings(ClientTest):
    def test_strings_are_stored_and_read(self):
        self.lib.SetStringDataC(b"Operator", b"somebody")
        self.assertEqual("somebody", self.client.text(self.lib.GetStringDataC, b"OPERATOR"))
        self.assertEqual("some", self.client.text(self.lib.GetStringDataC, b"Operator", 4))
        self.assertEqual("somebody", self.client.text(self.lib.GetStringDataC, b"None::Operator"))
        self.assertIn(b"\r\nOperator=somebody", self.shot_file("Scalars.ini"))

    def test_an_empty_or_null_string_deletes(self):
        for none in (b"", None):
            self.lib.SetStringDataC(b"Operator", b"somebody")
            self.lib.SetStringDataC(b"Operator", none)
            self.assertEqual("", self.client.text(self.lib.GetStringDataC, b"Operator"))


class Waveforms(ClientTest):
    def test_a_waveform_is_stored_and_read_on_another_grid(self):
        self.lib.SetWaveformC(b"U", 3, 1.5, 0.5, floats([1.0, 2.0, -0.5]))
        self.assertEqual([1.0, 2.0, -0.5], self.client.waveform(b"U", 3, 1.5, 0.5))
        self.assertEqual([0.0, 1.5, 0.75, 0.0], self.client.waveform(b"U", 4, 1.25, 0.5))
        self.assertEqual((3, 1.5, 0.5), self.client.waveform_info(b"U"))
        self.assertEqual(struct.pack("<3f", 1.0, 2.0, -0.5), self.shot_file("U.wvf")[-12:])

    def test_pairs_become_a_waveform(self):
        self.lib.SetWaveformXYC(b"I", 3, floats([1.0, 5.0, 99.0, 6.0, 2.0, 7.0]))
        self.assertEqual((3, 1.0, 0.5), self.client.waveform_info(b"I"))
        self.assertEqual([5.0, 6.0, 7.0], self.client.waveform(b"I", 3, 1.0, 0.5))

    def test_a_missing_waveform_is_zeros(self):
        self.assertEqual([0.0] * 5, self.client.waveform(b"None", 5, 0.0, 1.0))
        self.assertEqual((0, 0.0, 1.0), self.client.waveform_info(b"None"))

    def test_a_waveform_of_another_shot_is_reached_by_its_name(self):
        self.lib.SetWaveformC(b"U", 2, 0.0, 1.0, floats([3.0, 4.0]))
        self.lib.CreateShotC(b"A002")
        self.assertEqual([3.0, 4.0], self.client.waveform(b"A001\\U", 2, 0.0, 1.0))


class Matrices(ClientTest):
    AXES = [(2, 10.0, 0.5), (3, -1.0, 2.0), (2, 3.0, 0.25)]
    VALUES = [float(i) for i in range(1, 13)]

    def test_a_matrix_is_stored_and_read(self):
        self.client.set_matrix(b"M", self.AXES, self.VALUES)
        self.assertEqual(self.VALUES, self.client.matrix(b"M", (2, 3, 2), 12))
        self.assertEqual(self.AXES, self.client.matrix_info(b"M"))
        self.assertEqual(struct.pack("<12f", *self.VALUES), self.shot_file("M.dmt")[-48:])

    def test_another_size_leaves_the_array_alone(self):
        self.client.set_matrix(b"M", self.AXES, self.VALUES)
        for sizes in ((3, 2, 2), (12, 1, 1), (2, 3, 1), (65536, 65536, 1)):
            self.assertEqual([-77.0] * 12, self.client.matrix(b"M", sizes, 12))

    def test_products_that_overflow_store_nothing(self):
        most = 2 ** 31 - 1
        for sizes in ((65536, 65536, 1), (most, most, most)):
            self.client.set_matrix(b"M", [(n, 0.0, 1.0) for n in sizes], [])
        self.assertFalse((self.experiment / "Shots" / "ShotA001" / "M.dmt").exists())


class Particles(ClientTest):
    ROWS = [[float(10 * row + column) for column in range(8)] for row in range(3)]

    def store(self, rows, function, geometry=1):
        function(b"P", len(rows), geometry, 2.5, 1.5, floats([value for row in rows for value in row]))

    def test_a_group_is_stored_and_read(self):
        self.store(self.ROWS, self.lib.SetPGroupC)
        self.assertEqual(self.ROWS, self.client.particles(b"P", 3, 0, 3))
        self.assertEqual(self.ROWS[1:], self.client.particles(b"P", 10, 1, 10))
        self.assertEqual(self.ROWS, self.client.particles(b"P", -1, 0, 3))
        self.assertEqual((3, 1, 2.5, 1.5), self.client.particles_info(b"P"))
        self.assertEqual((2, 0, 1, 3, 8, 1.5, 2.5), struct.unpack_from("<5i2f", self.shot_file("P.dpt")))

    def test_a_group_grows(self):
        for row in self.ROWS:
            self.store([row], self.lib.AppendPGroupC)
        self.assertEqual(self.ROWS, self.client.particles(b"P", 5, 0, 5))

    def test_from_minus_77_on_they_come_in_rectangular_coordinates(self):
        self.store([[9.0, 0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0]], self.lib.SetPGroupC)
        self.assertEqual([[9.0, 0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0]], self.client.particles(b"P", 1, -77, 1))
        self.store([[9.0, 0.5, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0]], self.lib.SetPGroupC)
        x, y = self.client.particles(b"P", 1, -77, 1)[0][:2]
        self.assertAlmostEqual(7.8982430, x, 5)  # 9 * cos 0.5
        self.assertAlmostEqual(4.3148298, y, 5)  # 9 * sin 0.5

    def test_a_missing_group_has_none(self):
        self.assertEqual([], self.client.particles(b"None", 3, 0, 3))
        self.assertEqual((0, 0, 0.0, 0.0), self.client.particles_info(b"None"))


class Scalars(ClientTest):
    def setUp(self):
        super().setUp()
        self.lib.SetScalarDataC(b"ChargeVoltage", 2500.0)
        self.lib.SetWaveformC(b"I", 5, 0.0, 0.25, floats([0.0, 1.0, 4.0, 2.0, 0.0]))

    def test_formulas_compute_with_what_the_shot_holds(self):
        for text, value in ((b"2+3*4", 14.0), (b"2^3^2", 64.0), (b"ChargeVoltage/1000", 2.5), (b"I\\mx", 4.0),
                            (b"(I\\mx)^2*0.5", 8.0), (b"none::7", 7.0), (b"1/3", single(1 / 3))):
            self.assertEqual(value, self.client.formula(text), text)

    def test_without_a_value_the_answer_is_minus_3_3e38(self):
        for text in (b"none", b"2 * 3", b"1/0", b"", None):
            self.assertEqual(NO_VALUE, self.client.formula(text), text)

    def test_a_formula_as_text(self):
        self.assertEqual("0.33333334", self.client.text(self.lib.GetScalarDataSafeC, b"1/3", 59))
        self.assertEqual("-3.3e+38", self.client.text(self.lib.GetScalarDataSafeC, b"{1}", 59))

    def test_a_text_with_a_formula(self):
        for text, answer in ((b"peak {I\\mx} kA", "peak 4 kA"), (b"no formula", "no formula"), (b"a{1}b{2}3", "a1b{23"),
                             (b"{none}", "Error evaluating scalar expression none")):
            self.assertEqual(answer, self.client.text(self.lib.GetScalarDataSafeC, text, 60))

    def test_a_number_is_stored_in_a_data_file(self):
        self.lib.SetScalarDataC(b"I\\T2", 7.5)
        self.assertEqual(7.5, self.client.formula(b"I\\t2"))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit("usage: client.py libVodrelCore.so [unittest's arguments]")
    with tempfile.TemporaryDirectory(prefix="vodrel-test-") as folder:
        FOLDER = pathlib.Path(folder)
        os.environ["XDG_DATA_HOME"] = str(FOLDER / "user")  # before the library asks
        LIBRARY = load(os.path.abspath(sys.argv.pop(1)))
        LIBRARY.InitializeVodrelC(os.fsencode(FOLDER / "vodrel"))
        outcome = unittest.main(exit=False).result
    sys.exit(not outcome.wasSuccessful())
