"""The ad-hoc signature of each slice of the dylib named on the command line: macOS on Apple silicon loads no other."""

import hashlib
import struct
import sys
import unittest

UNIVERSAL = 0xCAFEBABE
CODE_SIGNATURE = 0x1D
EMBEDDED_SIGNATURE = 0xFADE0CC0
CODE_DIRECTORY = 0xFADE0C02
AD_HOC = 0x2
SHA256 = 2


def read(kind, data, offset, order=">"):
    return struct.unpack_from(order + kind, data, offset)


def slices(data):
    """Processor to bytes."""
    magic, count = read("II", data, 0)
    assert magic == UNIVERSAL
    found = {}
    for i in range(count):
        processor, _, offset, size = read("IIII", data, 8 + 20 * i)
        found[processor] = data[offset : offset + size]
    return found


def signature_place(data):
    """Offset and size of a slice's signature."""
    commands = read("I", data, 16, "<")[0]
    at = 32
    for _ in range(commands):
        command, size = read("II", data, at, "<")
        if command == CODE_SIGNATURE:
            return read("II", data, at + 8, "<")
        at += size
    raise AssertionError("there is no signature")


class Directory:
    """What the signature says of the code before it."""

    def __init__(self, data):
        self.data = data
        place, self.size = signature_place(data)
        self.place = place
        magic, _, count = read("III", data, place)
        assert magic == EMBEDDED_SIGNATURE
        offsets = dict(read("II", data, place + 12 + 8 * i) for i in range(count))
        start = place + offsets[0]
        magic, _, _, self.flags, hashes, name, _, self.pages, self.limit = read("9I", data, start)
        assert magic == CODE_DIRECTORY
        self.hash_size, self.hash_kind, _, self.page_bits = read("4B", data, start + 36)
        self.hashes = start + hashes
        self.name = data[start + name : data.index(b"\0", start + name)].decode()

    def wrong_pages(self):
        wrong = []
        for page in range(self.pages):
            start = page << self.page_bits
            code = self.data[start : min(start + (1 << self.page_bits), self.limit)]
            at = self.hashes + self.hash_size * page
            if hashlib.sha256(code).digest() != self.data[at : at + self.hash_size]:
                wrong.append(page)
        return wrong


class Signature(unittest.TestCase):
    def setUp(self):
        with open(DYLIB, "rb") as file:
            self.slices = slices(file.read())
        self.assertEqual(len(self.slices), 2)

    def test_is_the_linkers_own_for_this_file(self):
        for processor, data in self.slices.items():
            with self.subTest(processor=hex(processor)):
                directory = Directory(data)
                self.assertTrue(directory.flags & AD_HOC)
                self.assertEqual(directory.hash_kind, SHA256)
                self.assertEqual(directory.hash_size, 32)
                self.assertEqual(directory.name, "velmor_cd.dylib")

    def test_covers_every_byte_before_it_and_ends_the_slice(self):
        for processor, data in self.slices.items():
            with self.subTest(processor=hex(processor)):
                directory = Directory(data)
                self.assertEqual(directory.limit, directory.place)
                self.assertEqual(directory.pages, -(-directory.limit >> directory.page_bits))
                self.assertEqual(directory.place + directory.size, len(data))

    def test_has_the_hash_of_every_page(self):
        for processor, data in self.slices.items():
            with self.subTest(processor=hex(processor)):
                self.assertGreater(Directory(data).pages, 10)
                self.assertEqual(Directory(data).wrong_pages(), [])

    def test_does_not_cover_for_a_byte_that_was_changed(self):
        for processor, data in self.slices.items():
            with self.subTest(processor=hex(processor)):
                changed = bytearray(data)
                place = len(data) // 2
                changed[place] ^= 1
                directory = Directory(bytes(changed))
                self.assertEqual(directory.wrong_pages(), [place >> directory.page_bits])


if __name__ == "__main__":
    DYLIB = sys.argv.pop()
    unittest.main()
