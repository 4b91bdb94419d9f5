"""bench_table.py FOLDER: the ratios in what ./dev bench has measured, beside what they are to be.

Every number is the least of its repetitions: what other programs take of the machine only ever adds to it. The
repetitions of what is compared are interleaved.
"""

import glob
import json
import os
import sys


def least_times(folder):
    """Processor time of every benchmark in nanoseconds, wall time of every program in seconds, and its processor time
    under its name with " cpu" behind it."""
    units = {"ns": 1.0, "us": 1e3, "ms": 1e6}
    times = {}

    def note(name, time):
        times[name] = min(time, times.get(name, time))

    with open(os.path.join(folder, "parts.json"), encoding="utf-8") as file:
        for run in json.load(file)["benchmarks"]:
            if run.get("run_type") == "iteration" and not run.get("error_occurred"):
                note(run["run_name"], run["cpu_time"] * units[run["time_unit"]])
    for name in glob.glob(os.path.join(folder, "programs-*.json")):
        with open(name, encoding="utf-8") as file:
            for run in json.load(file)["results"]:
                note(run["command"], min(run["times"]))
                note(run["command"] + " cpu", run["user"] + run["system"])
    return times


class Table:
    def __init__(self, times):
        self.times = times
        self.rows = []

    def add(self, what, goal, value, met, unit):
        self.rows.append((what, goal + unit, f"{value:.2f}{unit}", "yes" if met else "NO"))

    def faster(self, what, ours, other, goal):
        """`ours` is to take at most a `goal`-th of the time of `other`."""
        if ours in self.times and other in self.times:
            ratio = self.times[other] / self.times[ours]
            self.add(what, f"at least {goal}", ratio, ratio >= goal, " x as fast")

    def at_most(self, what, ours, other, goal):
        """`ours` is to take at most `goal` times the time of `other`."""
        if ours in self.times and other in self.times:
            ratio = self.times[ours] / self.times[other]
            self.add(what, f"at most {goal}", ratio, ratio <= goal, " x the time")

    def below(self, what, value, goal, unit):
        self.add(what, f"under {goal}", value, value < goal, unit)

    def text(self):
        rows = [("what", "goal", "measured", "met")] + self.rows
        widths = [max(len(row[i]) for row in rows) for i in range(4)]
        lines = ["| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |" for row in rows]
        lines.insert(1, "|" + "|".join("-" * (width + 2) for width in widths) + "|")
        return "\n".join(lines)


def main():
    folder = sys.argv[1]
    table = Table(least_times(folder))
    sse2, avx2 = "conversionSse2", "conversionAvx2"
    table.faster("conversion, SSE2, beside the plain formula", sse2, "conversionPlain", 2.2)
    table.faster("conversion, SSE2, beside libswresample", sse2, "conversionSwresample", 2.2)
    table.faster("conversion, AVX2, beside the plain formula", avx2, "conversionPlain", 5)
    table.faster("conversion, AVX2, beside libswresample", avx2, "conversionSwresample", 5)
    for name, form in (("SSE2", sse2), ("AVX2", avx2)):
        table.at_most(f"conversion of NaN and infinities, {name}, beside music", form + "Wild", form, 4)
    bare = "imageBareWrites"
    # Without AVX2 the sink itself is what shows the baseline.
    if avx2 in table.times:
        table.at_most("image through the sink, AVX2, beside its bare writes", "imageThroughTheSink", bare, 2.0)
    table.at_most("image with SSE2 conversion, beside its bare writes", "imageWithBaselineConversion", bare, 3.2)
    few, many = "blockBehindMarkers/10", "blockBehindMarkers/10000"
    table.at_most("a block behind 10,000 markers, beside 10", many, few, 1.1)
    table.at_most("reading for a burn, beside bare reads", "readThroughTheProducer", "readBareLoop", 2.0)
    if "seekInsideTheBuffer" in table.times:
        table.below("a seek inside the reader's buffer", table.times["seekInsideTheBuffer"], 50, " ns")
    table.faster("velmor-render --no-dither, 80 minutes of 24-bit WAV, beside sox -D", "velmor-render", "sox", 2)
    table.faster("the same beside ffmpeg", "velmor-render", "ffmpeg", 3)
    table.at_most("its processor time, beside sox", "velmor-render cpu", "sox cpu", 0.6)
    table.at_most("it in all, beside cp of the finished image", "velmor-render", "cp", 1.3)
    table.faster("velmor-render with dither, beside sox with its own", "velmor-render-dithered", "sox-dithered", 2)
    table.at_most("its processor time, beside sox's", "velmor-render-dithered cpu", "sox-dithered cpu", 0.6)
    if "start-up" in table.times:
        table.below("velmor-render --version", 1000 * table.times["start-up"], 10, " ms")
    table.at_most("a set for a plant, beside cp and md5sum of its image", "set-write", "copy-and-md5sum", 1.2)
    table.at_most("checking a set, beside md5sum of its audio", "set-check", "md5sum", 1.2)
    table.at_most("velmor-cdcheck's processor time, beside cat of the image", "check cpu", "cat cpu", 1.3)
    table.at_most("the same where every sector touches full scale", "check-loud cpu", "cat-loud cpu", 1.3)
    if "check-tracks" in table.times:
        table.below("velmor-cdcheck on 16 MiB of TRACK lines", table.times["check-tracks"], 1, " s")
    if "scan" in table.times and "loudness-alone" in table.times:
        table.times["scans and loudness"] = 3 * table.times["scan"] + table.times["loudness-alone"]
    table.at_most("a page of 80 minutes, beside three scans and libebur128's own time", "page", "scans and loudness", 1)
    memory = os.path.join(folder, "memory")
    if os.path.exists(memory):
        with open(memory, encoding="utf-8") as file:
            table.below("its peak memory", int(file.read()) / 2**10, 32, " MiB")
    print(table.text())


main()
