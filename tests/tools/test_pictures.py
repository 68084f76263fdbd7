#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The commands of the quiverleaf command that show pictures of files."""

import base64
import os
import pathlib
import plistlib
import shutil
import struct
import subprocess
import unittest

import documents
from command import CommandTestCase
from documents import png, size_of_png

POSTSCRIPT = b"""%!PS
<</PageSize [600 300]>> setpagedevice /Helvetica findfont 20 scalefont setfont
100 100 moveto (Words of PostScript) show showpage
"""
BEGINNINGS = {"tiff": b"II*\0", "tif": b"II*\0", "png": b"\x89PNG", "jpg": b"\xff\xd8\xff", "JPEG": b"\xff\xd8\xff", "webp": b"RIFF"}
has_ffmpeg = shutil.which("ffmpeg") is not None
has_ghostscript = shutil.which("gs") is not None


class PicturesTest(CommandTestCase):
    def setUp(self):
        super().setUp()
        self.file("photo.png", png(1200, 800))
        self.file("page.pdf", documents.pdf(("Words of a page",)))
        self.file("page.ps", POSTSCRIPT)

    def written(self, *arguments):
        """What a command prints besides the picture, and the picture's size in pixels."""
        rest = self.answer(*arguments, "-o", "out.png")
        self.assertNotIn("Thumbnail", rest)
        return rest, size_of_png(self.folder / "out.png")

    def ffmpeg(self, *arguments):
        subprocess.run(["ffmpeg", "-v", "error", "-y", *arguments], cwd=self.folder, check=True, timeout=60)

    def test_images_are_printed_or_written(self):
        facts = self.answer("image", "photo.png")
        self.assertEqual(base64.b64decode(facts["Thumbnail"])[:4], b"II*\0")
        self.assertEqual(facts["Properties"]["PixelWidth"], 1200)
        listed = plistlib.loads(self.run_command("image", "photo.png", "--plist").stdout)
        self.assertEqual(listed["Thumbnail"], base64.b64decode(facts["Thumbnail"]))
        for extension, beginning in BEGINNINGS.items():
            self.answer("image", "photo.png", "--output", f"thumb.{extension}")
            self.assertEqual((self.folder / f"thumb.{extension}").read_bytes()[: len(beginning)], beginning)
        for side, size in ((None, (256, 171)), ("256", (256, 171)), ("90", (90, 60)), ("600", (600, 400)), ("32767", (1200, 800))):
            rest, written = self.written("image", "photo.png", *(["--size", side] if side else []))
            self.assertEqual((written, set(rest)), (size, {"Properties"}))
        # The beginning of a name is enough when no other has it.
        rest, written = self.written("image", "--tex", "photo.png", "--siz=600")
        self.assertEqual((written, rest), ((600, 400), {"Size": "{1200, 800}", "PixelSize": "{1200, 800}", "Alpha": False}))

    def test_pages_are_drawn_at_any_size_and_read(self):
        width, height = (float(side) for side in self.answer("image", "page.pdf")["Size"].strip("{}").split(", "))
        for side in (100, 256, 900):
            rest, written = self.written("image", "--text", "page.pdf", "--size", str(side))
            self.assertEqual(max(written), side)
            self.assertAlmostEqual(written[0] / written[1], width / height, delta=0.02)
            self.assertIn("Words of a page", rest["String"])

    @unittest.skipUnless(has_ghostscript, "Ghostscript is not installed")
    def test_postscript_is_converted_drawn_and_read(self):
        self.assertEqual(self.run_command("topdf", "page.ps", "-o", "out.pdf").stdout, b"")
        self.assertEqual((self.folder / "out.pdf").read_bytes()[:5], b"%PDF-")
        self.assertIn("Words of PostScript", self.answer("pdf", "out.pdf")["String"])
        for side, size in (("256", (256, 128)), ("700", (700, 350))):
            self.assertEqual(self.written("image", "page.ps", "--size", side), (
                {"Size": "{600, 300}", "PixelSize": "{600, 300}", "Alpha": True}, size))  # fmt: skip
        for arguments in (("page.ps",), ("-",)):
            done = self.run_command("text", *arguments, input=POSTSCRIPT)
            self.assertEqual((done.stdout.decode().strip(), done.returncode), ("Words of PostScript", 0), done.stderr)
        self.assert_fails(3, "faulty: undefined in foo", "text", self.file("faulty.ps", b"%!PS\nfoo"))

    @unittest.skipUnless(has_ffmpeg, "ffmpeg is not installed")
    def test_movies_have_posters_and_sounds_have_covers(self):
        self.ffmpeg("-f", "lavfi", "-i", "testsrc=size=320x180:rate=10:duration=3", "movie.mp4")
        facts = self.answer("poster", "movie.mp4")
        self.assertEqual((facts["Duration"], facts["Size"]), (3.0, "{320, 180}"))
        # Tag 259 of the only picture says that it is compressed by LZW.
        tiff = base64.b64decode(facts["Thumbnail"])
        start = struct.unpack_from("<I", tiff, 4)[0]
        tags = dict(struct.unpack_from("<H6xH2x", tiff, start + 2 + 12 * i) for i in range(struct.unpack_from("<H", tiff, start)[0]))
        self.assertEqual(tags[259], 5)
        self.assertEqual(self.written("poster", "movie.mp4")[1], (320, 180))
        self.assertEqual(self.written("poster", "movie.mp4", "--size", "64")[1], (64, 36))
        cover = ("-i", "photo.png", "-map", "0:a", "-map", "1:v", "-c:v", "copy", "-disposition:v", "attached_pic")
        self.ffmpeg("-f", "lavfi", "-i", "sine=duration=1", *cover, "sound.mp3")
        self.assert_fails_with_facts("poster", "sound.mp3", "-o", "none.png")
        for options, size in (((), (1200, 800)), (("--size", "60"), (60, 40))):
            done = self.run_command("poster", "--cover", "sound.mp3", "-o", "cover.png", *options)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
            self.assertEqual(size_of_png(self.folder / "cover.png"), size)
        self.assert_fails(3, "no cover", "poster", "--cover", "movie.mp4", "-o", "none.png")
        self.assertFalse((self.folder / "none.png").exists())

    @unittest.skipUnless(has_ffmpeg, "ffmpeg is not installed")
    def test_sheets_show_frames_and_covers(self):
        self.file("cover.png", png(300, 300, (30, 30, 200)))
        cover = ("-i", "cover.png", "-map", "0:a", "-map", "1:v", "-c:v", "copy", "-disposition:v", "attached_pic")
        self.ffmpeg("-f", "lavfi", "-i", "sine=duration=0.5", *cover, "covered.mp3")
        self.ffmpeg("-f", "lavfi", "-i", "sine=duration=1", "bare.mp3")
        self.ffmpeg("-f", "lavfi", "-i", "color=c=0x1e1ec8:size=320x180:duration=1", "movie.mp4")
        self.file("damaged.mp4", (self.folder / "movie.mp4").read_bytes()[:100])
        for name, is_shown in (("movie.mp4", True), ("covered.mp3", True), ("bare.mp3", False), ("damaged.mp4", False)):
            done = self.run_command("sheet", name, "-o", "sheet.png")
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
            # The middle of the only picture.
            self.ffmpeg("-i", "sheet.png", "-vf", "crop=1:1:112:112", "-f", "rawvideo", "-pix_fmt", "rgb24", "pixel")
            red, green, blue = (self.folder / "pixel").read_bytes()
            self.assertEqual(max(abs(red - 30), abs(green - 30), abs(blue - 200)) < 16, is_shown, (name, red, green, blue))

    def test_sheets_have_a_limit_and_tell_terminals_how_far_they_are(self):
        (self.folder / "many").mkdir()
        for number in range(1000):
            self.file(f"many/{number}.txt", b"")
        self.assert_fails(1, "1000 files at most, and these are 1001", "sheet", "photo.png", "many", "-o", "out.png")
        terminal, inside = os.openpty()
        self.addCleanup(os.close, terminal)
        done = self.run_command("sheet", "photo.png", "page.pdf", "-o", "out.png", capture_output=False, stderr=inside)
        os.close(inside)
        self.assertEqual(done.returncode, 0)
        self.assertEqual(os.read(terminal, 4096), b"\r\x1b[K0 of 2 files\r\x1b[K1 of 2 files\r\x1b[K")

    def assert_fails_with_facts(self, *arguments):
        done = self.run_command(*arguments)
        self.assertNotEqual(done.returncode, 0)
        self.assertRegex(done.stderr, rb"\Aquiverleaf: [^\n]+\n\Z")

    def test_sheets_show_files_of_all_kinds(self):
        (self.folder / "mixed" / "inner").mkdir(parents=True)
        names = ("wide.png", "page.pdf", "a very long name of a file that has no room below its picture.txt", "\u00e9.qqq", ".hidden")
        for name, content in zip(names, (png(400, 100), documents.pdf(("x",)), b"text", b"\1\2\3", b"")):
            self.file(f"mixed/{name}", content)
        for arguments, columns, rows, side in (
            (("mixed",), 2, 2, 192),
            (("mixed", "photo.png"), 3, 2, 192),
            (("photo.png", "--size", "50"), 1, 1, 50),
            (("photo.png", "--size", "256"), 1, 1, 256),
        ):
            done = self.run_command("sheet", *arguments, "-o", "sheet.png")
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
            expected = (columns * (side + 24) + 8, rows * (side + 44) + 8)
            self.assertEqual(size_of_png(self.folder / "sheet.png"), expected)

    def test_what_goes_wrong(self):
        (self.folder / "empty").mkdir()
        (self.folder / "mixed").mkdir()
        self.file("strange.qqq", bytes(range(1, 200, 3)))
        cases = [
            (2, "No helper is registered", "sheet", "mixed", "-o", "out.png", "--no-start"),
            (1, "needs a file with a name", "image", "-"),
            (1, "needs -o", "image", "photo.png", "--size", "50"),
            (1, "needs -o OUT.pdf", "topdf", "page.ps"),
            (1, "needs -o", "poster", "--cover", "photo.png"),
            (1, "needs -o SHEET.png", "sheet", "mixed"),
            (1, "not 'out.bmp'", "image", "photo.png", "-o", "out.bmp"),
            *((1, "--size takes", "image", "photo.png", "-o", "out.png", "--size", size) for size in ("0", "-1", "x", "32768", "")),
            (1, "from 1 to 256, not '257'", "sheet", "mixed", "-o", "out.png", "--size", "257"),
            (1, "needs -o OUT.pdf", "topdf", "page.ps", "-o", ""),
            (7, "missing: there is no such file", "image", "missing"),
            (7, "missing: there is no such file", "image", "missing", "-o", "out.png", "--size", "600"),
            (7, "missing: there is no such file", "topdf", "missing", "-o", "out.pdf"),
            (7, "missing: there is no such file", "sheet", "photo.png", "missing", "-o", "out.png"),
            (8, "strange.qqq: ", "image", "strange.qqq"),
            (8, "strange.qqq: the file is no movie", "poster", "strange.qqq"),
            (8, "photo.png: ", "topdf", "photo.png", "-o", "out.pdf"),
            (6, "no folder/out.png: ", "image", "photo.png", "-o", "no folder/out.png"),
            (6, "no folder/out.pdf: ", "topdf", "page.pdf", "-o", "no folder/out.pdf"),
            (3, "there are no files", "sheet", "empty", "-o", "out.png"),
        ]  # fmt: skip
        for code, message, *arguments in cases:
            with self.subTest(arguments):
                self.assert_fails(code, message, *arguments)
        self.assertFalse(list(pathlib.Path(self.folder).glob("out.*")))


if __name__ == "__main__":
    unittest.main()
