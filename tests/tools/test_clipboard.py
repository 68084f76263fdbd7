#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""What the quiverleaf command copies to the clipboard of an X server and pastes from it, against xclip."""

import os
import pathlib
import shutil
import socket
import struct
import subprocess
import threading
import time
import unittest

from command import CommandTestCase
from documents import png, size_of_png

has_server = shutil.which("Xvfb") is not None and shutil.which("xclip") is not None
RTF = rb"{\rtf1\ansi\uc0 {\b bold} \'e9 {\field{\*\fldinst{HYPERLINK \"http://a/?b&c\"}}{\fldrslt <link>}}\par second\line line}"
PAGE = "<title>T</title><p>caf\u00e9 <b>bold</b><p><a href='http://a/'>link</a><img src=a.png>"
DECLARATION = '<meta http-equiv="content-type" content="text/html; charset=utf-8">'


@unittest.skipUnless(has_server, "Xvfb or xclip is not installed")
class ClipboardTest(CommandTestCase):
    @classmethod
    def setUpClass(cls):
        reading, writing = os.pipe()
        with open(reading, "rb") as number:
            cls.server = subprocess.Popen(
                ["Xvfb", "-displayfd", str(writing), "-screen", "0", "64x64x24"], pass_fds=[writing], stderr=subprocess.DEVNULL
            )
            os.close(writing)
            cls.display = ":" + number.readline().decode().strip()

    @classmethod
    def tearDownClass(cls):
        cls.server.terminate()
        cls.server.wait()

    def setUp(self):
        super().setUp()
        self.environment.pop("WAYLAND_DISPLAY", None)
        self.environment["DISPLAY"] = self.display
        self.file("a.png", png(30, 20))

    def xclip(self, *arguments, **options):
        command = ["xclip", "-selection", "clipboard", *arguments]
        options = {"stdout": subprocess.PIPE, "env": self.environment, "timeout": 30, "check": True, **options}
        return subprocess.run(command, **options).stdout

    def offer(self, kind, content):
        """Another program copies something."""
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self.xclip("-i", "-t", kind, input=content, **quiet)
        # It owns the clipboard a little later than it says, and shows pages in UTF-16 as UTF-8.
        shown = content.decode("utf-16").encode() if content.startswith(b"\xff\xfe") else content
        end = time.monotonic() + 20
        while self.xclip("-o", "-t", kind, check=False, stderr=subprocess.DEVNULL) != shown and time.monotonic() < end:
            time.sleep(0.02)

    def copy(self, *arguments, **options):
        """What other programs see of what the command copies, but for the types that tell about the others."""
        done = self.run_command("copy", *arguments, **options)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""), arguments)
        return self.xclip("-o", "-t", "TARGETS").decode().split("\n")

    def paste(self, *arguments):
        done = self.run_command("paste", *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, b""), arguments)
        return done.stdout

    def test_text_is_copied_and_pasted(self):
        self.file("latin1.txt", "caf\u00e9 au lait, na\u00efve fa\u00e7ade\n".encode("latin-1"))
        long = ("\u00e9\u4e2d\U0001f600 text\n" * 200_000).encode()
        cases = [
            (("caf\u00e9", "", "-x"), None, "caf\u00e9  -x".encode()),
            ((), b"as it is \n\n", b"as it is \n\n"),
            ((), long, long),
            (("--file", "latin1.txt"), None, "caf\u00e9 au lait, na\u00efve fa\u00e7ade\n".encode()),
            (("--file", f"file://{self.folder}/latin1.txt"), None, "caf\u00e9 au lait, na\u00efve fa\u00e7ade\n".encode()),
        ]
        for arguments, entered, text in cases:
            self.assertIn("UTF8_STRING", self.copy(*(["--", *arguments] if "-x" in arguments else arguments), input=entered))
            self.assertEqual(self.xclip("-o", "-t", "UTF8_STRING"), text)
            self.assertEqual(self.paste(), text)
        self.offer("UTF8_STRING", long)
        self.assertEqual(self.paste("--as", "text", "-o", "out.txt"), b"")
        self.assertEqual((self.folder / "out.txt").read_bytes(), long)

    def test_pages_are_copied_as_page_rich_text_and_plain_text(self):
        for encoding, declared, shown in (
            ("latin-1", "", DECLARATION),
            ("utf-8", "<meta charset=utf-8>", ""),
            ("latin-1", "<meta charset=iso-8859-1>", DECLARATION),
        ):
            self.file("page.html", (declared + PAGE).encode(encoding))
            targets = self.copy("--html", "page.html")
            for target in ("text/html", "text/rtf", "text/plain;charset=utf-8"):
                self.assertIn(target, targets)
            self.assertEqual(self.xclip("-o", "-t", "text/html").decode(), shown + declared + PAGE)
            self.assertEqual(self.paste("--as", "html").decode(), shown + declared + PAGE)
            self.assertRegex(self.xclip("-o", "-t", "text/rtf"), rb"(?s)\A\{\\rtf1.*caf\\u233.*\\b bold")
            self.assertRegex(self.paste().decode(), r"\AT\n+caf\u00e9 bold\n+link\Z")
            self.assertEqual(self.paste("--as", "rtfd", "-o", "out.rtfd"), b"")
            self.assertEqual((self.folder / "out.rtfd" / "a.png").read_bytes(), png(30, 20))
        self.copy("--html", "-", input=b"<p>from a pipe")
        self.assertEqual(self.paste(), b"from a pipe")

    def test_rich_text_is_copied_as_it_is_or_from_documents(self):
        self.file("a.rtf", RTF)
        self.assertNotIn("NSRTFDPboardType", self.copy("--rtf", "a.rtf"))
        self.assertEqual(self.xclip("-o", "-t", "text/rtf"), RTF)
        self.assertEqual(self.paste().decode(), "bold \u00e9 <link>\nsecond\nline")
        page = '<meta charset="utf-8">\n<p><b>bold</b> \u00e9 <a href="http://a/?b&amp;c">&lt;link&gt;</a></p>\n<p>second<br>line</p>\n'
        self.assertEqual(self.paste("--as", "html").decode(), page)
        self.file("page.html", PAGE.encode())
        self.assertEqual(self.run_command("html2rtfd", "page.html", "-o", "page.rtfd").returncode, 0)
        for document in ("page.rtfd", "page.html"):
            self.assertLess({"NSRTFDPboardType", "text/rtf", "UTF8_STRING"}, set(self.copy("--rtf", document)))
            self.paste("--as", "rtfd", "-o", "again.rtfd")
            self.assertEqual(sorted(os.listdir(self.folder / "again.rtfd")), ["TXT.rtf", "a.png"])

    def test_urls_are_copied_with_and_without_a_title(self):
        url = "http://example.org/%C3%A9?a&b"
        self.assertIn("text/uri-list", self.copy("--url", "http://example.org/\u00e9?a&b"))
        self.assertEqual(self.xclip("-o", "-t", "text/uri-list").split(), [url.encode()])
        self.assertEqual(self.xclip("-o", "-t", "UTF8_STRING"), url.encode())
        self.copy("--url", "file:///a%20b")
        self.assertEqual(self.paste(), b"/a b")
        self.copy("--url", url, "--title", "A <title>")
        self.assertEqual(self.xclip("-o", "-t", "text/x-moz-url").decode("utf-16").lstrip("\ufeff"), f"{url}\nA <title>")
        link = f'<a href="{url}">A &lt;title&gt;</a>'.replace("&b", "&amp;b")
        self.assertEqual(self.paste("--as", "html").decode(), f'<meta charset="utf-8">\n<p>{link}</p>\n')
        self.assertEqual(self.paste(), url.encode())

    def test_pictures_are_copied_in_two_types(self):
        for arguments, entered in ((("--image", "a.png"), None), (("--image", "-"), png(30, 20))):
            self.assertLess({"image/png", "image/tiff"}, set(self.copy(*arguments, input=entered)))
            self.assertEqual(self.xclip("-o", "-t", "image/tiff")[:4], b"II*\0")
            for content in (self.paste("--as", "png"), self.xclip("-o", "-t", "image/png")):
                self.assertEqual(struct.unpack(">II", content[16:24]), (30, 20))
        self.assertEqual(self.paste("--as", "png", "-o", "out.png"), b"")
        self.assertEqual(size_of_png(self.folder / "out.png"), (30, 20))
        self.paste("--as", "rtfd", "-o", "out.rtfd")
        self.assertEqual(size_of_png(self.folder / "out.rtfd" / "picture.png"), (30, 20))
        # What another program calls a PNG need not be one.
        self.offer("image/png", self.xclip("-o", "-t", "image/tiff"))
        self.assertEqual(struct.unpack(">II", self.paste("--as", "png")[16:24]), (30, 20))
        self.offer("image/png", b"no picture")
        self.assert_fails(8, "no image", "paste", "--as", "png")
        terminal, inside = os.openpty()
        self.addCleanup(os.close, terminal)
        self.addCleanup(os.close, inside)
        done = self.run_command("paste", "--as", "png", capture_output=False, stdout=inside, stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"a terminal shows no picture", done.stderr)

    def test_what_other_programs_copy_is_converted(self):
        start = '<meta charset="utf-8">\n'
        looks = rb"{\rtf1{\i i}{\ul u}{\strike s}{\super 1}{\sub 2}{\b\i bi}\par\par end}"
        shown = "<i>i</i><u>u</u><s>s</s><sup>1</sup><sub>2</sub><b><i>bi</i></b>"
        for kind, content, form, expected in (
            ("text/rtf", looks, "html", f"{start}<p>{shown}</p>\n<p></p>\n<p>end</p>\n"),
            ("text/rtf", rb"{\rtf1\outlinelevel1\b Head\par\pard\b0 text}", "html", f"{start}<h2>Head</h2>\n<p>text</p>\n"),
            ("text/rtf", rb"{\rtf1\b x\par\par y}", "html", f"{start}<p><b>x</b></p>\n<p></p>\n<p><b>y</b></p>\n"),
            ("text/html", b"<p>a &amp; b<p>c", "text", "a & b\n\nc"),
            ("text/html", "\ufeff<p>\u00e9".encode("utf-16-le"), "html", "<p>\u00e9"),
            ("text/rtf", RTF, "text", "bold \u00e9 <link>\nsecond\nline"),
            ("text/csv", b"a,b\n", "text", "a,b\n"),
            ("text/uri-list", b"http://a/\r\nhttp://b/\r\n", "text", "http://a/"),
            ("text/uri-list", b"http://a/?b&c\r\n", "html", f'{start}<p><a href="http://a/?b&amp;c">http://a/?b&amp;c</a></p>\n'),
            ("STRING", b"caf\xe9", "text", "caf\u00e9"),
            ("UTF8_STRING", b"a < b\nc\n", "html", f"{start}<p>a &lt; b</p>\n<p>c</p>\n"),
        ):
            self.offer(kind, content)
            self.assertEqual(self.paste("--as", form).decode(), expected, (kind, form))
        for kind, content, words in (
            ("text/html", b"<p>page <b>bold", rb"page.*\\b bold"),
            ("text/html", "<meta charset=iso-8859-1><p>\u00e9\u4e2d".encode(), rb"\\u233 ?.*\\u20013"),
            ("UTF8_STRING", b"plain", rb"plain"),
        ):
            self.offer(kind, content)
            self.paste("--as", "rtfd", "-o", "out.rtfd")
            self.assertRegex((self.folder / "out.rtfd" / "TXT.rtf").read_bytes(), rb"(?s)" + words)
        self.offer("text/csv", b"a,b")
        self.assertEqual(self.answer("paste", "--types"), ["NSTabularTextPboardType"])
        self.offer("application/x-odd", b"?")
        self.assertEqual(self.answer("paste", "--types"), ["application/x-odd"])

    def test_what_goes_wrong(self):
        self.file("text.txt", b"no picture")
        self.file("empty.html", b"")
        self.offer("application/x-odd", b"?")
        kept = self.answer("paste", "--types")
        cases = [
            *((3, "holds no text", "paste", "--as", form) for form in ("text", "html")),
            (3, "holds no text and no picture", "paste", "--as", "rtfd", "-o", "out.rtfd"),
            (3, "holds no picture", "paste", "--as", "png"),
            *((4, "in time", *arguments, "--timeout", "0.001") for arguments in (["paste"], ["paste", "--types"], ["copy", "a"])),
            (1, "needs -o", "paste", "--as", "rtfd"),
            (1, "--as", "paste", "--as", "pdf"),
            (1, "does nothing", "paste", "--types", "-o", "x"),
            (1, "does nothing", "paste", "--types", "--as", "text"),
            (1, "does nothing", "paste", "--pretty"),
            (1, "does nothing", "paste", "--plist"),
            (1, "does nothing", "copy", "--wait", "3", "text"),
            (1, "does nothing", "copy", "--no-start", "--url", "http://a/"),
            (1, "one of", "copy", "text", "--url", "http://a/"),
            (1, "one of", "copy", "--html", "a.html", "--rtf", "a.rtf"),
            (1, "does nothing", "copy", "--title", "t"),
            (1, "no absolute URL", "copy", "--url", "a b"),
            (7, "missing: there is no such file", "copy", "--file", "missing"),
            (7, "missing: there is no such file", "copy", "--html", "missing"),
            (7, "missing: there is no such file", "copy", "--rtf", "missing"),
            (7, "missing: there is no such file", "copy", "--image", "missing"),
            (8, "text.txt", "copy", "--image", "text.txt"),
            (2, "No helper is registered", "copy", "--no-start", "--html", "text.txt"),
            (3, "empty.html: the file is empty", "copy", "--html", "empty.html"),
            (3, "standard input: is no RTF", "copy", "--rtf", "-"),
        ]
        for code, message, *arguments in cases:
            with self.subTest(arguments):
                self.assert_fails(code, message, *arguments, stdin=subprocess.DEVNULL)
        self.assertEqual(self.answer("paste", "--types"), kept, "what fails leaves the clipboard alone")
        self.assertFalse(list(pathlib.Path(self.folder).glob("out.*")))
        for name, why in (("", "DISPLAY"), (":12345", "")):
            self.environment["DISPLAY"] = name
            for arguments in (("paste",), ("paste", "--types"), ("copy", "x"), ("copy", "--image", "a.png")):
                self.assert_fails(3, why, *arguments)

    def test_a_server_that_refuses_the_user(self):
        def refuse(server):
            with server.accept()[0] as connection:
                connection.recv(4096)
                connection.sendall(struct.pack("<BBHHH8s", 0, 8, 11, 0, 2, b"go away\n"))

        self.environment["DISPLAY"] = os.path.join(self.folder, "server")
        with socket.socket(socket.AF_UNIX) as server:
            server.bind(self.environment["DISPLAY"])
            server.listen()
            threading.Thread(target=refuse, args=(server,), daemon=True).start()
            error = self.run_command("paste").stderr
        self.assertRegex(error, rb"^quiverleaf: the clipboard: the X server .* refuses this user\n$")


if __name__ == "__main__":
    unittest.main()
