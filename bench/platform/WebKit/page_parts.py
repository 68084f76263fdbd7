# SPDX-License-Identifier: Apache-2.0
"""What made pages are put together of."""

import random

DOCTYPE = "<!DOCTYPE html><meta charset=utf-8>"
WORDS = "stone river amber quiet lantern meadow copper winter signal harbour velvet thistle cinder orchard marble hollow".split()


def text(seed, count=8):
    return " ".join(random.Random(seed).choices(WORDS, k=count))


def page(css, body, doctype=DOCTYPE, head=""):
    return f"{doctype}<title>Made</title>{head}<style>{css}</style><body>{body}"


def paragraphs(attributes, start=0):
    return "".join(f"<p {a}>{text(start + i)}</p>\n" for i, a in enumerate(attributes))


def each(template, values):
    return "".join(template.format(v=v, t=text(str(v), 4)) for v in values)
