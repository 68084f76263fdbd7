#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Location files made by other programs and by the quiverleaf command, read by both."""

import configparser
import json
import plistlib
import unittest

from command import CommandTestCase


class LocationTest(CommandTestCase):
    def test_files_of_other_programs_are_read(self):
        url = "http://example.org/\u00e9?a=b&c"
        for form in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            self.file("a.webloc", plistlib.dumps({"URL": url}, fmt=form))
            self.assertEqual(self.answer("location", "a.webloc"), [url])
        self.file("b.url", "\ufeff[InternetShortcut]\r\nURL=http://example.org/\u00e9\r\n".encode("utf-16-le"))
        self.file("c.desktop", b"[Desktop Entry]\nType=Link\nURL[$e]=x\nURL=mailto:a@b\n")
        self.file("\udce9.webloc", b"{URL = a;}")
        files = ("a.webloc", "b.url", "c.desktop", b"\xe9.webloc")
        self.assertEqual(self.answer("location", *files), [url, "http://example.org/\u00e9", "mailto:a@b", "a"])

    def test_files_are_written_by_their_extension(self):
        url = "http://example.org/a%20b?c=%C3%A9#d"

        def content(name):
            done = self.run_command("location", "--create", url, "-o", f"new folder/{name}")
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
            self.assertEqual(self.answer("location", f"new folder/{name}"), [url])
            return (self.folder / "new folder" / name).read_bytes()

        for name in ("a.webloc", "b.INETLOC", "c.mailloc"):
            self.assertEqual(plistlib.loads(content(name)), {"URL": url})
        self.assertEqual(content("d.url"), f"[InternetShortCut]\nURL={url}\n".encode())
        parser = configparser.RawConfigParser()
        parser.read_string(content("my page.desktop").decode())
        entry = dict(parser["Desktop Entry"])
        self.assertEqual((entry["type"], entry["name"], entry["url"]), ("Link", "my page", url))

        self.assertEqual(self.run_command("location", "--create", "www.example.org", "-o", "e.url").returncode, 0)
        self.assertEqual(self.answer("location", "e.url"), ["http://www.example.org"])

    def test_what_is_none_is_told(self):
        self.file("a.url", b"URL=http://a/\n")
        self.file("b.txt", b"text")
        done = self.run_command("location", "a.url", "b.txt", "missing.url")
        self.assertEqual((done.returncode, json.loads(done.stdout)), (3, ["http://a/", None, None]))
        self.assertEqual(done.stderr.decode().splitlines(), ["quiverleaf: b.txt: the file has no URL", "quiverleaf: missing.url: there is no such file"])
        self.assertEqual(plistlib.loads(self.run_command("location", "--plist", "b.txt", "a.url").stdout), ["", "http://a/"])
        self.assertEqual(self.answer("location", "-", input=b"[InternetShortcut]\nURL=http://a/\n"), ["http://a/"])
        self.assert_fails(3, "standard input: the file has no URL", "location", "-", input=b"text")
        self.assert_fails(3, "no URL", "location", "b.txt")
        self.assert_fails(7, "no such file", "location", "missing.url")
        self.assert_fails(7, "folder", "location", ".")
        self.assert_fails(1, "go together", "location", "--create", "http://a/")
        self.assert_fails(1, "go together", "location", "-o", "x.url", "a.url")
        self.assert_fails(1, "one URL", "location", "--create", "http://a/", "http://b/", "-o", "x.url")
        self.assert_fails(1, "no absolute URL", "location", "--create", "a b", "-o", "x.url")
        self.assert_fails(1, "'ftploc'", "location", "--create", "ftp://a/", "-o", "x.txt")
        self.assert_fails(6, "b.txt/x.url: it cannot be written: Not a dir", "location", "--create", "http://a/", "-o", "b.txt/x.url")
        (self.folder / "f.url").mkdir()
        self.assert_fails(6, "f.url: it cannot be written: Is a dir", "location", "--create", "http://a/", "-o", "f.url")


if __name__ == "__main__":
    unittest.main()
