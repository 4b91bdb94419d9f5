"""page_discs.py: discs for the tests of the page, each a sheet with its images in a folder."""

import array
import math
import os
import random

SECTOR = 588  # frames
RATE = 44100
HARD_TEXTS = [
    '<b>bold</b> & "quoted" \'so\' <script>alert(1)</script>',
    "\u202eright to left\u202c back",
    "שלום and مرحبا, 音楽 \U0001f3b5",
    "&lt;not markup&gt; &amp; </td></table>",
    "control \x01\x07\x1b[31m characters",
    "W" * 300,
    "many words " * 40,
]


def sine(sectors, frequency, level):
    """Left as given, right a quarter of it and a quarter period later."""
    samples = array.array("h")
    step = 2 * math.pi * frequency / RATE
    for frame in range(sectors * SECTOR):
        samples.append(round(level * math.sin(step * frame)))
        samples.append(round(level / 4 * math.cos(step * frame)))
    return samples.tobytes()


def noise(sectors, level, seed=1, offset=0):
    """Without the highest frequencies, between whose samples two ways to find the true peak differ."""
    draw = random.Random(seed)
    drawn = [draw.randint(-level, level) for _ in range(75 * SECTOR * 2 + 8)]
    period = array.array("h", (sum(drawn[at : at + 8 : 2]) // 4 + offset for at in range(75 * SECTOR * 2))).tobytes()
    whole = period * (sectors // 75 + 1)
    return whole[: sectors * SECTOR * 4]


def silence(sectors):
    return bytes(sectors * SECTOR * 4)


def time(sector):
    return f"{sector // 75 // 60:02}:{sector // 75 % 60:02}:{sector % 75:02}"


class Sheet:
    """Lines of a cue sheet."""

    def __init__(self, *lines):
        self.lines = list(lines)

    def file(self, name, kind="BINARY"):
        self.lines.append(f'FILE "{name}" {kind}')
        return self

    def track(self, number, start, *lines, mode="AUDIO"):
        self.lines.append(f"TRACK {number:02} {mode}")
        self.lines += lines
        self.lines.append(f"INDEX 01 {time(start)}")
        return self

    def write(self, path):
        with open(path, "wb") as file:
            file.write("".join(line + "\r\n" for line in self.lines).encode())
        return path


def write(folder, name, data):
    with open(os.path.join(folder, name), "wb") as file:
        file.write(data)


class Discs:
    """Makes the discs in `folder`; each method returns the path of a sheet."""

    def __init__(self, folder):
        self.folder = folder

    def path(self, name):
        return os.path.join(self.folder, name)

    def album(self):
        """Four titles with what goes wrong: clipping, a late start, an offset, a long silent end."""
        loud = bytearray(sine(600, 997, 32767))
        loud[4000:4020] = b"\xff\x7f\x00\x00" * 5
        parts = [
            noise(450, 9000, seed=2),
            silence(150) + bytes(loud),
            silence(100) + sine(500, 440, 12000),
            noise(400, 400, seed=3, offset=300) + silence(300),
        ]
        write(self.folder, "album.bin", b"".join(parts))
        self.album_tracks = [(0, 450), (600, 1200), (1200, 1800), (1800, 2500)]
        sheet = Sheet("CATALOG 0731452345622", 'TITLE "Night Drive"', 'PERFORMER "The Lanterns"').file("album.bin")
        sheet.track(1, 0, 'TITLE "Headlights"', "ISRC USABC2600001", "FLAGS DCP")
        sheet.track(2, 600, 'TITLE "Toll Road"', 'PERFORMER "Ana"', "INDEX 00 " + time(450))
        sheet.track(3, 1200, 'TITLE "Say Go"').track(4, 1800, "ISRC USABC260000", 'TITLE "Rain"')
        sheet.lines.append("INDEX 02 " + time(2100))
        return sheet.write(self.path("album.cue"))

    def hard_texts(self):
        """Every text that a page could stumble over, as title and performer."""
        write(self.folder, "hard <&>.bin", noise(75 * 5 * len(HARD_TEXTS), 9000))
        sheet = Sheet(f'TITLE "{HARD_TEXTS[0]}"', f'PERFORMER "{HARD_TEXTS[2]}"').file("hard <&>.bin")
        for i, text in enumerate(HARD_TEXTS):
            sheet.track(i + 1, i * 375, f'TITLE "{text}"', f'PERFORMER "{text[::-1]}"', f"ISRC <{text[:8]}>")
        return sheet.write(self.path("hard.cue"))

    def most_tracks(self):
        """99 tracks of 4 s, in long titles whose words are found nowhere else."""
        write(self.folder, "most.bin", noise(300 * 99, 9000))
        sheet = Sheet('TITLE "Ninety-nine"').file("most.bin")
        for i in range(99):
            words = " ".join(f"Word{i + 1}{letter}" for letter in "abcdefgh")
            gap = [f"INDEX 00 {time(300 * i - 30)}"] if i else []
            sheet.track(i + 1, 300 * i, f'TITLE "{words}"', *gap)
        return sheet.write(self.path("most.cue"))

    def one_track(self):
        write(self.folder, "one.bin", noise(400, 9000))
        return Sheet().file("one.bin").track(1, 0).write(self.path("one.cue"))

    def hidden_track(self):
        """Sound before track 1."""
        write(self.folder, "hidden.bin", noise(900, 9000))
        sheet = Sheet().file("hidden.bin").track(1, 450, "INDEX 00 00:00:00")
        return sheet.write(self.path("hidden.cue"))

    def data_track(self):
        write(self.folder, "data.bin", noise(900, 32000))
        sheet = Sheet().file("data.bin").track(1, 0, mode="MODE1/2352").track(2, 450)
        return sheet.write(self.path("data.cue"))

    def missing_image(self):
        return Sheet().file("nowhere.bin").track(1, 0).track(2, 450).write(self.path("missing.cue"))

    def silent(self):
        write(self.folder, "silent.bin", silence(900))
        return Sheet().file("silent.bin").track(1, 0).track(2, 450).write(self.path("silent.cue"))

    def several_images(self):
        """Two images with silence that is in neither before the second."""
        write(self.folder, "a.bin", noise(400, 9000))
        write(self.folder, "b.bin", noise(500, 5000, seed=5))
        sheet = Sheet().file("a.bin").track(1, 0).file("b.bin").track(2, 0, "PREGAP 00:02:00")
        return sheet.write(self.path("several.cue"))

    def all(self):
        return [
            self.album(),
            self.hard_texts(),
            self.most_tracks(),
            self.one_track(),
            self.hidden_track(),
            self.data_track(),
            self.missing_image(),
            self.silent(),
            self.several_images(),
        ]
