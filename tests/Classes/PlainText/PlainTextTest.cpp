// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/PlainText/PlainTextHandler.hpp"
#include "Classes/PlainText/PlainTextKernels.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

struct Case {
  std::string page;
  std::string text;
};

NSString stringOf(const std::string &bytes) {
  return NSString::stringWithUTF8String(bytes);
}

void expectTexts(const PlainTextOptions &options, std::initializer_list<Case> cases) {
  for (const Case &test : cases) {
    SCOPED_TRACE(test.page.substr(0, 200));
    bool junkFound = true;
    const NSString text =
        _convertHtml2PlainTextUsingHandler(stringOf(test.page), PlainTextHandler, options, &junkFound);
    EXPECT_EQ(text.UTF8String(), test.text);
    EXPECT_FALSE(junkFound);
  }
}

TEST(PlainText, BreaksByTags) {
  expectTexts({}, {
                      {"a<p>b</P>c", "a\n\nb\n\nc"},
                      {"a<H9>b</h9>c<h10>d", "a\n\nb\n\ncd"},
                      {"a<hr>b<blockquote>c</blockquote>d", "a\n\nb\n\nc\n\nd"},
                      {"a<br>b<br/>c<br><br><br>d", "a\nb\nc\n\n\nd"},
                      {"<div>a</div> <div><div>b", "\n\na\n\n\n\n\n\nb"},
                      {"<b>a</b>b<i> c </i> d<wbr>e", "ab c de"},
                      {"a<button>b</button><button>c</button>d", "a b c d"},
                      {"<a href=x>a</a><!-- --><a href=y>b</a><b>c</b>", "a bc"},
                      {"<a>a</a><script>-</script><a>b</a>", "a b"},
                      {"<a>a</a><b><a>b</a></b>", "ab"},
                      {"a<img src=b.png>c<meter>d</meter>e<datalist><option>f</datalist>g", "a c d e g"},
                      {"a<SPAN style='DISPLAY: Block'>b<span>c</span>d</SPAN>e<i style='display:inline'>f</i>g",
                       "a\nbcd\nefg"},
                      {"a<span class=\"abc\" style=display:flex>b</span>c", "a\nb\nc"},
                      {"<b style=display:flex>a<i style='display:grid'>b</i><s>c</b>d<body>e", "a\nb\nc\nde"},
                      {"<p style='display:block'>a</p><li style='display:table'>b</li>c", "\n\na\n\n\nb\nc"},
                      {"a<b data-style='display:block'>b</b>c<img style='display:block' src=x>d", "abc d"},
                      {"<p>a</p><pre>b</pre>c", "\n\na\n\nb\nc"},
                  });
}

TEST(PlainText, BreaksByTheNameOfTheTag) {
  const std::pair<const char *, const char *> cases[] = {
      {"\n\n\n\n", "p h1 h2 h3 h4 h5 h6 h7 h8 h9 hr div table blockquote"},
      {"\n\n", "br dd dl dt li ol ul tr"},
      {"\n",
       "pre listing address article aside caption center details dialog dir fieldset "
       "figcaption figure footer form header hgroup legend main marquee menu nav search section summary tbody "
       "tfoot thead"},
      {" ",
       "td th img image input select option optgroup applet audio button canvas datalist "
       "iframe meter object progress svg text video embed"},
      {"", "b h10 span a area base col frame link meta param source track wbr"},
  };
  for (const auto &[between, names] : cases) {
    std::istringstream words(names);
    for (std::string name; words >> name;)
      expectTexts({}, {{"a<" + name + "></" + name + ">b", "a" + std::string(between) + "b"}});
  }
}

TEST(PlainText, CollapsesWhiteSpaceAsBrowsersDo) {
  expectTexts({}, {
                      {" \n a \r\n\t b  <b> c</b> ", "a b c"},
                      {"a <br> b", "a\nb"},
                      {"a&#32; &#10;b&nbsp; c", "a b\xc2\xa0 c"},
                      {"so\xc2\xad"
                       "ft hy&shy;phen",
                       "soft hyphen"},
                      {"a\xe2\x80\xa8"
                       "b\xef\xbb\xbf"
                       "c",
                       "a b c"},
                      {"<pre>\r\n a\r\n  b\rc\td </pre> e", " a\n  b\nc\td \ne"},
                      {"<textarea>\n a <b>&lt;</b></textarea>b", " a <b><</b>\nb"},
                      {"<xmp><b>&lt;</b></xmp>b<plaintext> <p>&lt;", "<b>&lt;</b>\nb\n <p>&lt;"},
                      {"<pre>a  b<body>c  d", "a  bc d"},
                  });
}

TEST(PlainText, WritesEachTextOnce) {
  expectTexts(
      {},
      {
          {"<title>A\nB</title><body>c<title>d</title>e", "A B\n\nce"},
          {"<head><title></title></head>c", "c"},
          {"a<script>b</script><STYLE>c</STYLE><!-- d --><![CDATA[e]]>f", "af"},
          {"a<script>b</scrip>c<p>d", "a"},
          {"a < b<b>c</b> <> d", "a < bc <> d"},
          {"1 <2 </p><p>3 <<script>4</script>5", "1 <2\n\n\n\n3 <5"},
          {"1 < 2 <script>if (a<b && c) d='<p>'</SCRIPT>3 < 4 <style>e</script>f</style>g", "1 < 2 3 < 4 g"},
          {"a<style>b<body>c", "ac"},
          {"a<noscript><p>b</noscript><noframes>c</noframes>d", "a d"},
          {"a<noscript>b<noscript/>c</noscript>d", "a d"},
          {"a<img alt='b &amp; c'>d<img src=e.png><input type=image alt=f>", "a b & c d f"},
          {"<input value=a><input type=SUBMIT value=b><input type=hidden value=c><input type=password value=d>",
           "a b"},
          {"<input type=checkbox value=x><input type=Radio value=x><input type=file value=x><input type=color "
           "value=x>"
           "<input type=range value=x><input type=text value=a>",
           "a"},
          {"<select><option>a<option>b</select><select multiple><option>c<option>d</select>", "a c d"},
          {"<select size=3><option>c<option>d<p>e", "c d\n\ne"},
          {"<marquee>a</marquee>b", "a\nb"},
          {"<img data-alt=x alt='a > b'><input data-value=x value=c><input data-type=hidden value=d>",
           "a > b c d"},
          {"a</img alt=x>b</input value=x>c", "a b c"},
          {"<select size=1><option>a<option>b</select>c", "a c"},
          {"<select><option>a<option>b<option selected>c<option>d</select>e", "c e"},
      });
}

TEST(PlainText, LeavesOutWhatNoBrowserShows) {
  expectTexts({},
              {
                  {"a<template><p>x</template>b<noembed>x</noembed>c", "abc"},
                  {"a<iframe src=y>x<p>x</iframe>b<video><track><source>x</video>c<canvas><i>x</i></canvas>d",
                   "a b c d"},
                  {"a<object data=y><object>x</object>x</object>b<object><param>c</object>d", "a b c d"},
                  {"a<dialog>x</dialog>b<dialog open>c</dialog>d", "a\nb\nc\nd"},
                  {"<math><mi>a</mi><annotation "
                   "encoding=t>x</annotation><annotation-xml><mi>x</mi></annotation-xml></math>b",
                   "ab"},
                  {"<div>a<video>x</div>b<ul><li><canvas>x</ul>c<iframe/>d", "\n\na\n\nb\n\n\nc d"},
                  {"<audio>x<body>b", "b"},
                  {"a<template><img alt=x><input value=x></template>b", "ab"},
              });
}

TEST(PlainText, DecodesReferences) {
  const std::string page = "&lt; &amp; &eacute;<b>&lt</b>";
  expectTexts({}, {{page, "< & \xc3\xa9&lt"}});
  expectTexts({}, {{"it&#146;s \xc2\x93so\xc2\x94\xc2\x85 &#129;", "it’s “so”… \xc2\x81"}});
  expectTexts({.stdEntities = false}, {{page, "&lt; &amp; \xc3\xa9&lt"}});
  expectTexts({.entities = false}, {{page + "&quot", "< & &eacute;&lt&quot"}});
  expectTexts({.entities = false, .stdEntities = false}, {{page, page.substr(0, 19) + "&lt"}});
  for (const bool nonUmlauted : {false, true})
    EXPECT_EQ(stringByConvertingHtml2PlainTextNonUmlauted(u"<p>caf\u00e9</p>"_ns, nonUmlauted),
              nonUmlauted ? u"\n\ncafe\n\n"_ns : u"\n\ncaf\u00e9\n\n"_ns);
  expectTexts({.nonUmlauted = true}, {{"caf\xc3\xa9<b>\xc3\xa9t\xc3\xa9", "cafe\xc3\xa9t\xc3\xa9"}});
}

TEST(PlainText, KeepsMeaningfulLinesWhenReformatting) {
  expectTexts({.reformat = true}, {
                                      {"a\nb\r\nc", "a b c"},
                                      {"a\n\nb\r\n\r\nc\n\n\n\nd", "a\n\nb\n\nc\n\nd"},
                                      {"a\n> b\n- c\n/d\n}e\n f", "a\n> b\n- c\n/d\n}e\n f"},
                                      {"a \t b \nc", "a b c"},
                                      {"a\xe2\x80\xa9\xef\xbf\xbc"
                                       "b",
                                       "a\n\nb"},
                                      {"<p>a</p><p>b", "\n\na\n\n\n\nb"},
                                      {"<pre>a  \n b</pre>", "a  \n b"},
                                  });
}

TEST(PlainText, LaysOutForReading) {
  expectTexts(
      {.forReading = true},
      {
          {"<title>T</title><div><div>a</div><div>b</div></div><p>c</p><p>d</p>", "T\n\na\nb\n\nc\n\nd"},
          {"a<ul><li>b<ol><li>c</li><li>d</li></ol></li><li>e</li></ul>f<dl><dt>g<dd>h</dl>",
           "a\n\nb\nc\nd\ne\n\nf\n\ng\nh"},
          {"<table><tr><td>a</td><td></td><td>b<td></td></tr><tr><td>c</table>d", "a b\nc\n\nd"},
          {"a<p>&nbsp;</p><p> &nbsp;<br>&nbsp;b&nbsp;</p>c",
           "a\n\n\xc2\xa0"
           "b\n\nc"},
          {"<title>T &nbsp;</title><p>a", "T\n\na"},
          {"a<br><br><br><br>b<br>c</p><br>d", "a\n\nb\nc\n\nd"},
          {"<p>a</p><pre>\n\nb \n\n\n c\n</pre><p>d", "a\n\n\nb \n\n\n c\n\nd"},
          {"&#128512;&epsilon;<b>&lt</b>&copy<i>&#x41</i>&#146;&zwnj;&bogus;&#38;lt;",
           "\xf0\x9f\x98\x80\xce\xb5<\xc2\xa9"
           "A\xe2\x80\x99\xe2\x80\x8c&bogus;&lt;"},
          {"<img alt='&epsilon;'><xmp>&lt;</xmp>", "\xce\xb5\n&lt;"},
      });
  expectTexts({.nonUmlauted = true, .forReading = true}, {{"caf&eacute;&Hat;", "cafe^"}});
  expectTexts({.stdEntities = false, .forReading = true},
              {{"&epsilon; &lt; &eacute;", "&epsilon; &lt; \xc3\xa9"}});
  expectTexts({.entities = false, .forReading = true}, {{"&epsilon; &lt; &eacute;", "&epsilon; < &eacute;"}});
  expectTexts({.reformat = true, .forReading = true},
              {{"<p>\n\na \nb\n> c\n\n\n\n<p>\nd&nbsp;\n\n", "a b\n> c\n\nd"}});
}

TEST(PlainText, StaysInTheBody) {
  const std::string page = "x<head>h<title>t</title></head><body>a<noframes>n</noframes></body>y";
  expectTexts({.onlyBody = true}, {{page, "a"}, {"<title>t</title>a", "t\n\na"}, {"<body></body>a", "a"}});
  expectTexts({}, {{page, "xh\nt\n\na y"}});
}

TEST(PlainText, ObeysMarkersOfSearchEngines) {
  const std::string page = "a<!--googleoff: INDEX-->b<p>c<!--googleon: all-->d";
  expectTexts({.googleTags = true}, {
                                        {page, "a\n\nd"},
                                        {"a<!--googleoff: snippet-->b<!--googleoff: all-->c", "ab"},
                                        {"a<!--googleoff:-->b", "ab"},
                                        {"a<!--googleoff index-->b", "ab"},
                                        {"a<!--googleoff:all-->b<!--googleon:all-->c", "ac"},
                                        {"a<!--googleoff:all-->b<!--googleon all-->c", "a"},
                                        {"1 < 2 <!--googleoff: all-->b", "1 < 2"},
                                    });
  expectTexts({}, {{page, "ab\n\ncd"}});
}

TEST(PlainText, AnswersAPageWithoutTextItself) {
  EXPECT_FALSE(stringByConvertingHtml2PlainText({}));
  for (const char *page : {"", "<br>", "<p> \n&nbsp;</p>", "<script>a</script>"}) {
    const NSString string = stringOf(page);
    EXPECT_TRUE(stringByConvertingHtml2PlainText(string).identicalTo(string)) << page;
    EXPECT_TRUE(stringByConvertingHtml2ReformattedPlainText(string).identicalTo(string)) << page;
  }
}

TEST(PlainText, Simplifies) {
  for (const Case &test : std::initializer_list<Case>{
           {"<html><head><title>T</title></head><body>a &amp; b</body></html>", " a & b"},
           {"<body>it&#146;s", " it’s"},
           {"<title>T</title>a<b>&lt</b>", " T a &lt"},
           {"<b>&lt;</b>", " <"},
           {"<body>a\n  b<script>c</script><!--d-->e<noframes>f</noframes></body>g", " a\n  b e f"},
           {"<br>", "<br>"},
       })
    EXPECT_EQ(stringByConvertingHtml2SimplifiedPlainText(stringOf(test.page)).UTF8String(), test.text);
}

TEST(PlainText, RemovesJunkWhenAsked) {
  const std::string word = "word ";
  const std::string prose = repeated(word, 700);  // 3500 units
  const std::string longer = repeated(word, 2001);
  const std::string signs = repeated("abcdefg =-=-=- ", 10);
  const std::string lines = repeated("<b>" + prose + "</b>", 6);
  const std::string fewUnits = repeated("abcdefghijklmn=-=-=-", 5).substr(1);
  const std::string fewGroups = repeated("abcdefghijklmnopqrs=-=-=-", 4);
  const std::string shortGroups = repeated("abcdefghijklmno=-=-=", 5);
  for (const Case &test : std::initializer_list<Case>{
           {"<b hidden>x</b>y", "y"},
           {"<body bgcolor=white><b style='background:#fff;color:#FFF'>x</b>y", "y"},
           {"<li><ul hidden><li>x</ul>y<li hidden>x<ol><li>x</ol>x<li>z", "\n\ny\nz"},
           {"<ul><li hidden>x<ul><li>x</ul>x</ul>y", "\n\ny"},
           {"<ul><li hidden>x<ul><li>x</li>x<li>x</ul>x</li>y", "\n\ny"},
           {"<table><tr hidden><td>x<td>x<tr><td>y", "\n\n\ny"},
           {"<p hidden>x<br>x<ul>y", "\ny"},
           {"<b hidden>x<b>x</b>x</b>y", "y"},
           {"<select multiple><option hidden>x<optgroup><option>y</select>z", "y z"},
           {"<p><b hidden>x</p>y<div hidden>x</p>x</form>x</div>z", "\n\n\n\ny\n\nz"},
           {"<select><option hidden>x<option>x</select>y", "y"},
           {"<select multiple><optgroup hidden><option>x<option>x<optgroup><option>y</select>z", "y z"},
           {"a<img hidden alt=x>b<input style='display:none' value=x>c", "a b c"},
           {"<div hidden>x<body>y", "y"},
           {"<b style=font-size:3pt>x</b><b style=font-size:4px>x</b><b style=font-size:0>x</b>y", "y"},
           {"<b style='position:absolute;left:-100px'>x</b>y", "y"},
           {"<b style='position:absolute;top:-100px'>x</b>y", "y"},
           {"<b style=font-size:1pt>x<i>x</i><i style=font-size:9pt>y</i></b>", "y"},
           {"<b hidden>x<i style=font-size:9pt>x</i></b>y", "y"},
           {"<body bgcolor=white><font color=#fff>x</font>y", "y"},
           {"<body bgcolor=white><b style='color:white'>x</b>y", "y"},
           {"<body bgcolor=white><td bgcolor=navy>y<td style='color:white'>x", "y"},
           {"<body bgcolor=white><b style='background:none'><i style='color:white'>x</i>y</b>", "y"},
           {"<body bgcolor=white><b style='background:transparent'><i style='color:white'>x</i>y</b>", "y"},
           {"<body bgcolor=white><b style='background-color:inherit'><i style='color:white'>x</i>y</b>", "y"},
           {"<body bgcolor=white><b style='background:#FFFFFF'><i style='color:white'>x</i>y</b>", "y"},
           {"<b style='visibility:hidden;display:inline'>x</b>y", "y"},
           {"a<b>" + longer + "</b>", "a"},
           {"a<h1>" + prose + "word</h1>b", "a\n\n\n\nb"},
           {"a<b>" + signs + "</b>b", "ab"},
           {"a<b>" + repeated("abcdefghijklmn=-=-=-", 5) + "</b>b", "ab"},
           {"a<b>" + repeated("x", 10001) + "</b>b", "ab"},
           {"a<a>" + repeated("x", 3501) + "</a>b", "ab"},
           {"a<br>" + lines + "<br>b", "a\n\nb"},
           {"<pre>a\n" + repeated("x", 20001) + "</pre>b", "a\nb"},
       }) {
    SCOPED_TRACE(test.page.substr(0, 200));
    bool junkFound = false;
    const NSString text = stringByConvertingHtml2PlainTextNonUmlauted(stringOf(test.page), false, false, false,
                                                                      true, &junkFound, false);
    EXPECT_EQ(text.UTF8String(), test.text);
    EXPECT_TRUE(junkFound);
  }
  expectTexts(
      {.removeJunk = true},
      {
          {"<p data-style='display:none' data-hidden aria-hidden=false>x", "\n\nx"},
          {"<body bgcolor=white><font color=red>x</font><b style='background-color:white'>y", "xy"},
          {"<b style='margin-left:-999px;position:absolute'>x", "x"},
          {"<b style='position:absolute;left:-99px'>x</b><b style='left:-999px'>y</b>", "xy"},
          {"<b style=font-size:3.1pt>x</b><b style=font-size:5px>x</b><b style=font-size:1em>y</b>", "xxy"},
          {"<p>" + prose, "\n\n" + prose.substr(0, prose.size() - 1)},
          // One unit less, one group less, groups of 5 units.
          {fewUnits, fewUnits},
          {fewGroups, fewGroups},
          {shortGroups, shortGroups},
          {repeated("x", 10000), repeated("x", 10000)},
          {"<a>" + repeated("x", 3500), repeated("x", 3500)},
          {"<pre>" + repeated("x", 20000) + "</pre>", repeated("x", 20000)},
          {"<pre>" + signs + "</pre>", signs},
          {"<pre>" + repeated("line\n", 5000) + "</pre>", repeated("line\n", 5000)},
          {"<body bgcolor=white><td bgcolor=navy><font color=white>x</font><td background=y.png><b "
           "style='color:#fff'>y</b><td style='background:#008; color:white'>z",
           "x y z"},
          {"<body bgcolor=white><td bgcolor=navy style='color:white'>x", "x"},
          {"<body bgcolor=white><b style='background-image:url(a)'><i style='color:white'>x</i></b>", "x"},
          {"<b style='position:absolute;left:auto;font-size:small'>x</b><b style='font-size:var(--0)'>y", "xy"},
          // The date of a feed's page is no junk.
          {"<font class=feed_date>x</font>y", "y"},
      });
}

/// Plain texts of every length and start, with an odd unit somewhere: what is copied must be what the
/// definition says, without a look behind the end.
TEST(PlainText, CopiesUnitsUpToTheFirstOddOne) {
  constexpr std::u16string_view kUnits = u"aé中 \n&\u00ad\u2028\ufeff\u2030";
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text(random() % 40, u'x');
    for (unichar &c : text) {
      if (random() % 8 == 0) c = kUnits[random() % kUnits.size()];
    }
    const std::size_t length = text.empty() ? 0 : random() % (text.size() + 1);
    const bool stopsAtAmpersand = round % 2 == 0;
    std::size_t expected = 0;
    for (; expected < length; ++expected) {
      const unichar c = text[expected];
      const bool isSingleSpace = c == u' ' && (expected + 1 == text.size() || text[expected + 1] > u' ');
      if (c == u'&' ? stopsAtAmpersand : c == 0xad || (detail::isCollapsible(c) && !isSingleSpace)) break;
    }
    const ExactBuffer<unichar> source(text);
    std::u16string copy(length + detail::kPlainUnitsSlack, u'-');
    const std::size_t count =
        detail::copyPlainUnits(source.data(), length, text.size(), copy.data(), stopsAtAmpersand);
    ASSERT_EQ(count, expected);
    ASSERT_EQ(copy.substr(0, count), text.substr(0, count));
  }
}

}  // namespace
}  // namespace nimbo
