# SPDX-License-Identifier: Apache-2.0
"""Pages of the shapes that sites have: articles, shops, newsletters, other scripts, and what their sheets do."""

import random

from page_parts import DOCTYPE, each, page, paragraphs, text


def utility_classes():
    """A sheet of thousands of classes with one property each, and their states and widths."""
    scale = [0, 0.125, 0.25, 0.5, 0.75, 1, 1.25, 1.5, 2, 3, 4]
    hues = ["slate", "red", "amber", "green", "sky", "violet"]
    rules = ["*,::before,::after{box-sizing:border-box;border:0 solid}html{line-height:1.5;font-family:ui-sans-serif,system-ui}",
             "body{margin:0;line-height:inherit}h1,h2,h3{font-size:inherit;font-weight:inherit}a{color:inherit;text-decoration:"
             "inherit}b,strong{font-weight:bolder}small{font-size:80%}ol,ul,menu{list-style:none;margin:0;padding:0}button,input,"
             "select,textarea{font-family:inherit;font-size:100%;font-weight:inherit;line-height:inherit;color:inherit}"
             "summary{display:list-item}[hidden]{display:none}"]  # fmt: skip
    for side in ["m", "mx", "my", "mt", "mb", "ml", "mr", "p", "px", "py", "pt", "pb", "pl", "pr"]:
        rules += [f".{side}-{i}{{{'margin' if side[0] == 'm' else 'padding'}:{s}rem}}" for i, s in enumerate(scale)]
    classes = []
    for h, hue in enumerate(hues):
        for shade in range(50, 1000, 50):
            rules.append(f".text-{hue}-{shade}{{--o:1;color:rgb({h * 40} {shade // 4} {255 - shade // 4} / var(--o))}}")
            rules.append(f".bg-{hue}-{shade}{{background-color:hsl({h * 60} 50% {100 - shade // 10}%)}}")
            classes.append(f"text-{hue}-{shade}")
    for name, size in [("xs", 0.75), ("sm", 0.875), ("base", 1), ("lg", 1.125), ("xl", 1.25), ("2xl", 1.5), ("3xl", 1.875)]:
        rules.append(f".text-{name}{{font-size:{size}rem;line-height:1.5}}")
        rules.append(f"@media (min-width:768px){{.md\\:text-{name}{{font-size:{size}rem}}}}")
        rules.append(f"@media (min-width:1536px){{.\\32xl\\:text-{name}{{font-size:9rem}}}}")
        classes += [f"text-{name}", f"md:text-{name}", f"2xl:text-{name}"]
    for name, weight in [("light", 300), ("normal", 400), ("medium", 500), ("semibold", 600), ("bold", 700), ("black", 900)]:
        rules.append(f".font-{name}{{font-weight:{weight}}}.hover\\:font-{name}:hover{{font-weight:{1000 - weight}}}")
        classes.append(f"font-{name}")
    rules += [".italic{font-style:italic}.underline{text-decoration-line:underline}.no-underline{text-decoration-line:none}"
              ".line-through{text-decoration-line:line-through}.\\!text-red{color:red!important}.w-1\\/2{width:50%}.hidden{display:none}"
              ".sr-only{position:absolute;width:1px;height:1px;overflow:hidden;clip:rect(0,0,0,0);white-space:nowrap}"
              ".space-y-4>:not([hidden])~:not([hidden]){margin-top:1rem}.text-\\[13px\\]{font-size:13px}.dark\\:text-white:is(.dark *){"
              "color:#fff}.group:hover .group-hover\\:x{color:red}.\\[\\&\\>b\\]\\:red>b{color:red}@media (min-width:640px){"
              ".sm\\:inline{display:inline}.sm\\:hidden{display:none}}"]  # fmt: skip
    classes += ["italic", "underline", "no-underline", "line-through", "!text-red", "w-1/2", "sr-only", "text-[13px]",
                "dark:text-white", "[&>b]:red", "hidden sm:inline", "sm:hidden", "space-y-4"]  # fmt: skip
    chosen = random.Random(7)
    body = "".join(
        f"<div class='{' '.join(chosen.choices(classes, k=4))}'>{text(i, 4)} <b class='{chosen.choice(classes)}'>{text(i, 2)}</b>"
        f"<a href=#{i} class='{' '.join(chosen.choices(classes, k=2))}'>{text(i, 3)}</a></div>\n"
        for i in range(120)
    )
    return page("".join(rules), body)


def newsletter():
    """Nested tables for layout with everything in style attributes, as mail has them."""
    def row(i):
        return (
            f'<tr><td align="center" bgcolor="#ffffff" style="padding:20px 10px;font-family:Helvetica,Arial,sans-serif;font-size:'
            f'{14 + i % 3}px;line-height:22px;color:#3b3b3b;mso-line-height-rule:exactly"><table width="100%" border="0"'
            f' cellspacing="0" cellpadding="0"><tr><td width="50%" valign="top" style="font-weight:300">{text(i)}<br><a href='
            f'"http://example.com/?id={i}&amp;x=1&copy=2" style="color:#0a84ff!important;text-decoration:none"><strong>{text(i, 3)}'
            f'</strong></a></td><td><!--[if mso]><p>no</p><![endif]--><font color="#cc0000" size="4" face="Georgia">{text(i, 2)}'
            f"</font></td></tr></table></td></tr>"
        )

    return (
        '<!DOCTYPE html PUBLIC "-//W3C//DTD XHTML 1.0 Transitional//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd">'
        '<html xmlns="http://www.w3.org/1999/xhtml" xmlns:o="urn:schemas-microsoft-com:office:office"><head><meta charset="utf-8">'
        "<style type='text/css'>.ExternalClass *{line-height:100%}#outlook a{padding:0}@media only screen and (max-width:480px){td{"
        "font-size:30px!important}}a[x-apple-data-detectors]{color:inherit!important}</style><!--[if gte mso 9]><xml><o:x>no</o:x>"
        '</xml><![endif]--></head><body style="margin:0;padding:0;background:#eee"><div style="display:none;max-height:0;overflow:'
        'hidden">no</div><center><table width="600" align="center" style="border-collapse:collapse">'
        + "".join(row(i) for i in range(8)) + "</table></center><o:p>seven</o:p></body></html>"
    )  # fmt: skip


def article_pages():
    return {
        "news": page(
            ":root{--serif:Georgia,serif}body{font:18px/1.6 var(--serif);color:#222}header nav a{font:600 13px/1 Arial;text-transform:"
            "uppercase;letter-spacing:.08em;color:#666;text-decoration:none}article>h1{font-size:clamp(1.8rem,4vw,3rem);font-weight:900}"
            ".byline{font:italic .8em sans-serif;color:rgba(0,0,0,.6)}article>p:first-of-type::first-letter{font-size:3em;float:left}"
            "figure figcaption{font-size:.75em;color:gray}blockquote.pull{font-size:1.5em;font-style:italic}aside{float:right;width:"
            "30%;font-size:14px}.ad::before{content:'Advertisement'}footer small{opacity:.7}time{white-space:nowrap}",
            f"<header><a href=/ >{text(1, 2)}</a><nav><ul><li><a href=/w>World</a><li><a href=/b>Business</a></ul></nav></header><main>"
            f"<article><h1>{text(2, 6)}</h1><p class=byline>By <a rel=author href=/a>{text(3, 2)}</a>, <time datetime=2020-01-01>1 "
            f"January</time></p><figure><img src=x.jpg alt='{text(4, 3)}'><figcaption>{text(5)}</figcaption></figure>"
            + paragraphs([""] * 4, 10) + f"<blockquote class=pull><p>{text(6)}</p></blockquote><aside><h2>Related</h2><ul><li><a "
            f"href=/r>{text(7)}</a></ul></aside><div class=ad></div>" + paragraphs([""] * 2, 20)
            + "</article></main><footer><small>&copy; 2020 Made &middot; <a href=/t>Terms</a></small></footer>"),
        "wiki": page(
            "table.infobox{float:right;width:22em;font-size:88%;line-height:1.5em;border:1px solid #a2a9b1}.infobox th{text-align:left}"
            ".infobox-above{font-size:125%;font-weight:bold;text-align:center}sup.reference{line-height:1;unicode-bidi:isolate;font-"
            "weight:normal;font-style:normal;font-size:80%}.mw-editsection{font-size:small;font-family:sans-serif}.references{font-size"
            ":90%;counter-reset:mw-ref}.hatnote{font-style:italic;padding-left:1.6em}.hatnote i{font-style:normal}a{color:#36c;text-"
            "decoration:none}a.new{color:#d73333}a:not([href]){color:purple}h2{border-bottom:1px solid;font-family:serif;font-weight:"
            "normal}.wikitable>tr>th,.wikitable>*>tr>th{background:#eaecf0;text-align:center}.mw-parser-output .tocnumber{color:#202122}"
            "#toc:target{color:red}.noprint{}@media print{.noprint{display:none}}.navbox{font-size:88%}.hlist li:after{content:' ·'}",
            "<div class=mw-parser-output><div class=hatnote>For <i>one</i>, see <a href=/wiki/A_(b)>A (b)</a>.</div><table class="
            "infobox><caption class=infobox-above>two</caption><tr><th scope=row>three<td>four<sup class=reference><a href=#n1>[1]</a>"
            f"</sup><tr><td colspan=2><small>(five)</small></table><p><b>{text(1, 2)}</b> ({text(2, 2)}) {text(3)}<sup id=r1 class="
            f"reference><a href=#n1>[1]</a></sup> <a href=/wiki/Q title=Q>{text(4, 2)}</a> <a href=/w class=new>{text(5, 2)}</a>.<div id="
            "toc><input type=checkbox><h2>Contents</h2><ul><li><a href=#H><span class=tocnumber>1</span> <span>H</span></a></ul></div>"
            f"<h2><span id=H>History</span><span class=mw-editsection>[<a href=/e>edit</a>]</span></h2><p>{text(6)}<table class="
            "wikitable><tr><th>six<th rowspan=2>seven<tr><td>eight</table><ol class=references><li id=n1><b><a href=#r1>^</a></b> "
            "<cite class=citation>nine</cite> <span style='display:none'>no</span></ol><div class='navbox hlist'><ul><li>ten<li>eleven"
            "</ul></div></div>"),
        "forum": page(
            ".post:nth-of-type(even){background:#f4f4f4}.post .meta{color:#888;font-size:x-small}.quote{border-left:3px solid;font-size:"
            ".9em;color:#555}.quote .quote{color:#999}.score>b{color:green}.score>b.neg{color:red}.sig{font-size:smaller}del{opacity:.5}"
            ".locked:has(> .meta) h4{color:maroon}",
            "".join(f"<div class='post locked' id=p{i}><div class=meta>#{i} <a href='user?id={i}'>{text(i, 1)}</a> <span class=score><b "
                    f"class={'neg' if i % 2 else 'pos'}>{i}</b></span></div><h4>Re: {text(i, 3)}</h4><div class=quote><i>{text(i, 1)} wrote"
                    f":</i><br>{text(i)}<div class=quote>{text(i + 1)}</div></div><p>{text(i + 2)}<del>{text(i, 2)}</del> <img src=s.gif"
                    f" alt=':)'> <a href='http://example.com/a b?q=\u00fc&x=%zz'>{text(i, 2)}</a><p class=sig>--<br>{text(i, 2)}</div>"
                    for i in range(6))),
        "blog-with-code": page(
            "pre,code,kbd{font-family:Menlo,Consolas,monospace}code{font-size:87.5%;color:#c7254e}pre code{font-size:inherit;color:"
            "inherit}pre{tab-size:4;overflow:auto;font-size:13px}.k{font-weight:bold;color:#007020}.c{font-style:italic;color:#60a0b0}"
            ".ln{user-select:none;color:#aaa}.ln::before{content:counter(l);counter-increment:l}kbd{font-size:.8em}h2 code{font:inherit}",
            "<h2>Using <code>map</code></h2><p>Press <kbd><kbd>Ctrl</kbd>+<kbd>C</kbd></kbd> in <samp>sh</samp>.<pre>\n<code class="
            "language-c><span class=ln></span><span class=k>int</span> main() {\n\t<span class=c>/* no */</span>\n\treturn a &lt; b "
            "&amp;&amp; c;\n}</code></pre><pre style='white-space:pre-wrap'>a  b\tc</pre><p>tt <tt>x</tt> <var>y</var><table class=hl><tr>"
            "<td><pre>1\n2</pre><td><pre>one\ntwo</pre></table><code style='font-family:monospace'>x</code><code style='font-family:"
            "sans-serif'>y</code><small><code>z</code></small>"),
        "shop": page(
            ".grid{display:grid;grid-template-columns:repeat(auto-fill,minmax(200px,1fr));gap:1rem}.card{display:flex;flex-direction:"
            "column}.price{font-weight:700;font-size:1.25em;color:oklch(0.6 0.2 30)}.price del{font-size:.7em;font-weight:400;color:"
            "#767676}.badge{position:absolute;background:#e00;color:#fff;font:700 11px/1 sans-serif}a.card{text-decoration:none;color:"
            "inherit}.card:hover .t{text-decoration:underline}.stars{font-size:0}.stars span{font-size:14px}@container (min-width:"
            "100000px){.t{color:red}}",
            "<ul class=grid style='list-style:none'>" + "".join(
                f"<li><a class=card href=/p/{i}><span class=badge>-{i}0%</span><img src={i}.jpg alt=''><span class=t>{text(i, 3)}</span>"
                f"<span class=price><del>{i}9.90</del> {i}.50&nbsp;&euro;</span><span class=stars> no <span>****</span></span></a><button>"
                f"Add</button> <label>Qty <input type=number value={i}></label></li>" for i in range(1, 9)) + "</ul>"),
        "documentation": page(
            "body{display:grid;grid-template-columns:200px 1fr}nav{position:sticky;top:0}nav ol{counter-reset:s;list-style:none}nav li::"
            "before{counter-increment:s;content:counters(s,'.') ' '}nav a[aria-current]{font-weight:600}.admonition.note>p:first-child{"
            "font-weight:bold}a.headerlink{visibility:hidden}h2:hover>a.headerlink{visibility:visible}dl.function dt{font-family:"
            "monospace;font-weight:bold}dl.function em{font-style:normal}dt:target{color:red}.deprecated{text-decoration:line-through}",
            "<nav><ol><li><a href=#a aria-current=page>one</a><ol><li><a href=#b>two</a></ol><li><a href=#c>three</a></ol></nav><main><h2 "
            "id=a>four<a class=headerlink href=#a>\u00b6</a></h2><div class='admonition note'><p>Note<p>five</div><dl class=function>"
            "<dt>f(<em>x</em>, <em>y</em>=1)<dd><p>six<dl><dt>seven<dd>eight<dd>nine</dl></dl><p class=deprecated>ten <code>eleven</code>"
            "<details><summary>no <b>twelve</b></summary><p>no</details><table><thead><tr><th>thirteen<tbody><tr><td><a href=x.html>"
            "fourteen</a></table></main>"),
        "newsletter": newsletter(),
        "old-frames": "<HTML><HEAD><TITLE>x</TITLE></HEAD><FRAMESET COLS='20%,*'><FRAME SRC=a.html><FRAME SRC=b.html><NOFRAMES><BODY>no"
                      "</BODY></NOFRAMES></FRAMESET></HTML>",
        "old-home-page": "<HTML><BODY BGCOLOR=#000000 TEXT=yellow LINK=#00ff VLINK=purple><CENTER><FONT SIZE=+3 FACE='Comic Sans MS' COLOR="
                         "lime>Welcome</FONT><BR><BLINK>one</BLINK><IMG SRC=a.gif ALT=Counter><H1 ALIGN=CENTER><FONT COLOR=FF0000>two</FONT>"
                         "</H1></CENTER><UL TYPE=SQUARE><LI><A HREF='page 2.htm'>three</A><LI>four</UL><TABLE BORDER=5 CELLPADDING=3><TR><TD "
                         "BGCOLOR=navy><FONT SIZE=1>five</FONT><TD><FONT SIZE=7 COLOR=chucknorris>six</FONT></TABLE><FONT SIZE=2><P>seven<P>"
                         "eight<OL START=5 TYPE=I><LI>nine</OL></FONT><BASEFONT SIZE=2>ten<FONT SIZE=-5>eleven</FONT><FONT SIZE='+ 1'>twelve"
                         "</FONT><FONT SIZE=9>thirteen</FONT><FONT COLOR=''>fourteen</FONT><FONT COLOR=#12>fifteen</FONT><FONT COLOR=transparent"
                         ">sixteen</FONT><FONT COLOR=#abcd>17</FONT><HR SIZE=1 COLOR=red><STRIKE>eighteen</STRIKE><TT>nineteen<FONT SIZE=3>"
                         "twenty</FONT></TT><PRE WIDTH=80>21 <B>22</B></PRE><NOLAYER>23</NOLAYER><LAYER>24</LAYER><MULTICOL COLS=2>25</MULTICOL>"
                         "<SPACER TYPE=BLOCK><ISINDEX PROMPT='26'><KEYGEN>27<BGSOUND SRC=x><DIR><LI>28</DIR><MENU><LI>29</MENU>",
        "search-results": page(
            ".g{margin:1em}.g h3{font-size:20px;font-weight:400;display:inline}.g cite{font-style:normal;color:#202124;font-size:14px}"
            ".g em{font-style:normal;font-weight:bold;color:#5f6368}.st{color:#4d5156;overflow-wrap:break-word;display:-webkit-box;"
            "-webkit-line-clamp:2;-webkit-box-orient:vertical;overflow:hidden}a:link{color:#1a0dab;text-decoration:none}a:visited{color:"
            "red}a h3{text-decoration:underline}",
            "".join(f"<div class=g><a href='https://example.com/{i}?a=b#c' ping=x><h3>{text(i, 4)}</h3><br><cite>https://example.com \u203a "
                    f"<span>x</span></cite></a><span class=st>{text(i, 3)} <em>{text(i, 1)}</em> {text(i, 20)}</span></div>"
                    for i in range(5))),
        "landing": page(
            ".hero{background:linear-gradient(90deg,red,blue);-webkit-background-clip:text;color:transparent;font-size:calc(1rem + 3vw);"
            "font-weight:800;letter-spacing:-.02em}.hero span{-webkit-text-fill-color:red}.cta{all:unset;cursor:pointer;background:#06f;"
            "color:white}.steps{columns:2}.steps::before{content:none}.quote{font:italic 300 1.5rem/1.4 'Playfair Display',serif}.tilt{"
            "transform:rotate(3deg);filter:blur(1px);mix-blend-mode:multiply}.clip{clip-path:inset(50%)}.zero{height:0;overflow:hidden}"
            ".max{max-height:0;overflow:hidden}.scale{transform:scale(0)}.z{z-index:-1;position:relative}.nosel{user-select:none}",
            f"<section class=hero><h1>{text(1, 3)} <span>{text(2, 2)}</span></h1></section><button class=cta>{text(3, 2)}</button><a class="
            f"cta href=/x>{text(4, 2)}</a><ol class=steps><li>{text(5)}<li>{text(6)}</ol><p class=quote>{text(7)}<p class=tilt>{text(8)}<p "
            f"class=clip>{text(9)}<p class=zero>{text(10)}<p class=max>{text(11)}<p class=scale>{text(12)}<p class=z>{text(13)}"),
        "calendar": page(
            "table{border-collapse:collapse;table-layout:fixed;width:100%}td.out{color:#bbb}td:nth-child(n+6){color:#c00}td.today{font-"
            "weight:bold}td:empty{display:none}tr:nth-child(2) td~td{font-size:10px}caption{caption-side:bottom;font-style:italic}col."
            "we{background:#eee}tfoot{display:table-footer-group;font-size:80%}th abbr{text-decoration:none}",
            "<table><caption>January</caption><colgroup><col span=5><col class=we></colgroup><tfoot><tr><td colspan=7>foot</tfoot><thead>"
            "<tr>" + "".join(f"<th scope=col><abbr title=x>{d}</abbr>" for d in "MTWTFSS") + "<tbody>" + "".join(
                "<tr>" + "".join(f"<td class='{'today' if day == 9 else 'out' if day > 31 else ''}'>{day}" for day in range(w, w + 7))
                for w in range(1, 36, 7)) + "</table>"),
    }  # fmt: skip


def script_pages():
    """Other scripts than Latin, directions, transformations, and characters that nobody sees."""
    return {
        "japanese": page(
            "body{font-family:'Hiragino Kaku Gothic ProN',Meiryo,sans-serif;line-break:strict}em{font-style:normal;text-emphasis:filled "
            "dot}.v{writing-mode:vertical-rl}rt{font-size:.6em;color:#888}.k{text-transform:full-width}.u{text-decoration:underline}",
            "<html lang=ja><h1>\u65e5\u672c\u8a9e\u306e\u898b\u51fa\u3057</h1><p>\u3053\u308c\u306f<em>\u5f37\u8abf</em>\u3001<ruby>\u6f22"
            "<rt>\u304b\u3093</rt>\u5b57<rt>\u3058</rt></ruby>\u3067\u3059\u3002<p class=v>\u7e26\u66f8\u304d<b>\u592a\u5b57</b><p class=k>"
            "ABC 123<p class=u>\u4e0b\u7dda<ruby>\u4eca\u65e5<rp>\uff08</rp><rt>\u304d\u3087\u3046</rt><rp>\uff09</rp></ruby><p>\u534a\u89d2 "
            "\uff76\uff85 \u5168\u89d2\u3000\u7a7a\u767d<p>\u9577\u3044\n\u884c\n\u306e\u6587<ruby><rb>\u6771<rb>\u4eac<rtc><rt>\u3068\u3046"
            "<rt>\u304d\u3087\u3046</rtc></ruby>"),
        "arabic": page("[dir=rtl]{font-size:18px}p:dir(rtl){color:teal}p:dir(ltr){color:navy}:lang(ar) b{font-weight:900}.n{direction:ltr}",
                       "<div dir=rtl lang=ar><p>\u0645\u0631\u062d\u0628\u0627 <b>\u0628\u0627\u0644\u0639\u0627\u0644\u0645</b> 2020 (abc) "
                       "<a href='/\u0645?\u0643=\u0644'>\u0631\u0627\u0628\u0637</a><p>\u0627\u0644\u0633\u0644\u0640\u0640\u0640\u0627\u0645 "
                       "\u0643\u064f\u062a\u0650\u0628<ol><li>\u0623\u0648\u0644<li>\u062b\u0627\u0646</ol><p dir=ltr>left <bdi>\u0639</bdi>"
                       "<p class=n>\u0639 12:30</div>"),
        "hebrew-mixed": page("bdo{color:red}.i{unicode-bidi:plaintext}.m:lang(he){font-style:italic}:lang('en','de') i{color:blue}",
                             "<p dir=auto class=m lang=he>\u05e9\u05dc\u05d5\u05dd <b>world</b> \u05e2\u05d5\u05dc\u05dd! <span dir=ltr>a.b"
                             "</span> \u200fx\u200e <bdo dir=rtl>abc</bdo> <bdi>\u05d0</bdi><p>English \u05e2\u05d1\u05e8\u05d9\u05ea 123 "
                             "\u2067\u05d0\u2069 \u202bx\u202c<p class=i>\u05d0 b<div lang=en><i>one</i><div lang=he><i>two</i><div lang=de-AT><i>"
                             "three</i></div></div></div><table dir=rtl><tr><td>\u05d0<td>\u05d1</table>"),
        "other-scripts": page("p::first-letter{color:red}.u{text-transform:uppercase}.c{text-transform:capitalize}",
                              each("<p>{v} <b>{v}</b><p class=u>{v}<p class=c>{v}", [
                                  "\u0939\u093f\u0928\u094d\u0926\u0940 \u0915\u094d\u0937", "\u0e20\u0e32\u0e29\u0e32\u0e44\u0e17\u0e22",
                                  "\ud55c\uad6d\uc5b4 \ubb38\uc7a5", "\u0440\u0443\u0441\u0441\u043a\u0438\u0439 \u044f\u0437\u044b\u043a",
                                  "\u03b5\u03bb\u03bb\u03b7\u03bd\u03b9\u03ba\u03cc\u03c2 \u03ac\u03c3\u03bf\u03c2", "\u1201\u1208\u1210",
                                  "e\u0301 n\u0303 \ufb01n \u00df", "\U0001f468\u200d\U0001f469\u200d\U0001f467 \u2764\ufe0f \U0001f1e9\U0001f1ea",
                                  "\U0001d400\U0001d401 \U00010428", "\u01c6 \u0149 \u1e9e"])),
        "text-transform": page(".u{text-transform:uppercase}.l{text-transform:lowercase}.c{text-transform:capitalize}.n{text-transform:"
                               "none}.s{font-variant:small-caps}",
                               "".join(f"<p class={c} lang={l}>istanbul \u0130I\u0131 \u00dfa \u00ed\u0307 o'neil re-do \u1f80 ij sz\u00f3 "
                                       f"\u03a3\u0391\u03a3 <b class=n>Mixed Case</b> 3rd x.y (paren) \u201cquoted\u201d"
                                       for c in "ulcs" for l in ["en", "tr", "az", "lt", "nl", "el", "de"])),
        "invisible-characters": page("", "<p>soft&shy;hy&shy;phen zero&#8203;width&zwnj;non&zwj;joiner word&NoBreak;joiner<p>nb&nbsp;sp&ensp;"
                                     "en&emsp;em&thinsp;thin&#8239;narrow<wbr>break<p>&#65279;bom &#x85; &#x91;quoted&#x92; &#128; &#0; &#x110000;"
                                     " &#xD800; &#xFFFE;<p>a\u2028b\u2029c \u180e \u2060x<nobr>no<wbr>br</nobr> \u00ad"),
        "entities": page("", "<p>&amp;lt; &ampx &ltx &copy2020 &notit; &notin; &NotEqualTilde; &CounterClockwiseContourIntegral; &fjlig; &AMP "
                             "&QUOT &nbsp &nosuch; &#xg; &#; &#169 &#x41 &#65a; &hellip;&mdash;&rsquo; &thetasym; &lang;&rang; &Aacute &aacutex"
                             "<p title='&lt;'>x<a href='?a=1&lt=2&copy=3&amp;b&notin;'>link</a> &acE; &bne; &zwj;&rarr;&nrarr; &a &; & &&&"),
        "white-space": page("".join(f".w{i}{{white-space:{v}}}" for i, v in enumerate(
                            ["normal", "pre", "nowrap", "pre-wrap", "pre-line", "break-spaces"])) + ".c{white-space-collapse:preserve}.t{"
                            "text-wrap:balance}", "".join(f"<p class={c}>  one   two\n  three\tfour <b>  five\n</b>\n six&#10;seven &#9;eight  "
                                                          for c in ["w0", "w1", "w2", "w3", "w4", "w5", "c", "t"])
                            + "<pre>\n\n tabs\tand\ttabs\n</pre><textarea wrap=off>no</textarea><table><tr><td nowrap>a  b<td style='white-space:"
                            "pre'>c\n d</table><span> x </span> <span> y</span><br> z <i> </i><b> q</b>"),
        "line-breaks": page("br.h{display:none}.b br{display:block}.n br{content:''}.f{display:flex}",
                            "<p>one<br>two<br/>three<BR CLEAR=ALL>four</br>five<p>six<br class=h>seven<br><br>eight<p class=b>a<br>b<p class="
                            "n>c<br>d<div class=f>e<br>f</div><p>g</p></p>h<hr>i<wbr>j"),
        "math": page("math{color:teal}mi[mathvariant=normal]{color:red}",
                     "<p>x <math><mrow><mi>a</mi><msup><mi>b</mi><mn>2</mn></msup><mfrac><mn>1</mn><mrow><mn>2</mn><mi mathvariant=normal>c"
                     "</mi></mrow></mfrac><msqrt><mi>d</mi></msqrt><msubsup><mo>\u222b</mo><mn>0</mn><mi>\u221e</mi></msubsup><mroot><mi>e</mi>"
                     "<mn>3</mn></mroot><mtext>text</mtext><ms>str</ms></mrow></math><math display=block><mtable><mtr><mtd><mi>f</mi></mtd><mtd>"
                     "<mi>g</mi></mtd></mtr></mtable><semantics><mi>h</mi><annotation encoding=x>no</annotation></semantics><munderover><mo>\u2211"
                     "</mo><mrow><mi>i</mi><mo>=</mo><mn>1</mn></mrow><mi>n</mi></munderover><msup><mi>x</mi><msup><mi>y</mi><mi>z</mi></msup>"
                     "</msup><mfrac><mfrac><mi>p</mi><mi>q</mi></mfrac><mi>r</mi></mfrac><mover accent=true><mi>v</mi><mo>\u2192</mo></mover>"
                     "<mstyle mathcolor=red mathsize=20px scriptlevel=1><mi>k</mi></mstyle><mphantom><mi>l</mi></mphantom><mmultiscripts><mi>F"
                     "</mi><mn>1</mn><mprescripts></mprescripts><mn>2</mn></mmultiscripts></math>"),
        "inline-svg": page("svg text{font-family:sans-serif}.hid{display:none}svg .b{font-weight:bold;fill:blue}",
                           "<svg width=300 height=100 viewBox='0 0 300 100' font-size=12><title>no</title><desc>no</desc><defs><text>no</text></defs><g"
                           " fill=red font-style=italic><text x=1 y=20>one <tspan class=b dy=5>two</tspan></text></g><text y=40 style='font-size:20"
                           "px;color:red'>three</text><text class=hid>no</text><a href='#x'><text y=60>four</text></a><a xlink:href=y><text y=80>"
                           "five</text></a><foreignObject width=100 height=50><p>six <b>seven</b></p></foreignObject><symbol><text>no</text></symbol>"
                           "<text y=90 text-decoration=underline font-weight=600>eight</text><style>text{letter-spacing:1px}</style></svg>"),
    }  # fmt: skip


def sheet_pages():
    """What sheets do: themes, layers, conditions, selectors, values."""
    return {
        "theme-variables": page(
            ":root{--bg:#fff;--fg:#123;--step:1.2;--h:210;--accent:hsl(var(--h) 80% 40%);--fs-0:1rem;--fs-1:calc(var(--fs-0)*var(--step));"
            "--fs-2:calc(var(--fs-1) * var(--step));--empty:;--w:,;--font:600 var(--fs-1)/1.2 serif}@media (prefers-color-scheme:dark){:root"
            "{--fg:#eee}}[data-theme=dark]{--fg:#ddd;--h:40;--accent:hsl(var(--h) 80% 40%)}body{color:var(--fg)}h1{font-size:var(--fs-2);color"
            ":var(--accent)}.btn{color:var(--btn-fg,var(--accent,red));font:var(--font)}.e{color:var(--empty) green}.f{color:rgb(1 2 3"
            " var(--empty))}@property --reg{syntax:'<color>';inherits:false;initial-value:purple}.r{color:var(--reg)}.u{--FG:red;color:"
            "var(--FG,blue)}.x{color:var(--a-b,#0a0)}.em{font-size:2em;--s:1em}.em b{font-size:var(--s)}.g{color:var(--fg);--fg:initial}",
            "<h1>one</h1><a class=btn href=x>two</a><p class=e>three<p class=f>four<p class=r>five<p class=u>six<p class=x>seven<div class=em>"
            "eight <b>nine</b></div><div data-theme=dark><h1>ten</h1><p>eleven<a class=btn>twelve</a></div><p class=g>13"),
        "print": page("@page{margin:1cm}@media print{body{color:red}}@media screen{body{font-size:17px}}@media only screen and (min-resolution:"
                      "2dppx){p{color:red}}@media (hover:hover) and (pointer:fine){p{color:navy}}@media all and (max-width:1279px){i{color:red}}"
                      "@media (width>=1280px){i{color:green}}@media (min-aspect-ratio:16/9){b{color:teal}}@media (height:720px){u{color:olive}}"
                      "@media (prefers-reduced-motion:no-preference){s{color:gray}}@media (scripting:none){em{color:maroon}}@media (update:fast)"
                      "{q{color:blue}}@media (color){dfn{color:green}}@media speech,(min-width:1em){var{color:teal}}@media screen and (max-width"
                      ":80em){kbd{color:red}}@media (foo),(min-width:0){tt{color:lime}}@media not all and (monochrome){big{color:purple}}",
                      "<p>one <i>two</i> <b>three</b> <u>four</u> <s>five</s> <em>six</em> <q>seven</q> <dfn>eight</dfn> <var>nine</var> <kbd>ten"
                      "</kbd> <tt>eleven</tt> <big>twelve</big>"),
        "utility-classes": utility_classes(),
        "nested-rules": page(
            ".card{color:navy;.title{font-weight:bold}&:has(img){color:teal}& + &{color:olive}&.big{font-size:20px}h3 &{color:red}@media "
            "(width>100px){font-style:italic;.x{font-style:normal}}@supports (color:red){.y{color:green}}.a &, .b &{color:maroon}&::before{"
            "content:'-'}&:not(.z){.w{color:purple}}> .v{color:gray;~ .v{color:lime}}@layer n{.t{color:red}}color:inherit}.q{&{color:blue}"
            "&&{font-weight:900}p&{color:red}:is(&,.r) i{color:orange}}",
            "<div class=card>one<p class=title>two<p class=x>three<p class=y>four<p class=w>five<p class=v>six<p class=v>seven<p class=t>8"
            "</div><div class=card>nine<img src=x></div><div class='card big z'>ten<p class=w>eleven</div><div class=a><div class=card>12"
            "</div></div><p class=q>13 <i>14</i><div class=q>15</div>"),
        "layers": page(
            "@layer reset,base.x,theme;@layer theme{p{color:green}.o{color:green!important}}@layer reset{p{color:red;font-size:20px}.o{color:"
            "blue!important}}@layer base{@layer x{p{font-weight:bold}}p{font-weight:300}}.un{color:purple}@layer{.un{color:red;font-style:"
            "italic}}@layer theme{.rl{color:red}}@layer late{.rl{color:revert-layer}.in{color:teal}}@layer late.deep{.in{color:red;font-size:"
            "11px}}", "<p>one<p class=o>two<p class=un>three<p class=rl>four<p class=in>five<p class=un style='color:revert-layer'>six"),
        "conditions": page(
            "@supports (display:grid) and (not (display:nothing)){p{color:green}}@supports selector(:has(a)){b{color:teal}}@supports selector("
            ":nosuch(a)){b{color:red}}@supports (color:oklch(0.5 0.1 20)) or (a:b){i{color:navy}}@supports not ((a:b)){u{color:olive}}@supports "
            "font-tech(color-COLRv1){s{color:gray}}@container (min-width:400px){em{color:maroon}}@container side (min-width:1px){q{color:red}}"
            ".cq{container-type:inline-size;width:500px}.cq2{container:side/inline-size;width:200px}@container (width<300px){dfn{color:blue}}"
            "@scope (.sc) to (.lim){a{color:purple}}@starting-style{p{color:red}}@media (min-width:calc(10px*5)){kbd{color:teal}}@supports "
            "(--x:y){var{color:green}}@supports (display:flex!important){tt{color:lime}}",
            "<p>one <b>two</b> <i>three</i> <u>four</u> <em>six</em><div class=cq><em>seven</em> <dfn>eight</dfn></div><div class="
            "cq2><q>nine</q> <dfn>ten</dfn> <em>11</em></div><div class=sc><a href=x>12</a><div class=lim><a href=y>13</a></div></div><kbd>14</kbd>"
            "<var>15</var><tt>16</tt>"),
        "has-and-is": page(
            "li:has(> ul){font-weight:bold}h2:has(+ p){color:teal}:is(h2,h3):is(.a,#b){font-style:italic}div:has(input:checked) label{color:green}"
            "section:not(:has(h2)){color:gray}p:has(~ p.l){font-size:14px}:where(.s) b{color:red}b.s2{color:blue}a:not(:any-link){color:purple}"
            "form:has(:disabled) em{color:olive}:is(:nosuch,.ok){color:navy}:not(p,div,html,body,ul,li)>u{color:maroon}p:nth-last-of-type(2){"
            "text-decoration:underline}p:only-of-type{color:lime}:root:has(.l) s{color:teal}body:has(> main > .deep) q{color:red}input:checked"
            "+span{color:green}input:placeholder-shown~i{color:red}:nth-child(2 of .c){color:orange}div:empty::after{content:'no'}"
            "option:checked{color:red}:required+kbd{color:blue}:optional~samp{color:teal}:read-only+tt{color:green}:enabled~var{color:navy}"
            "a:link:not(:visited):not(:hover):not(:active):not(:focus){font-weight:600}:focus-visible,:target{color:red}details:open{}",
            "<ul><li>one<ul><li>two</ul><li>three</ul><h2 class=a>four</h2><p>five<h3 id=b>six</h3><div><input type=checkbox checked><span>seven"
            "</span> <label>eight</label></div><section>nine<p>ten</section><p>11<p class=l>12<div class=s><b>13</b><b class=s2>14</b></div><a>15"
            "</a> <a href=z>16</a><form><input disabled><em>17</em></form><p class=ok>18 <span><u>19</u></span> <s>20</s><main><div class=deep>"
            "<q>21</q></div></main><div><i class=c>22</i><i class=c>23</i></div><div><input required><kbd>24</kbd><samp>25</samp><input readonly>"
            "<tt>26</tt><var>27</var></div>"),
        "counters-and-markers": page(
            "body{counter-reset:h2 fig}h2::before{counter-increment:h2;content:counter(h2,upper-roman) '. '}h2{counter-reset:h3}h3::before{counter-"
            "increment:h3;content:counter(h2) '.' counter(h3) ' '}li::marker{color:red;font-weight:bold;content:'> '}ol.x li::marker{content:"
            "counter(list-item,lower-greek) ')'}figcaption::before{counter-increment:fig;content:'Fig. ' counter(fig)}.i{list-style:inside "
            "url(x.png)}@counter-style c{system:cyclic;symbols:A B;suffix:' '}.cs{list-style:c}.q::before{content:open-quote}.q::after{content:"
            "close-quote}p.tip::after{content:attr(data-tip,'x') url(a.png) '\\A' ;white-space:pre}",
            "<h2>one</h2><h3>two</h3><h3>three</h3><h2>four</h2><h3>five</h3><ul><li>six<li>seven</ul><ol class=x><li>eight<li value=24>nine</ol>"
            "<ol reversed><li>ten<li>11</ol><figure><figcaption>12</figcaption></figure><ul class=i><li>13</ul><ul class=cs><li>14<li>15<li>16</ul>"
            "<p class=q>17<p class=tip data-tip=no>18"),
        "first-line-and-letter": page(
            "p::first-line{color:red;font-weight:bold}p::first-letter{font-size:300%;color:blue}p.x:first-line{font-variant:small-caps}q::first-"
            "letter{color:red}::selection{color:lime}input::placeholder{color:red}::-webkit-scrollbar{width:0}a::after{content:' \u2197'}li:first-"
            "child::first-letter{font-weight:bold}p::nosuch{color:red}p::before,p::nosuch2{color:lime}",
            paragraphs(["", "class=x"]) + "<q>one</q><ul><li>two<li>three</ul><a href=x>four</a>"),
        "columns-and-sticky": page(
            ".c{columns:3 10em;column-rule:1px solid}.c h3{column-span:all}.s{position:sticky;top:0;text-decoration:underline}.s b{float:left}.f{"
            "position:fixed;bottom:0}.r{position:relative;left:-9999em}.fl{float:right;shape-outside:circle()}.a{position:absolute;top:-500px}"
            ".tr{transform:translateX(-200%)}.o{overflow:hidden;width:0}.o2{overflow:hidden;height:0;display:inline-block}",
            f"<div class=c><h3>one</h3>{paragraphs([''] * 3)}</div><u class=s>two <b>three</b></u><u><span class=f>four</span><span class=r>five"
            "</span><span class=fl>six</span><span class=a>seven</span></u><p class=tr>eight<p class=o>nine<p><span class=o2>ten</span>"),
        "visually-hidden": page(
            ".sr{position:absolute!important;clip:rect(1px,1px,1px,1px);height:1px;width:1px;overflow:hidden}.tx{font:0/0 a;color:transparent}.fs0{"
            "font-size:0}.fs0 b{font-size:16px}.op{opacity:0}.vh{visibility:hidden}.vh *{visibility:inherit}.vh i{visibility:visible}.ti{text-indent"
            ":100%;white-space:nowrap;overflow:hidden}.fs1{font-size:.01px}.col{visibility:collapse}.dn>*{display:block}.dn{display:none}[aria-"
            "hidden=true]{color:gray}.cv{content-visibility:auto}.z{zoom:0}.co{display:contents}.co b{color:red}[inert]{color:teal}",
            "<span class=sr>one</span><p class=tx>two<p class=fs0>three <b>four</b><p class=op>five<p class=vh>no <b>no</b> <i>six</i><p class=ti>"
            "seven<p class=fs1>eight<p class=col>no<div class=dn><p>no</div><p aria-hidden=true>nine<p class=cv>ten<div class=co>11 <b>12</b></div>"
            "<p inert>13<p hidden>no<div hidden=''>no</div><span hidden>no</span><a href=#m class='sr skip'>14</a>"),
        "font-shorthand": page("", each("<p style=\"font:{v}\">{t} <b>{t}</b>", [
            "12px/30px Georgia,serif", "italic small-caps bold condensed 16px/2 cursive", "80% sans-serif", "x-large/110% 'new century schoolbook'",
            "oblique 20deg 900 1.5em a", "normal normal normal 1rem x", "inherit", "bolder 2ex x", "menu", "status-bar", "small-caption", "icon",
            "message-box", "caption bold", "12px", "bold", "italic 12px/ x", "12px x,", "12px 'x' y", "12px 1a", "350 larger x", "var(--x)",
            "calc(1em + 4px)/normal x", "-apple-system-body", "12 px x", "12px/1.5 system-ui, -apple-system, 'Segoe UI'", "0 x", "bold italic 12px inherit",
            "ultra-condensed 12px x", "50% 12px x", "normal 500 italic 14px/1 x"])
            + each("<p style='font:bold italic 18px serif;{v}'>{t}", ["font-style:oblique", "font-style:oblique -10deg", "font-weight:normal",
                   "font-variant:small-caps", "font-stretch:50%", "font-size-adjust:.5", "font-style:oblique 0deg", "font-synthesis:none"])),
        "lengths": page("html{font-size:62.5%}body{font-size:1.6rem}.q{font-size:10vi}", each("<p style='font-size:{v}'>{t}", [
            "1.4rem", "calc(1.2rem + .5vw)", "clamp(1rem,2.5vw,2rem)", "min(5vw,3rem,40px)", "max(10px,1em)", "2vb", "1svh", "1lvw", "1dvh", "1cqw",
            "calc((1em + 2px)*1.5/2)", "calc(100% - 4px)", "calc(1px*infinity)", "abs(-20px)", "round(17px,5px)", "mod(18px,7px)", "rem(18px,5px)",
            "sign(-1)*1px", "calc(sqrt(16)*1em)", "hypot(3px,4px)", "pow(2,4)*1px", "calc(pow(2,4)*1px)", "calc(sin(90deg)*20px)", "1lh", "1rlh",
            "1cap", "1ic", "math", "medium", "calc(2)", "20", "-1em", "1.5E1px", "+14px", ".9em", "1e-1in", "clamp(none,1em,3em)", "calc(e*5px)",
            "calc-size(auto,1px)", "14PX", "env(safe-area-inset-top,13px)", "attr(x)", "max(1em, min(2em, 15px))", "100000px", "0.001px", "0"])),
        "colour-values": page(":root{accent-color:red;color-scheme:light dark}", each("<p style='color:{v}'>{t}", [
            "color-mix(in srgb,red,blue)", "color-mix(in srgb,red 20%,transparent)", "color-mix(in oklab,red,blue 30%)", "color-mix(in hsl,red,lime)",
            "color-mix(in hsl longer hue,red,lime)", "oklch(70% 0.1 200)", "oklab(0.5 0.1 -0.1)", "lab(50% 40 20)", "lch(50% 60 30deg)",
            "color(srgb 1 0.5 0)", "color(display-p3 0 1 0)", "hsl(none 50% 50%)", "hsl(120 50 50)", "hwb(200 20% 30% / .5)", "rgb(none 10 20)",
            "rgb(50% 10 20)", "light-dark(green,red)", "Canvas", "ButtonText", "Highlight", "Mark", "AccentColor", "-webkit-link", "-webkit-text",
            "ActiveText", "currentColor", "RED", "rgb(from red r g b / 50%)", "hsl(from green h s calc(l + 10%))", "color(from red srgb g r b)",
            "device-cmyk(0 1 1 0)", "#12345", "#1234567", "rgb(1,2,3,)", "rgb(1 2,3)", "hsl(120,50,50)", "rgba(0 0 0)", "rgb(1e2 0 0)",
            "color-mix(in srgb,red)", "inherit", "unset", "revert", "contrast-color(red)", "VisitedText", "windowtext", "infobackground",
            "rgb(calc(100 + 50) 0 0)", "hsl(calc(90deg + 30deg) 50% 50%)", "rgb(0 0 0 / calc(1/2))", "#FFF8", "grey", "lightgoldenrodyellow"])
            + "<div style='opacity:.5;color:red'>half <span style='color:rgb(0 0 0/.3)'>third</span></div>"),
        "resets": page(
            ".u{all:unset}.i{all:initial}.r{all:revert}.l{all:revert-layer}div{color:teal;font:bold 20px serif}a.u,a.r,a.i{font-style:italic}"
            "h1,h2,p,ul,li,b,i{font:inherit;margin:0}button{all:unset}.b b{font-weight:unset}.b i{font-style:revert}code{font-family:unset}"
            "pre{font:revert}table{all:revert}td{color:inherit}th{font-weight:initial}small{font-size:inherit}u,s{text-decoration:unset}mark{"
            "color:unset;background:none}summary{all:unset}strong{font-weight:1000}em{font-style:inherit}",
            "<div>one <a href=x class=u>two</a> <a href=x class=i>three</a> <a href=x class=r>four</a><h1>five</h1><p class=b><b>six</b> <i>seven"
            "</i></p><button>eight</button><code>nine</code><pre>ten</pre><table><tr><th>11<td>12</table><small>13</small> <u>14</u> <s>15</s> "
            "<mark>16</mark> <details open><summary>17</summary></details><strong>18</strong> <em>19</em> <b class=l>20</b><h2 class=r>21</h2></div>"),
        "sheet-syntax": page(
            "p{color:red;color:color(bogus);color:@x;font-weight:bold}/**/p{font-style:italic/**/!/**/important}P.A{color:blue}p.a/*x*/b{color:teal}"
            "[title=a b]{color:lime}p[title='a b']{color:navy}p[title=a\\ b] i{color:olive}.\\31 23{color:green}#\\#x{color:maroon}@media{s{color:"
            "gray}}@import 'late.css';@namespace svg url(http://www.w3.org/2000/svg);svg|a{color:red}*|b{font-weight:300}|u{color:red}p,:nosuch{"
            "color:lime}q{color:rgb(1,2,3}em{color:teal}}dfn{color:navy}kbd{background:url(a b);color:teal}var{background:url( 'x' );color:olive}"
            "samp{color:\"x\";color:green}tt{;;color:purple;}big{color:blue;&}small{color:#0a0;--x:{a:b};font-weight:700}cite{color:red!ie;color"
            ":green}abbr{*color:red;_color:red;color:teal\\9}sub{color:blue!important;color:red}@charset 'x';sup{color:navy}@unknown x{y{z:1}}del{"
            "color:maroon}ins{filter:progid:X.Y(a='b',c=1);color:gray}span{color:re\nd}i{color:orange",
            "<p>one<p class=a>two<b>three</b><p title='a b'>four <i>five</i><p class=123>six<p id='#x'>seven <s>eight</s> <u>nine</u> <q>ten</q><em>"
            "11</em> <dfn>12</dfn> <kbd>13</kbd> <var>14</var> <samp>15</samp> <tt>16</tt> <big>17</big> <small>18</small> <cite>19</cite> <abbr>20"
            "</abbr> <sub>21</sub> <sup>22</sup> <del>23</del> <ins>24</ins> <span>25</span> <i>26</i>"),
    }  # fmt: skip


def markup_pages():
    """Elements with ways of their own, and markup that is broken."""
    def fonts_of(doctype):
        return (f"{doctype}<title>x</title><body style='font-size:20px;color:teal'><table><tr><td>one <b>two</b></table><P CLASS=A ID=B>three"
                "<style>.a{color:red}#b{font-weight:bold}</style><p style='color:00f;font-size:12'>four<font size=5>five</font><img src=x><form>six"
                "</form><ul><li>seven<p>eight</ul><code>nine</code><p>ten<table><tr><td>11</table>")  # fmt: skip

    doctypes = {
        "lower-case": "<!doctype html>", "mixed-case": "<!DocType HTML SYSTEM 'about:legacy-compat'>", "strict": "<!DOCTYPE HTML PUBLIC "
        "\"-//W3C//DTD HTML 4.01//EN\" \"http://www.w3.org/TR/html4/strict.dtd\">", "transitional": "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 "
        "Transitional//EN\">", "transitional-system": "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" \"http://www.w3.org/TR/html4"
        "/loose.dtd\">", "html3": "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML 3.0//EN\">", "comment-first": "<!-- x --><!doctype html>",
        "bogus": "<!doctype>", "xml-prolog": "<?xml version='1.0'?><!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' 'x'>",
        "late": "<p>x<!doctype html>", "space": "\n \n<!doctype   html   >",
    }  # fmt: skip
    pages = {f"doctype-{name}": fonts_of(doctype) for name, doctype in doctypes.items()}
    pages |= {
        "form-controls": page(
            "label{color:teal}input,button{color:red;font-size:20px}input[type=submit]{font-weight:bold}:disabled{color:gray}select{font:bold 18px "
            "serif}option{color:blue}legend{font-weight:bold}",
            "<form><fieldset disabled><legend>one</legend><label>two <input></label><button>three</button></fieldset>" + each(
                "<label>{v} <input type={v} value='no' placeholder=no></label>", "text password email url tel search number range date time color "
                "checkbox radio file submit reset button image hidden".split())
            + "<select><option>four<option selected>five</select><select size=3><option>six<optgroup label=seven><option disabled>eight</optgroup>"
            "</select><button type=button>nine <i>ten</i></button><output>11</output><input list=d><datalist id=d><option>no</datalist><progress "
            "value=.5>no</progress><meter>no</meter><label for=q>12</label><textarea placeholder=no></textarea><select multiple><option>13<option "
            "selected>14</select><fieldset><legend align=right>15</legend>16</fieldset><keygen><button disabled>17</button></form>"),
        "definition-lists": page("dt{font-weight:bold}dt::after{content:':'}dd+dt{color:red}dl.i dt,dl.i dd{display:inline}dl>div{font-size:14px}dfn{"
                                 "font-style:normal}",
                                 "<dl><dt>one<dt><dfn>two</dfn><dd>three<p>four<dd>five<dt>six</dl><dl class=i><dt>seven<dd>eight</dl><dl><div><dt>nine"
                                 "<dd>ten</div></dl><dd>11<dt>12"),
        "details-and-dialogs": page("details[open] summary{font-weight:bold}dialog::backdrop{color:red}summary::marker{content:'+'}[popover]{color:red}",
                                    "<details><summary>one</summary>no<details open><summary>no</summary>no</details></details><details open>two"
                                    "<summary>three</summary><p>four</details><details>no</details><details open>five</details><details><p>no</p>"
                                    "<summary>six</summary><summary>no</summary></details><dialog open>seven <button>eight</button></dialog><dialog>no"
                                    "</dialog><div popover>no</div><summary>nine</summary><details name=a open><summary><h3>ten</h3></summary>11"
                                    "</details><menu type=toolbar><li><button>12</button></menu>"),
        "web-components": page(":host{color:red}::slotted(*){color:red}my-card::part(x){color:red}my-card:not(:defined){color:teal}my-card{display:block"
                               "}x-y{font-weight:bold}",
                               "<my-card><template shadowrootmode=open><style>b{color:red}</style><p>shadow <slot>fallback</slot></p></template><b "
                               "slot=t>one</b></my-card><template><p>no</p></template><x-y>two <slot>three <b>four</b></slot></x-y><slot name=q>five"
                               "</slot><my-card>six</my-card><p is=x-p>seven<no-such>eight<p>nine</no-such>"),
        "no-script": page("noscript p{color:teal}.no-js{color:navy}.js-only{display:none}", "<script>document.write('no')</script><noscript><p>one</p>"
                          "<img src=x></noscript><p class=no-js>two<p class=js-only>no</p><script type=text/template><p>no</p></script><script>//<!--"
                          "\n'<script>no</scr'+'ipt>'\n//--></script>three<canvas>no</canvas><object><p>four</p></object><iframe>no</iframe><embed>"
                          "<video controls>no</video><audio>no</audio><applet>five</applet><object data=x.swf type=application/x-shockwave-flash>"
                          "<param name=a>six</object><noembed>no</noembed><map name=m><area href=y alt=no>seven</map><portal>eight</portal>",
                          head="<noscript><style>b{color:red}</style><link rel=stylesheet href=sheet-e.css></noscript>"),
        "broken-nesting": page(
            "b{color:maroon}a{color:teal}p i{color:blue}td b{color:olive}",
            "<p><b>one<div>two</b>three</div><i>four<p>five</i>six<a href=1>seven<a href=2>eight<div>nine</a>ten</div><ul><li>11<li>12<p>13<ul>14</ul>"
            "</p></li>15</ul><table>16<tr>17<td>18<b>19<tr><td>20</b></table>21<b><table><td>22</b>23</table>24</b><h1>25<h2>26</h1>27<select><option>28"
            "<p>29<table><tr><td>30</select>31<button>32<button>33</button>34<form>35<form>36</form>37</form></p>38</span></b></i><span>39<p>40</span>"
            "<nobr>41<nobr>42</nobr><font color=red>43<p>44</font>45<dd>46<dt>47<body text=red class=x>48</html>49<p>50<frameset><s>51<u>52</s>53</u>"),
        "broken-tags": page("b{color:red}i{color:teal}",
                            "<p>1 < 2 <3 a<b>c</b> <i/>d</i> <!x> <?php no ?> </ > <!-- no --!> <!--> e --> <![CDATA[f]]> <p class=a class=b id=>g<i title=a"
                            "\"b'c>h</i><i title='>'>j</i><a href=x\"y>k</a><i\nclass\n=\n'z'\n>l</i><b<i>m</b<i><p =x>n<x:y>o</x:y><1>p</1><i a/b=c / >q</i>"
                            "&lt;b&gt;r<div/>s</div><br/ >t</p ><img src=x alt='<b>'><p>u<script/>no</script>v<style/>no</style>w<title>no</title><b"),
        "raw-text": page("", "<xmp><b>one</b>&amp;</xmp><pre>&lt;two&gt;</pre><textarea><p>no</p></textarea><title>no</title><noframes>no</noframes><listing>\n"
                         "three</listing><iframe><p>no</p></iframe><style>b{color:red}</style>four <b>five</b><template><b>no</b></template><math><style>"
                         "b{color:teal}</style></math><svg><script>no</script></svg><p>six<plaintext><b>seven</b></plaintext>"),
        "tables-of-all-kinds": page(
            "table{font-size:14px;color:navy}.z tr:nth-child(odd) td:first-child{font-weight:bold}.d{display:table}.d>*{display:table-row}.d>*>*{display:"
            "table-cell;color:teal}.it{display:inline-table;text-decoration:underline}.cap{display:table-caption;font-style:italic}td[align=right]{color:"
            "red}@media (max-width:600px){td{display:block}}.b td{display:block}.v td{visibility:hidden}.v td.s{visibility:visible}.anon{display:table-cell}",
            "<table class=z><thead><tr><th>one<th>two<tbody><tr><td rowspan=2>three<td>four<tr><td align=right>five<tr><td colspan=2><table><tr><td>six"
            "</table></table><div class=d><div><b>seven</b><i>eight</i></div><p><span>nine</span></p></div>ten<span class=it>11</span><div class=cap>12</div>"
            "<table class=b><tr><td>13<td>14</table><table class=v><tr><td>no<td class=s>15</table>16<span class=anon>17</span><span class=anon>18</span>"
            "<table><caption>19<caption>20<col><tr><td>21<td>22</tr>23</table><table><tbody><tfoot><tr><td>24<tbody><tr><td>25</table><td>26</td><tr>27"
            "<table align=right><tr><td>28</table><table border frame=box rules=all><tr><th align=left>29</table>"),
        "links-of-all-kinds": page(
            "a[href^=http]{color:green}a[href$='.pdf' i]::after{content:' (PDF)'}a[href^='#']{color:navy}a[target=_blank]{font-style:italic}a:not([href]){"
            "color:gray}a[rel~=nofollow]{color:maroon}a img{border:0}a>*{text-decoration:none}a.btn{display:inline-block;text-decoration:none}",
            each("<a href='{v}'>{t}</a> ", [
                "http://EXAMPLE.com", "//example.com/x", "/abs", "../up/./x", "?q=1", "#frag", "mailto:a@b.c", "javascript:void(0)", "tel:+1 2", "data:text/"
                "plain,x", " spaced ", "a b.html", "http://ex\u00e4mple.com/\u00fc?\u00fc#\u00fc", "x.PDF", "http://a.b/%7Ex/%zz", "http:x", "HTTP://a:80/",
                "https://u:p@h.example:8080/", "file:///x", "", "\\\\host\\x", "http://a.b/?<>\"`{{}}", "http://[::1]/", "http://a.b/\ta\nb", "ftp://x/y;type=a",
                "about:blank", "x:y", "http://", "http://a b/", "http://1.2.3/", "http://xn--mnchen-3ya.de/", "%", "a#b#c", "http://a/b/../../c"])
            + "<a href=x><h3>block</h3><p>inside <b>bold</b></p></a><a name=n>anchor</a><a href=y><span style='display:inline-block'>ib</span></a><a class=btn "
            "href=z>btn</a><a href=q target=_blank rel='a nofollow'>rel</a><area href=w>", head="<base href='sub/dir/'>"),
        "lists-of-all-kinds": page(
            "ul.n{list-style:none;padding:0}ul.n>li{display:inline;font-size:13px}li p{margin:0;color:gray}ol ol{list-style:lower-alpha}.h>li{float:left}.f{"
            "display:flex}li:not(:last-child)::after{content:','}li>ul{font-size:smaller}",
            "<ul class=n><li>one<li>two</ul><ol start=0 reversed><li>three<ol type=A><li>four<ol><li>five</ol></ol><li><p>six<p>seven</ol><ul class=h><li>eight"
            "<li>nine</ul><ul class=f><li>ten<li>11</ul>12<li>13</li><ul>14<ul><li>15<ul><li>16<ul><li>17</ul></ul></ul></ul><ol style='list-style-position:"
            "inside'><li>18<li style='display:block'>19<li style='list-style:none'>20</ol><dir compact><li>21</dir><menu><li>22</menu>"),
        "small-tags": "x<b>y",
        "empty-parts": "<!doctype html><html><head></head><body></body></html> tail <p></p><b></b>",
        "body-missing": "<!doctype html><title>t</title><style>html{color:teal;font-size:18px}</style>one<p>two<meta charset=utf-8><link rel=x><style>p{color:"
                        "navy}</style>three",
        "xhtml-like": "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.1//EN\" \"http://www.w3.org/TR/xhtml11/DTD/xhtml11"
                      ".dtd\">\n<html xmlns=\"http://www.w3.org/1999/xhtml\" xml:lang=\"en\"><head><title>x</title><style type=\"text/css\">/*<![CDATA[*/ p { color:"
                      " teal } /*]]>*/</style></head><body><p>one<br /><b />two</p><div /><i>three</i><a id=\"x\" />four<p>&apos;five&apos;</p></body></html>",
        "style-places": page("p{color:red}", "<p>one<style>p{color:teal}</style><p>two<div><style scoped>p{font-weight:bold}</style><p>three</div><svg><style>p{font-"
                             "style:italic}</style></svg><style type=text/less>p{color:lime}</style><style type='TEXT/CSS'>p{font-size:18px}</style><style media="
                             "'(max-width:10px)'>p{color:lime}</style><template><style>p{color:lime}</style></template><noscript><style>p{text-decoration:"
                             "underline}</style></noscript><link rel=stylesheet href='data:text/css,b{color:navy}'><b>four</b><style title=a>i{color:teal}</style>"
                             "<style title=b>i{color:red}</style><i>five</i><link rel='stylesheet' disabled href='data:text/css,u{color:red}'><u>six</u>"),
        "presentational": DOCTYPE + "<body text=333333 link=navy><font color=red><a href=x>one</a></font><font size=5><h1>two</h1><p>three</font><table><tr><td>"
                          "<font size=+1>four</font></table><p align=center><big><big>five</big></big><small><small>six</small></small><center>seven</center><div "
                          "align=right>eight</div><basefont size=7>nine<tt><font size=2>ten</font></tt><code><big>11</big></code><pre><font size=4>12</font>"
                          "</pre><font face=monospace>13</font><font face='Courier, monospace'>14</font><font style='color:teal' color=red>15</font><h1 style="
                          "'font-size:medium'>16</h1><sub><sup>17</sup></sub><marquee bgcolor=red>18</marquee><table text=red bgcolor=black><tr bgcolor=x><td "
                          "bgcolor=y color=red>19</table><li type=square>20<font>21</font><rb>22</rb><acronym title=x>23</acronym><strike><u>24</u></strike>",
    }  # fmt: skip
    return pages


def site_pages():
    return article_pages() | script_pages() | sheet_pages() | markup_pages()
