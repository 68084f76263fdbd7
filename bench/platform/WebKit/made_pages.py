# SPDX-License-Identifier: Apache-2.0
"""Pages of many shapes, made so that each asks something of its own of the tree and the cascade."""

import random

from page_parts import DOCTYPE, each, page, paragraphs, text
from site_pages import site_pages

INLINE = (
    "a abbr acronym b bdi bdo big cite code del dfn em font i ins kbd label mark nobr q s samp small span strike strong sub sup"
    " tt u var time data output"
).split()
BLOCKS = (
    "address article aside blockquote center dd details dialog dir div dl dt fieldset figcaption figure footer form h1 h2 h3 h4"
    " h5 h6 header hgroup legend li listing main menu nav ol p pre search section summary ul xmp"
).split()


def framework():
    """A sheet like those of large frameworks: variables, many classes, states and widths."""
    rules = [":root{" + "".join(f"--c{i}:hsl({i * 18},60%,40%);--s{i}:{i * 0.25}rem;" for i in range(20)) + "--w:600}"]
    rules += ["*,*::before,*::after{box-sizing:border-box}", "body{margin:0;font:400 1rem/1.5 system-ui,sans-serif;color:#212529}"]
    for i in range(20):
        rules.append(f".text-{i}{{color:var(--c{i})!important}}.fs-{i}{{font-size:calc(.8rem + .0{i % 9}vw + {i}px)}}")
        rules.append(f".btn-{i}{{--x:var(--c{i});color:var(--x,red);font-weight:var(--w)}}.btn-{i}:hover{{color:red}}")
        rules.append(f".col-{i}>.card-{i}~p:not(.off):nth-child(2n+{i % 3}){{font-style:italic}}")
        rules.append(f"@media (min-width:{i * 100}px){{.d-{i}{{font-weight:{100 * (i % 9 + 1)}}}}}")
    body = "".join(
        f"<div class='col-{i}'><h3 class='fs-{i}'>{text(i, 3)}</h3><p class='card-{i}'>{text(i)}</p><p class='text-{i}'>{text(i)}"
        f"</p><p class='d-{i}'>{text(i)}</p><a href=#x class='btn btn-{i}'>{text(i, 2)}</a></div>\n"
        for i in range(20)
    )
    return page("".join(rules), body)


def random_page(seed):
    """Elements at random with rules at random, in either mode."""
    random_ = random.Random(seed)
    values = [
        "color:red", "color:currentcolor", "color:#0f08", "color:rgb(10% 20% 30%)", "color:inherit", "font-size:1.3em",
        "font-size:80%", "font-size:larger", "font-size:x-small", "font-size:medium", "font-size:2rem", "font-weight:bolder",
        "font-weight:lighter", "font-weight:550", "font-weight:inherit", "font-style:italic", "font-style:normal",
        "font-family:monospace", "font-family:monospace,monospace", "font-family:Arial", "font:italic bold 12px/2 serif",
        "text-decoration:underline", "text-decoration:none", "text-decoration:line-through red", "display:inline-block",
        "float:left", "position:absolute", "visibility:hidden", "visibility:visible", "all:unset", "all:initial", "all:revert",
        "color:revert", "font-weight:unset", "text-decoration:inherit",
    ]  # fmt: skip
    selectors = ["div", "span", ".a", ".b", ".c", "#i", "div>.a", ".a .b", ".c+span", ".b~.c", "p:first-child", ":not(.a)>b",
                 "[title]", "[title~=x]", "div:nth-child(odd)", ":is(.a,.b) i", ":where(#i) u", "*"]  # fmt: skip
    css = "".join(
        f"{random_.choice(selectors)}{{{random_.choice(values)}{random_.choice(['', '', '', '!important'])}}}" for _ in range(25)
    )

    def element(depth):
        name = random_.choice(["div", "span", "p", "b", "i", "u", "code", "small", "ul", "li", "h2", "a href=#", "s", "big", "em"])
        attributes = random_.choice(["", "class=a", "class='b c'", "id=i", "title='x y'", f"style='{random_.choice(values)}'"])
        inside = "".join(element(depth - 1) for _ in range(random_.randint(0, 3))) if depth else ""
        return f"<{name} {attributes}>{text(random_.random(), 2)} {inside}</{name.split()[0]}> {text(random_.random(), 1)}\n"

    return page(css, "".join(element(4) for _ in range(8)), random_.choice([DOCTYPE, "<meta charset=utf-8>"]))


def made_pages():
    pages = {
        "inline": page("", "<p>" + "".join(f"<{n}>{n} {text(n, 2)}</{n}> " for n in INLINE)),
        "blocks": page("", "".join(f"<{n}>{n} {text(n, 3)}</{n}>\n" for n in BLOCKS)),
        "blocks-quirks": page("", "".join(f"<{n}>{n} {text(n, 3)}</{n}>\n" for n in BLOCKS), "<meta charset=utf-8>"),
        "nested-inline": page("", each("<p>a<{v}>{t}<{v}>{t}<{v}>{t}</{v}>{t}</{v}></{v}>", INLINE)),
        "font-element": page("", each("<p><font size={v}>{t}</font>", [*range(9), "+1", "-2", "+9", "x", "3.7"])
                             + each("<p><font color='{v}'>{t}</font>", ["red", "#123", "#12345", "chucknorris", "", "transparent",
                                    "#abcdefabcdef", "rgb(1,2,3)", "0f0", " blue "])
                             + "<font size=5>a<font size=+1>b<font color=green face=monospace>c <b>d</b></font></font></font>"),
        "monospace": page(".e{font-size:1em}.p{font-size:14px}.r{font-size:1.2rem}.m{font-family:monospace,monospace}",
                          each("<p class={v}>{t}<code>{t}<small>{t}</small></code><tt class=m>{t}</tt><pre>{t}<b>{t}</b>"
                               "<span style='font-family:serif'>{t}</span></pre>", ["e", "p", "r", "m", "n"])),
        "monospace-quirks": page("", each("<p style='font:{v} monospace'>{t}<code style='font-size:{v}'>{t}</code>",
                                 ["xx-small", "x-small", "small", "medium", "large", "x-large", "xx-large", "xxx-large"]),
                                 "<meta charset=utf-8>"),
        "font-sizes": page("", each("<p style='font-size:{v}'>{t}<span style='font-size:{v}'>{t}</span>", [
            "12px", "9pt", "1pc", "1cm", "10mm", "1in", "1.5em", "150%", "2ex", "2ch", "1.25rem", "2vw", "3vh", "2vmin", "1vmax",
            "larger", "smaller", "calc(1em + 2px)", "min(2em, 20px)", "clamp(10px, 4vw, 24px)", "max(1rem,50%)", "0.5em", "-3px",
            "1e1px", "inherit", "initial", "unset", "40Q", "xxx-large"])),
        "weights": page("", each("<div style='font-weight:{v}'>{t}<b>{t}<b>{t}</b></b><span style='font-weight:lighter'>{t}</span>"
                                 "<span style='font-weight:bolder'>{t}</span></div>",
                                 [1, 100, 250, 349, 350, 400, 549, 550, 600, 749, 750, 900, 1000, "normal", "bold", 1001, 0])),
        "colours": page("", each("<p style='color:{v}'>{t}", [
            "rebeccapurple", "#abc", "#abcd", "#aabbcc", "#aabbccdd", "rgb(1,2,3)", "rgb(10%,20%,30%)", "rgba(1,2,3,.5)",
            "rgb(1 2 3 / 40%)", "hsl(120,50%,50%)", "hsla(120deg 50% 50% / .3)", "hsl(.5turn 100% 25%)", "hwb(90 10% 20%)",
            "transparent", "currentcolor", "CanvasText", "LinkText", "GrayText", "#ggg", "rgb(300,-5,0)", "hsl(-90,100%,50%)"])),
        "decorations": page(".ib{display:inline-block}.f{float:left}.abs{position:absolute}.t{display:inline-table}"
                            ".n{text-decoration:none}",
                            each("<p style='text-decoration:{v}'>{t} <span>{t}</span> <span class=ib>{t}</span> <span class=n>{t}"
                                 "</span> <span class=f>{t}</span> <span class=abs>{t}</span> <span class=t>{t}</span> <s>{t}</s>",
                                 ["underline", "line-through", "underline overline", "underline line-through red", "none",
                                  "wavy underline", "inherit"])),
        "decoration-blocks": page("", "<div style='text-decoration:underline'><p>one <b>two</b><ul><li>three</ul><table><tr><td>"
                                  "four</table><h3>five</h3></div><u><div>six</div></u><a href=#x><div>seven</div></a>"),
        "links": page("a.q{color:inherit;text-decoration:none}a:visited{color:red}a:hover{color:lime}:link.r{color:purple}"
                      "a:any-link b{color:green}",
                      "<a href=http://example.com/a>one</a> <a>two</a> <a class=q href=x>three <i>four</i></a> <a class=r href=''>"
                      "five</a> <a href=y><b>six</b></a> <a name=n>seven</a><map><area href=z></map>"),
        "body-colours": "<meta charset=utf-8><body text=#336699 link=green vlink=red alink=blue bgcolor=#eee><p>one <a href=x>two"
                        "</a><table><tr><td>three <a href=y>four</a><th>five</table><font color=red>six <a href=z>seven</a></font>",
        "quirks-table": "<body style='font:italic bold 20px serif;color:teal;text-align:right'><table><tr><td>one<th>two<tr><td>"
                        "<p>three<table><caption>four</caption><tr><td>five</table></table>six",
        "standard-table": page("body{font:italic bold 20px serif;color:teal}", "<table border=1 cellpadding=4><caption>zero</caption>"
                               "<thead><tr><th>one<th>two<tbody><tr><td>three<td align=center><b>four</b><tfoot><tr><td>five</table>"),
        "lists": page("ul ul{font-size:90%}ol>li:nth-child(2){color:red}li::marker{color:blue}",
                      "<ul><li>one<ul><li>two<ol type=a start=3><li>three<li>four<li value=9>five</ol></ul></ul><dl><dt>six<dd>seven"
                      "</dl><menu><li>eight</menu><dir><li>nine</dir>"),
        "cascade": page("@layer a,b;@layer b{p{color:blue}#x{color:red}}@layer a{p{color:red;font-weight:900!important}}"
                        "p{font-style:italic}@layer b{p{font-weight:100!important}}p.k{color:green!important}"
                        "@layer c{.k{color:red!important}}.r{color:red}.r{color:revert-layer}@layer d{.r{color:orange}}",
                        paragraphs(["", "id=x", "class=k style='color:red'", "class=r", "style='color:navy!important'", "style='x'"])),
        "wide-keywords": page("div{color:red;font-size:20px;font-weight:bold}b{font-weight:revert}i{font-style:initial}"
                              "h2{all:unset}h3{all:revert;color:unset}h4{font-size:inherit;font-weight:inherit}u{all:initial}",
                              "<div>one <b>two</b> <i>three</i><h2>four</h2><h3>five</h3><h4>six</h4><u>seven</u></div>"),
        "variables": page(":root{--a:red;--b:var(--a);--c:var(--d,blue);--e:var(--f);--f:var(--e);--s:1.5em;--font:italic bold 18px"
                          " serif}.x{--a:green}.y{color:var(--b)}.z{color:var(--c)}.w{color:var(--e,purple)}.v{color:var(--none)}"
                          ".u{font-size:calc(var(--s)*2)}.t{font:var(--font)}.s{text-decoration:var(--none,underline) blue}"
                          ".q{color:red;color:var(--nothing)}",
                          paragraphs(["class=y", "class='x y'", "class=z", "class=w", "class=v", "class=u", "class=t", "class=s",
                                      "class=q", "style='--a:teal;color:var(--a)'"])
                          + "<div class=x><p style='color:var(--a)'>deep<p class=y>inherited</div>"),
        "media": page("@media print{p{color:red}}@media screen and (min-width:600px){p{color:green}}@media (max-width:600px){p{"
                      "font-weight:900}}@media not all{p{color:red}}@media (prefers-color-scheme:dark){p{color:white}}@media (400px"
                      "<=width<=2000px){b{color:blue}}@media (orientation:landscape){i{color:teal}}@media not (width:1px){u{color:"
                      "navy}}@media print,screen{s{color:olive}}", "<p>one <b>two</b> <i>three</i> <u>four</u> <s>five</s>",
                      head="<style media=print>p{font-size:30px}</style><style media='screen, tv'>p{font-size:18px}</style>"),
        "supports": page("@supports (display:grid){p{color:green}}@supports not (display:grid){p{color:red}}@supports (foo:bar){p{"
                         "font-weight:900}}@supports (color:red) and (not (foo:bar)){b{color:blue}}", "<p>one <b>two</b>"),
        "nesting": page("div{color:red;&.a{color:green}.b &{color:blue}> p{font-weight:bold;& b{color:teal}}@media screen{i{color:"
                        "navy}}}", "<div>one<p>two <b>three</b> <i>four</i></div><div class=a>five</div><p class=b><div>six</div>"),
        "selectors": page("p:first-child{color:red}p:last-of-type{color:blue}p:nth-child(3n+1){font-weight:bold}p:nth-last-child(2){"
                          "font-style:italic}p:nth-child(even of .k){text-decoration:underline}[lang|=en]{color:green}[data-x^=ab],"
                          "[data-x$=yz],[data-x*=mm]{font-size:20px}p:not(.k,.j)>b{color:purple}p:is(.k) b{color:orange}p:has(>i){"
                          "font-size:12px}p:empty+p{font-weight:100}[DATA-X='Q' i]{color:teal}",
                          paragraphs(["", "class=k", "class=j", "lang=en-US", "data-x=abc", "data-x=xyz", "data-x=ammb", "class=k",
                                      "data-x=q", "class=k"]) + "<p></p><p>x<b>y</b><p class=k>z<b>y</b><p>w<i>v</i>"),
        "logical": page("p{margin-inline-start:2em;padding-block:1em;border-inline-end:1px solid;text-align:start}.s{inset-inline:0}",
                        "<p>one<p dir=rtl>two<p dir=auto>\u05d0\u05d1\u05d2<p class=s>three<div dir=rtl><p>four<bdo dir=ltr>five"),
        "pseudo-elements": page("p::before{content:'X';color:red}p:after{content:attr(title) counter(c);font-weight:bold}p::first-"
                                "line{color:red}p::first-letter{font-size:3em}q{quotes:'<' '>'}p{counter-increment:c}",
                                paragraphs(["title=a", "title=b"]) + "<q>one <q>two</q></q>"),
        "forms": page("", "<form>one <input value=no> <button>two <b>three</b></button><select><option>four<option selected>five</"
                      "select><select multiple><optgroup label=x><option>six</optgroup></select><textarea>seven</textarea><fieldset>"
                      "<legend>eight</legend><label>nine <input type=checkbox></label></fieldset><output>ten</output><button disabled>"
                      "eleven</button><datalist><option>no</datalist><meter>no</meter><progress>no</progress></form>"),
        "form-styles": page("body{font:20px serif;color:red}button{font:inherit;color:inherit}label{font-weight:bold}",
                            "<button>one</button><label>two <select size=2><option>three</select></label><fieldset><legend>four"
                            "</legend>five</fieldset>"),
        "hidden": page(".n{display:none}.v{visibility:hidden}.s{visibility:visible}.c{visibility:collapse}.h{content-visibility:"
                       "hidden}", "<p>one<p class=n>no<p class=v>no <span class=s>two</span><p hidden>no<p hidden style='display:block'>"
                       "three<details><summary>four</summary>no<p>no</details><details open><summary>five</summary>six</details><div"
                       " class=h>no<p>no</div><dialog>no</dialog><template>no</template><p hidden=until-found>no</p><noscript>seven "
                       "<b>eight</b></noscript><table><tr class=c><td>no<tr><td>nine</table>"),
        "out-of-sight": page(".o{opacity:0}.r{position:absolute;width:1px;height:1px;overflow:hidden;clip:rect(0 0 0 0)}.i{text-"
                             "indent:-9999px;overflow:hidden}.l{position:absolute;left:-9999px}",
                             paragraphs(["class=o", "class=r", "class=i", "class=l"])),
        "flex-and-grid": page(".f{display:flex}.g{display:grid}.i{display:inline-flex}.c{display:contents}u{text-decoration:"
                              "underline}", each("<u><div class={v}><span>{t}</span> <b>{t}</b> <i style='float:left'>{t}</i></div>"
                                                 "</u>", ["f", "g", "i", "c"])),
        "svg-and-math": page("text{fill:red}.k{color:blue}", "<svg><title>no</title><text y=20 font-size=20 font-weight=bold>one<tspan "
                             "class=k>two</tspan></text><a href=x><text y=40>three</text></a></svg><math><mi>x</mi><mo>+</mo><mn>2"
                             "</mn><mtext>four</mtext></math>"),
        "ruby": page("", "<u><ruby>one<rp>(</rp><rt>two</rt><rp>)</rp></ruby></u> <ruby>three<rt>four<rt>five</ruby>"),
        "preformatted": page("", "<pre>one\n  two <b>three</b></pre><listing>four</listing><xmp><b>five</b></xmp><pre style="
                             "'white-space:normal;font-family:inherit'>six\n\nseven</pre><textarea>no</textarea><plaintext>eight <b>"),
        "misnested": page("b b{color:red}i b{color:blue}", "<b>one<i>two</b>three</i><p><b>four<p>five</b>six<a href=x>seven<a href=y>"
                          "eight</a><table><b>nine<tr><td>ten</table>eleven</b><div><span>twelve</div>thirteen<table><td>fourteen<p>"
                          "fifteen<li>sixteen</table>"),
        "old-page": "<html><head><title>x</title></head><body bgcolor=white text=navy><center><font face='Arial, Helvetica' size=2><b>"
                    "one</b><br><font color=maroon>two<p>three</font></center><table width=100% border=0 bgcolor=#ccccff><tr><td nowrap"
                    " align=right valign=top><font size=-1>four<td><h1 align=center>five</h1><tt>six</tt></table><hr noshade><address>"
                    "seven</address><marquee>eight</marquee><basefont size=5>nine<big>ten<big>eleven</big></big><nobr>twelve</nobr>",
        "limited-quirks": "<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Transitional//EN' 'x'><body style='font-size:20px'><table><tr>"
                          "<td>one</table><P CLASS=Big ID=Id>two<style>.big{color:red}.Big{color:green}#ID{color:blue}</style>",
        "quirks-names": "<style>.big{color:green}#ID{font-size:20px}P{font-weight:600}p{color:123456;font-size:30}b{color:ff0000;"
                        "width:30}</style><P CLASS=Big ID=id>two<p>three <b>four</b>",
        "style-attributes": page("p{color:red}", paragraphs([
            "style='color:blue;color:bad'", "style=';;color:green'", "style='color:blue;font-size:2em;'", "style='color : navy'",
            "style='COLOR:TEAL'", "style='color:olive/* x */'", "style='color:r\\65 d;font-weight:b\\6fld'", "style='{color:lime}'",
            "style='font:bold 12px'", "style='font:bold 12px x,y'", "style='font: caption'", "style=\"font-family:'x;y';color:gray\""])),
        "broken-sheet": page("p{color:red;;}}b{color:blue}@foo{p{color:lime}}i{color:}u{color:teal;!;font-weight:bold}s{color:navy"
                             "/*x*/;}h2{color:rgb(1,2}h3{color:olive}q,,{color:lime}<!--small{color:purple}-->em{color:'a\n;}"
                             "strong{color:gray", "<p>one <b>two</b> <i>three</i> <u>four</u> <s>five</s> <small>six</small> <em>seven"
                             "</em> <strong>eight</strong><h2>nine</h2><h3>ten</h3><q>eleven</q>"),
        "headings": page("h1,h2{font-weight:normal}h3{font-size:1em}h4{color:inherit;font:inherit}", "<section><h1>one</h1><section>"
                         "<h1>two</h1><h2>three</h2></section></section>" + each("<h{v}>{t} <small>{t}</small></h{v}>", range(1, 7))),
        "tables-nested": page("td td{color:red}table table{font-size:80%}th{font-weight:normal}", "<table><tr><td>one<table><tr><td>two"
                              "<table><tr><th>three</table></table><tr><th>four<td><p>five</table>"),
        "imports": page("@import 'sheet-a.css';@import url(sheet-b.css) print;@import url('sheet-b.css') layer(x) screen;p{font-size:"
                        "18px}", "<p>one <b>two</b> <i>three</i>", head="<link rel=stylesheet href=sheet-c.css><link rel='alternate "
                        "stylesheet' href=sheet-d.css title=no><link rel=stylesheet href=sheet-d.css media=print>"),
        "framework": framework(),
    }  # fmt: skip
    pages.update(site_pages())
    pages.update({f"random-{seed:02}": random_page(seed) for seed in range(1, 13)})
    return pages


SHEETS = {
    "sheet-a.css": "@import 'sheet-e.css';p{color:green}",
    "sheet-b.css": "p{color:red}b{color:blue}",
    "sheet-c.css": "@charset \"utf-8\";i{color:teal}",
    "sheet-d.css": "p,b,i{color:red!important}",
    "sheet-e.css": "@import 'sheet-a.css';p{font-style:italic}",
}


def write_made_pages(folder):
    """Writes the pages with their sheets, and answers the paths of the pages."""
    folder.mkdir(parents=True, exist_ok=True)
    for name, sheet in SHEETS.items():
        (folder / name).write_text(sheet, "utf-8")
    paths = []
    for name, markup in made_pages().items():
        paths.append(folder / f"{name}.html")
        paths[-1].write_text(markup, "utf-8")
    return paths
