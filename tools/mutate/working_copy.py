"""working_copy.py: a copy of the checkout with a build of its own, in which one file at a time is a mutant.

A compiled mutant is taken back by putting the objects of the original in its place, not by compiling that once more.
For the build tool an object is as old as it was, then, and whatever was linked from the mutant is too old.
"""

import contextlib
import filecmp
import os
import re
import shutil
import subprocess

# As little optimisation as lets the compiler see that two ways of writing are the same.
FLAGS = "-O1 -DNDEBUG -w"
LINKER = "-fuse-ld=lld"
CONFIGURATION = [
    "-DCMAKE_BUILD_TYPE=Release",
    "-DCMAKE_CXX_COMPILER=g++",
    f"-DCMAKE_CXX_FLAGS_RELEASE={FLAGS}",
    f"-DCMAKE_EXE_LINKER_FLAGS={LINKER}",
    f"-DCMAKE_SHARED_LINKER_FLAGS={LINKER}",
    f"-DCMAKE_MODULE_LINKER_FLAGS={LINKER}",
    "-DCMAKE_UNITY_BUILD_BATCH_SIZE=12",
    "-DVELMOR_UNITY_TESTS=ON",
]
NOT_SHIPPED = ("tests/", "tools/", "fuzz/", "bench/")


class BuildError(Exception):
    """The copy cannot be made or built."""


class WorkingCopy:
    def __init__(self, checkout, folder):
        self.checkout = checkout
        self.tree = os.path.join(folder, "tree")
        self.build = os.path.join(folder, "build")
        self.originals = os.path.join(folder, "objects")
        self.unfinished = os.path.join(folder, "unfinished")
        self.log = os.path.join(folder, "build.log")
        self.dependents = {}
        self.linked = []

    def configure(self):
        """Brings the copy up to date with the checkout. Raises BuildError when it cannot be configured."""
        self.synchronise()
        self.run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", *CONFIGURATION])

    def prepare(self, targets):
        """Builds the original. Raises BuildError when that fails."""
        self.run(["ninja", "-C", self.build, *targets])
        self.read_graph()
        # An earlier run may have compiled more of what ships than these want.
        shipped = sorted({output for file in self.dependents for output in self.shipped_objects(file)})
        self.run(["ninja", "-C", self.build, *shipped])
        if os.path.exists(self.unfinished):
            os.remove(self.unfinished)
        self.read_graph()
        self.keep_originals()

    def run(self, command):
        with open(self.log, "w", encoding="utf-8") as log:
            if subprocess.run(command, stdout=log, stderr=log, check=False).returncode:
                raise BuildError(f"the copy does not build before anything is changed; {self.log} says why")

    def synchronise(self):
        listed = subprocess.run(
            ["git", "-C", self.checkout, "ls-files", "-coz", "--exclude-standard"], check=True, capture_output=True
        ).stdout.decode()
        wanted = {file for file in listed.split("\0") if file and os.path.isfile(os.path.join(self.checkout, file))}
        for folder, _, files in os.walk(self.tree):
            for file in files:
                path = os.path.join(folder, file)
                if os.path.relpath(path, self.tree) not in wanted:
                    os.remove(path)
        for file in sorted(wanted):
            source, copy = os.path.join(self.checkout, file), os.path.join(self.tree, file)
            if not os.path.exists(copy) or not filecmp.cmp(source, copy, shallow=False):
                os.makedirs(os.path.dirname(copy), exist_ok=True)
                shutil.copy(source, copy)
        # A run that was killed has left objects of its mutant.
        if os.path.exists(self.unfinished):
            with open(self.unfinished, encoding="utf-8") as file:
                path = os.path.join(self.tree, file.read())
            if os.path.exists(path):
                os.utime(path)

    def ninja(self, *arguments):
        command = ["ninja", "-C", self.build, *arguments]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout

    def read_graph(self):
        self.dependents = {}
        for block in self.ninja("-t", "deps").split("\n\n"):
            lines = block.splitlines()
            match = re.match(r"(\S+): #deps .*\(VALID\)", lines[0]) if lines else None
            for path in lines[1:] if match else ():
                path = os.path.normpath(os.path.join(self.build, path.strip()))
                if path.startswith(self.tree + "/"):
                    self.dependents.setdefault(os.path.relpath(path, self.tree), []).append(match.group(1))
        rules = re.findall(r"^(\S+): (\S+_LINKER\S*|CUSTOM_COMMAND)$", self.ninja("-t", "targets", "all"), re.MULTILINE)
        self.linked = [self.built(output) for output, _ in rules]

    def keep_originals(self):
        for output in {output for outputs in self.dependents.values() for output in outputs}:
            kept = os.path.join(self.originals, output)
            if not os.path.exists(kept) or os.stat(kept).st_mtime_ns != os.stat(self.built(output)).st_mtime_ns:
                os.makedirs(os.path.dirname(kept), exist_ok=True)
                shutil.copy2(self.built(output), kept)

    def built(self, output):
        return os.path.join(self.build, output)

    def source(self, file):
        return os.path.join(self.tree, file)

    def shipped_objects(self, file):
        """The objects of what ships that are compiled from `file`."""
        return [output for output in self.dependents.get(file, ()) if not output.startswith(NOT_SHIPPED)]

    def builds(self, *targets):
        """Whether they can be built as the copy stands."""
        with open(self.log, "w", encoding="utf-8") as log:
            command = ["ninja", "-C", self.build, *targets]
            return subprocess.run(command, stdout=log, stderr=log, check=False).returncode == 0

    def differs(self, output):
        """Whether an object is not that of the original."""
        return not filecmp.cmp(self.built(output), os.path.join(self.originals, output), shallow=False)

    @contextlib.contextmanager
    def changed(self, file, text):
        """While it lasts `file` has `text`."""
        path = self.source(file)
        with open(path, "rb") as original:
            before = original.read()
        times = os.stat(path)
        with open(self.unfinished, "w", encoding="utf-8") as unfinished:
            unfinished.write(file)
        ages = {output: os.stat(output).st_mtime_ns for output in self.linked if os.path.exists(output)}
        try:
            with open(path, "wb") as mutant:
                mutant.write(text)
            yield
        finally:
            with open(path, "wb") as original:
                original.write(before)
            os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))
            self.take_back(file, ages)
            os.remove(self.unfinished)

    def take_back(self, file, ages):
        for output in self.dependents.get(file, ()):
            kept, built = os.path.join(self.originals, output), self.built(output)
            if not os.path.exists(built) or os.stat(built).st_mtime_ns != os.stat(kept).st_mtime_ns:
                shutil.copy2(kept, built)
        for output in self.linked:
            if os.path.exists(output) and os.stat(output).st_mtime_ns != ages.get(output):
                os.utime(output, (1, 1))
