"""The list of reasons behind ./dev coverage: whatever it lacks or has too much is said, by its place."""

import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts"))
import coverage  # noqa: E402  (found by the line above)

SOURCE = "int f(int a) {\n  return a > 3 &&\n         a  < 9;\n}\n"
BELOW_NINE = "module/sink/f.cpp: a < 9: false"


def branch(line, column, end_column, true, false, end_line=None):
    return [line, column, end_line or line, end_column, true, false, 0, 0, 4]


def export(root, *functions):
    name = os.path.join(root, "module", "sink", "f.cpp")
    return {"data": [{"functions": [{"filenames": [name], "branches": list(each)} for each in functions]}]}


class Reasons(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="velmor-test-")
        self.addCleanup(folder.cleanup)
        self.root = os.path.realpath(folder.name)
        os.makedirs(os.path.join(self.root, "module", "sink"))
        with open(os.path.join(self.root, "module", "sink", "f.cpp"), "w", encoding="utf-8") as source:
            source.write(SOURCE)

    def faults(self, functions, reasons, unmeasured=()):
        counts = coverage.conditions(export(self.root, *functions), self.root)
        return list(coverage.faults(counts, coverage.read_reasons(reasons.splitlines()), unmeasured))

    def test_nothing_is_said_where_every_condition_goes_both_ways(self):
        self.assertEqual(self.faults([[branch(2, 10, 15, 1, 2)]], ""), [])

    def test_a_way_never_taken_is_named_with_its_line(self):
        (fault,) = self.faults([[branch(3, 10, 16, 5, 0)]], "")
        self.assertIn('module/sink/f.cpp:3: "a < 9" is never false', fault)

    def test_forms_of_one_template_add_up(self):
        self.assertEqual(self.faults([[branch(2, 10, 15, 1, 0)], [branch(2, 10, 15, 0, 1)]], ""), [])

    def test_a_reason_is_enough_however_its_lines_are_broken(self):
        self.assertEqual(self.faults([[branch(3, 10, 16, 5, 0)]], f"{BELOW_NINE}\n  It is always less.\n"), [])
        both = [[branch(2, 10, 16, 0, 5, end_line=3)]]
        self.assertEqual(self.faults(both, "module/sink/f.cpp: a > 3 && a < 9: true\n  Never.\n"), [])

    def test_a_reason_is_for_one_condition_and_not_for_its_like_elsewhere(self):
        with open(os.path.join(self.root, "module", "sink", "f.cpp"), "a", encoding="utf-8") as source:
            source.write("bool g(int a) { return a < 9; }\n")
        found = self.faults([[branch(3, 10, 16, 5, 0)], [branch(5, 24, 29, 5, 0)]], f"{BELOW_NINE}\n  Always.\n")
        self.assertEqual(len(found), 1)
        self.assertIn("module/sink/f.cpp:3", found[0])
        self.assertIn("at line 5", found[0])

    def test_a_reason_for_the_other_way_is_none(self):
        found = self.faults([[branch(3, 10, 16, 5, 0)]], BELOW_NINE.replace("false", "true") + "\n  Why.\n")
        self.assertEqual(len(found), 2)

    def test_a_reason_that_holds_no_more_is_named(self):
        for functions in ([[branch(3, 10, 16, 5, 1)]], [[branch(2, 10, 15, 1, 1)]]):
            (fault,) = self.faults(functions, f"# A line.\n{BELOW_NINE}\n  It is always less.\n")
            self.assertIn("coverage_reasons.txt:2: this holds no more", fault)

    def test_a_source_without_counters_needs_a_reason(self):
        entry = "module/platform/g.cpp: not measured"
        (fault,) = self.faults([[branch(2, 10, 15, 1, 2)]], "", ["module/platform/g.cpp"])
        self.assertIn("module/platform/g.cpp: no test program", fault)
        self.assertEqual(self.faults([], f"{entry}\n  It is for another system.\n", ["module/platform/g.cpp"]), [])
        (fault,) = self.faults([], f"{entry}\n  It is for another system.\n")
        self.assertIn("holds no more", fault)

    def test_a_list_that_cannot_be_read_is_refused(self):
        for lines in (BELOW_NINE, f"{BELOW_NINE}\n\n", f"{BELOW_NINE}\n  Why.\n{BELOW_NINE}\n  Why.\n", "f.cpp: a: true\n  x"):
            with self.assertRaises(coverage.ReasonsError):
                coverage.read_reasons(lines.splitlines())


if __name__ == "__main__":
    unittest.main()
