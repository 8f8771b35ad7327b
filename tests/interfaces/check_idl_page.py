"""Holds the page of the IDL interface against its header, and runs the session on the page.

    check_idl_page.py idl-interface.md VodrelIDL.h libVodrelCore.so GDL

The page must list and describe exactly the functions of the header, in their order, and say of each what it returns.
The session must print what the page says.
"""
import os
import re
import subprocess
import sys
import tempfile
import unittest

PAGE, HEADER, LIBRARY, GDL = sys.argv[1:5]
PROJECT = os.path.dirname(os.path.dirname(os.path.abspath(PAGE)))


def text_of(name):
    with open(name, encoding="ascii") as file:
        return file.read()


class Page(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.page = text_of(PAGE)
        self.functions = re.findall(r"^int (\w+)\(int argc, void \*argv\[\]\);", text_of(HEADER), flags=re.M)

    def test_the_header_has_eight_functions(self):
        self.assertEqual(8, len(self.functions))

    def test_the_table_lists_the_functions(self):
        self.assertEqual(self.functions, re.findall(r"^\| `(\w+)` \|", self.page, flags=re.M))

    def test_each_function_is_described_and_its_result_told(self):
        sections = re.findall(r"^### `(\w+)`\n(.*?)(?=^##|\Z)", self.page, flags=re.S | re.M)
        self.assertEqual(self.functions, [name for name, _ in sections])
        for name, body in sections:
            self.assertRegex(body, r"(?m)^Returns (0|-1) ", name)

    def test_the_table_has_the_vectors(self):
        vectors = re.findall(r"^\| `\w+` \| (.*) \|$", self.page, flags=re.M)
        self.assertEqual([2, 1, 1, 2, 2, 5, 4, 5], [vector.count(",") + 1 for vector in vectors])
        self.assertEqual(["value", "samples", "start", "step", "points"], re.findall(r"\*(\w+)\*", " ".join(vectors)))

    def test_messages_are_those_of_the_library(self):
        with open(LIBRARY, "rb") as file:
            library = file.read()
        messages = re.findall(r"^    (Error .*)$", self.page, flags=re.M)
        self.assertEqual(3, len(messages))
        for message in messages:
            for part in message.split(" U "):
                self.assertIn(part.encode(), library)

    def test_the_session_prints_what_the_page_says(self):
        blocks = re.search(r"^```idl\n(.*?)^```$.*?^```text\n(.*?)^```$", self.page, flags=re.S | re.M)
        session, printed = blocks.groups()
        with tempfile.TemporaryDirectory() as folder:
            script = os.path.join(folder, "session.pro")
            with open(script, "w", encoding="ascii") as file:
                file.write("!quiet = 1\n" + session.replace("/tmp/Trial", folder + "/Trial") + "exit, status=0\n")
            environment = dict(os.environ, VODREL_LIBRARY=LIBRARY, HOME=folder, XDG_DATA_HOME=folder,
                               XDG_CACHE_HOME=folder, ASAN_OPTIONS="detect_leaks=0:verify_asan_link_order=0")
            environment.pop("DISPLAY", None)
            run = subprocess.run([GDL, "-quiet", script], cwd=PROJECT, env=environment, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60, check=False)
        self.assertEqual(printed, run.stdout.decode(), run.stderr.decode())


unittest.main(argv=sys.argv[:1])
