# SPDX-License-Identifier: Apache-2.0
"""Style sheets of declarations, some of them wrong."""

from makers.chance import chance, number, pick, several

INLINE = "a span b i u em strong font tt code small big sub sup s del ins q abbr cite kbd nobr bdo bdi label ruby".split()
BLOCK = "p div h1 h3 h6 pre blockquote center address section article ul ol dl form fieldset details table figure dir menu".split()
COLORS = "red #f80 #336699 #12345 chucknorris transparent lime rgb(1,2,3) rgba(10%,20%,30%,.4) hsl(120deg,100%,25%) hwb(90_10%_20%) \
lab(50%_40_-20) oklch(.6_.2_140) color-mix(in_srgb,red_20%,blue) currentcolor #0f08 inherit RebeccaPurple".split()
LENGTHS = "0 1px 3px 12pt 1em 2ex .5in 1cm 4mm 2pc 10% auto -5px calc(1em_+_2px) min(3px,1em) clamp(1px,2em,3pt) 1vw 0.5rem 7 medium thin".split()
LINES = "none solid dashed double dotted hidden ridge inset".split()
DISPLAYS = "block inline inline-block none list-item table table-row table-cell flex inline-flex grid contents flow-root ruby run-in".split()
BORDERS = [f"border{side}" for side in ("", "-top", "-left", "-block", "-inline-end")]
DECLARATIONS = {
    "display": DISPLAYS, "color": COLORS, "background-color": COLORS, "background": [*COLORS, "url(a.png)_#eee", "none"],
    "font-weight": "bold normal 300 bolder lighter 650 450".split(), "font-style": "italic oblique normal oblique_10deg".split(),
    "font-size": [*LENGTHS, "larger", "smaller", "x-large", "xx-small"], "font-family": "serif monospace 'A_B',sans-serif Courier Ä".split(),
    "font": "italic_bold_12px/2_serif 10pt_x small-caps_1em/normal_A,B caption bad".split(), "font-variant": "small-caps normal".split(),
    "letter-spacing": LENGTHS, "line-height": "1.5 normal 20px 150% 2em".split(), "text-align": "left right center justify start end -webkit-center".split(),
    "text-indent": LENGTHS, "text-transform": "uppercase lowercase capitalize full-width none".split(), "visibility": "hidden visible collapse".split(),
    "text-decoration": "underline line-through none underline_red_dotted overline_underline double".split(), "direction": "rtl ltr".split(),
    "white-space": "pre nowrap pre-wrap pre-line normal break-spaces".split(), "vertical-align": "sub super top middle 3px -20% baseline".split(),
    "list-style": "square none upper-roman inside_lower-alpha decimal-leading-zero '->' url(a.png)".split(), "float": "left right none".split(),
    "list-style-type": "disc circle lower-greek upper-latin armenian none '*_'".split(), "caption-side": "bottom top".split(),
    "margin": [*LENGTHS, "1px_2px", "1em_auto_3px", "1px_2px_3px_4px"], "padding": LENGTHS, "margin-left": LENGTHS, "padding-inline-start": LENGTHS,
    "border-width": LENGTHS, "border-style": LINES, "border-color": COLORS, "width": LENGTHS, "height": LENGTHS, "max-width": LENGTHS,
    "border-collapse": "collapse separate".split(), "border-spacing": LENGTHS, "empty-cells": "hide show".split(), "position": "absolute fixed static".split(),
    "counter-increment": "n n_2 list-item_3 m_-1_n".split(), "counter-reset": "n n_5 list-item".split(), "quotes": "'<'_'>' none auto".split(),
    "unicode-bidi": "isolate bidi-override plaintext embed".split(), "overflow": "hidden auto".split(), "opacity": "0 .5 1".split(),
    "all": "initial unset revert".split(), "tab-size": "2 8 10px".split(), "--x": "3px red {a:b}".split(), "clear": "both left".split(),
    "content": "'c' counter(n) attr(title) open-quote none counters(n,'.',upper-roman) '\\41'".split(), "widows": ["2"],
    **{border: [f"{a}_{b}_{c}" for a in ("1px", "3pt", "thick") for b in LINES for c in ("red", "blue")] for border in BORDERS},
}
PSEUDOS = ":first-child :last-child :nth-child(2n+1) :nth-of-type(-n+3) :not(.a) :is(p,.b) :where(td) :empty :link :hover :only-child :has(b) :lang(de) \
:nth-last-child(odd) :root :checked :disabled :any-link :dir(rtl)".split()
MEDIA = ["screen", "print", "all and (min-width:100px)", "not print", "(max-width:10px)", "(width>=300px)", "(color)", "only screen and (orientation:portrait),tv"]


def declarations(most=4):
    made = []
    for name in several(DECLARATIONS, number(1, most)):
        made.append(f"{name}:{pick(DECLARATIONS[name]).replace('_', ' ')}" + ("!important" if chance(0.06) else ""))
    if chance(0.08):
        made.insert(number(0, len(made) - 1), pick(["foo", "color", "{a}", "color:var(--x)", "margin:1px 2px 3px 4px 5px", "width:calc(1px*)", "/**/"]))
    return ";".join(made)


def selector():
    simple = lambda: pick([pick(BLOCK), pick(INLINE), "." + pick("abc"), "#" + pick("abc"), "*", "td", "li", "[title]", "[href^=http]", "[class~=a i]", ""])
    compound = lambda: (simple() + pick([pick(PSEUDOS), "", "", ""])) or "p"
    made = pick([" ", ">", "+", "~", " "]).join(compound() for _ in range(number(1, 3)))
    return made + pick(["", "", "", "::before", "::after", ":first-line", "::marker"])


def rule(deep=True):
    if deep and chance(0.2):
        inner = "".join(rule(False) for _ in range(2))
        return pick(["@media " + pick(MEDIA), "@supports (display:grid)", "@supports not (a:b)", "@layer a", "@media{"[:-1]]) + "{" + inner + "}\n"
    return ",".join(selector() for _ in range(number(1, 2))) + "{" + declarations() + "}\n"
