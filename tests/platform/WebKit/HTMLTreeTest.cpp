// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "platform/Foundation/NSString.hpp"
#include "tests/platform/WebKit/HTMLTreeCheck.hpp"
#include "tests/platform/WebKit/TreeText.hpp"
#include "tests/support/ExactBuffer.hpp"

namespace nimbo {
namespace {

using namespace std::string_view_literals;

struct Case {
  /// The page, behind a document type.
  std::string_view page;
  /// The tree on one line: "p(b(\"x\"))" for `<p><b>x</b></p>`, attributes in brackets.
  std::string_view tree;
};

/// The children of a node as the cases write them.
std::string shortTree(const HTMLDocument &document, HTMLNodeIndex parent) {
  const auto bytes = [](std::u16string_view units) {
    return NSString::stringWithCharacters(units).UTF8String();
  };
  std::string tree;
  for (auto i = document.node(parent).firstChild; i != kNoHTMLNode; i = document.node(i).nextSibling) {
    const HTMLNode &node = document.node(i);
    if (!tree.empty()) tree += ' ';
    if (node.kind == HTMLNodeKind::text) tree += "'" + bytes(document.text(node)) + "'";
    if (node.kind == HTMLNodeKind::comment) tree += "{" + bytes(document.text(node)) + "}";
    if (node.kind == HTMLNodeKind::doctype) tree += "!" + bytes(document.atoms().text(node.name));
    if (!node.isElement()) continue;
    tree += node.nameSpace == HTMLNamespace::svg      ? "svg:"
            : node.nameSpace == HTMLNamespace::mathML ? "math:"
                                                      : "";
    tree += bytes(document.atoms().text(node.name));
    for (const HTMLAttribute &one : document.attributes(node))
      tree += "[" + bytes(document.atoms().text(one.name)) + "=" + bytes(document.value(one)) + "]";
    const bool isTemplate = node.isHTML("template"_atom);
    const std::string inside = shortTree(document, isTemplate ? document.templateContents(i) : i);
    if (!inside.empty()) tree += (isTemplate ? "<" : "(") + inside + (isTemplate ? ">" : ")");
  }
  return tree;
}

std::string shortTree(std::string_view page, bool isWhole) {
  // What stands behind the page belongs to something else.
  constexpr std::string_view kBehind = "x>";
  const NSString string = NSString::stringWithUTF8String(std::string(page).append(kBehind));
  const HTMLDocument document =
      HTMLDocument::documentWithText(string.view().substr(0, string.length() - kBehind.size()));
  EXPECT_TRUE(isSoundTree(document, HTMLLimits().depth)) << page;
  return shortTree(document, isWhole ? HTMLDocument::kRoot : document.body());
}

TEST(HTMLTreeTest, readsTagsAndAttributes) {
  const Case cases[] = {
      {"<DIV Class=a ID='b' TITLE=\"c\" SIZE=d @AZ[=e>x</dIv >",
       "div[class=a][id=b][title=c][size=d][@az[=e]('x')"},
      {"<p a a=1 =b c=d=e / f=g/h/>", "p[a=][=b=][c=d=e][f=g/h/]"},
      {"<p a='&amp;&lt=&ltx&gt;&#65' b=&amp;c>", "p[a=&&lt=&ltx>A][b=&c]"},
      {"<p a =1 b\n=\t2 c= '3' d = \"4\">", "p[a=1][b=2][c=3][d=4]"},
      {"<p a=\"x>y\" b='\n'\tc>z", "p[a=x>y][b=\n][c=]('z')"},
      {"<p a=1\0b=2>x\0y"sv,
       "p[a=1\xef\xbf\xbd"
       "b=2]('xy')"},
      {"a<b<c>d", "'a' b<c('d')"},
      {"1 < 2 <3 <", "'1 < 2 <3 <'"},
      {"a</>b</ c>d</5>e</", "'ab' { c} 'd' {5} 'e</'"},
      {"a<p b='c", "'a'"},
      {"a<p b", "'a'"},
      {"a\r\nb\rc<p d='\r\n'>", "'a\nb\nc' p[d=\n]"},
      {"<br/>x<p/>y</br>", "br 'x' p('y' br)"},
  };
  for (const Case &one : cases)
    EXPECT_EQ(shortTree("<!DOCTYPE html><body>" + std::string(one.page), false), one.tree) << one.page;
}

TEST(HTMLTreeTest, readsCharacterReferences) {
  const Case cases[] = {
      {"&amp;&AMP&amp&ampx&am", "'&&&&x&am'"},
      {"&notit;&notin;&notinE;&not;", "'\u00acit;\u2209\u22f9\u0338\u00ac'"},
      {"&NotEqualTilde;&Aopf;", "'\u2242\u0338\U0001d538'"},
      {"&CounterClockwiseContourIntegral;&CounterClockwiseContourIntegral",
       "'\u2233&CounterClockwiseContourIntegral'"},
      {"&#65;&#x41&#X41;&#;&#x;&#xg;", "'AAA&#;&#x;&#xg;'"},
      {"&#128;&#x9f;&#129;", "'\u20ac\u0178\u0081'"},
      {"&#0;&#xd800;&#x110000;&#99999999999999999999;", "'\ufffd\ufffd\ufffd\ufffd'"},
      {"&#x1F600;&;& &1", "'\U0001f600&;& &1'"},
      {"a&lt;b&lt\0c"sv, "'a<b<c'"},
  };
  for (const Case &one : cases)
    EXPECT_EQ(shortTree("<!DOCTYPE html><body>" + std::string(one.page), false), one.tree) << one.page;
}

TEST(HTMLTreeTest, readsCommentsAndText) {
  const Case cases[] = {
      {"<!--a--><!----><!--><!---><!--->-->", "{a} {} {} {} {} '-->'"},
      {"<!--a--!>b<!-- -- ! --->c", "{a} 'b' { -- ! -} 'c'"},
      {"<!--a<!--b-->c<!--d<!-->e", "{a<!--b} 'c' {d<!} 'e'"},
      {"<!--a--", "{a}"},
      {"<!--a--!", "{a}"},
      {"<!--a-", "{a}"},
      {"<!-a><!a><?a?><![CDATA[a]]>", "{-a} {a} {?a?} {[CDATA[a]]}"},
      {"<!--a\0b-->"sv,
       "{a\ufffd"
       "b}"},
      {"<style>a<!--</style>b", "style('a<!--') 'b'"},
      {"<style></sty</style x>a", "style('</sty') 'a'"},
      {"<textarea>\n\n<p>&lt;</textarea >a", "textarea('\n<p><') 'a'"},
      {"<title>&amp;</titles></TITLE>a", "title('&</titles>') 'a'"},
      {"<xmp>&amp;<p></xmp>a<noembed><p></noembed>", "xmp('&amp;<p>') 'a' noembed('<p>')"},
      {"<pre>\n\na</pre><pre>&#10;b", "pre('\na') pre('b')"},
      {"<pre>\n</pre>a<textarea>\n</textarea>", "pre 'a' textarea"},
      {"<pre><b>\na</b></pre>", "pre(b('\na'))"},
      {"<script>a<!--<script>b</script>c--></script>d", "script('a<!--<script>b</script>c-->') 'd'"},
      {"<script>a<!--<script>b--></script>c", "script('a<!--<script>b-->') 'c'"},
      {"<script><xscript><!--></script>a", "script('<xscript><!-->') 'a'"},
      {"<script><!--><script></script>a", "script('<!--><script>') 'a'"},
      {"<script><!---><script></script>a", "script('<!---><script>') 'a'"},
      {"<script><!->--<!--<script>-></script>--></script>a", "script('<!->--<!--<script>-></script>-->') 'a'"},
      {"<script><!--</scriptx></script>a", "script('<!--</scriptx>') 'a'"},
      {"<script>a\0</script "sv, "script('a\ufffd')"},
      {"<plaintext>a</plaintext>&lt;", "plaintext('a</plaintext>&lt;')"},
      {"<noscript>a<b></noscript>b", "noscript('a' b) b('b')"},
  };
  for (const Case &one : cases)
    EXPECT_EQ(shortTree("<!DOCTYPE html><body>" + std::string(one.page), false), one.tree) << one.page;
}

TEST(HTMLTreeTest, impliesEnds) {
  const Case cases[] = {
      {"<p>a<p>b<div>c</p>d", "p('a') p('b') div('c' p 'd')"},
      {"<p>a<button>b<p>c</button>d</p>e", "p('a' button('b' p('c')) 'd') 'e'"},
      {"<p><table></table>", "p table"},
      {"<ul><li>a<li>b<ul><li>c</ul><li>d<div><li>e", "ul(li('a') li('b' ul(li('c'))) li('d' div) li('e'))"},
      {"<ul><li>a</li>b</ul><li><ul></li>c", "ul(li('a') 'b') li(ul('c'))"},
      {"<dl><dt>a<dd>b<dt>c<p>d</dl>e", "dl(dt('a') dd('b') dt('c' p('d'))) 'e'"},
      {"<h1>a<h2>b</h3>c", "h1('a') h2('b') 'c'"},
      {"<ruby>a<rb>b<rt>c<rtc>d<rt>e<rp>f</ruby>g", "ruby('a' rb('b') rt('c') rtc('d' rt('e') rp('f'))) 'g'"},
      {"<form>a<div></form>b</div><form>c", "form('a' div('b')) form('c')"},
      {"<form><object></form></object>a", "form(object 'a')"},
      {"<form><form>a</form>b", "form('a') 'b'"},
      {"<table><form></table><p>a</form>b", "table(form) p('ab')"},
      {"<button>a<button>b", "button('a') button('b')"},
      {"<div><span></div>a</span>", "div(span) 'a'"},
      {"<x><y></x>a", "x(y) 'a'"},
      {"<image src=a>", "img[src=a]"},
      {"<select><option>a<optgroup><option>b<option>c<hr></select>d",
       "select(option('a') optgroup(option('b') option('c')) hr) 'd'"},
      {"<select><div>a<select>b", "select(div('a')) 'b'"},
      {"<select>a<input>b", "select('a') input 'b'"},
      {"<option>a<option>b<optgroup>c", "option('a') option('b') optgroup('c')"},
      {"</p>a</li></div></body><p>b", "p 'a' p('b')"},
      {"<dl><dd>a<li>b</dl>", "dl(dd('a' li('b')))"},
      {"<ul><li>a<dd>b</ul>", "ul(li('a' dd('b')))"},
      {"<p>a<rt>b<rb>c", "p('a' rt('b' rb('c')))"},
      {"<p>a<xmp>b", "p('a') xmp('b')"},
      {"<p>a<hr>b", "p('a') hr 'b'"},
      {"<p>a<listing>\nb", "p('a') listing('b')"},
      {"<p><b>a<plaintext>b", "p(b('a')) plaintext(b('b'))"},
      {"<form><template><form>a", "form(template<form('a')>)"},
      {"<template><form></template><form>a", "template<form> form('a')"},
      {"<p>c<form>a</form><li><form>b</form>d", "p('c') form('a') li(form('b') 'd')"},
  };
  for (const Case &one : cases)
    EXPECT_EQ(shortTree("<!DOCTYPE html><body>" + std::string(one.page), false), one.tree) << one.page;
}

TEST(HTMLTreeTest, carriesFormattingOn) {
  const Case cases[] = {
      {"<b>a<p>b</b>c", "b('a') p(b('b') 'c')"},
      {"<p><b>a<p>b</b>c", "p(b('a')) p(b('b') 'c')"},
      {"<b><i>a</b>b</i>c", "b(i('a')) i('b') 'c'"},
      {"<a href=1>a<a href=2>b", "a[href=1]('a') a[href=2]('b')"},
      {"<a>a<div>b<a>c", "a('a') div(a('b') a('c'))"},
      {"<b>1<div>2<div>3</b>4", "b('1') div(b('2') div(b('3') '4'))"},
      {"<b><b><b><b><p>a", "b(b(b(b(p('a')))))"},
      {"<p><b><b><b><b><p>a", "p(b(b(b(b)))) p(b(b(b('a'))))"},
      {"<p><b x=1 y=2><b y=2 x=1><b x=1 y=2><b x=1 y=2><p>a",
       "p(b[x=1][y=2](b[y=2][x=1](b[x=1][y=2](b[x=1][y=2])))) p(b[y=2][x=1](b[x=1][y=2](b[x=1][y=2]('a'))))"},
      {"<b><em><u><i><s><p>a</b>b", "b(em(u(i(s)))) u(i(s(p(b('a') 'b'))))"},
      {"<nobr>a<nobr>b", "nobr('a') nobr('b')"},
      {"<b>a<object>b</b>c</object>d", "b('a' object('bc') 'd')"},
      {"<font>a<table><td>b<font>c</table>d", "font('a' table(tbody(tr(td('b' font('c'))))) 'd')"},
      {"a</b></i>b", "'ab'"},
      {"<p><b><object></object><p>a", "p(b(object)) p(b('a'))"},
      {"<p><b><p><select>", "p(b) p(b(select))"},
      {"<p><b><p><option>a", "p(b) p(b(option('a')))"},
      {"<p><b><p><input>", "p(b) p(b(input))"},
      {"<p><b><p><hr>a", "p(b) p hr b('a')"},
      {"<p><b><p><x>", "p(b) p(b(x))"},
      {"<p><b><p><svg>", "p(b) p(b(svg:svg))"},
      {"<p><b><p><math>", "p(b) p(b(math:math))"},
      {"<p><b><p><xmp>a", "p(b) p b(xmp('a'))"},
      {"<p><b><p><nobr>a", "p(b) p(b(nobr('a')))"},
      {"<nobr><i>a<nobr>b", "nobr(i('a')) i(nobr('b'))"},
      {"<p><b><object><i></object><p>a", "p(b(object(i))) p(b('a'))"},
  };
  for (const Case &one : cases)
    EXPECT_EQ(shortTree("<!DOCTYPE html><body>" + std::string(one.page), false), one.tree) << one.page;
}

TEST(HTMLTreeTest, completesTables) {
  const Case cases[] = {
      {"<table><td>a<th>b<tr><td>c<tbody><tr>", "table(tbody(tr(td('a') th('b')) tr(td('c'))) tbody(tr))"},
      {"<table>a<tr>b<td>c</td>d</table>e", "'abd' table(tbody(tr(td('c')))) 'e'"},
      {"<table> <tr> </tr> </table>", "table(' ' tbody(tr(' ') ' '))"},
      {"<table><b>a<tr><td>b</table>c", "b('a') table(tbody(tr(td('b')))) b('c')"},
      {"<table><caption>a<p>b<col><colgroup><col>c",
       "'c' table(caption('a' p('b')) colgroup(col) colgroup(col))"},
      {"<table><caption>a</table>b", "table(caption('a')) 'b'"},
      {"<table><td>a<table><td>b</table>c</table>d",
       "table(tbody(tr(td('a' table(tbody(tr(td('b')))) 'c')))) 'd'"},
      {"<table>a<table>b", "'a' table 'b' table"},
      {"<table><input type=HIDDEN><input><form>a</table>", "input 'a' table(input[type=HIDDEN] form)"},
      {"<table><tr></body></td><thead></tr><th>a", "table(tbody(tr) thead(tr(th('a'))))"},
      {"<table><style>a</style><script>b</script><td><style>c",
       "table(style('a') script('b') tbody(tr(td(style('c')))))"},
      {"<table><div><td>a", "div table(tbody(tr(td('a'))))"},
      {"<table><td><select><option>a<td>b", "table(tbody(tr(td(select(option('a'))) td('b'))))"},
      {"<td>a</tr><tr>b<caption>c", "'abc'"},
      {"<col><colgroup><frame><head><tbody><tfoot><th><thead>a", "'a'"},
      {"<table><tbody></thead></tfoot></td></tr></caption></body><tr></td></caption></html><td>a",
       "table(tbody(tr(td('a'))))"},
      {"<table><!doctype a><caption></body></html></td>b</caption>", "table(caption('b'))"},
      {"<table><colgroup><!--a--><!doctype b></col> <col>", "table(colgroup({a} ' ' col))"},
      {"<table><td>a</td></tbody><tr></thead><td>b", "table(tbody(tr(td('a'))) tbody(tr(td('b'))))"},
      {"<form><table><form><td>a</table></form><template><table><form></template>",
       "form(table(tbody(tr(td('a'))))) template<table>"},
      {"<table>a&amp;<td>b&lt;<tr>c&gt;<td>d&amp;", "'a&c>' table(tbody(tr(td('b<')) tr(td('d&'))))"},
  };
  for (const Case &one : cases)
    EXPECT_EQ(shortTree("<!DOCTYPE html><body>" + std::string(one.page), false), one.tree) << one.page;
}

TEST(HTMLTreeTest, keepsSVGAndMathML) {
  const Case cases[] = {
      {"<SVG viewbox=1 onclick=2><LINEARGRADIENT/><g>a</G></svg>b",
       "svg:svg[viewBox=1][onclick=2](svg:linearGradient svg:g('a')) 'b'"},
      {"<svg><g><p>a", "svg:svg(svg:g) p('a')"},
      {"<svg><font>a<font size=1>b", "svg:svg(svg:font('a')) font[size=1]('b')"},
      {"<svg><foreignObject><p>a<svg><desc><b>c</b></desc>d",
       "svg:svg(svg:foreignObject(p('a' svg:svg(svg:desc(b('c')) 'd'))))"},
      {"<svg><title><p>a</title>b", "svg:svg(svg:title(p('ab')))"},
      {"<svg><g></p>a", "svg:svg(svg:g) p 'a'"},
      {"<svg><![CDATA[<a>&amp;]]]]>b<![CDATA[c", "svg:svg('<a>&amp;]]bc')"},
      {"<math definitionurl=1><mi><b>a</b><mglyph/><malignmark/></mi><mo>b",
       "math:math[definitionURL=1](math:mi(b('a') math:mglyph math:malignmark) math:mo('b'))"},
      {"<math><annotation-xml><p>a", "math:math(math:annotation-xml) p('a')"},
      {"<math><annotation-xml encoding=TEXT/html><p>a",
       "math:math(math:annotation-xml[encoding=TEXT/html](p('a')))"},
      {"<math><annotation-xml><svg><g>a", "math:math(math:annotation-xml(svg:svg(svg:g('a'))))"},
      {"<svg><a><div>a", "svg:svg(svg:a) div('a')"},
      {"<svg><script>a<b>c</b></script>d", "svg:svg(svg:script('a')) b('c') 'd'"},
      {"<svg>a\0b"sv,
       "svg:svg('a\ufffd"
       "b')"},
      {"<div><svg></div>a", "div(svg:svg) 'a'"},
      {"<svg><!doctype a><!--c-->b", "svg:svg({c} 'b')"},
      {"<svg><font face=a>b<svg><font color=c>d", "svg:svg font[face=a]('b' svg:svg font[color=c]('d'))"},
      {"<math><annotation-xml encoding=application/XHTML+xml><p>a",
       "math:math(math:annotation-xml[encoding=application/XHTML+xml](p('a')))"},
      // What SVG calls as HTML does is no cell.
      {"<table><td><svg><td><desc><b></td>a", "'a' table(tbody(tr(td(svg:svg(svg:td(svg:desc(b)))))))"},
  };
  for (const Case &one : cases)
    EXPECT_EQ(shortTree("<!DOCTYPE html><body>" + std::string(one.page), false), one.tree) << one.page;
}

TEST(HTMLTreeTest, framesPages) {
  const Case cases[] = {
      {"", "html(head body)"},
      {" \n", "html(head body)"},
      {"a", "html(head body('a'))"},
      {"<!--a--><!doctype HTML><!--b--><p>c", "{a} !html {b} html(head body(p('c')))"},
      {" <title>a</title> <p>b", "html(head(title('a') ' ') body(p('b')))"},
      {"<html a=1><html a=2 b=3><body c=4><body c=5 d=6>", "html[a=1][b=3](head body[c=4][d=6])"},
      {"<head></head> <link><p>a<title>b</title>", "html(head(link) ' ' body(p('a' title('b'))))"},
      {"<head><noscript><link><p>a</noscript>b", "html(head(noscript(link)) body(p('ab')))"},
      {"<p>a</body>b</html>c<!--d-->", "html(head body(p('abc' {d})))"},
      {"<body></body><!--a--></html><!--b--> c", "html(head body(' c') {a}) {b}"},
      {"<body></body></html><!--a-->", "html(head body) {a}"},
      {"<frameset><frame>a <noframes>b</noframes></frameset> c</html> d<!--e-->",
       "html(head frameset(frame ' ' noframes('b')) '  ') {e}"},
      {"<div></div><frameset><frame>", "html(head frameset(frame))"},
      {"<div><frameset><frame>", "html(head frameset(frame))"},
      {"<input type=HIDDEN><frameset>", "html(head frameset)"},
      {"<input><frameset>", "html(head body(input))"},
      {"<hr><frameset>", "html(head body(hr))"},
      {"<svg>a</svg><frameset>", "html(head body(svg:svg('a')))"},
      {"<svg> </svg><frameset>", "html(head frameset)"},
      {"<body a=1><template><body b=2><html c=3>d", "html(head body[a=1](template<'d'>))"},
      {"<select><frameset>", "html(head body(select))"},
      {"</br><frameset>", "html(head body(br))"},
      {"<frameset><!--a--></frameset><!--b--></html><!--c-->", "html(head frameset({a}) {b}) {c}"},
      {"<frameset></frameset></p><!--a--></html></p><!--b-->", "html(head frameset {a}) {b}"},
      {"<div>a<frameset><frame>", "html(head body(div('a')))"},
      {"<template>a<td>b</template><p>c", "html(head(template<'a' td('b')>) body(p('c')))"},
      {"<template><td>a<tr><td>b</template>", "html(head(template<td('a') td('b')>) body)"},
      {"<template><col><p>a<template>b", "html(head(template<col template<'b'>>) body)"},
      {"<body><template><p>a<template>b</template>c</template>d",
       "html(head body(template<p('a' template<'b'> 'c')> 'd'))"},
      {"<table><template><tr></template><tr><template>a",
       "html(head body(table(template<tr> tbody(tr(template<'a'>)))))"},
      {"<html></p><head a=1>", "html(head[a=1] body)"},
      {"</p><link>a", "html(head(link) body('a'))"},
      {"</head><link>a", "html(head(link) body('a'))"},
      {"</body><link>a", "html(head body(link 'a'))"},
      {"</html><link>a", "html(head body(link 'a'))"},
      {"</br>a", "html(head body(br 'a'))"},
      {"<html><html a=1><head b=1>", "html[a=1](head[b=1] body)"},
      {"<head><html a=1><head b=1></p><title>c", "html[a=1](head(title('c')) body)"},
      {"<head></body><link>a", "html(head body(link 'a'))"},
      {"<head></head></html><link>a", "html(head body(link 'a'))"},
      {"<noscript><!--a--><!doctype b> <html c=1><head><noscript><style>d</style></p><meta></noscript><base>",
       "html[c=1](head(noscript({a} ' ' style('d') meta) base) body)"},
      {"<noscript></br><link>", "html(head(noscript) body(br link))"},
      {"<head></head><html a=1><head b=1></p></template><!--c--><template>d</template><body e=1>",
       "html[a=1](head(template<'d'>) {c} body[e=1])"},
      {"<body></body><!doctype a><html b=1>c", "html[b=1](head body('c'))"},
      {"<frameset></frameset></html><html a=1><noframes>b</noframes><p>",
       "html[a=1](head frameset noframes('b'))"},
      {"<table><caption><template>a</template><td>b",
       "html(head body(table(caption(template<'a'>) tbody(tr(td('b'))))))"},
      {"<table><colgroup><template>a</template><col>", "html(head body(table(colgroup(template<'a'> col))))"},
      {"<table><tbody><template>a</template><tr>", "html(head body(table(tbody(template<'a'> tr))))"},
      {"<table><template><tr>a", "html(head body(table(template<tr 'a'>)))"},
      {"<template><caption></caption></table><table>a</template>b",
       "html(head(template<caption 'a'>) body('b'))"},
      {"<template><tr></tr><caption>a<col><colgroup><tbody><tfoot><thead>b",
       "html(head(template<tr 'ab'>) body)"},
      {"<template><td></td><caption>a<col><colgroup><tbody><tfoot><thead><tr>b",
       "html(head(template<td 'ab'>) body)"},
      {"<template><form>a<b>b</form>c</template>", "html(head(template<form('a' b('b')) b('c')>) body)"},
      {"<template><form>a<table></form>b</template>", "html(head(template<form('ab' table)>) body)"},
      {"<template><caption>a</template></template><b></template>c",
       "html(head(template<caption('a')>) body(b('c')))"},
  };
  for (const Case &one : cases) EXPECT_EQ(shortTree(one.page, true), one.tree) << one.page;
}

/// A frameset takes the place of a body in which nothing was seen so far.
TEST(HTMLTreeTest, knowsWhatRulesFramesetsOut) {
  const auto hasFrameset = [](const std::string &name) {
    return shortTree("<!DOCTYPE html><p><" + name + "></" + name + "><frameset>", true).find("frameset") !=
           std::string::npos;
  };
  for (const char *name : {"applet", "area", "br",     "button", "dd",       "dt",       "embed",   "hr",
                           "iframe", "img",  "input",  "keygen", "li",       "body",     "listing", "marquee",
                           "object", "pre",  "select", "table",  "template", "textarea", "wbr",     "xmp"})
    EXPECT_FALSE(hasFrameset(name)) << name;
  for (const char *name :
       {"a",      "b",     "center", "div",    "dl",     "form", "h1",    "math", "nobr",  "link",  "noembed",
        "option", "param", "ruby",   "script", "source", "span", "style", "svg",  "title", "track", "ul"})
    EXPECT_TRUE(hasFrameset(name)) << name;
}

TEST(HTMLTreeTest, writesTreesWithIndents) {
  const HTMLDocument document =
      HTMLDocument::documentWithText(u"<!doctype html><p id=b class=a>One<template><svg><g/></svg></template>");
  EXPECT_EQ(
      treeText(document),
      "<!DOCTYPE html>\n<html>\n  <head>\n  <body>\n    <p>\n      class=\"a\"\n      id=\"b\"\n      \"One\"\n"
      "      <template>\n        content\n          <svg svg>\n            <svg g>\n");
}

TEST(HTMLTreeTest, knowsTheModeOfDoctypes) {
  const struct {
    std::u16string_view page;
    HTMLQuirksMode mode;
  } cases[] = {
      {u"<p>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html>", HTMLQuirksMode::noQuirks},
      {u"<!doctypeHTML>", HTMLQuirksMode::noQuirks},
      {u"<!DOCTYPE>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE xml>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html x>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html SYSTEM 'about:legacy-compat'>", HTMLQuirksMode::noQuirks},
      {u"<!DOCTYPE html SYSTEM 'a' b>", HTMLQuirksMode::noQuirks},
      {u"<!DOCTYPE html SYSTEM 'a>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC '' x>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC 'a'>", HTMLQuirksMode::noQuirks},
      {u"<!DOCTYPE\fhtml\tPUBLIC'a'\"b\">", HTMLQuirksMode::noQuirks},
      {u"<!DOCTYPE html PUBLIC 'a' 'b' c>", HTMLQuirksMode::noQuirks},
      {u"<!DOCTYPE html PUBLIC 'a", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC 'a'", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC 'a' 'b", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC 'a' 'b'", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC 'a>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC 'a\">", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html SYSTEM>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html SYSTEM a>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLI 'a'>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC 'HTML'>", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 3.2 Final//EN\">", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">", HTMLQuirksMode::quirks},
      {u"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" \"x\">",
       HTMLQuirksMode::limitedQuirks},
      {u"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01//EN\">", HTMLQuirksMode::noQuirks},
      {u"<!DOCTYPE html PUBLIC '-//w3c//dtd xhtml 1.0 Transitional//EN''x'>", HTMLQuirksMode::limitedQuirks},
      {u"<!DOCTYPE html SYSTEM 'http://www.ibm.com/data/dtd/v11/ibmxhtml1-transitional.dtd'>",
       HTMLQuirksMode::quirks},
  };
  for (const auto &one : cases)
    EXPECT_EQ(HTMLDocument::documentWithText(one.page).quirksMode(), one.mode)
        << NSString::stringWithCharacters(one.page).UTF8String();
  // In quirks mode a table is part of a paragraph.
  EXPECT_EQ(shortTree("<p><table>", false), "p(table)");
}

/// The public identifiers of old pages, by the standard and in its letters.
TEST(HTMLTreeTest, knowsOldPublicIdentifiers) {
  const auto mode = [](std::string_view identifier, const std::string &behind) {
    const std::string page = "<!DOCTYPE html PUBLIC \"" + std::string(identifier) + behind + ">";
    return HTMLDocument::documentWithText(NSString::stringWithUTF8String(page).view()).quirksMode();
  };
  for (const std::string_view prefix :
       {"+//Silmaril//dtd html Pro v0r11 19970101//", "-//IETF//DTD HTML 2.0 Level 1//", "-//IETF//DTD HTML//",
        "-//W3C//DTD HTML 4.0 Transitional//", "-//WebTechs//DTD Mozilla HTML//"}) {
    EXPECT_EQ(mode(prefix, "EN\" 'x'"), HTMLQuirksMode::quirks) << prefix;
    EXPECT_EQ(mode(prefix.substr(0, prefix.size() - 1), "-EN\" 'x'"), HTMLQuirksMode::noQuirks) << prefix;
  }
  for (const std::string_view name :
       {"-//W3O//DTD W3 HTML Strict 3.0//EN//", "-/W3C/DTD HTML 4.0 Transitional/EN", "HTML"}) {
    EXPECT_EQ(mode(name, "\" 'x'"), HTMLQuirksMode::quirks) << name;
    EXPECT_EQ(mode(name, "x\" 'x'"), HTMLQuirksMode::noQuirks) << name;
    EXPECT_EQ(mode(name.substr(0, name.size() - 1), "\" 'x'"), HTMLQuirksMode::noQuirks) << name;
  }
  for (const bool isFrameset : {false, true}) {
    const std::string kind = isFrameset ? "Frameset" : "Transitional";
    EXPECT_EQ(mode("-//W3C//DTD HTML 4.01 ", kind + "//\" 'x'"), HTMLQuirksMode::limitedQuirks) << kind;
    EXPECT_EQ(mode("-//W3C//DTD HTML 4.01 ", kind + "//\""), HTMLQuirksMode::quirks) << kind;
    EXPECT_EQ(mode("-//W3C//DTD HTML 4.01 ", kind + "/-\""), HTMLQuirksMode::noQuirks) << kind;
    EXPECT_EQ(mode("-//W3C//DTD XHTML 1.0 ", kind + "//\""), HTMLQuirksMode::limitedQuirks) << kind;
    EXPECT_EQ(mode("-//W3C//DTD XHTML 1.0 ", kind + "/-\""), HTMLQuirksMode::noQuirks) << kind;
  }
}

TEST(HTMLTreeTest, knowsTitleAndBase) {
  const HTMLDocument document = HTMLDocument::documentWithText(
      u"<template><title>x</title><base href=x></template><svg><title>y</title></svg><base target=a>"
      u"<base href=z><base href=w><title>One</title><title>Two</title>");
  EXPECT_EQ(document.text(document.node(document.node(document.title()).firstChild)), u"One");
  EXPECT_EQ(document.attribute(document.node(document.base()), "href"_atom), u"z");
  EXPECT_FALSE(document.attribute(document.node(document.base()), "target"_atom));
  const HTMLDocument empty = HTMLDocument::documentWithText(u"<base>");
  EXPECT_EQ(empty.title(), kNoHTMLNode);
  EXPECT_EQ(empty.base(), kNoHTMLNode);
}

TEST(HTMLTreeTest, readsAnyUnits) {
  constexpr std::u16string_view kUnits = u"<<<<<>>>//!-='\"&;# \n\r\0abpistdr[]\u00e9\xd800\xdc00";
  std::mt19937 random(7);
  for (int round = 0; round < 5000; ++round) {
    std::u16string text;
    for (unsigned i = random() % 60; i > 0; --i) text += kUnits[random() % kUnits.size()];
    const ExactBuffer<unichar> page(text);
    const HTMLDocument document = HTMLDocument::documentWithText({page.data(), text.size()});
    ASSERT_TRUE(isSoundTree(document, HTMLLimits().depth));
    treeText(document);
  }
}

}  // namespace
}  // namespace nimbo
