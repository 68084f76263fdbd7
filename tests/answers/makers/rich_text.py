# SPDX-License-Identifier: Apache-2.0
"""RTF in which any control word follows any other."""

from makers.chance import RANDOM, number, pick

WORDS = """b b0 i i0 ul ulnone uld ulw strike par par par pard plain fs24 fs37 cf1 cb2 cf9 li720 fi-360 ri300 sa120 sb60 sl360 slmult1
tab line sect page qc qj qr ql rtlpar ltrpar u97 u-10179 u8364 uc0 uc1 uc2 super sub nosupersub up6 dn4 caps scaps expndtw40 ls1 ilvl0
ilvl1 f0 f1 f7 tx720 tqr tx1440 lquote rdblquote emdash bullet ~ _ - lang1031 highlight2 v v0 outl shad trowd intbl cell row nestcell
nestrow itap1 itap2 itap0 cellx1000 cellx2000 cellx900 clmgf clmrg clvmgf clvmrg clbrdrt clbrdrb clbrdrl brdrs brdrw20 brdrcf1 brdrnone
brdrdb clcbpat2 clvertalc trgaph10 trqc trleft-5 clwWidth3000 clftsWidth3 clpadt50 clpadft3 lastrow hyphpar0 pagebb keepn sl-300 tqc
kerning20 charscalex50 cchs128 deleted revised""".split()
GROUPS = ["{"] * 5 + [r"{\*\unknown ", r'{\field{\*\fldinst HYPERLINK "http://h.example/"}{\fldrslt ', r"{\footnote ", r"{\header "]
OTHERS = [r"\'e4", r"\'82\'a0", r"\'8", r"\'", r"\{", r"\}", "\\\\", "\\\n", r"\u228\'e4", r"\bin3 {}{", r"{\pict\pngblip 89504e}"]


def head():
    """Tables of fonts, colours and lists, and what the document says of itself."""
    level = r"{\listlevel\levelnfc" + pick("01234") + r"\levelstartat" + pick("137") + r"{\leveltext\'03(\'00);}{\levelnumbers\'02;}\li720}"
    return (
        r"{\rtf1" + pick([r"\ansi", r"\mac", r"\pc", r"\ansi\ansicpg1250"])
        + r"{\fonttbl{\f0\froman Times;}{\f1\fswiss\fcharset128 Mincho{\*\falt A};}{\f7 Courier}}"
        + r"{\colortbl;\red255\green0\blue0;\red0\green9\blue255;}"
        + r"{\*\listtable{\list" + level + r"{\listlevel\levelnfc23{\leveltext\'01\'b7;}{\levelnumbers;}}\listid5}}"
        + r"{\*\listoverridetable{\listoverride\listid5\ls1}}"
        + r"{\info{\title T\'e4}{\author A}{\keywords a, b}{\creatim\yr2005\mo3\dy4\hr5}}" + "\n"
    )  # fmt: skip


def rtf():
    made = head()
    for _ in range(number(40, 150)):
        kind = RANDOM.random()
        if kind < 0.5:
            made += "\\" + pick(WORDS) + pick([" ", " ", "", "\n"])
        elif kind < 0.72:
            made += pick(["leaf", "quiver", "arrow"]) + pick(["", " "])
        elif kind < 0.79:
            made += pick(GROUPS)
        elif kind < 0.91:
            made += "}" if made.count("{") - made.count("}") > 2 else ""
        else:
            made += pick(OTHERS)
    return made + "}" * number(0, 9)
