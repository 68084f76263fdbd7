#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The libraries show what their public headers declare, and nothing else."""

import os
import pathlib
import re
import unittest

from commands import run

TOP = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["QUIVERLEAF_BUILD"])
LIBRARIES = {path.stem.removeprefix("libnimbo-"): path for path in BUILD.rglob("libnimbo-*.so")}
PUBLIC_NAMESPACE = re.compile(r"^namespace NIMBO_PUBLIC nimbo\b", re.MULTILINE)


def public_headers(library):
    umbrella = BUILD / "include" / "nimbo" / f"{library}.hpp"
    return re.findall(r'^#include "(.*)"$', umbrella.read_text("utf-8"), re.MULTILINE)


class ExportsTest(unittest.TestCase):
    def test_every_name_is_declared_in_a_public_header(self):
        for library, least in {"text": 700, "media": 30, "client": 20}.items():
            # The others show copies of what templates of nimbo-text become in them.
            headers = {*public_headers(library), *public_headers("text")}
            words = {word for header in headers for word in re.findall(r"\w+", (TOP / header).read_text("utf-8"))}
            mangled, names = (
                run("nm", "--dynamic", "--defined-only", "--format=just-symbols", *options, LIBRARIES[library]).splitlines()
                for options in ((), ("--demangle",))
            )
            self.assertGreater(len(names), least)
            for symbol, name in zip(mangled, names):
                with self.subTest(library, name=name):
                    # Of a function, a type, or what is static inside a function.
                    self.assertRegex(symbol, r"^_Z(T[ISVT]|GV)?(Z?N[KRO]{0,2})5nimbo")
                    own = re.search(r"nimbo::[\w:~]+", name)[0]
                    self.assertEqual(set(re.findall(r"\w+", own)) - words, set())

    def test_types_that_cross_libraries_are_one(self):
        names = run("nm", "--dynamic", "--defined-only", "--demangle", LIBRARIES["text"])
        for kind in ("typeinfo", "typeinfo name", "vtable"):
            self.assertIn(f" {kind} for nimbo::NSException\n", names)

    def test_public_headers_alone_show_their_names(self):
        public = {"platform/ImageIO/CGImageSource.hpp", *sum(map(public_headers, ("text", "media")), [])}
        for path in sorted(path for floor in ("platform", "Classes") for path in (TOP / floor).rglob("*.hpp")):
            header, text = str(path.relative_to(TOP)), path.read_text("utf-8")
            with self.subTest(header):
                declares = re.search("^namespace", text, re.MULTILINE) is not None
                self.assertEqual(PUBLIC_NAMESPACE.search(text) is not None, header in public and declares)


if __name__ == "__main__":
    unittest.main()
