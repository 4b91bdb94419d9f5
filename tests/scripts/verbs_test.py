"""./dev, its help and the scripts behind it speak of the same verbs."""

import os
import re
import subprocess
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


def dev(*arguments):
    return subprocess.run([os.path.join(ROOT, "dev"), *arguments], capture_output=True, text=True, check=False)


class Verbs(unittest.TestCase):
    def verbs(self):
        """The verbs that ./dev passes on to a script."""
        with open(os.path.join(ROOT, "dev"), encoding="utf-8") as door:
            return sorted(re.search(r"^  (\w+(?: \| \w+)+)\)$", door.read(), re.MULTILINE).group(1).split(" | "))

    def test_each_has_a_script(self):
        for verb in self.verbs():
            self.assertTrue(os.path.isfile(os.path.join(ROOT, "scripts", verb + ".sh")), verb)

    def test_help_lists_them_all_and_no_others(self):
        listed = re.findall(r"^  (\w+)  ", dev("help").stdout, re.MULTILINE)
        self.assertEqual(sorted([*listed, "help"]), self.verbs())

    def test_what_is_none_is_refused(self):
        refused = dev("burn")
        self.assertEqual(refused.returncode, 2)
        self.assertIn("no verb 'burn'", refused.stderr)


if __name__ == "__main__":
    unittest.main()
