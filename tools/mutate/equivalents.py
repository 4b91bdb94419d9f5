"""equivalents.py: the list of mutants that nobody can tell from the original, each with the reason.

An entry names the file, the lines as they are and as the mutant has them, and the reason:

    module/sink/some.cpp
    - if (a < b) return a;
    + if (a <= b) return a;
    Both are the same when they are equal.

Spaces do not count, and lines that the mutant joins stand in one. Where the same lines stand in the file more than once
all are meant, or with "#2" behind the file the second alone. An empty line ends an entry, "#" begins a comment.
"""

import re


class ListError(Exception):
    """An entry is not as it should be."""


class Equivalents:
    def __init__(self, text):
        """Raises ListError for an entry without its four parts."""
        self.reasons = {}  # by file, lines before and after, and the place's number or None
        lines = [line.strip() for line in text.splitlines() if not line.startswith("#")]
        for entry in "\n".join(lines).split("\n\n"):
            self.read([line for line in entry.splitlines() if line])

    def read(self, lines):
        if not lines:
            return
        place = re.fullmatch(r"(\S+)(?: #(\d+))?", lines[0])
        if len(lines) < 4 or not place or not lines[1].startswith("- ") or not lines[2].startswith("+"):
            raise ListError(f'the entry "{lines[0]}" wants a file, a line with "-", one with "+", and a reason')
        was, becomes = (" ".join(line[1:].split()) for line in lines[1:3])
        entry = (place.group(1), was, becomes, place.group(2) and int(place.group(2)))
        if entry in self.reasons:
            raise ListError(f'the entry "{lines[0]}", "{lines[2]}" is there twice')
        self.reasons[entry] = " ".join(lines[3:])

    def __contains__(self, mutant):
        return any(entry in self.reasons for entry in entries_for(mutant))

    def unmatched(self, mutants, files):
        """The entries on one of `files` that none of `mutants`, which are all of these files, matches, as text."""
        met = {entry for mutant in mutants for entry in entries_for(mutant)}
        missed = [entry for entry in self.reasons if entry[0] in files and entry not in met]
        return [f"{place_of(file, number)}\n  - {was}\n  + {becomes}" for file, was, becomes, number in missed]


def place_of(file, number):
    return f"{file} #{number}" if number else file


def entries_for(mutant):
    """The entries that would list it."""
    lines = (mutant.file, mutant.before, mutant.after)
    return (*lines, None), (*lines, mutant.ordinal + 1)
