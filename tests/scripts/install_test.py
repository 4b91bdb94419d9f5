"""install_test.py BUILD-FOLDER: installs the build into a scratch folder, moves that folder, and uses what is in it."""

import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest
import wave

BUILD = sys.argv.pop(1)
PROGRAMS = {"velmor-render", "velmor-cdcheck", "velmor-ddp"}
LIBRARIES = {"velmor_cd.so", "velmor_recording.so"}
PAGES = {"velmor-render.1", "velmor-cdcheck.1", "velmor-ddp.1"}
DOCUMENTS = {"copyright", "LICENCES.txt", "INSTALL.txt", "CHANGELOG.md"}


def run(*command, folder):
    return subprocess.run(command, cwd=folder, capture_output=True, text=True, timeout=60)


class InstallTree(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.mkdtemp(prefix="velmor-test-")
        cls.addClassCleanup(shutil.rmtree, cls.scratch)
        staged = os.path.join(cls.scratch, "staged")
        subprocess.run(["cmake", "--install", BUILD, "--prefix", staged], check=True, stdout=subprocess.DEVNULL)
        # A tree that runs from elsewhere than where it was installed runs from anywhere.
        cls.tree = os.path.join(cls.scratch, "moved", "prefix")
        os.mkdir(os.path.dirname(cls.tree))
        os.rename(staged, cls.tree)

    def files(self):
        """Name to folder (from the tree's root) of all that was installed."""
        return {
            name: os.path.relpath(folder, self.tree) for folder, _, names in os.walk(self.tree) for name in names
        }

    def program(self, name):
        return os.path.join(self.tree, self.files()[name], name)

    def write_song(self):
        """Ten seconds of noise in the work folder; its samples as bytes."""
        samples = random.Random(1).randbytes(10 * 44100 * 4)
        with wave.open(os.path.join(self.scratch, "song.wav"), "wb") as file:
            file.setnchannels(2)
            file.setsampwidth(2)
            file.setframerate(44100)
            file.writeframes(samples)
        return samples

    def render(self):
        return run(self.program("velmor-render"), "song.wav", "-o", "album.cue", "--force", folder=self.scratch)

    def test_holds_what_people_use_and_nothing_else(self):
        self.assertEqual(set(self.files()), PROGRAMS | LIBRARIES | PAGES | DOCUMENTS)

    def test_libraries_are_apart_from_the_programs(self):
        self.assertEqual({self.files()[name] for name in PROGRAMS}, {"bin"})
        self.assertEqual({os.path.basename(self.files()[name]) for name in LIBRARIES}, {"velmor_cd"})

    def test_renders_with_its_own_module(self):
        samples = self.write_song()
        done = self.render()
        self.assertEqual(done.returncode, 0, done.stderr)
        with open(os.path.join(self.scratch, "album.bin"), "rb") as image:
            self.assertEqual(image.read(), samples)

    def test_checks_what_it_rendered(self):
        self.write_song()
        self.render()
        done = run(self.program("velmor-cdcheck"), "album.cue", folder=self.scratch)
        self.assertIn("album.cue", done.stdout, done.stderr)

    def test_does_not_fall_back_to_the_module_of_the_build(self):
        self.write_song()
        module = self.program("velmor_cd.so")
        os.rename(module, module + ".away")
        try:
            done = self.render()
        finally:
            os.rename(module + ".away", module)
        self.assertEqual(done.returncode, 1)
        self.assertIn("velmor_cd.so", done.stderr)

    def test_loads_its_recording_library(self):
        listing = [self.program("velmor-render"), "--list-drives", "--json"]
        self.assertEqual(run(*listing, folder=self.scratch).returncode, 0)
        library = self.program("velmor_recording.so")
        os.rename(library, library + ".away")
        try:
            done = run(*listing, folder=self.scratch)
        finally:
            os.rename(library + ".away", library)
        self.assertEqual(done.returncode, 1)
        self.assertIn("velmor_recording.so", done.stderr)


if __name__ == "__main__":
    unittest.main()
