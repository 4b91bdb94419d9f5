"""coverage.py COVERAGE.json: which conditions of the module never went one way, and whether somebody says why.

COVERAGE.json is what `llvm-cov export` prints. Prints a table of the files and, line by line, what is wrong: a
condition that went one way only without a reason in coverage_reasons.txt, a reason for a condition that is not there or
goes both ways, and a source that nobody compiled for the tests.

A reason stands below a line "FILE: CONDITION: WAY", or several of them, indented. The condition is written as in the
source, however its lines are broken; the way is "true" or "false". Line numbers play no part, so a reason stays with its
condition when the file around it changes, and falls out when the condition itself does. For a file that is not measured
the line is "FILE: not measured".
"""

import collections
import glob
import json
import os
import re
import sys

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
ROOM = "module/"
REASONS = "scripts/coverage_reasons.txt"
NOT_MEASURED = "not measured"

Condition = collections.namedtuple("Condition", "file place text")


class ReasonsError(Exception):
    """The list of reasons cannot be read."""


def conditions(export, root):
    """Condition to [times true, times false], all forms of a template and all programs added up."""
    counts = {}
    sources = {}
    for data in export["data"]:
        for function in data["functions"]:
            names = [os.path.relpath(name, root) for name in function["filenames"]]
            for line, column, end_line, end_column, true, false, file_id, *_ in function["branches"]:
                name = names[file_id]
                if not name.startswith(ROOM):
                    continue
                if name not in sources:
                    with open(os.path.join(root, name), encoding="utf-8") as source:
                        sources[name] = source.read().splitlines()
                text = piece(sources[name], line, column, end_line, end_column)
                count = counts.setdefault(Condition(name, (line, column), text), [0, 0])
                count[0] += true
                count[1] += false
    return counts


def piece(lines, line, column, end_line, end_column):
    """The source between two places, in one line with single blanks."""
    taken = lines[line - 1 : end_line]
    taken[-1] = taken[-1][: end_column - 1]
    taken[0] = taken[0][column - 1 :]
    return " ".join(" ".join(taken).split())


def one_sided(counts):
    """(condition, way that it never went)."""
    for condition, (true, false) in sorted(counts.items()):
        if true == 0:
            yield condition, "true"
        if false == 0:
            yield condition, "false"


def read_reasons(lines):
    """"FILE: CONDITION: WAY" or "FILE: not measured" to its line number."""
    entries = {}
    unexplained = None
    for number, line in enumerate(lines, 1):
        if line.startswith("#") or not line.strip():
            continue
        if line[0].isspace():
            unexplained = None
            continue
        entry = line.strip()
        if not re.fullmatch(rf"{ROOM}\S+: ({NOT_MEASURED}|.+: (true|false))", entry):
            raise ReasonsError(f'{REASONS}:{number}: not of the form "FILE: CONDITION: true" (or false): {entry}')
        if entry in entries:
            raise ReasonsError(f"{REASONS}:{number}: stands there twice: {entry}")
        entries[entry] = unexplained = number
    if unexplained:
        raise ReasonsError(f"{REASONS}:{unexplained}: no reason stands below")
    return entries


def module_files(root):
    paths = glob.glob(os.path.join(root, ROOM, "*", "*"))
    return {os.path.relpath(path, root) for path in paths if path.endswith((".cpp", ".mm"))}


def measured_files(export, root):
    return {os.path.relpath(name, root) for data in export["data"] for function in data["functions"]
            for name in function["filenames"]}


def faults(counts, entries, unmeasured):
    """What is wrong, a sentence each."""
    lacking = collections.defaultdict(list)
    for condition, way in one_sided(counts):
        lacking[f"{condition.file}: {condition.text}: {way}"].append(condition)
    for entry, places in lacking.items():
        condition, way = places[0], entry.rsplit(": ", 1)[1]
        if entry not in entries:
            yield f'{condition.file}:{condition.place[0]}: "{condition.text}" is never {way}; test it, or say why not in {REASONS}'
        elif len(places) > 1:
            yield f'{condition.file}:{condition.place[0]}: "{condition.text}" is never {way}, here and at line {places[1].place[0]}; a reason is for one'
    for name in sorted(unmeasured):
        if f"{name}: {NOT_MEASURED}" not in entries:
            yield f"{name}: no test program is built of it; build one, or say why not in {REASONS}"
    excused = set(lacking) | {f"{name}: {NOT_MEASURED}" for name in unmeasured}
    for entry, number in entries.items():
        if entry not in excused:
            yield f"{REASONS}:{number}: this holds no more; take it out: {entry}"


def print_table(counts, lacking):
    files = collections.defaultdict(lambda: [0, 0])
    for condition in counts:
        files[condition.file][0] += 2
    for condition, _ in lacking:
        files[condition.file][1] += 1
    print(f"{'file':<44} {'ways':>5} {'taken':>6} {'reasons':>8}")
    for name, (ways, not_taken) in sorted(files.items()):
        print(f"{name:<44} {ways:>5} {ways - not_taken:>6} {not_taken or '':>8}")
    ways = sum(each[0] for each in files.values())
    not_taken = sum(each[1] for each in files.values())
    print(f"{'all':<44} {ways:>5} {ways - not_taken:>6} {not_taken:>8}")
    print(f"\n{100.0 * (ways - not_taken) / ways:.1f} % of the ways that conditions can go were taken")


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        export = json.load(file)
    with open(os.path.join(ROOT, REASONS), encoding="utf-8") as file:
        lines = file.read().splitlines()
    root = os.path.realpath(ROOT)
    counts = conditions(export, root)
    if not counts:
        sys.exit("coverage: nothing was counted; was the build made with VELMOR_COVERAGE?")
    try:
        entries = read_reasons(lines)
    except ReasonsError as error:
        sys.exit(f"coverage: {error}")
    print_table(counts, list(one_sided(counts)))
    found = list(faults(counts, entries, module_files(root) - measured_files(export, root)))
    for fault in found:
        print(f"coverage: {fault}", file=sys.stderr)
    if found:
        sys.exit(1)
    print(f"each of the others has a reason in {REASONS}")


if __name__ == "__main__":
    main()
