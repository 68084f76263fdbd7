#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Resource forks, made by a writer of this test's own, listed and read by the quiverleaf command."""

import os
import random
import struct
import unittest

from command import CommandTestCase

ATTRIBUTE = "user.org.netatalk.ResourceFork"
# What the attribute holds on every file system.
MAXIMUM_ATTRIBUTE = 3500


def make_fork(resources, chance):
    """The bytes of a fork: contents and names stand in any order, contents may stand behind the map."""
    contents, offsets = b"", {}
    for index in chance.sample(range(len(resources)), len(resources)):
        offsets[index] = len(contents)
        contents += struct.pack(">I", len(resources[index][4])) + resources[index][4]
    names, name_offsets = b"", {}
    for index, (_, _, name, _, _) in enumerate(resources):
        name_offsets[index] = 0xFFFF if name is None else len(names)
        if name is not None:
            encoded = name.encode("mac_roman")
            names += bytes([len(encoded)]) + encoded
    types = list(dict.fromkeys(resource[0] for resource in resources))
    type_list, references = struct.pack(">H", (len(types) - 1) & 0xFFFF), b""
    for code in types:
        mine = [index for index, resource in enumerate(resources) if resource[0] == code]
        type_list += struct.pack(">4sHH", code.encode("mac_roman"), len(mine) - 1, 2 + 8 * len(types) + len(references))
        for index in mine:
            _, number, _, attributes, _ = resources[index]
            place = struct.pack(">I", attributes << 24 | offsets[index])
            references += struct.pack(">hH", number, name_offsets[index]) + place + bytes(4)
    lists = struct.pack(">HHH", 0, 28, 28 + len(type_list) + len(references)) + type_list + references + names
    gap = chance.choice((0, 13, 240))
    parts = [(len(contents), 0), (22 + len(lists), 1)]
    if chance.random() < 0.3:
        parts.reverse()
    places, position = {}, 16 + gap
    for length, kind in parts:
        places[kind], position = position, position + length
    header = struct.pack(">IIII", places[0], places[1], len(contents), 22 + len(lists))
    areas = {0: contents, 1: chance.choice((header, bytes(16))) + bytes(6) + lists}
    return header + chance.randbytes(gap) + b"".join(areas[kind] for _, kind in parts)


def make_companion(fork, chance):
    """An AppleDouble file with the fork among other entries."""
    entries = [(2, fork), (9, chance.randbytes(32)), (4, b"comment"), (3, b"name")]
    entries = entries[:1] + chance.sample(entries[1:], chance.randrange(4))
    chance.shuffle(entries)
    descriptors, bodies, position = b"", b"", 26 + 12 * len(entries)
    for number, body in entries:
        descriptors += struct.pack(">III", number, position, len(body))
        gap = chance.choice((0, 0, 5))
        bodies += body + bytes(gap)
        position += len(body) + gap
    return struct.pack(">II16sH", 0x00051607, 0x00020000, b"Mac OS X        ", len(entries)) + descriptors + bodies


def make_resources(chance):
    kinds = ["".join(chance.choices("ABCabc# \u00e4\u2122", k=4)) for _ in range(chance.randrange(1, 6))]
    keys = {(chance.choice(kinds), chance.randrange(-32768, 32768)) for _ in range(chance.randrange(1, 12))}
    names = (None, "", "a name", "\u00fc\u03c0 \U0000f8ff", "x" * 255)
    longest = chance.choice((10, 200, 30000))
    return [
        (kind, number, chance.choice(names), chance.randrange(256), chance.randbytes(chance.randrange(longest)))
        for kind, number in sorted(keys)
    ]


class ResourceForkTest(CommandTestCase):
    def fork_file(self, name, fork, chance=None):
        path = self.file(name, b"content")
        if chance is None or len(fork) <= MAXIMUM_ATTRIBUTE and chance.random() < 0.5:
            os.setxattr(path, ATTRIBUTE, fork)
        else:
            self.file(f"._{name}", make_companion(fork, chance))
        return name

    def test_generated_forks_are_listed_and_extracted(self):
        for seed in range(60):
            chance = random.Random(seed)
            resources = make_resources(chance)
            name = self.fork_file(f"file-{seed}", make_fork(resources, chance), chance)
            listed = [(r["Type"], r["ID"], r.get("Name"), r["Attributes"], r["Size"]) for r in self.answer("fork", name)]
            self.assertEqual(listed, [(*resource[:4], len(resource[4])) for resource in resources], seed)
            kind, number, _, _, content = chance.choice(resources)
            done = self.run_command("fork", name, "--extract", kind, str(number), "-o", "out")
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""), seed)
            self.assertEqual((self.folder / "out").read_bytes(), content, seed)

    def test_what_cannot_be_answered_is_told(self):
        fork = make_fork([("TEXT", -1, None, 0, b"text")], random.Random(0))
        self.fork_file("file", fork)
        self.fork_file("damaged", fork[:-1])
        self.file("none", b"")
        extract = ("fork", "file", "--extract")
        self.assert_fails(3, "file: the fork has no such resource", *extract, "TEXT", "1", "-o", "out")
        self.assert_fails(3, "damaged: the resource fork is damaged", "fork", "damaged")
        self.file("beside", b"")
        self.file("._beside", b"foreign")
        self.assert_fails(3, 'beside: the companion "._beside" is damaged', "fork", "beside")
        self.assert_fails(3, "none: the file has no resource fork", "fork", "none")
        self.assert_fails(7, "missing: there is no such file", "fork", "missing")
        self.assert_fails(6, "missing/out", *extract, "TEXT", "-1", "-o", "missing/out")
        for message, arguments in (
            ("go together", ("TEXT", "-1")),
            ("no type", ("TEX", "-1", "-o", "out")),
            ("no number", ("TEXT", "40000", "-o", "out")),
            ("no number", ("TEXT", "1x", "-o", "out")),
            ("needs two values", ("TEXT",)),
            ("needs a value", ()),
        ):
            self.assert_fails(1, message, *extract, *arguments)
        self.assert_fails(1, "go together", "fork", "file", "-o", "out")
        self.assert_fails(1, "standard input", "fork", "-")
        self.assertFalse((self.folder / "out").exists())


if __name__ == "__main__":
    unittest.main()
