# SPDX-License-Identifier: Apache-2.0
"""Pages in which any element stands in any other. In the lists of values "_" stands for a blank."""

from makers.chance import chance, number, pick, several, words
from makers.styles import BLOCK, COLORS, INLINE, declarations, rule

INSIDE = {
    "ul": ["li"], "ol": ["li", "li", "ul"], "menu": ["li"], "dir": ["li"], "dl": ["dt", "dd", "dd"], "ruby": ["rb", "rt", "rp"],
    "table": ["tr", "tr", "tbody", "thead", "tfoot", "caption", "colgroup", "td"], "tbody": ["tr"], "thead": ["tr"], "tfoot": ["tr"],
    "tr": ["td", "td", "th"], "colgroup": ["col"], "details": ["summary", "p"], "fieldset": ["legend", "input"],
    "form": ["select", "p", "input"], "select": ["option", "optgroup"], "optgroup": ["option"], "figure": ["img", "figcaption"],
}  # fmt: skip
VOID = "br hr img input col wbr embed".split()
ODD = """svg math mi mo mtext foreignObject desc title noscript noembed noframes template textarea button frameset frame body html head
plaintext xmp listing marquee object applet iframe option rtc h2 nextid isindex keygen source image""".split()

NUMBERS = "0 1 2 3 5 7 -1 +4 10 12 50% 150% 2.5 x 1e1 65535"
ATTRIBUTES = {
    "align": "left right center justify char middle",
    "valign": "top bottom middle baseline",
    "dir": "rtl ltr auto x",
    "type": "a A i I 1 disc square hidden text submit radio password image checkbox button",
    "href": "a.html#b http://h.example/?a&amp;b=c //h/x mailto:a@b.c javascript:x ../up #f",
    "src": "a.png data:text/plain,x b.gif?c",
    "alt": "alternative_text - A",
    "title": "a_title Ti",
    "name": "n description keywords author",
    "id": "a b c",
    "class": "a b c a_b",
    "lang": "de en-GB ja",
    "face": "Arial courier,serif",
    "rules": "all rows cols groups none",
    "frame": "box void above",
    "background": "a.png",
    "rel": "nofollow alternate stylesheet icon",
    "content": "a,b 2006-12-24",
    "label": "labelled",
    "placeholder": "type_here",
    "value": NUMBERS + " go",
    **dict.fromkeys("width height border size start colspan rowspan cellpadding cellspacing hspace span".split(), NUMBERS),
    **dict.fromkeys("bgcolor color text".split(), COLORS),
}
FLAGS = "hidden nowrap noshade checked selected disabled reversed open multiple".split()


def attributes(least=0):
    made = ""
    for name in several([*ATTRIBUTES, *FLAGS], number(least, 3)):
        made += f" {name.upper() if chance(0.1) else name}"
        if name in ATTRIBUTES:
            made += pick(["='{}'", '="{}"', "={}", " = '{}'"]).format(pick(ATTRIBUTES[name].split()).replace("_", " "))
    return made + (f' style="{declarations()}"' if chance(0.3) else "")


def element(name, depth):
    if chance(0.04):
        name = pick(ODD)
    if name in VOID:
        return f"<{name}{attributes(1)}{pick(['', '/', ' /'])}>"
    made = f"<{name}{attributes()}>"
    if name in INSIDE and depth:
        made += "".join(element(pick(INSIDE[name]), depth - 1) for _ in range(number(1, 4)))
    elif depth:
        for _ in range(number(1, 3)):
            made += words() if chance(0.5) else element(pick(pick([INLINE, INLINE, BLOCK, VOID])), depth - 1)
    else:
        made += words()
    return made + ("" if chance(0.12) else f"</{pick(INLINE) if chance(0.04) else name}>")


def page():
    made = pick(["<!DOCTYPE html>", "<!DOCTYPE HTML PUBLIC '-//W3C//DTD HTML 3.2//EN'>", ""]) + pick(["<html>", ""])
    made += f"<meta charset=utf-8><title>{words(3)}</title>"
    made += "".join(f"<{pick(['meta', 'link', 'base'])}{attributes(2)}>" for _ in range(number(0, 3)))
    made += "<style>" + "".join(rule() for _ in range(number(0, 7))) + "</style>" + pick(["", f"<body{attributes(1)}>"])
    for _ in range(number(3, 7)):
        made += element(pick(BLOCK), number(1, 4)) + pick(["", "\n", words(), "<!-- c -->", "<![CDATA[d]]>", "<?p?>", "</p>", "<!-->"])
    return made
