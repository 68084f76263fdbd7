# SPDX-License-Identifier: Apache-2.0
"""Style sheets of declarations, some of them wrong. In the lists of values "_" stands for a blank."""

from makers.chance import chance, number, pick, several

INLINE = "a span b i u em strong font tt code small big sub sup s del ins q abbr cite kbd nobr bdo bdi label ruby".split()
BLOCK = "p div h1 h3 h6 pre blockquote center address section article ul ol dl form fieldset details table figure dir menu".split()

COLORS = """red #f80 #336699 #12345 chucknorris transparent lime rgb(1,2,3) rgba(10%,20%,30%,.4) hsl(120deg,100%,25%) hwb(90_10%_20%)
lab(50%_40_-20) oklch(.6_.2_140) color-mix(in_srgb,red_20%,blue) currentcolor #0f08 inherit RebeccaPurple"""
LENGTHS = """0 1px 3px 12pt 1em 2ex .5in 1cm 4mm 2pc 10% auto -5px calc(1em_+_2px) min(3px,1em) clamp(1px,2em,3pt) 1vw 0.5rem 7 medium
thin"""
LINES = "none solid dashed double dotted hidden ridge inset"
DISPLAYS = """block inline inline-block none list-item table table-row table-cell flex inline-flex grid contents flow-root ruby
run-in"""

VALUES = {
    "display": DISPLAYS,
    "color": COLORS,
    "background-color": COLORS,
    "background": COLORS + " url(a.png)_#eee none",
    "font-weight": "bold normal 300 bolder lighter 650 450",
    "font-style": "italic oblique normal oblique_10deg",
    "font-size": LENGTHS + " larger smaller x-large xx-small",
    "font-family": "serif monospace 'A_B',sans-serif Courier Ä",
    "font": "italic_bold_12px/2_serif 10pt_x small-caps_1em/normal_A,B caption bad",
    "font-variant": "small-caps normal",
    "letter-spacing": LENGTHS,
    "line-height": "1.5 normal 20px 150% 2em",
    "text-align": "left right center justify start end -webkit-center",
    "text-indent": LENGTHS,
    "text-transform": "uppercase lowercase capitalize full-width none",
    "text-decoration": "underline line-through none underline_red_dotted overline_underline double",
    "direction": "rtl ltr",
    "unicode-bidi": "isolate bidi-override plaintext embed",
    "white-space": "pre nowrap pre-wrap pre-line normal break-spaces",
    "vertical-align": "sub super top middle 3px -20% baseline",
    "list-style": "square none upper-roman inside_lower-alpha decimal-leading-zero '->' url(a.png)",
    "list-style-type": "disc circle lower-greek upper-latin armenian none '*_'",
    "float": "left right none",
    "clear": "both left",
    "position": "absolute fixed static",
    "visibility": "hidden visible collapse",
    "overflow": "hidden auto",
    "opacity": "0 .5 1",
    "margin": LENGTHS + " 1px_2px 1em_auto_3px 1px_2px_3px_4px",
    "margin-left": LENGTHS,
    "padding": LENGTHS,
    "padding-inline-start": LENGTHS,
    "width": LENGTHS,
    "height": LENGTHS,
    "max-width": LENGTHS,
    "border-width": LENGTHS,
    "border-style": LINES,
    "border-color": COLORS,
    "border-collapse": "collapse separate",
    "border-spacing": LENGTHS,
    "empty-cells": "hide show",
    "caption-side": "bottom top",
    "counter-increment": "n n_2 list-item_3 m_-1_n",
    "counter-reset": "n n_5 list-item",
    "content": "'c' counter(n) attr(title) open-quote none counters(n,'.',upper-roman) '\\41'",
    "quotes": "'<'_'>' none auto",
    "all": "initial unset revert",
    "tab-size": "2 8 10px",
    "--x": "3px red {a:b}",
    "widows": "2",
}
for side in ("", "-top", "-left", "-block", "-inline-end"):
    VALUES[f"border{side}"] = " ".join(f"{width}_{line}_{pen}" for width in ("1px", "3pt") for line in LINES.split() for pen in ("red", "#00f"))
DECLARATIONS = {name: values.replace("\n", " ").split() for name, values in VALUES.items()}
WRONG = ["foo", "color", "{a}", "color:var(--x)", "margin:1px 2px 3px 4px 5px", "width:calc(1px*)", "/**/"]

PSEUDOS = """:first-child :last-child :nth-child(2n+1) :nth-of-type(-n+3) :not(.a) :is(p,.b) :where(td) :empty :link :hover :only-child
:has(b) :lang(de) :nth-last-child(odd) :root :checked :disabled :any-link :dir(rtl)""".split()
SIMPLE = [*BLOCK, *INLINE, *[".a", ".b", ".c", "#a", "#b", "#c", "*", "td", "li", "[title]", "[href^=http]", "[class~=a i]", ""] * 4]
GROUPS = ["@media screen", "@media print", "@media all and (min-width:100px)", "@media not print", "@media (max-width:10px)", "@layer a",
          "@media (width>=300px)", "@media (color)", "@media only screen and (orientation:portrait),tv", "@supports (display:grid)",
          "@supports not (a:b)", "@media"]  # fmt: skip


def declarations():
    made = []
    for name in several(DECLARATIONS, number(1, 4)):
        made.append(f"{name}:{pick(DECLARATIONS[name]).replace('_', ' ')}" + ("!important" if chance(0.06) else ""))
    if chance(0.08):
        made.insert(number(0, len(made) - 1), pick(WRONG))
    return ";".join(made)


def compound():
    return pick(SIMPLE) + (pick(PSEUDOS) if chance(0.25) else "") or "p"


def selector():
    made = pick([" ", ">", "+", "~", " "]).join(compound() for _ in range(number(1, 3)))
    return made + pick(["", "", "", "::before", "::after", ":first-line", "::marker"])


def rule(is_inner=False):
    if not is_inner and chance(0.2):
        return f"{pick(GROUPS)}{{{rule(True)}{rule(True)}}}\n"
    return ",".join(selector() for _ in range(number(1, 2))) + f"{{{declarations()}}}\n"
