"""mutants.py: the mutants of the project's sources, and samples of them."""

import concurrent.futures
import dataclasses
import hashlib
import json
import os

import operators

# What the build defines, here without the project's values: no change is made inside a definition.
DEFINED = ["VELMOR_VERSION", "VELMOR_LIBRARIES_FROM_PROGRAMS"]
# The code as it ships, without its assertions.
OPTIONS = ["-std=c++20", "-DNDEBUG", *(f'-D{name}=""' for name in DEFINED)]


@dataclasses.dataclass(frozen=True)
class Mutant:
    """One change of one file. The lines that it touches tell it apart, wherever in the file they have moved to."""

    file: str
    begin: int  # bytes of the file
    end: int
    replacement: str
    line: int
    before: str  # the touched lines, spaces run together
    after: str
    ordinal: int  # among those of the file whose lines read the same

    @property
    def key(self):
        return digest(self.file, self.before, self.after, self.ordinal)

    def applied(self, text):
        return text[: self.begin] + self.replacement.encode() + text[self.end :]

    def __str__(self):
        return f"{self.file}:{self.line}\n  - {self.before}\n  + {self.after}"


def digest(*parts):
    return hashlib.sha256("\0".join(str(part) for part in parts).encode()).hexdigest()


def run_together(text):
    return " ".join(text.decode().split())


def mutants_of_text(file, text, changes):
    seen, found = {}, []
    for begin, end, replacement in changes:
        first = text.rfind(b"\n", 0, begin) + 1
        last = text.find(b"\n", end)
        last = len(text) if last < 0 else last
        before = run_together(text[first:last])
        after = run_together(text[first:begin] + replacement.encode() + text[end:last])
        if after == before:
            continue
        ordinal = seen[before, after] = seen.get((before, after), -1) + 1
        line = text.count(b"\n", 0, begin) + 1
        found.append(Mutant(file, begin, end, replacement, line, before, after, ordinal))
    return found


class Finder:
    """Finds the mutants of files below `root`; keeps what it found in `memory` for as long as a file is the same."""

    def __init__(self, root, memory):
        self.root, self.memory, self.known = root, memory, {}
        if os.path.exists(memory):
            with open(memory, encoding="utf-8") as kept:
                self.known = json.load(kept)
        with open(operators.__file__, "rb") as rules:
            self.rules = digest(rules.read())

    def of(self, files):
        """The mutants of `files`, file by file. Raises ValueError for one that cannot be parsed."""
        texts = {}
        for file in files:
            with open(os.path.join(self.root, file), "rb") as source:
                texts[file] = source.read()
        keys = {file: digest(self.rules, file, text) for file, text in texts.items()}
        unknown = [file for file in files if keys[file] not in self.known]
        options = [*OPTIONS, f"-I{self.root}"]
        with concurrent.futures.ProcessPoolExecutor() as pool:
            paths = [os.path.join(self.root, file) for file in unknown]
            for file, found in zip(unknown, pool.map(operators.changes_of, paths, [options] * len(paths))):
                self.known[keys[file]] = found
        if unknown:
            with open(self.memory, "w", encoding="utf-8") as kept:
                json.dump({keys[file]: self.known[keys[file]] for file in files} | self.known, kept)
        return [mutant for file in files for mutant in mutants_of_text(file, texts[file], self.known[keys[file]])]


def sample(mutants, count, seed):
    """`count` of them, in an order that `seed` alone decides: each by itself, so that a change of one file leaves the
    choice among the others as it was."""
    return sorted(mutants, key=lambda mutant: digest(seed, mutant.key))[:count]
