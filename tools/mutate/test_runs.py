"""test_runs.py: the tests that can notice a mutant, and runs of them."""

import json
import os
import resource
import shutil
import signal
import subprocess
import time

# Which tests can notice a change in a folder, the likeliest and cheapest first: names of ctest, which are those of
# their programs too, and before a name what is set in the environment for it. The first row that fits holds.
MODULE_FRAME = ["plugin_class_test", "plugin_test"]
# Without the cases that render for seconds each.
SINK_QUICK = ["sink_class_test", "VELMOR_MODEL_SEEDS=40 model_test", "GTEST_FILTER=-*Locale.*:HostileInput.* sink_test"]
MODULE_SINK = [*SINK_QUICK, "GTEST_FILTER=HostileInput.*-*PastTwoGibibytes*:*NoLongerFit sink_test"]
PAST_THE_IMAGE = "GTEST_FILTER=HostileInput.ATrackLeadIn* sink_test"
MODULE_BURN = ["burn_class_test", "burn_test", "mac_hosted_burn_test"]
CHECK = [
    "cdcheck_bad_cases_test",
    "cdcheck_matrix_test",
    "cdcheck_portable_test",
    "cdcheck_second_sheet_test",
    "cdcheck_test",
]
DDP = ["ddp_test", "page_test"]
RECORDING = ["recording_tests", "recording_library_tests", "recording_emulated_tests", "recording_fault_test"]
BURNT = ["burn_program_test"]
RENDER = ["render_unit_test", "render_process_test"]
NOTICING = [
    ("module/plugin", [*MODULE_FRAME, "burn_test", *SINK_QUICK]),
    ("module/resources", [*MODULE_FRAME, "burn_test", *SINK_QUICK]),
    ("module/sink/sample_conversion", ["conversion_test", *MODULE_SINK]),
    ("module/sink/config_dialog", ["GTEST_FILTER=ConfigDialog*.* sink_test", *MODULE_SINK, "plugin_test"]),
    ("module/sink/cue_sheet", ["sink_class_test", "GTEST_FILTER=CueSheet.* sink_test", *MODULE_SINK, PAST_THE_IMAGE]),
    ("module/sink/pcm_sink_iso.", ["sink_class_test", "GTEST_FILTER=Construction.*:Finish.* sink_test", *MODULE_SINK]),
    ("module/sink", [*MODULE_SINK, "plugin_test"]),
    ("module/burn", [*MODULE_BURN, *SINK_QUICK]),
    ("module/support", ["support_test", *MODULE_BURN, *MODULE_FRAME, *SINK_QUICK]),
    ("module/platform", ["support_test", *MODULE_FRAME, *MODULE_BURN, *SINK_QUICK]),
    ("disc/ddp", DDP),
    ("disc/cd_text", ["disc_test", *DDP, *RECORDING]),
    ("disc", ["disc_test", *CHECK, "ddp_test", "input_test", *RECORDING, *RENDER, *BURNT]),
    ("check", [*CHECK, *RENDER]),
    ("ddp", DDP),
    ("page", ["page_test", "page_looks_test"]),
    ("programs/cdcheck", [*CHECK, "page_test"]),
    ("programs", [*DDP, *CHECK]),
    ("host/windowing", ["windowing_test", *RENDER, *BURNT]),
    ("host/recording", [*RECORDING, *BURNT, *RENDER]),
    ("host/render/input", ["input_test", *RENDER, *BURNT]),
    ("host/render", [*RENDER, *BURNT]),
]
# A test that waits for what a mutant never does is stopped; one that computes without end much earlier, by the time
# that it has had a processor, which other programs on the machine do not change.
LONGEST_WAIT = 300
WAIT_FACTOR = 10
COMPUTING_ALLOWANCE = 10
COMPUTING_FACTOR = 4
MOST_MEMORY = 8 << 30
LARGEST_FILE = 16 << 30


def noticing(file):
    """The tests for `file`."""
    return next((tests for room, tests in NOTICING if file.startswith(room)), [])


def program(test):
    return test.split()[-1]


class TestError(Exception):
    """The tests cannot be run."""


class TestRuns:
    """Runs tests of the build in `build`, which are made, in a scratch folder below `folder`."""

    def __init__(self, build, folder):
        self.build = build
        self.scratch = os.path.join(folder, "scratch")
        self.log = os.path.join(folder, "test.log")
        self.memory = os.path.join(folder, "usual.json")
        self.usual = {}  # test to the seconds that it takes, waiting and computing
        shown = subprocess.run(
            ["ctest", "--test-dir", build, "--show-only=json-v1"], check=True, capture_output=True, text=True
        ).stdout
        self.known = {test["name"]: test for test in json.loads(shown)["tests"] if "command" in test}

    def measure(self, tests, state):
        """Runs what is to pass, unless it was seen to with the same `state`. Raises TestError when it does not pass."""
        if os.path.exists(self.memory):
            with open(self.memory, encoding="utf-8") as kept:
                seen = json.load(kept)
            self.usual = seen["usual"] if seen["state"] == state else {}
        for test in tests:
            if test not in self.usual and not self.passes(test):
                raise TestError(f"{test} fails before anything is changed; {self.log} says why")
        with open(self.memory, "w", encoding="utf-8") as kept:
            json.dump({"state": state, "usual": self.usual}, kept)

    def passes(self, test):
        waiting, computing = self.usual.get(test, (LONGEST_WAIT, LONGEST_WAIT))
        entry = self.known[program(test)]
        properties = {found["name"]: found["value"] for found in entry["properties"]}
        settings = [*properties.get("ENVIRONMENT", ()), *test.split()[:-1]]
        own = dict(setting.split("=", 1) for setting in settings)
        os.makedirs(self.scratch, exist_ok=True)
        environment = os.environ | own | {"TMPDIR": self.scratch, "GTEST_FAIL_FAST": "1"}
        limit = int(COMPUTING_ALLOWANCE + COMPUTING_FACTOR * computing)
        started = time.monotonic()
        with open(self.log, "wb") as log:
            child = subprocess.Popen(
                entry["command"],
                cwd=properties.get("WORKING_DIRECTORY", self.build),
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
                # No session of its own: the system would share the processors among sessions, whatever their niceness.
                process_group=0,
                preexec_fn=lambda: restrict(limit),
            )
            try:
                status, used = self.wait(child, LONGEST_WAIT + WAIT_FACTOR * waiting)
            finally:
                stop(child)
                shutil.rmtree(self.scratch, ignore_errors=True)
        if status == 0:
            self.usual.setdefault(test, (time.monotonic() - started, used.ru_utime + used.ru_stime))
        return status == 0

    @staticmethod
    def wait(child, longest):
        """The status and the use of resources; a child that waits for longer has failed."""
        end = time.monotonic() + longest
        while time.monotonic() < end:
            pid, status, used = os.wait4(child.pid, os.WNOHANG)
            if pid:
                child.returncode = status
                return status, used
            time.sleep(0.02)
        return -1, None


def restrict(seconds):
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (LARGEST_FILE, LARGEST_FILE))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def stop(child):
    """Ends what a test has left running in its group."""
    try:
        os.killpg(child.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    if child.returncode is None:
        child.wait()
