"""The check of the table of rooms, on small trees: it is silent on one that is right and names each fault by itself."""

import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts"))
import include_table  # noqa: E402  (found by the line above)

HEAD = "## The rooms\n\n| room | what it holds | may include |\n|---|---|---|\n"
RIGHT_TABLE = {
    "disc": "nothing",
    "check": "`disc`",
    "host": "`disc`",
    "host/burn": "`disc`",
    "tests": "`check`, `host/*`",
}
RIGHT_FILES = {
    "disc/codes.h": "",
    "check/main.cpp": '#include "disc/codes.h"\n',
    "check/rules/codes.cpp": '#include <string>\n#include "disc/codes.h"\n#include "check/rules/codes.h"\n',
    "check/rules/codes.h": "",
    "host/main.cpp": '#include "disc/codes.h"\n',
    "host/burn/burn.h": '#  include "disc/codes.h"\n',
    "tests/check_test.cpp": '#include <check/rules/codes.h>\n#include "host/burn/burn.h"\n',
}


class Faults(unittest.TestCase):
    def faults(self, table=None, files=None):
        """What the check says of the right tree with these rows and files changed; None takes one away."""
        rows = {**RIGHT_TABLE, **(table or {})}
        tree = {**RIGHT_FILES, **(files or {})}
        lines = [f"| `{room}` | things | {allowed} |" for room, allowed in rows.items() if allowed is not None]
        tree[include_table.PAGE] = "# A page\n\n" + HEAD + "\n".join(lines) + "\n\n## After\n\n| `other` | table |\n"
        with tempfile.TemporaryDirectory(prefix="velmor-test-") as root:
            for name, text in tree.items():
                if text is not None:
                    os.makedirs(os.path.dirname(os.path.join(root, name)), exist_ok=True)
                    with open(os.path.join(root, name), "w", encoding="utf-8") as file:
                        file.write(text)
            return include_table.faults(root, [name for name, text in tree.items() if text is not None])

    def assertOneFault(self, found, *words):
        self.assertEqual(len(found), 1, found)
        for word in words:
            self.assertIn(word, found[0])

    def test_right_tree_has_none(self):
        self.assertEqual(self.faults(), [])

    def test_include_that_the_table_does_not_allow(self):
        found = self.faults(files={"host/burn/burn.cpp": '\n#include "check/rules/codes.h"\n'})
        self.assertOneFault(found, "host/burn/burn.cpp:2", "does not let host/burn include check")

    def test_import_counts_as_an_include(self):
        found = self.faults(files={"host/burn/burn.mm": '#import "check/rules/codes.h"\n'})
        self.assertOneFault(found, "host/burn/burn.mm:1")

    def test_include_in_angle_brackets_counts(self):
        found = self.faults(files={"host/burn/burn.cpp": "#include <check/rules/codes.h>\n"})
        self.assertOneFault(found, "host/burn/burn.cpp:1")

    def test_room_above_is_another_room(self):
        found = self.faults(files={"host/main.h": "", "host/burn/burn.cpp": '#include "host/main.h"\n'})
        self.assertOneFault(found, "does not let host/burn include host")

    def test_arrow_that_nobody_uses(self):
        found = self.faults(files={"check/main.cpp": "", "check/rules/codes.cpp": ""})
        self.assertOneFault(found, "check may include disc, but no file does")

    def test_folder_without_a_room(self):
        self.assertOneFault(self.faults(files={"player/main.cpp": ""}), "player: ")

    def test_folder_below_a_room_that_has_rooms_below_it(self):
        self.assertOneFault(self.faults(files={"host/input/input.cpp": ""}), "host/input: ")

    def test_room_that_begins_with_the_name_of_another(self):
        self.assertOneFault(self.faults(files={"discs/codes.h": ""}), "discs: ")

    def test_room_without_a_source(self):
        self.assertOneFault(self.faults(table={"bench": "nothing"}), "the room bench holds no source")

    def test_name_that_is_no_room(self):
        found = self.faults(table={"check": "`disc`, `disk`"})
        self.assertEqual(len(found), 2, found)
        self.assertIn("check may include disk, which is no room", found[0])

    def test_circle_in_the_table(self):
        found = self.faults(
            table={"disc": "`host/burn`"}, files={"disc/bits.h": "", "disc/bits.cpp": '#include "host/burn/burn.h"\n'}
        )
        self.assertEqual(len(found), 2, found)
        self.assertIn("the table lets these rooms include one another: disc, host/burn", found[0])
        self.assertIn("these folders include one another in a circle: disc, host/burn", found[1])

    def test_circle_of_folders_within_a_room(self):
        found = self.faults(
            files={
                "check/sheet/sheet.h": '#include "check/rules/codes.h"\n',
                "check/rules/rules.h": '#include "check/image/image.h"\n',
                "check/image/image.h": '#include "check/sheet/sheet.h"\n',
            }
        )
        self.assertOneFault(found, "in a circle: check/image, check/rules, check/sheet")

    def test_include_that_is_not_found(self):
        found = self.faults(files={"check/main.cpp": '#include "codes.h"\n'})
        self.assertOneFault(found, "check/main.cpp:1", "not there")


class Tables(unittest.TestCase):
    def assertRefused(self, text, words):
        with self.assertRaisesRegex(include_table.TableError, words):
            include_table.read_table(text)

    def test_page_without_the_section(self):
        self.assertRefused("# A page\n", "no section")

    def test_section_without_the_table(self):
        self.assertRefused("## The rooms\n\n## Later\n| room | what it holds | may include |\n", "no table")

    def test_words_where_rooms_belong(self):
        self.assertRefused(HEAD + "| `disc` | things | all of it |\n", "neither")

    def test_room_twice(self):
        self.assertRefused(HEAD + 2 * "| `disc` | things | nothing |\n", "two rows")


if __name__ == "__main__":
    unittest.main()
