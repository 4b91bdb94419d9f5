"""page_looks_test.py BUILD: pages in a real browser, on two screens and on paper, and their numbers beside those of
other programs."""

import base64
import hashlib
import html.parser
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
sys.path[:0] = [os.path.join(ROOT, "tools", "browser"), os.path.dirname(os.path.abspath(__file__))]

from browser import Browser  # noqa: E402
from page_discs import HARD_TEXTS, SECTOR, Discs  # noqa: E402

BUILD = None
WIDE, NARROW = 1280, 400

# Each element with text of its own that is wider than the room it has.
OVERFLOWING = """
[...document.querySelectorAll('body *')].filter(e => !e.closest('svg') && !e.closest('.numbers, .marks, .axis')
  && getComputedStyle(e).display !== 'inline' && !(e.closest('thead') && innerWidth < 900)
  && e.scrollWidth > e.clientWidth + 1).map(e => e.tagName + '.' + e.className + ': ' + e.textContent.slice(0, 60))
"""
LOST_LINKS = """
[...document.querySelectorAll('a')].map(a => a.getAttribute('href') || '')
  .filter(href => !(href.startsWith('#') && document.getElementById(href.slice(1))))
"""
REPEATED_IDS = """
(ids => ids.filter((id, at) => ids.indexOf(id) !== at))([...document.querySelectorAll('[id]')].map(e => e.id))
"""


class Cells(html.parser.HTMLParser):
    """The rows of a page's tables: a dictionary of its cells' names each, under the table's class."""

    def __init__(self, path):
        super().__init__()
        self.rows = {}
        self.table = self.name = None
        with open(path, encoding="utf-8") as file:
            self.feed(file.read())

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if tag == "table":
            self.table = self.rows.setdefault(attributes["class"], [])
        elif tag == "tr" and self.table is not None:
            self.table.append({})
        elif tag == "td":
            self.name = attributes.get("data-name")
            if self.name:
                self.table[-1][self.name] = ""
        elif tag == "small":
            self.handle_data(" ")

    def handle_endtag(self, tag):
        if tag == "td":
            self.name = None

    def handle_data(self, data):
        if self.name:
            self.table[-1][self.name] += data

    def of(self, table):
        return [row for row in self.rows[table] if row]


def number(text):
    return float(text.split()[0].replace("\u2212", "-").replace("\u221e", "inf"))


def run(*command, **options):
    return subprocess.run(command, capture_output=True, check=False, **options)


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="velmor-test-")
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.discs = Discs(cls.folder)
        cls.pages = {}
        for sheet in cls.discs.all():
            page = sheet[: -len(".cue")] + ".html"
            done = run(os.path.join(BUILD, "velmor-cdcheck"), sheet, "--html", page)
            assert done.returncode < 2, done.stderr.decode()
            cls.pages[os.path.basename(page)[: -len(".html")]] = page
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)
        cls.seen = {name: cls.look_at(page) for name, page in cls.pages.items()}

    @classmethod
    def look_at(cls, page):
        """What each test wants to know of every page, which is loaded once."""
        browser = cls.browser
        browser.resize(WIDE)
        seen = dict(zip(("complaints", "asked"), browser.load(page)))
        seen |= {"links": browser.run(LOST_LINKS), "ids": browser.run(REPEATED_IDS), "overflowing": {}, "width": {}}
        for width in (WIDE, NARROW):
            browser.resize(width)
            seen["overflowing"][width] = browser.run(OVERFLOWING)
            seen["width"][width] = browser.run("document.documentElement.scrollWidth")
        return seen

    def test_loads_without_a_complaint_and_asks_for_nothing_else(self):
        for name, seen in self.seen.items():
            with self.subTest(page=name):
                self.assertEqual(seen["complaints"], [])
                self.assertEqual(len(seen["asked"]), 1, seen["asked"])

    def test_every_link_has_its_target_and_every_id_is_one(self):
        for name, seen in self.seen.items():
            with self.subTest(page=name):
                self.assertEqual(seen["links"], [])
                self.assertEqual(seen["ids"], [])

    def test_no_text_overflows_on_a_wide_and_on_a_narrow_screen(self):
        for name, seen in self.seen.items():
            with self.subTest(page=name):
                self.assertEqual(seen["overflowing"], {WIDE: [], NARROW: []})
                for width, needed in seen["width"].items():
                    self.assertLessEqual(needed, width)

    def test_texts_of_others_stand_there_as_texts(self):
        self.browser.load(self.pages["hard"])
        self.assertEqual(self.browser.run("document.querySelectorAll('script, b, td td').length"), 0)
        titles = self.browser.run("[...document.querySelectorAll('.pq .title')].map(e => e.textContent)")
        shown = [re.sub(r"[\x00-\x1f]", " ", text).strip() for text in HARD_TEXTS]
        self.assertEqual(titles, shown)

    def test_prints_on_a4_in_whole_rows_under_their_heads(self):
        self.browser.load(self.pages["most"])
        pdf = os.path.join(self.folder, "most.pdf")
        self.browser.print_to(pdf)
        info = run("pdfinfo", pdf).stdout.decode()
        self.assertIn("(A4)", info)
        pages = run("pdftotext", "-layout", pdf, "-").stdout.decode().split("\f")
        places = {}
        for at, page in enumerate(pages):
            for track, letter in re.findall(r"Word(\d+)([a-h])", page.split("Levels")[0] if "Levels" in page else page):
                places.setdefault(int(track), {}).setdefault(letter, at)
        self.assertEqual(set(places), set(range(1, 100)))
        for track, letters in places.items():
            self.assertEqual(len(set(letters.values())), 1, f"the row of track {track} is on several pages")
        with_rows = {at for letters in places.values() for at in letters.values()}
        self.assertGreater(len(with_rows), 3)
        for at in with_rows:
            self.assertIn("Title and performer", pages[at])

    def test_dark_and_light_differ_and_paper_is_always_light(self):
        self.browser.load(self.pages["album"])
        colours = {}
        for scheme in ("light", "dark"):
            self.browser.scheme(scheme)
            colours[scheme] = self.browser.run("getComputedStyle(document.documentElement).backgroundColor")
        self.browser.ask("Emulation.setEmulatedMedia", media="print", features=[{"name": "prefers-color-scheme", "value": "dark"}])
        on_paper = self.browser.run("getComputedStyle(document.documentElement).backgroundColor")
        self.browser.ask("Emulation.setEmulatedMedia", media="", features=[])
        self.assertNotEqual(colours["light"], colours["dark"])
        self.assertEqual(on_paper, colours["light"])

    def tracks(self):
        """The raw samples of each track of the album, in a file."""
        with open(os.path.join(self.folder, "album.bin"), "rb") as image:
            samples = image.read()
        for at, (begin, end) in enumerate(self.discs.album_tracks):
            path = os.path.join(self.folder, f"track{at}.raw")
            with open(path, "wb") as file:
                file.write(samples[begin * SECTOR * 4 : end * SECTOR * 4])
            yield path

    def ffmpeg(self, path, filters):
        raw = ("-f", "s16le", "-ar", "44100", "-ac", "2", "-i", path)
        return run("ffmpeg", "-nostats", "-hide_banner", *raw, "-af", filters, "-f", "null", "-").stderr.decode()

    def test_levels_are_those_that_ffmpeg_measures(self):
        rows = Cells(self.pages["album"]).of("levels")
        for row, path in zip(rows, self.tracks()):
            with self.subTest(track=row["Track"]):
                loudness = self.ffmpeg(path, "ebur128=peak=true")
                summary = loudness[loudness.rindex("Summary:") :]
                self.assertAlmostEqual(number(row["LUFS"]), float(re.search(r"I: +(\S+) LUFS", summary)[1]), delta=0.15)
                peak = float(re.search(r"Peak: +(\S+) dBFS", summary)[1])
                # Each program draws its own curve between the samples.
                self.assertAlmostEqual(number(row["dBTP"]), peak, delta=0.25)
                statistics = self.ffmpeg(path, "astats")
                channels = statistics.split("Overall")[0]
                peak = max(float(level) for level in re.findall(r"Peak level dB: (\S+)", channels))
                self.assertAlmostEqual(number(row["Peak dBFS"]), peak, delta=0.006)
                offsets = [100 * float(offset) for offset in re.findall(r"DC offset: (\S+)", channels)]
                shown = [number(offset) for offset in row["DC %"].split(",")]
                for ours, theirs in zip(shown, offsets, strict=True):
                    self.assertAlmostEqual(ours, theirs, delta=0.0006)

    def test_loudness_of_all_is_that_of_the_tracks_end_to_end(self):
        joined = os.path.join(self.folder, "joined.raw")
        with open(joined, "wb") as file:
            for path in self.tracks():
                with open(path, "rb") as track:
                    file.write(track.read())
        whole = self.ffmpeg(joined, "ebur128")
        whole = float(re.search(r"I: +(\S+) LUFS", whole[whole.rindex("Summary:") :])[1])
        shown = Cells(self.pages["album"]).of("levels")[-1]
        self.assertEqual(shown["Title"], "All tracks")
        self.assertAlmostEqual(number(shown["LUFS"]), whole, delta=0.2)

    def test_counts_silence_and_clipping_as_they_were_made(self):
        rows = Cells(self.pages["album"]).of("levels")
        self.assertEqual([row["Silent start"] for row in rows[:4]], ["0.000", "0.000", "1.333", "0.000"])
        self.assertEqual([row["Silent end"] for row in rows[:4]], ["0.000", "0.000", "0.000", "4.000"])
        self.assertEqual(rows[0]["Clipped"], "0")
        self.assertRegex(rows[1]["Clipped"], r"^\d+ +up to 5 samples$")

    def test_silence_is_told_as_such(self):
        rows = Cells(self.pages["silent"]).of("levels")
        self.assertEqual([rows[0][name] for name in ("LUFS", "dBTP", "Peak dBFS")], ["\u2212\u221e"] * 3)
        self.assertEqual(rows[0]["Silent start"], "6.000")

    def test_times_are_those_of_the_sheet_and_of_the_disc(self):
        rows = Cells(self.pages["album"]).of("pq")
        second = next(row for row in rows if row["Track"] == "2")
        wanted = {"Index": "01", "Start": "00:08:00", "Sector": "600", "On disc": "00:10:00"}
        self.assertEqual(second, second | wanted | {"Pause": "00:02:00", "Length": "00:08:00"})
        self.assertEqual([row["Sector"] for row in rows], ["\u2212150", "0", "450", "600", "1200", "1800", "2100", "2500"])

    def test_digests_and_ids_are_those_that_others_compute(self):
        with open(self.pages["album"], encoding="utf-8") as file:
            page = file.read()
        with open(os.path.join(self.folder, "album.bin"), "rb") as image:
            samples = image.read()
        self.assertIn(hashlib.md5(samples).hexdigest(), page)
        self.assertIn(hashlib.sha256(samples).hexdigest(), page)
        starts = [begin + 150 for begin, _ in self.discs.album_tracks]
        lead_out = 2500 + 150
        offsets = [lead_out, *starts] + [0] * (99 - len(starts))
        text = f"01{len(starts):02X}" + "".join(f"{offset:08X}" for offset in offsets)
        digest = base64.b64encode(hashlib.sha1(text.encode()).digest(), b"._").decode().replace("=", "-")
        self.assertIn(f"<code>{digest}</code>", page)
        digits = sum(int(digit) for start in starts for digit in str(start // 75))
        freedb = f"{digits % 255:02x}{lead_out // 75 - starts[0] // 75:04x}{len(starts):02x}"
        self.assertIn(f"<code>{freedb}</code>", page)


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
