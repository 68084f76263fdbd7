# SPDX-License-Identifier: Apache-2.0
"""Feeds whose items have any fields."""

import json

from makers.chance import chance, pick, several, words
from makers.strings import whole_date

FIELDS = [
    ("description", ""), ("summary", " type='html'"), ("content", " type='xhtml'"), ("content:encoded", ""), ("author", ""), ("dc:creator", ""),
    ("category", ""), ("category", " term='t' label='l'"), ("guid", " isPermaLink='false'"), ("id", ""), ("updated", ""), ("comments", ""),
    ("enclosure", " url='http://h.example/e.mp3' length='9' type='audio/mpeg'"), ("link", " rel='alternate' href='/alt'"), ("tags", ""),
    ("link", " rel='enclosure' href='e.png' type='image/png'"), ("itunes:image", " href='i.png'"), ("source", " url='s'"), ("dc:subject", ""),
    ("media:content", " url='m.jpg' medium='image'"),
]  # fmt: skip
STARTS = ["<rss version='2.0'><channel>", "<feed xmlns='http://www.w3.org/2005/Atom'>", "<rdf:RDF>", "<?xml version='1.0'?><rss><channel>"]
TEXTS = ["&lt;p&gt;x&amp;amp;y", "<div xmlns='http://www.w3.org/1999/xhtml'><p>a <b>b</b><br/><a href='/c'>c</a></p></div>", "a &lt; b &amp; c", "",
         "&lt;script&gt;x&lt;/script&gt;&lt;img src='i.png' onerror='x'&gt;", "<b>a</b> b", "a <title>b</title> <link>c</link> d", "<![CDATA[a < b]]>", "2004-09-20T10:30:00Z"]  # fmt: skip
JSON_FIELDS = """id url title content_html content_text summary image banner_image author authors tags language external_url
attachments""".split()


def item():
    kind = pick(["item", "item", "entry"])
    made = f"<{kind}><title>{words(3)}</title><link>http://h.example/{pick('abc')}</link><pubDate>{whole_date()}</pubDate>"
    for name, attributes in several(FIELDS, 5):
        text = pick([words(), f"<![CDATA[<b>{words()}</b>]]>", pick(TEXTS)])
        made += f"<{name}{attributes}>{text}</{name}>"
    return f"{made}</{kind}>"


def feed():
    made = f"{pick(STARTS)}<title>{words(3)}</title><link href='http://h.example/' rel='{pick(['alternate', 'self'])}'/><language>de</language>"
    return made + "".join(item() for _ in range(4))


def json_item():
    made = {"date_published": "2005-03-04T05:06:07Z"}
    for field in several(JSON_FIELDS, 7):
        made[field] = pick([words(), [words(1)], 3, None, {"name": words(1)}]) if chance(0.3) else words(2)
    return made


def json_feed():
    made = {"version": "https://jsonfeed.org/version/1.1", "title": words(2), "home_page_url": "http://h.example/", "icon": "i.png"}
    return json.dumps({**made, "items": [json_item() for _ in range(3)]}, ensure_ascii=False)
