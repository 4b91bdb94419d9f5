"""equivalents.py: the list of mutants that nobody can tell from the original, each with the reason.

An entry names the file, the lines as they are and as the mutant has them, and the reason:

    module/sink/some.cpp
    - if (a < b) return a;
    + if (a <= b) return a;
    Both are the same when they are equal.

Spaces do not count, and lines that the mutant joins stand in one. An empty line ends an entry, "#" begins a comment.
"""


class ListError(Exception):
    """An entry is not as it should be."""


class Equivalents:
    def __init__(self, text):
        """Raises ListError for an entry without its four parts."""
        self.reasons = {}
        lines = [line.strip() for line in text.splitlines() if not line.startswith("#")]
        for entry in "\n".join(lines).split("\n\n"):
            self.read([line for line in entry.splitlines() if line])

    def read(self, lines):
        if not lines:
            return
        if len(lines) < 4 or not lines[1].startswith("- ") or not lines[2].startswith("+"):
            raise ListError(f'the entry "{lines[0]}" wants a file, a line with "-", one with "+", and a reason')
        was, becomes = (" ".join(line[1:].split()) for line in lines[1:3])
        if (lines[0], was, becomes) in self.reasons:
            raise ListError(f'the entry "{lines[0]}", "{lines[2]}" is there twice')
        self.reasons[lines[0], was, becomes] = " ".join(lines[3:])

    def __contains__(self, mutant):
        return (mutant.file, mutant.before, mutant.after) in self.reasons

    def unmatched(self, mutants, files):
        """The entries on one of `files` that none of `mutants`, which are all of these files, matches, as text."""
        met = {(mutant.file, mutant.before, mutant.after) for mutant in mutants}
        missed = [entry for entry in self.reasons if entry[0] in files and entry not in met]
        return [f"{file}\n  - {before}\n  + {after}" for file, before, after in missed]

    def files(self):
        return {entry[0] for entry in self.reasons}
