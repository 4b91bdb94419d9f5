"""bench_wav.py FILE MINUTES: writes a 24-bit stereo WAV of full-band noise at the disc's rate."""

import random
import struct
import sys

RATE, CHANNELS, BYTES = 44100, 2, 3
PIECE_SECONDS = 20  # the noise comes again after this


def main():
    path, minutes = sys.argv[1], float(sys.argv[2])
    size = int(minutes * 60) * RATE * CHANNELS * BYTES
    piece = random.Random(1).randbytes(PIECE_SECONDS * RATE * CHANNELS * BYTES)
    frame = CHANNELS * BYTES
    header = b"RIFF" + struct.pack("<I", 36 + size) + b"WAVEfmt "
    header += struct.pack("<IHHIIHH", 16, 1, CHANNELS, RATE, RATE * frame, frame, 8 * BYTES)
    header += b"data" + struct.pack("<I", size)
    with open(path, "wb") as out:
        out.write(header)
        while size > 0:
            size -= out.write(piece[: min(size, len(piece))])


main()
