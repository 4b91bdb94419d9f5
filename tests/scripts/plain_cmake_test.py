"""What CMake makes of the project when nobody uses ./dev: no presets, few options or none."""

import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


class Configuration(unittest.TestCase):
    def setUp(self):
        self.build = tempfile.mkdtemp(prefix="velmor-test-")
        self.addCleanup(shutil.rmtree, self.build)

    def configure(self, *options):
        command = ["cmake", "-S", ROOT, "-B", self.build, *options]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def cached(self, name):
        with open(os.path.join(self.build, "CMakeCache.txt"), encoding="utf-8") as cache:
            found = re.search(rf"^{name}:\w+=(.*)$", cache.read(), re.MULTILINE)
        return found and found.group(1)

    def flags(self):
        """The compiler's command line for the module's first source."""
        with open(os.path.join(self.build, "compile_commands.json"), encoding="utf-8") as commands:
            return next(entry["command"] for entry in json.load(commands) if "/module/" in entry["file"]).split()

    def registered_tests(self):
        shown = subprocess.run(
            ["ctest", "--test-dir", self.build, "--show-only=json-v1"], capture_output=True, text=True, check=True
        )
        return {test["name"] for test in json.loads(shown.stdout)["tests"]}

    def test_is_optimised_and_lets_warnings_pass_by_default(self):
        self.assertEqual(self.configure("-DBUILD_TESTING=OFF").returncode, 0)
        self.assertIn("-O2", self.flags())
        self.assertNotIn("-Werror", self.flags())

    def test_takes_the_build_type_that_is_asked_for(self):
        self.assertEqual(self.configure("-DBUILD_TESTING=OFF", "-DCMAKE_BUILD_TYPE=Debug").returncode, 0)
        self.assertNotIn("-O2", self.flags())

    def test_takes_warnings_for_errors_when_asked(self):
        self.assertEqual(self.configure("-DBUILD_TESTING=OFF", "-DVELMOR_WERROR=ON").returncode, 0)
        self.assertIn("-Werror", self.flags())

    def test_without_tests_needs_none_of_their_libraries(self):
        missing = [f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in ("GTest", "benchmark", "Python3")]
        done = self.configure("-DBUILD_TESTING=OFF", *missing)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.registered_tests(), set())

    def test_with_tests_says_that_their_library_is_missing(self):
        done = self.configure("-DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("GTest", done.stderr)

    def test_tests_the_dylib_only_where_one_is_named(self):
        of_dylib = {"mac_dylib_test", "dylib_through_plugin_test", "dylib_through_model_test"}
        self.assertEqual(self.configure().returncode, 0)
        self.assertIn("sink_test", self.registered_tests())
        self.assertFalse({name for name in self.registered_tests() if "dylib" in name})
        # Named but not built, they are there and fail.
        self.assertEqual(self.configure("-DVELMOR_DYLIB=/nowhere/velmor_cd.dylib").returncode, 0)
        self.assertLessEqual(of_dylib, self.registered_tests())

    def test_refuses_a_processor_it_is_not_made_for(self):
        done = self.configure("-DCMAKE_SYSTEM_NAME=Linux", "-DCMAKE_SYSTEM_PROCESSOR=riscv64")
        self.assertNotEqual(done.returncode, 0)
        self.assertRegex(done.stderr, r'does not support the processor "riscv64"; it supports: x86_64,\s+arm64')


if __name__ == "__main__":
    unittest.main()
