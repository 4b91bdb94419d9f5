"""Changes the code in many small places, one at a time, and tells which change no test notices.

The places are drawn by a seed from all there are. Each change is made in a copy of the checkout (build/mutate). One
that does not compile, or after which every object of what ships is the same to the byte, changes nothing and does not
count. What was found is kept there too, so that a run that was stopped goes on where it was: a mutant that was noticed
is not tried again while its file is the same, one that was not while everything is.
"""

import argparse
import collections
import contextlib
import fcntl
import json
import os
import re
import subprocess
import sys

import equivalents
import mutants
import test_runs
import working_copy

ROOMS = ["module", "disc", "check", "host"]
COUNT = 100
FOLDER = os.path.join("build", "mutate")
LIST = os.path.join("tools", "mutate", "equivalents.txt")
NOTICED, SURVIVED, EQUIVALENT = "noticed", "survived", "equivalent"
SAME, UNCOMPILED = "same objects", "does not compile"


def options():
    parser = argparse.ArgumentParser(prog="./dev mutate", description=__doc__.split("\n", maxsplit=1)[0])
    parser.usage = "./dev mutate [COUNT] [ROOM...] [--seed SEED] [--at FILE:LINE] [--folder FOLDER] [--fresh]"
    parser.add_argument(
        "rooms",
        nargs="*",
        metavar="[COUNT] ROOM",
        help=f"how many changes ({COUNT}), and of which folders ({', '.join(ROOMS)})",
    )
    parser.add_argument("--seed", type=int, default=1, help="another draw of changes (1)")
    parser.add_argument("--at", metavar="FILE:LINE", help="every change of that line instead of a draw")
    parser.add_argument("--folder", default=FOLDER, help=f"where the copy is ({FOLDER}); one run in each at a time")
    parser.add_argument("--fresh", action="store_true", help="forget what earlier runs found")
    given = parser.parse_args()
    has_count = bool(given.rooms) and given.rooms[0].isdigit()
    given.count = int(given.rooms.pop(0)) if has_count else COUNT
    given.rooms = [room.rstrip("/") for room in given.rooms] or ROOMS
    if given.at and not re.fullmatch(r".+:\d+", given.at):
        parser.error(f"--at wants FILE:LINE, not '{given.at}'")
    return given


def fail(text):
    sys.exit(f"dev: {text}")


def sources(rooms):
    """The files of the rooms that Linux compiles."""
    listed = subprocess.run(
        ["git", "ls-files", "-co", "--exclude-standard"], check=True, capture_output=True, text=True
    ).stdout.splitlines()
    kept = []
    for room in rooms:
        if room.split("/")[0] not in ROOMS:
            fail(f"'{room}' is no room that is changed; there are {', '.join(ROOMS)} and what lies below them")
        found = [file for file in listed if (file + "/").startswith(room + "/") and os.path.isfile(file)]
        if not found:
            fail(f"there is no folder '{room}'")
        kept += found
    return sorted({file for file in kept if file.endswith((".cpp", ".h")) and "_mac." not in file})


class Results:
    """What was found about each mutant, one line each, written at once."""

    def __init__(self, path, state):
        self.path, self.state, self.kept = path, state, {}
        if os.path.exists(path):
            with open(path, encoding="utf-8") as lines:
                for line in lines:
                    entry = json.loads(line)
                    self.kept[entry["mutant"], entry["file"]] = entry

    def of(self, mutant, text):
        entry = self.kept.get((mutant.key, mutants.digest(text)))
        if entry and (entry["outcome"] != SURVIVED or entry["state"] == self.state):
            return entry["outcome"]
        return None

    def keep(self, mutant, text, outcome, by):
        entry = {
            "mutant": mutant.key,
            "file": mutants.digest(text),
            "state": self.state,
            "outcome": outcome,
            "by": by,
            "place": f"{mutant.file}:{mutant.line}",
            "before": mutant.before,
            "after": mutant.after,
        }
        with open(self.path, "a", encoding="utf-8") as lines:
            lines.write(json.dumps(entry) + "\n")


def try_mutant(mutant, copy, runs):
    """What becomes of it, and the test that noticed."""
    objects = copy.shipped_objects(mutant.file)
    with open(copy.source(mutant.file), "rb") as source:
        text = source.read()
    with copy.changed(mutant.file, mutant.applied(text)):
        # Two at a time: the first that is another is enough.
        for at in range(0, len(objects), 2):
            if not copy.builds(*objects[at : at + 2]):
                return UNCOMPILED, ""
            if any(copy.differs(output) for output in objects[at : at + 2]):
                break
        else:
            return SAME, ""
        for test in test_runs.noticing(mutant.file):
            if not copy.builds(test_runs.program(test)):
                return UNCOMPILED, ""
            if not runs.passes(test):
                return NOTICED, test
    return SURVIVED, ""


def state_of(copy):
    """A name for everything that is compiled or run."""
    parts = []
    for folder, folders, files in os.walk(copy.tree):
        folders[:] = sorted(name for name in folders if name not in ("docs", "mutate"))
        for file in sorted(files):
            with open(os.path.join(folder, file), "rb") as content:
                parts.append((os.path.relpath(os.path.join(folder, file), copy.tree), mutants.digest(content.read())))
    return mutants.digest(parts)


def progress(text):
    if sys.stderr.isatty():
        print(f"\r\033[K{text}", end="", file=sys.stderr, flush=True)


class Campaign:
    def __init__(self, copy, runs, results, listed):
        self.copy, self.runs, self.results, self.listed = copy, runs, results, listed
        self.counts = collections.Counter()

    def run(self, chosen):
        for number, mutant in enumerate(chosen, 1):
            progress(f"{number} of {len(chosen)}, {self.counts[SURVIVED]} survive: {mutant.file}:{mutant.line}")
            outcome = self.outcome(mutant)
            self.counts[outcome] += 1
            if outcome == SURVIVED:
                progress("")
                print(f"survives: {mutant}", flush=True)
        progress("")

    def outcome(self, mutant):
        if mutant in self.listed:
            return EQUIVALENT
        with open(self.copy.source(mutant.file), "rb") as source:
            text = source.read()
        outcome = self.results.of(mutant, text)
        if outcome is None:
            outcome, by = try_mutant(mutant, self.copy, self.runs)
            self.results.keep(mutant, text, outcome, by)
        return outcome

    def summary(self):
        """The figures in one line."""
        counts = self.counts
        changing = counts[NOTICED] + counts[SURVIVED]
        share = f" ({100 * counts[NOTICED] / changing:.1f} %)" if changing else ""
        return (
            f"{sum(counts.values())} mutants: {counts[UNCOMPILED]} do not compile, {counts[SAME]} leave the objects as "
            f"they are, {counts[EQUIVALENT]} are listed as equivalent; of the other {changing} "
            f"{counts[NOTICED]} are noticed{share}, {counts[SURVIVED]} survive"
        )


def choose(given, all_of_them):
    if not given.at:
        return mutants.sample(all_of_them, given.count, given.seed)
    chosen = [mutant for mutant in all_of_them if f"{mutant.file}:{mutant.line}" == given.at]
    return chosen or fail(f"nothing is changed at {given.at}")


@contextlib.contextmanager
def alone_in(folder):
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "lock"), "w", encoding="utf-8") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            fail(f"another run is at work in {folder}; wait for it, or name another --folder")
        yield


def run(given):
    """The exit status."""
    with alone_in(given.folder):
        return run_alone(given)


def run_alone(given):
    files = sources([given.at.rpartition(":")[0]] if given.at else given.rooms)
    folder = os.path.abspath(given.folder)
    copy = working_copy.WorkingCopy(os.getcwd(), folder)
    results_file = os.path.join(folder, "results.jsonl")
    if given.fresh and os.path.exists(results_file):
        os.remove(results_file)
    tests = list(dict.fromkeys(test for file in files for test in test_runs.noticing(file)))
    copy.configure()
    print(f"building a copy in {given.folder}, and running {len(tests)} tests once", flush=True)
    copy.prepare(sorted({test_runs.program(test) for test in tests}))
    runs = test_runs.TestRuns(copy.build, folder)
    state = state_of(copy)
    runs.measure(tests, state)

    files = [file for file in files if copy.shipped_objects(file)]
    all_of_them = mutants.Finder(copy.tree, os.path.join(folder, "changes.json")).of(files)
    with open(LIST, encoding="utf-8") as text:
        listed = equivalents.Equivalents(text.read())
    chosen = choose(given, all_of_them)
    print(f"{len(chosen)} of {len(all_of_them)} mutants, seed {given.seed}", flush=True)
    campaign = Campaign(copy, runs, Results(results_file, state), listed)
    campaign.run(chosen)
    unmatched = listed.unmatched(all_of_them, files)
    for entry in unmatched:
        print(f"{LIST} lists what is no mutant any more: {entry}")
    print(campaign.summary())
    return 1 if campaign.counts[SURVIVED] or unmatched else 0


def main():
    given = options()
    try:
        sys.exit(run(given))
    except (working_copy.BuildError, test_runs.TestError, equivalents.ListError, ValueError) as error:
        fail(str(error))
    except KeyboardInterrupt:
        print("\nstopped; the same command goes on from here", file=sys.stderr)
        sys.exit(130)


if __name__ == "__main__":
    main()
