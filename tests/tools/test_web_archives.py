#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Web archives made and read by the quiverleaf command."""

import os
import plistlib
import resource
import unittest

from command import CommandTestCase

PAGE = """<!DOCTYPE html><title>Page</title><link rel="alternate STYLESHEET" href="css/b.css"><link rel=next href=next.html>
<style>/* url(no.png) */ @import 'css/c.css'; p { background: url( "sub dir/e.png" ) }</style>
<body background=d.gif style="background:url(&quot;d.gif&quot;)">Gr\u00fc\u00dfe<a href=other.html>no</a>
<img src=sub%20dir/e.png#x srcset="f.png 1x, g.jpg, http://example.org/h.png 2x"><img src="data:image/gif;base64,R0">
<picture><source srcset="caf\u00e9.webp 100w"></picture><input type=IMAGE src=what%3Fnow.png><video poster=poster.avif></video>
<iframe name="a &amp; b" src=frame.html></iframe><iframe src=page.html></iframe><script src=code.js></script>
<svg><image href=badge.png /></svg></td background=code.js><!-- style="background:url(code.js)" --><link rel="shortcut ICON" href=icon.ico>"""
FILES = {
    "badge.png": "image b",
    "icon.ico": "image i",
    "css/b.css": '@charset "utf-8"; @import "c.css"; @import URL(missing.css) screen; p { background: url(../d.gif) }',
    "css/c.css": '@import "b.css"; @font-face { src: url(f.woff2) format("woff2") } p::before { content: "i.png" }',
    "css/f.woff2": "font",
    "sub dir/e.png": "image e",
    "caf\u00e9.webp": "image w",
    "d.gif": "image d",
    "f.png": "image f",
    "what?now.png": "image q",
    "poster.avif": "image p",
    "frame.html": "<base href=css/><p>In the frame<img src=../d.gif><iframe src=../inner.xhtml></iframe>",
    "inner.xhtml": "<p>inside",
    "code.js": "code",
}


def names(archive, folder):
    """What an archive holds, by the paths of its resources."""

    def name(resource):
        return resource["WebResourceURL"].removeprefix(f"file://{folder}/")

    resources = sorted(name(resource) for resource in archive.get("WebSubresources", ()))
    frames = [names(frame, folder) for frame in archive.get("WebSubframeArchives", ())]
    return name(archive["WebMainResource"]), resources, frames


class WebArchiveTest(CommandTestCase):
    def setUp(self):
        super().setUp()
        for name, content in FILES.items():
            (self.folder / name).parent.mkdir(exist_ok=True)
            self.file(name, content.encode())
        self.file("page.html", PAGE.encode())

    def create(self, page, *missing):
        """The archive of a page, which tells what is missing in it, and why."""
        done = self.run_command("webarchive", "--create", page, "-o", "out.webarchive")
        self.assertEqual((done.returncode, done.stdout), (0, b""), done.stderr)
        lines = sorted(line.removeprefix("quiverleaf: ") for line in done.stderr.decode().splitlines())
        self.assertEqual(lines, sorted(missing))
        return plistlib.loads((self.folder / "out.webarchive").read_bytes())

    def test_a_page_is_collected_with_all_that_it_shows(self):
        gone = (f"{name}: there is no such file" for name in ("g.jpg", "missing.css"))
        archive = self.create("page.html", *gone, "http://example.org/h.png: the file is not on this machine", "page.html: is a frame of itself")
        inner = ("inner.xhtml", [], [])
        resources = ["badge.png", "caf%C3%A9.webp", "css/b.css", "css/c.css", "css/f.woff2", "d.gif", "f.png", "icon.ico", "poster.avif", "sub%20dir/e.png", "what%3Fnow.png"]
        self.assertEqual(names(archive, self.folder), ("page.html", resources, [("frame.html", ["d.gif"], [inner])]))
        main, frame = archive["WebMainResource"], archive["WebSubframeArchives"][0]["WebMainResource"]
        self.assertEqual((main["WebResourceData"].decode(), main["WebResourceTextEncodingName"]), (PAGE, "UTF-8"))
        self.assertEqual(frame["WebResourceFrameName"], "a & b")
        image = next(r for r in archive["WebSubresources"] if r["WebResourceURL"].endswith("e.png"))
        self.assertEqual((image["WebResourceData"], image["WebResourceMIMEType"]), (b"image e", "image/png"))

        answer = self.answer("webarchive", "out.webarchive")
        self.assertEqual(answer["URL"], f"file://{self.folder}/page.html")
        self.assertEqual(answer["Source"], PAGE)
        self.assertEqual([line.strip() for line in answer["String"].split("\n") if line], ["Gr\u00fc\u00dfeno", "In the frame", "inside"])

    def test_pictures_stand_in_many_places(self):
        for number in range(13):
            self.file(f"{number}.png", b"image")
        self.file("odd.css", b'@import screen "no.css"; p { content: "no.png"; background: URL( "12.png" ) }')
        page = ("<table background=0.png><tr background=1.png><td background=2.png><th background=3.png><p background=no.png>"
                "<img src=4.png style='background:url(5.png)'><img srcset=' ,6.png, 7.png 2x,8.png 3x , ,9.png'>"
                "<input type=text src=no.png><source src=no.png srcset=10.png><STYLE>p { background: url('11.png') }</STYLE>"
                "<link rel=sheet href=no.css><link rel='x&#9;StyleSheet' href=odd.css><link rel='x\tstylesheet' href=odd.css>"
                "<a href=no.png><img src='#no.png'><img src=about:blank><img src=blob:x><img src=cid:x><iframe src=javascript:x></iframe>")
        self.file("pictures.html", page.encode())
        archive = self.create("pictures.html")
        self.assertEqual(names(archive, self.folder), ("pictures.html", sorted([*(f"{number}.png" for number in range(13)), "odd.css"]), []))

    def test_files_are_known_by_their_extensions(self):
        types = {"png": "image/png", "apng": "image/apng", "jpg": "image/jpeg", "JPEG": "image/jpeg", "gif": "image/gif",
                 "webp": "image/webp", "avif": "image/avif", "svg": "image/svg+xml", "bmp": "image/bmp",
                 "ico": "image/vnd.microsoft.icon", "tif": "image/tiff", "tiff": "image/tiff", "heic": "image/heic",
                 "woff": "font/woff", "woff2": "font/woff2", "ttf": "font/ttf", "otf": "font/otf",
                 "css": "text/css", "css?v=2": "text/css", "html": "text/html", "htm": "text/html",
                 "xht": "application/xhtml+xml", "xhtml": "application/xhtml+xml"}
        page = ""
        for extension, kind in types.items():
            self.file(f"a.{extension}", b"")
            form = "<link rel=stylesheet href={}>" if kind == "text/css" else "<img src={}>" if "html" not in kind else "<iframe src={}></iframe>"
            page += form.format(f"a.{extension}".replace("?", "%3F"))
        self.file("types.html", page.encode())
        archive = self.create("types.html")
        resources = [*archive["WebSubresources"], *(frame["WebMainResource"] for frame in archive["WebSubframeArchives"])]
        found = {resource["WebResourceURL"].rpartition("/a.")[2].replace("%3F", "?"): resource["WebResourceMIMEType"] for resource in resources}
        self.assertEqual(found, types)

    def test_nothing_but_what_pages_show_leaves_the_machine(self):
        self.file("secret", b"secret")
        self.file("secret.txt", b"secret")
        frames = f"<iframe src=secret.txt></iframe><link rel=stylesheet href=secret><img src=secret.txt><img src=file://host/d.gif><img src=x:{self.folder}/d.gif><img src=http://x:y/>"
        self.file("curious.html", frames.encode())
        odd = (f"{name}: the file has not the name of what the page wants" for name in ("secret.txt", "secret", "secret.txt"))
        far = (f"{name}: the file is not on this machine" for name in ("file://host/d.gif", f"x:{self.folder}/d.gif"))
        archive = self.create("curious.html", *odd, *far, "http://x:y/: is no URL")
        self.assertEqual(names(archive, self.folder), ("curious.html", [], []))

    def test_frames_that_show_each_other_end(self):
        self.file("a.html", b"<iframe src=b.html></iframe>" * 3)
        self.file("b.html", b"<iframe src=a.html></iframe>")
        archive = self.create("a.html", *["a.html: is a frame of itself"] * 3)
        self.assertEqual(names(archive, self.folder), ("a.html", [], [("b.html", [], [])] * 3))
        for number in range(70):
            self.file(f"{number}.html", f"<iframe src={number + 1}.html></iframe>".encode())
        self.create("0.html", "64.html: is nested too deeply")

    def test_what_goes_wrong(self):
        self.assert_fails(7, "no such file", "webarchive", "--create", "missing.html", "-o", "out")
        for place, reason in (("no folder/out", "No such file"), ("frame.html/out", "Not a dir"), ("/dev/full", "No space")):
            self.assert_fails(6, f"{place}: it cannot be written: {reason}", "webarchive", "--create", "frame.html", "-o", place)
        kept = os.listdir(self.folder)
        limited = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (9, 9))}
        self.assert_fails(6, "out: it cannot be written: File too large", "webarchive", "--create", "frame.html", "-o", "out", **limited)
        self.assertEqual(os.listdir(self.folder), kept)
        self.assert_fails(1, "go together", "webarchive", "--create", "page.html")
        self.assert_fails(1, "go together", "webarchive", "page.html", "-o", "out")
        self.assert_fails(3, "no web archive", "webarchive", "page.html")
        self.assert_fails(7, "no such file", "webarchive", "missing.webarchive")


if __name__ == "__main__":
    unittest.main()
