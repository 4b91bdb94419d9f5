"""./dev on a Mac, as far as that can be seen elsewhere: which programs it calls, the Mac's own being stand-ins."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
# Of bash 4 and later; the system's is 3.2.
YOUNGER = re.compile(r"\b(mapfile|readarray|declare -A|local -n|coproc)\b|\$\{\w+(,,|\^\^|@\w)|&>>|\|&")

STAND_IN = """#!/bin/sh
echo "$(basename "$0") $*" >>"$CALLS"
case "$(basename "$0") $1" in
  "uname -s") echo Darwin ;;
  "uname -m") echo arm64 ;;
  "lipo -archs") echo x86_64 arm64 ;;
  "lipo -create") touch build/mac/joined ;;
esac
"""


class OnAMac(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="velmor-test-")
        self.addCleanup(shutil.rmtree, self.folder)
        shutil.copy(os.path.join(ROOT, "dev"), self.folder)
        shutil.copytree(os.path.join(ROOT, "scripts"), os.path.join(self.folder, "scripts"))
        self.tools = os.path.join(self.folder, "tools")
        os.mkdir(self.tools)
        for name in ["uname", "cmake", "ctest", "clang", "lipo", "codesign"]:
            with open(os.path.join(self.tools, name), "w", encoding="utf-8") as tool:
                tool.write(STAND_IN)
            os.chmod(tool.name, 0o755)

    def dev(self, *arguments):
        environment = {**os.environ, "PATH": self.tools + ":/usr/bin:/bin", "CALLS": self.folder + "/calls"}
        return subprocess.run(
            [self.folder + "/dev", *arguments], capture_output=True, text=True, check=False, env=environment
        )

    def calls(self):
        with open(self.folder + "/calls", encoding="utf-8") as calls:
            return [line for line in calls.read().splitlines() if not line.startswith("uname")]

    def test_builds_for_both_processors_joins_and_signs(self):
        done = self.dev("build")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(
            self.calls(),
            [
                "cmake --preset mac-native-x86_64 -DBUILD_TESTING=OFF",
                "cmake --build --preset mac-native-x86_64",
                "cmake --preset mac-native-arm64 -DBUILD_TESTING=OFF",
                "cmake --build --preset mac-native-arm64",
                "lipo -create build/mac-native-x86_64/velmor_cd.dylib build/mac-native-arm64/velmor_cd.dylib"
                " -output build/mac/joined",
                "codesign --force --sign - --identifier velmor_cd.dylib build/mac/joined",
            ],
        )
        self.assertTrue(os.path.exists(self.folder + "/build/mac/velmor_cd.dylib"))

    def test_tests_the_joined_file_on_its_own_processor(self):
        done = self.dev("test")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("cmake --preset mac-native-arm64 -DBUILD_TESTING=ON", self.calls())
        self.assertEqual(self.calls()[-1], "ctest --test-dir build/mac-native-arm64 --output-on-failure")

    def test_says_what_is_missing(self):
        os.remove(self.tools + "/lipo")
        done = self.dev("build")
        self.assertEqual(done.returncode, 1)
        self.assertIn("lipo is missing; this needs Xcode's command line tools", done.stderr)

    def test_refuses_the_verbs_for_debian(self):
        done = self.dev("package")
        self.assertEqual(done.returncode, 2)
        self.assertIn("'package' is for Debian", done.stderr)

    def test_uses_nothing_that_is_younger_than_the_systems_shell(self):
        for name in ["dev", "scripts/common.sh", "scripts/on_a_mac/build.sh", "scripts/on_a_mac/test.sh"]:
            with open(os.path.join(ROOT, name), encoding="utf-8") as script:
                self.assertIsNone(YOUNGER.search(script.read()), name)


if __name__ == "__main__":
    unittest.main()
