#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Feeds by the quiverleaf command."""

import json
import os
import pathlib
import plistlib
import unittest
import xml.etree.ElementTree

from command import COMMAND, CommandTestCase

STYLE = pathlib.Path(COMMAND).parents[1] / "share" / "quiverleaf" / "feed.css"
FEED = (
    "<?xml version='1.0' encoding='iso-8859-1'?><rss><channel><title>Caf\u00e9 &amp;amp; B</title><link>http://h.example/</link>"
    "<item><title>a</title><link>/l</link><guid isPermaLink='false'>g</guid><pubDate>Sun, 24 Dec 2006 18:30:00 GMT</pubDate>"
    "<description>&lt;img src='i' onerror='x'&gt;</description></item><item><title>b</title></channel></rss>"
).encode("iso-8859-1")


class FeedTest(CommandTestCase):
    def setUp(self):
        super().setUp()
        self.file("feed.xml", FEED)

    def text(self, *arguments, **options):
        done = self.run_command("feed", *arguments, **options)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode()

    def test_items(self):
        items = self.answer("feed", "feed.xml", "--url", "www.h.example/f/feed.xml")
        self.assertEqual([item["title"] for item in items], ["a", "b"])
        date = "Sun, 24 Dec 2006 18:30:00 GMT"
        self.assertEqual(items[0], {"title": "a", "description": "<img src='i' onerror='x'>", "content": "", "author": "",
                                    "calendarDate": "2006-12-24T18:30:00Z", "date": date, "link": "http://www.h.example/l",
                                    "id": "g", "published": date})
        pretty = self.answer("feed", "-", "--pretty", input=FEED)
        self.assertEqual(pretty[0], {**items[0], "link": "/l"})
        done = self.run_command("feed", "feed.xml", "--plist")
        self.assertEqual(plistlib.loads(done.stdout)[0]["link"], "/l")
        self.assertEqual(self.answer("feed", "-", input=b"<feed/>"), [])
        # A byte order mark is believed, and not what the feed declares.
        marked = b"\xef\xbb\xbf" + FEED.replace(b"<title>a<", "<title>\u00e9".encode() + b"\xff<")
        self.assertEqual(self.answer("feed", "-", input=marked)[0]["title"], "\u00e9\ufffd")

    def test_other_formats(self):
        made = self.answer("feed", "feed.xml", "--json-feed")
        self.assertEqual((made["title"], made["home_page_url"]), ("Caf\u00e9 & B", "http://h.example/"))
        again = self.answer("feed", "-", "--json-feed", input=json.dumps(made).encode())
        self.assertEqual(again, made)
        odd = {"version": made["version"], "title": "", "items": [{"id": "\0\x01\b\f\x1f\x7f\"\\/\u2028\U0001f600", "content_text": ""}]}
        for options in ((), ("--pretty",)):
            text = self.text("-", "--json-feed", *options, input=json.dumps(odd).encode())
            self.assertEqual(text.encode(), json.dumps(json.loads(text), ensure_ascii=False, indent=2 if options else None,
                                                       separators=None if options else (",", ":")).encode() + b"\n")
            self.assertEqual(json.loads(text), odd)
        outline = xml.etree.ElementTree.fromstring(self.text("feed.xml", "--opml", "--url", "http://h.example/?a&b"))
        self.assertEqual(outline.find("body/outline").attrib["xmlUrl"], "http://h.example/?a&b")
        self.assertEqual(outline.find("head/title").text, "Caf\u00e9 & B")

    def test_pages(self):
        page = self.text("feed.xml", "--html")
        self.assertIn("<nobr>Caf\u00e9 &amp; B</nobr>", page)
        self.assertIn('<img src="http://h.example/i">', page)
        self.assertIn('<img src="http://other.example/i">', self.text("feed.xml", "--html", "--url", "http://other.example/f"))
        self_link = b"<link rel='self' xmlns='http://www.w3.org/2005/Atom' href='http://self.example/f'/><item>"
        self.assertIn('<img src="http://self.example/i">', self.text("-", "--html", input=FEED.replace(b"<item>", self_link, 1)))
        self.assertIn(f"<!--{STYLE.read_text()}-->", page)
        page = self.text("feed.xml", "--html", "--linked-style", "--as-given")
        self.assertIn("<img src='i' onerror='x'>", page)
        self.assertIn(f'href="{STYLE.as_uri()}"', page)
        defaults = self.file("defaults.plist", plistlib.dumps({"linkableFeedStyleSheet": str(self.folder / "own.css")}))
        self.file("own.css", b"p {}")
        page = self.text("feed.xml", "--html", environment={**self.environment, "QUIVERLEAF_DEFAULTS": os.fsdecode(defaults)})
        self.assertIn("<!--p {}-->", page)

    def test_failures(self):
        self.assert_fails(3, "is no feed", "feed", "-", input=b"<html><rss>")
        self.assert_fails(7, "missing.xml", "feed", "missing.xml")
        for options in (("--html", "--opml"), ("--html", "--json-feed"), ("--opml",), ("--as-given",), ("--linked-style", "--opml"), ("--url", "")):
            self.assert_fails(1, "", "feed", "feed.xml", *options)


if __name__ == "__main__":
    unittest.main()
