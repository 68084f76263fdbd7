# SPDX-License-Identifier: Apache-2.0
"""Pages in which any element stands in any other."""

from makers.chance import chance, number, pick, several, words
from makers.styles import BLOCK, COLORS, INLINE, declarations, rule

INSIDE = {"ul": ["li"], "ol": ["li", "li", "ul"], "menu": ["li"], "dir": ["li"], "dl": ["dt", "dd", "dd"], "ruby": ["rb", "rt", "rp"],
          "table": ["tr", "tr", "tbody", "thead", "tfoot", "caption", "colgroup", "td"], "tbody": ["tr"], "thead": ["tr"],
          "tfoot": ["tr"], "tr": ["td", "td", "th"], "colgroup": ["col"], "details": ["summary", "p"], "fieldset": ["legend", "input"],
          "form": ["select", "p", "input"], "select": ["option", "optgroup"], "optgroup": ["option"], "figure": ["img", "figcaption"]}
VOID = "br hr img input col wbr embed".split()
ODD = ("svg math mi mo mtext foreignObject desc title noscript noembed noframes template textarea button frameset frame body html head "
       "plaintext xmp listing marquee object applet iframe option rtc h2 nextid isindex keygen source image").split()
NUMBERS = "0 1 2 3 5 7 -1 +4 10 12 50% 150% 2.5 x 1e1 65535".split()
ATTRIBUTES = {
    "align": "left right center justify char middle".split(), "valign": "top bottom middle baseline".split(), "dir": "rtl ltr auto x".split(),
    "bgcolor": COLORS, "color": COLORS, "text": COLORS, "width": NUMBERS, "height": NUMBERS, "border": NUMBERS, "size": NUMBERS, "start": NUMBERS,
    "value": [*NUMBERS, "go"], "colspan": NUMBERS, "rowspan": NUMBERS, "cellpadding": NUMBERS, "cellspacing": NUMBERS, "hspace": NUMBERS,
    "type": "a A i I 1 disc square hidden text submit radio password image checkbox button".split(), "href": "a.html#b http://h.example/?a&amp;b=c //h/x mailto:a@b.c "
    "javascript:x ../up #f".split(), "src": "a.png data:text/plain,x b.gif?c".split(), "alt": "alternative_text - A".split(), "title": "a_title Ti".split(),
    "name": "n description keywords author".split(), "id": "a b c".split(), "class": "a b c a_b".split(), "lang": "de en-GB ja".split(), "face": "Arial courier,serif".split(),
    "hidden": [""], "nowrap": [""], "noshade": [""], "checked": [""], "selected": [""], "disabled": [""], "reversed": [""], "open": [""], "multiple": [""],
    "rules": "all rows cols groups none".split(), "frame": "box void above".split(), "background": ["a.png"], "rel": "nofollow alternate stylesheet icon".split(),
    "content": ["a,b", "2006-12-24"], "label": ["labelled"], "placeholder": ["type_here"], "span": NUMBERS,
}


def attributes(least=0):
    made = ""
    for name in several(ATTRIBUTES, number(least, 3)):
        value = pick(ATTRIBUTES[name]).replace("_", " ")
        made += " " + (name.upper() if chance(0.1) else name) + (pick(["='{}'", '="{}"', "={}", " = '{}'"]).format(value) if value else "")
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
    head = "".join(f"<{pick(['meta', 'link', 'base'])}{attributes(2)}>" for _ in range(number(0, 3)))
    sheet = "".join(rule() for _ in range(number(0, 7)))
    made = pick(["<!DOCTYPE html>", "<!DOCTYPE HTML PUBLIC '-//W3C//DTD HTML 3.2//EN'>", ""]) + pick(["<html>", ""])
    made += f"<meta charset=utf-8><title>{words(3)}</title>{head}<style>{sheet}</style>{pick(['', '<body' + attributes(1) + '>'])}"
    for _ in range(number(3, 7)):
        made += element(pick(BLOCK), number(1, 4)) + pick(["", "\n", words(), "<!-- c -->", "<![CDATA[d]]>", "<?p?>", "</p>", "<!-->"])
    return made
