"""./dev mutate finds what no test notices, and leaves everything as it was."""

import contextlib
import io
import json
import os
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
sys.path.insert(0, os.path.join(ROOT, "tools", "mutate"))

import campaign
import equivalents
import mutants
import operators
import test_runs
import working_copy

ROOMS = ["module", "disc", "check", "ddp", "page", "programs", "host"]
PROJECT = {
    ".gitignore": "/build/\n",
    "CMakeLists.txt": """
cmake_minimum_required(VERSION 3.25)
project(tiny LANGUAGES CXX)
enable_testing()
add_library(tiny STATIC module/tiny.cpp)
target_include_directories(tiny PUBLIC ${CMAKE_SOURCE_DIR})
add_executable(tiny_test tests/tiny_test.cpp)
target_link_libraries(tiny_test PRIVATE tiny)
add_test(NAME tiny_test COMMAND tiny_test)
""",
    "module/tiny.h": "#pragma once\nint least(int a, int b);\nint counted(int to);\ninline int most() { return 7; }\n",
    "module/tiny.cpp": """#include "module/tiny.h"

int least(int a, int b) {
  return a < b ? a : b;
}

int counted(int to) {
  int sum = 0;
  while (sum < to) sum += 2;
  return sum;
}
""",
    "tests/tiny_test.cpp": """#include "module/tiny.h"
int main() { return least(1, 2) == 1 && least(2, 1) == 1 && counted(4) == 4 && most() == 7 ? 0 : 1; }
""",
}
SAME_WHEN_EQUAL = """module/tiny.cpp
- return a < b ? a : b;
+ return a <= b ? a : b;
Equal numbers are one number.
"""
OF_OLD = """module/tiny.cpp
- return gone < b;
+ return gone <= b;
This line was there once.
"""


def written(folder, files):
    for name, text in files.items():
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


def read(*parts):
    with open(os.path.join(*parts), "rb") as file:
        return file.read()


class ChangesOfAText(unittest.TestCase):
    def changes(self, text):
        """Each change as the text that it makes of a line's."""
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "some.cpp")
            written(folder, {"some.cpp": text})
            changes = operators.changes_of(path, mutants.OPTIONS)
        return {mutant.after for mutant in mutants.mutants_of_text("some.cpp", text.encode(), changes)}

    def test_a_comparison_has_its_neighbours(self):
        self.assertEqual(
            self.changes("bool f(int a, int b) {\n  return a >= b;\n}\n"), {"return a > b;", "return a < b;"}
        )

    def test_a_constant_has_its_neighbours(self):
        self.assertEqual(self.changes("const int k = 0x1F;\n"), {"const int k = 32;", "const int k = 30;"})

    def test_statements_and_conditions_are_dropped_and_negated(self):
        self.assertEqual(
            self.changes("void g();\nvoid f(bool a) {\n  if (a) g();\n}\n"), {"if (!(a)) g();", "if (a) ;"}
        )

    def test_values_that_are_returned_become_empty_ones_or_their_negation(self):
        self.assertEqual(self.changes("int g();\nint f() {\n  return g();\n}\n"), {"return {};"})
        self.assertEqual(self.changes("bool g();\nbool f() {\n  return g();\n}\n"), {"return !(g());"})

    def test_comments_strings_assertions_and_macros_stay(self):
        text = '#include <cassert>\n#define KOne 1\nstatic_assert(1 < 2);\n// a < b\nconst char* s = "1 < 2";\n'
        self.assertEqual(self.changes(text + "void f(int a) {\n  assert(a > 3);\n}\nint k = KOne;\n"), set())


class WhichTests(unittest.TestCase):
    """The tests that are asked about a change."""

    def test_are_some_for_every_source_of_what_ships(self):
        listed = subprocess.run(["git", "ls-files", *ROOMS], cwd=ROOT, capture_output=True, check=True, text=True)
        sources = [file for file in listed.stdout.split() if file.endswith((".cpp", ".h"))]
        self.assertGreater(len(sources), 300)
        self.assertEqual([file for file in sources if not test_runs.noticing(file)], [])


class ACampaign(unittest.TestCase):
    """One of all changes of a tiny project."""

    @classmethod
    def setUpClass(cls):
        cls.folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.enterClassContext(contextlib.chdir(cls.folder))
        listed = {campaign.LIST: SAME_WHEN_EQUAL + "\n" + OF_OLD}
        written(cls.folder, PROJECT | listed)
        subprocess.run(["git", "init", "-q"], check=True)
        subprocess.run(["git", "add", "."], check=True)
        cls.status, cls.printed = cls.run_one("100", "module")
        with open(os.path.join(campaign.FOLDER, "results.jsonl"), encoding="utf-8") as lines:
            cls.found = [json.loads(line) for line in lines]

    @classmethod
    def run_one(cls, *arguments):
        printed = io.StringIO()
        with (
            mock.patch.object(test_runs, "NOTICING", [("module", ["tiny_test"])]),
            mock.patch.object(test_runs, "COMPUTING_ALLOWANCE", 1),
            mock.patch.object(sys, "argv", ["campaign.py", *arguments]),
            contextlib.redirect_stdout(printed),
        ):
            status = campaign.run(campaign.options())
        return status, printed.getvalue()

    def outcomes(self, after):
        return [entry["outcome"] for entry in self.found if entry["after"] == after]

    def test_notices_what_a_test_notices(self):
        self.assertEqual(self.outcomes("return a > b ? a : b;"), [])
        self.assertEqual(self.outcomes("return a >= b ? a : b;"), [campaign.NOTICED])
        self.assertEqual(self.outcomes("inline int most() { return 8; }"), [campaign.NOTICED])

    def test_stops_what_never_ends(self):
        self.assertEqual(self.outcomes("while (sum < to) sum -= 2;"), [campaign.NOTICED])

    def test_prints_what_no_test_notices(self):
        self.assertEqual(self.outcomes("while (sum < to) sum += 3;"), [campaign.NOTICED])
        self.assertEqual(self.outcomes("while (sum < to) sum += 1;"), [campaign.SURVIVED])
        survivor = "module/tiny.cpp:9\n  - while (sum < to) sum += 2;\n  + while (sum < to) sum += 1;\n"
        self.assertIn(f"survives: {survivor}", self.printed)
        self.assertEqual(self.status, 1)

    def test_leaves_out_what_is_listed_and_tells_what_is_listed_in_vain(self):
        self.assertEqual(self.outcomes("return a <= b ? a : b;"), [])
        self.assertIn("1 are listed as equivalent", self.printed)
        self.assertIn("lists what is no mutant any more: module/tiny.cpp\n  - return gone < b;", self.printed)

    def test_leaves_the_checkout_and_the_copy_as_they_were(self):
        for name, text in PROJECT.items():
            self.assertEqual(read(self.folder, name).decode(), text)
            self.assertEqual(read(campaign.FOLDER, "tree", name).decode(), text)
        copy = working_copy.WorkingCopy(self.folder, os.path.abspath(campaign.FOLDER))
        self.assertFalse(os.path.exists(copy.unfinished))
        copy.prepare(["tiny_test"])
        (original,) = copy.shipped_objects("module/tiny.cpp")
        self.assertFalse(copy.differs(original))
        self.assertEqual(subprocess.run([copy.built("tiny_test")], check=False).returncode, 0)

    def test_goes_on_where_it_was(self):
        results = os.path.join(campaign.FOLDER, "results.jsonl")
        before = read(results)
        _, printed = self.run_one("100", "module")
        self.assertEqual(read(results), before)
        self.assertEqual(printed.splitlines()[-1], self.printed.splitlines()[-1])

    def test_compiles_what_a_killed_run_has_left(self):
        copy = working_copy.WorkingCopy(self.folder, os.path.abspath(campaign.FOLDER))
        (left,) = copy.shipped_objects("module/tiny.cpp") or [self.object_of(copy)]
        with open(copy.built(left), "ab") as damaged:
            damaged.write(b"of a mutant")
        written(copy.tree, {"../unfinished": "module/tiny.cpp"})
        copy.configure()
        copy.prepare(["tiny_test"])
        self.assertFalse(read(copy.built(left)).endswith(b"of a mutant"))

    @staticmethod
    def object_of(copy):
        copy.read_graph()
        return copy.shipped_objects("module/tiny.cpp")[0]


class TheCommandLine(unittest.TestCase):
    def options(self, *arguments):
        with mock.patch.object(sys, "argv", ["campaign.py", *arguments]):
            return campaign.options()

    def test_takes_a_count_rooms_both_or_neither(self):
        for arguments, count, rooms in (
            ((), 100, campaign.ROOMS),
            (("7",), 7, campaign.ROOMS),
            (("disc", "module/sink/"), 100, ["disc", "module/sink"]),
            (("--seed", "3", "7", "disc"), 7, ["disc"]),
            (("7", "disc", "--seed", "3"), 7, ["disc"]),
        ):
            given = self.options(*arguments)
            self.assertEqual((given.count, given.rooms), (count, rooms), arguments)

    def test_refuses_rooms_that_are_none(self):
        with contextlib.chdir(ROOT):
            for room in ("bench", "module/none"):
                with self.assertRaisesRegex(SystemExit, room):
                    campaign.sources([room])


class TheListOfEquivalents(unittest.TestCase):
    def test_matches_whatever_the_spaces(self):
        text = b"int f(int a) {\n  return a <\n      7;\n}\n"
        mutant = mutants.mutants_of_text("x.cpp", text, [(text.index(b"<"), text.index(b"<") + 1, "<=")])[0]
        listed = equivalents.Equivalents("x.cpp\n- return  a <\n+ return a  <=\nBecause.\n")
        self.assertIn(mutant, listed)

    def test_means_one_of_several_places_where_it_has_a_number(self):
        text = b"int a = 7;\nint b = 7;\n  int a = 7;\n"
        found = [(text.index(b"7"), text.index(b"7") + 1, "8"), (text.rindex(b"7"), text.rindex(b"7") + 1, "8")]
        first, second = mutants.mutants_of_text("x.cpp", text, found)
        listed = equivalents.Equivalents("x.cpp #2\n- int a = 7;\n+ int a = 8;\nBecause.\n")
        self.assertNotIn(first, listed)
        self.assertIn(second, listed)
        self.assertEqual(listed.unmatched([first, second], ["x.cpp"]), [])
        self.assertEqual(len(listed.unmatched([first], ["x.cpp"])), 1)

    def test_wants_a_reason(self):
        with self.assertRaises(equivalents.ListError):
            equivalents.Equivalents("x.cpp\n- a\n+ b\n")

    def test_of_the_project_can_be_read(self):
        with open(os.path.join(ROOT, campaign.LIST), encoding="utf-8") as text:
            for file, *_ in equivalents.Equivalents(text.read()).reasons:
                self.assertTrue(os.path.exists(os.path.join(ROOT, file)), file)


if __name__ == "__main__":
    unittest.main()
