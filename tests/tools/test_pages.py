#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""What the quiverleaf command tells of pages as they are found: in many encodings, declared, undeclared and wrongly declared, and
broken in many ways."""

import itertools
import unittest

from command import CommandTestCase

# The encoding, how the page declares it ("" where it does not), and words that it can hold.
ENCODINGS = [
    ("utf-8", "utf-8", "Zo\u00eb \u65e5\u672c"),
    ("utf-8", "", "\u65e5\u672c\u8a9e \u20ac"),
    ("utf-8-sig", "utf-8", "caf\u00e9 \u4e2d"),
    ("utf-16", "", "na\u00efve \u0416"),
    ("windows-1252", "windows-1252", "caf\u00e9 \u201cq\u201d \u20ac"),
    ("iso-8859-2", "ISO-8859-2", "\u017d\u00e1dost"),
    ("shift_jis", "Shift_JIS", "\u65e5\u672c\u8a9e"),
    ("koi8-r", "koi8-r", "\u041f\u0440\u0438\u0432\u0435\u0442"),
]

# Each says the same of itself, however it does: "W" stands for words in the page's encoding.
SHAPES = {
    "plain": "<!DOCTYPE html><html><head>{meta}<title>W</title><meta name='description' content='a W'>"
             "<base href='http://e.org/d/'></head><body><a href='a b?c=1&amp;d=2'>W</a><img src='i.png'></body></html>",
    "capitals without quotes and ends": "<HTML><HEAD>{meta}<TITLE>W</TITLE><META CONTENT='a W' NAME=Description>"
             "<BASE HREF=http://e.org/d/><BODY><A HREF=a%20b?c=1&d=2>W<IMG SRC=i.png>",
    "as XML": "<?xml version='1.0'?>\n<html xmlns='http://www.w3.org/1999/xhtml'><head>{meta}<title>W</title>"
              "<meta name=\"description\" content=\"a W\" />\n<base href=\"http://e.org/d/\" /></head><body>"
              "<p><a href=\"a b?c=1&amp;d=2\">W</a><img src=\"i.png\" /></p></body></html>",
    "without head and body": "{meta}<title>W</title><meta name=description content='a W'><base href='http://e.org/d/'>"
                             "<a href='a b?c=1&d=2'>W</a><img src=i.png>",
    "line breaks in tags and values": "<head>{meta}<title>W</title\n>\n<meta\n name = 'description'\n content\n=\n'a W\n'\n>"
                                      "<base\thref='\nhttp://e.org/d/\n'><body><a\n\nhref='\n a b?c=1&amp;\nd=2 '\n>W</a\n><img\rsrc='i.png'>",
    "scripts and comments with markup": "<head>{meta}<script>document.write('<title>no</title><a href=no>');</script>"
                                        "<!-- <title>no</title> <base href=http://no.org/> --><title>W</title>"
                                        "<style>a:after {{ content: '<a href=no>' }}</style><meta name=description content='a W'>"
                                        "<base href=http://e.org/d/><body><![CDATA[<a href=no>]]><a href='a b?c=1&amp;d=2'>W</a>"
                                        "<!--[if IE]><a href=no><![endif]--><img src=i.png>",
    "broken tags": "<head>{meta}<title>W</title><meta name=description content='a W'' foo><base href='http://e.org/d/'' >"
                   "</head></head><body><<b>><a href='a b?c=1&amp;d=2' title=it's>W</b></a></a><img alt=\"a > b\" src=i.png/ ><a hre",
    "other tags of the same kinds": "<head>{meta}<meta name=descriptions content=no><title>W</title><title>no</title>"
                                    "<meta property=og:description content=no><meta content='a W' name='DESCRIPTION'>"
                                    "<base target=_top><base href='http://e.org/d/'><body data-href=no><svg><title>no</title></svg>"
                                    "<a name=no>no</a><a href='a b?c=1&amp;d=2' data-href=no>W</a><img src=i.png data-src=no>",
}


class PagesTest(CommandTestCase):
    def test_many_names(self):
        # It takes minutes where each name is looked for among all others.
        page = "".join(f"<meta name=k{i} content={i}>" for i in range(200_000))
        names = self.answer("page", "-", input=page.encode())["MetaAttributes"]
        self.assertEqual(names, {f"k{i}": str(i) for i in range(200_000)})

    def test_shapes_in_all_encodings(self):
        for (encoding, declared, words), (shape, page) in itertools.product(ENCODINGS, SHAPES.items()):
            with self.subTest(encoding=encoding, shape=shape):
                meta = f"<meta http-equiv=content-type content='text/html; charset={declared}'>" if declared else ""
                data = page.format(meta=meta).replace("W", words).encode(encoding)
                facts = self.answer("page", "-", input=data)
                self.assertEqual((facts["Title"], facts["BaseURL"]), (words, "http://e.org/d/"))
                self.assertEqual((facts["Description"], facts["MetaAttributes"]["description"]), (f"a {words}", f"a {words}"))
                links = self.answer("links", "--details", "-", input=data)
                image = "i.png/" if shape == "broken tags" else "i.png"
                self.assertEqual([link["URL"] for link in links["Images"]], [image])
                self.assertEqual([(link["URL"], link["Text"]) for link in links["Links"]], [("a%20b?c=1&d=2", words)])

    def test_pages_with_little(self):
        nothing = {"Title": "", "NormalizedTitle": "", "Feed": False, "MetaAttributes": {}}
        for page in (b"", b"\0", b"<", b"<title>", b"<title></title>", b"text", b"<a href=", b"<!--", b"<body><title>a</title>",
                     b"\xff\xfe", b"<meta name=a>", b"<meta name=a content=>", b"</a>" * 9, b"<a href='x" * 9):
            with self.subTest(page):
                facts = self.answer("page", "-", input=page)
                self.assertEqual({**facts, "IndexedTitle": ""}, {**nothing, "IndexedTitle": ""})
                self.assertEqual(set(map(str, self.answer("links", "-", input=page).values())), {"[]"})


if __name__ == "__main__":
    unittest.main()
