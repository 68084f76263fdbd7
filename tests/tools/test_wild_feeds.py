#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Feeds in the shapes that writers give them: each format with each way to write a text and each encoding, and damage."""

import codecs
import html
import unittest
from xml.sax.saxutils import escape

from command import CommandTestCase

TITLE = "Caf\u00e9 & \u201cCo\u201d"
BODY = '<p>Vor & \u00e4fter: <a href="http://h.example/?a=1&amp;b=2">link</a> &lt;tag&gt;</p>'
DATE = "2006-12-24T18:30:00Z"
RFC_DATE = "Sun, 24 Dec 2006 18:30:00 GMT"
DC = 'xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:content="http://purl.org/rss/1.0/modules/content/"'
RDF = 'xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"'
ATOM = 'xmlns="http://www.w3.org/2005/Atom"'

# What stands for TITLE and for BODY between the tags, by how it is written.
WRITINGS = {
    "escaped": escape,
    "in a section": lambda text: f"<![CDATA[{text}]]>",
    "in a section with white space": lambda text: f"\n  <![CDATA[\n{text}  ]]>\n",
    "in two sections": lambda text: f"<![CDATA[{text[:7]}]]><![CDATA[{text[7:]}]]>",
    "half in a section": lambda text: f"{escape(text[:7])}<![CDATA[{text[7:]}]]>",
    "as decimal numbers": lambda text: "".join(f"&#{ord(c)};" for c in text),
    "as hexadecimal numbers": lambda text: "".join(c if c.isalnum() and c.isascii() else f"&#x{ord(c):X};" for c in text),
    "with names of HTML": lambda text: html.escape(text).replace("\u00e9", "&eacute;").replace("\u00e4", "&auml;"),
}

# The frame of a feed, and its item.
FORMATS = {
    "RSS 0.91": ('<!DOCTYPE rss PUBLIC "-//N//DTD RSS 0.91//EN" "rss-0.91.dtd"><rss version="0.91"><channel><title>C</title>'
                 "<image><title>I</title><link>i</link></image>{}</channel></rss>",
                 "<item><title>{title}</title><link>http://h.example/1</link><description>{body}</description></item>"),
    "RSS 2.0": ('<rss version="2.0" ' + DC + "><channel><title>C</title><link>http://h.example/</link>{}</channel></rss>",
                "<item><title>{title}</title><link>\n http://h.example/1\n</link><guid>g</guid><description>short</description>"
                "<content:encoded>{body}</content:encoded><pubDate>" + RFC_DATE + "</pubDate></item>"),
    "RSS 2.0 in capitals": ("<RSS VERSION='2.0'><CHANNEL><TITLE>C</TITLE>{}</CHANNEL></RSS>",
                            "<ITEM><TITLE>{title}</TITLE><GUID>http://h.example/1</GUID><DESCRIPTION>{body}</DESCRIPTION>"
                            "<PUBDATE>" + RFC_DATE + "</PUBDATE></ITEM>"),
    "RSS 1.0": ("<rdf:RDF " + RDF + ' xmlns="http://purl.org/rss/1.0/" ' + DC + "><channel rdf:about='c'><title>C</title>"
                "<items><rdf:Seq><rdf:li resource='i'/></rdf:Seq></items></channel>{}</rdf:RDF>",
                "<item rdf:about='i'><title>{title}</title><link>http://h.example/1</link><description>{body}</description>"
                "<dc:date>" + DATE + "</dc:date></item>"),
    "RSS 1.0 under a prefix": ("<r:RDF " + RDF.replace(":rdf", ":r") + ' xmlns:s="http://purl.org/rss/1.0/">{}</r:RDF>',
                               "<s:item><s:title>{title}</s:title><s:link>http://h.example/1</s:link><s:description>{body}"
                               "</s:description></s:item>"),
    "Atom 0.3": ('<feed version="0.3" xmlns="http://purl.org/atom/ns#"><title>C</title>{}</feed>',
                 '<entry><title mode="escaped" type="text/html">{title}</title><link rel="service.edit" href="e"/>'
                 '<link rel="alternate" type="text/html" href="http://h.example/1"/><issued>' + DATE + "</issued>"
                 '<content type="text/html" mode="escaped">{body}</content></entry>'),
    "Atom 1.0": ("<feed " + ATOM + "><title>C</title><author><name>N</name></author>{}</feed>",
                 '<entry><link rel="self" href="s"/><link rel="replies" href="r"/><link href="http://h.example/1"/>'
                 "<author><name>M</name></author><source><title>S</title></source><title>{title}</title><updated>"
                 + DATE + '</updated><content type="html">{body}</content></entry>'),
    "Atom 1.0 under a prefix": ("<a:feed " + ATOM.replace("xmlns", "xmlns:a") + ">{}</a:feed>",
                                "<a:entry><a:title>{title}</a:title><a:link href='http://h.example/1'/><a:summary type='html'>"
                                "{body}</a:summary></a:entry>"),
}

# Python's name, what the declaration says, and what stands in front of it.
ENCODINGS = [("utf-8", "utf-8", b""), ("utf-8", None, b""), ("utf-8", "iso-8859-1", codecs.BOM_UTF8),
             ("utf-16-le", "utf-16", codecs.BOM_UTF16_LE), ("utf-16-be", None, codecs.BOM_UTF16_BE),
             ("cp1252", "windows-1252", b""), ("latin-1", "iso-8859-1", b""), ("mac-roman", "macintosh", b"")]


class WildFeedsTest(CommandTestCase):
    def items(self, text, encoding=ENCODINGS[0]):
        name, declared, mark = encoding
        declaration = f'<?xml version="1.0" encoding="{declared}"?>\n' if declared else ""
        return self.answer("feed", "-", input=mark + (declaration + text).encode(name, "xmlcharrefreplace"))

    def test_each_format_with_each_writing(self):
        for (name, (frame, item)), (how, write) in ((f, w) for f in FORMATS.items() for w in WRITINGS.items()):
            with self.subTest(format=name, writing=how):
                feed = frame.format(item.format(title=write(TITLE), body=write(BODY)) * 2)
                first, second = self.items(feed)
                self.assertEqual(first["title"], TITLE)
                self.assertEqual(first["content"] or first["description"], BODY)
                self.assertEqual(first["link"], "http://h.example/1")
                if first["date"]:
                    self.assertEqual(first["calendarDate"], DATE)
                self.assertEqual((second["title"], second["link"]), (first["title"], first["link"]))

    def test_each_encoding(self):
        frame, item = FORMATS["RSS 2.0"]
        for encoding in ENCODINGS:
            with self.subTest(encoding=encoding):
                (one,) = self.items(frame.format(item.format(title=escape(TITLE), body=escape(BODY))), encoding)
                self.assertEqual((one["title"], one["content"]), (TITLE, BODY))

    def test_damage(self):
        good = "<item><title>t</title><link>l</link><description>d</description></item>"
        for damaged in ("\n\n<!-- a > b -->" + "<rss>" + good, "<rss>" + good[:-7], "<rss>" + good.replace("</title>", ""),
                        "<rss>" + good.replace("</link>", ""), "<rss><item>" + good, "<rss><channel>" + good + "</rss>",
                        "<rss><channel><title>c" + good + "</channel>", "<rss><feed>" + good + "</feed>",
                        "<rss>\0" + good + "</rss></rss>", "garbage & <x> <rss>" + good,
                        "<rss>" + good.replace("d<", "d &nosuch; & <"), "<rss>" + good.replace("<item>", "<item a=b c>"),
                        "<rss>" + good.replace("<title>", "<Title\n>"), "<rss>" + good.replace("t<", "t<!-- --><")):
            with self.subTest(feed=damaged):
                item = self.items(damaged)[-1]
                self.assertEqual((item["title"][0], item["link"], item["description"][0]), ("t", "l", "d"))


if __name__ == "__main__":
    unittest.main()
