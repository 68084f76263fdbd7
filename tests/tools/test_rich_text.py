#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Rich text that the quiverleaf command writes, and the text of files of all types."""

import os
import pathlib
import shutil
import subprocess
import unittest

import documents
from command import CommandTestCase

DATA = pathlib.Path(__file__).resolve().parents[1] / "data"
LETTER = DATA / "word-processors" / "letter.docx"
PICTURE = bytes.fromhex("47494638396101000100800000000000ffffff21f90401000000002c00000000010001000002024401003b")
PAGE = (
    "<meta charset=utf-8><title>T</title><link rel=stylesheet href=s.css><h1>Head</h1><p>caf\u00e9 <b>bold</b>"
    "<p class=no>hidden<p><a href=b.html>link</a><img src=a.gif><script>document.write('scripted')</script>"
)
has_office = shutil.which("soffice") is not None


class RichTextTest(CommandTestCase):
    def setUp(self):
        super().setUp()
        self.file("a.gif", PICTURE)
        self.file("s.css", b".no { display: none }")
        self.file("page.html", PAGE.encode())

    def write(self, *arguments, **options):
        """What the command writes as out.rtfd: the text, and the names beside it."""
        done = self.run_command(*arguments, "-o", "out.rtfd", **options)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        names = sorted(os.listdir(self.folder / "out.rtfd"))
        return (self.folder / "out.rtfd" / "TXT.rtf").read_text("ascii"), names

    def text(self, *arguments, **options):
        done = self.run_command("text", *arguments, **options)
        self.assertEqual((done.returncode, done.stderr), (0, b""), arguments)
        return done.stdout.decode()

    def test_pages_are_written_with_their_looks_and_pictures(self):
        for arguments in (("rtfd", "page.html"), ("html2rtfd", "page.html")):
            rtf, names = self.write(*arguments)
            self.assertEqual(names, ["TXT.rtf", "a.gif"], arguments)
            self.assertEqual((self.folder / "out.rtfd" / "a.gif").read_bytes(), PICTURE)
            self.assertRegex(rtf, r"(?s)Head.*\\b\b.*bold.*HYPERLINK \"file:[^\"]*/b\.html\".*link")
            for word in ("hidden", "scripted"):
                self.assertNotIn(word, rtf)
        rtf, names = self.write("html2rtfd", "--base", "http://example.org/x/", "-", input=b"<a href=y>z</a>")
        self.assertIn('HYPERLINK "http://example.org/x/y"', rtf)
        self.assertEqual(names, ["TXT.rtf"], "what stood there is replaced")

    def test_what_is_left_out_of_a_page_is_told(self):
        self.file("far.html", b"near<img src=http://198.51.100.1/far.gif>")
        done = self.run_command("html2rtfd", "far.html", "-o", "far.rtfd")
        self.assertEqual((done.returncode, done.stdout), (0, b""))
        self.assertRegex(done.stderr, rb"\Aquiverleaf: far\.html: 1 part of the page was not loaded: http://198.51.100.1/far.gif \(")
        self.assertIn("near", (self.folder / "far.rtfd" / "TXT.rtf").read_text("ascii"))

    def test_pdfs_are_written_with_their_looks(self):
        rtf, _ = self.write("pdf", "--attributed", str(DATA / "pdf" / "rich.pdf"))
        self.assertRegex(rtf, r'(?s)\\fs40\\b\b.*bold.*HYPERLINK "https://example\.org/a\?b=c".*this page')

    def test_archives_are_written_without_the_page_they_are_of(self):
        self.assertEqual(self.run_command("webarchive", "--create", "page.html", "-o", "p.webarchive").returncode, 0)
        for name in ("page.html", "s.css", "a.gif"):
            os.remove(self.folder / name)
        rtf, names = self.write("rtfd", "p.webarchive")
        self.assertEqual(names, ["TXT.rtf", "a.gif"])
        self.assertNotIn("hidden", rtf)
        self.assertIn("Head", self.text("p.webarchive"))

    @unittest.skipUnless(has_office, "LibreOffice is not installed")
    def test_office_documents_and_libreoffice_agree(self):
        rtf, _ = self.write("rtfd", str(LETTER))
        self.assertRegex(rtf, r"(?s)First heading.*\\b\b.*bold")
        profile = f"-env:UserInstallation=file://{self.folder}/profile"
        command = ["soffice", profile, "--headless", "--convert-to", "txt:Text (encoded):UTF8", "out.rtfd/TXT.rtf"]
        subprocess.run(command, cwd=self.folder, check=True, capture_output=True, timeout=120)
        theirs = (self.folder / "TXT.txt").read_text("utf-8-sig").split()
        ours = self.text("out.rtfd").split()
        self.assertIn("heading", ours)
        self.assertEqual([word for word in theirs if word.isalpha()], [word for word in ours if word.isalpha()])

    def test_the_text_of_files_of_all_types(self):
        rtf = rb"{\rtf1 rich \b caf\'e9}"
        (self.folder / "r.rtfd").mkdir()
        self.file("r.rtfd/TXT.rtf", rtf)
        cases = [
            ("plain\u00e9 <b>&amp;\n", self.file("a.txt", "plain\u00e9 <b>&amp;\n".encode())),
            ("no line feed\n", self.file("b.txt", b"no line feed")),
            ("rich caf\u00e9\n", self.file("a.rtf", rtf)),
            ("rich caf\u00e9\n", "r.rtfd"),
            ("T\n\nHead\n\ncaf\u00e9 bold\n\nhidden\n\nlink\n", "page.html"),
            ("<p>plain &amp;\n", self.file("d.txt", b"<p>plain &amp;")),
            ("plain &\n", self.file("piece", b"\n<p>plain &amp;")),
            ("plain &\n", self.file("comment", b"<!-- x -->plain &amp;")),
            ("<3 plain &amp;\n", self.file("heart", b"<3 plain &amp;")),
            ("<\n", self.file("less", b"<")),
            ("plain &\n", "--body", self.file("c.txt", b"plain &amp;")),
        ]
        for expected, *arguments in cases:
            with self.subTest(arguments):
                self.assertEqual(self.text(*arguments), expected)
        for name in ("letter.docx", "letter.odt", "letter.rtf", "letter.fodt", "book.epub", "table.xlsx", "talk.odp"):
            path = DATA / "documents" / name
            with self.subTest(name):
                text = self.text(str(path))
                self.assertRegex(text, r"quiver|First|Gingko")
                if name != "letter.fodt":  # Its beginning says no more than that it is XML.
                    self.assertEqual(self.text("-", input=path.read_bytes()), text)
        pdf = documents.pdf(("Words of a page",))
        self.assertIn("Words of a page", self.text("-", input=pdf))
        self.assertEqual(self.text("-", input=b"<title>x</title><p>y"), "x\n\ny\n")

    def test_what_goes_wrong(self):
        docx = LETTER.read_bytes()
        self.file("cut.docx", docx[: len(docx) // 2])
        self.file("no.rtf", b"\1\2\3")
        self.file("leaf.jpg", (pathlib.Path(__file__).resolve().parents[2] / "examples" / "leaf.jpg").read_bytes())
        self.file("strange.qqq", bytes(range(1, 200, 3)))
        self.file("locked.pdf", documents.pdf(locked=True))
        self.file("a.pdf", documents.pdf(("Words",)))
        self.file("file", b"")
        (self.folder / "r.rtfd").mkdir()
        cases = [
            (7, "missing: there is no such file", "rtfd", "missing", "-o", "out"),
            (7, "missing: there is no such file", "html2rtfd", "missing", "-o", "out"),
            (3, "no.rtf: ", "rtfd", "no.rtf", "-o", "out"),
            (8, "strange.qqq: ", "rtfd", "strange.qqq", "-o", "out"),
            *((6, f"{place}: it cannot be written: {reason}", *command, "-o", place)
              for command in (("rtfd", "page.html"), ("html2rtfd", "page.html"), ("pdf", "--attributed", "a.pdf"))
              for place, reason in (("no folder/out", "No such file"), ("file/out", "Not a dir"), ("/proc/out", "No such file"))),
            (3, "leaf.jpg: the file holds no text", "html2rtfd", "leaf.jpg", "-o", "out"),
            (1, "-o OUT.rtfd", "rtfd", "page.html"),
            (1, "-o OUT.rtfd", "html2rtfd", "page.html", "-o", ""),
            (1, "not standard input", "rtfd", "-", "-o", "out"),
            (7, "missing: there is no such file", "text", "missing"),
            (3, "cut.docx: ", "text", "cut.docx"),
            (3, "locked.pdf: the PDF is locked", "text", "locked.pdf"),
            (8, "strange.qqq: ", "text", "strange.qqq"),
            (3, "a.gif: has no text", "text", "a.gif"),
            (7, "r.rtfd: ", "text", "r.rtfd"),
            (1, "the options are for pages", "text", "--body", str(LETTER)),
            (8, "standard input: ", "text", "-"),
        ]  # fmt: skip
        for code, message, *arguments in cases:
            with self.subTest(arguments):
                self.assert_fails(code, message, *arguments, input=bytes(range(1, 200, 3)))
        self.assertFalse((self.folder / "out").exists())
        environment = {**self.environment, "TMPDIR": str(self.folder / "file")}
        self.assert_fails(3, "standard input: no temporary folder can be made", "text", "-", input=b"{\\rtf1}", environment=environment)


if __name__ == "__main__":
    unittest.main()
