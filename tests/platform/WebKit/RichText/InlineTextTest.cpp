// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "tests/platform/WebKit/RichText/PageDump.hpp"

namespace nimbo::detail {
namespace {

TEST(InlineText, WhiteSpaceCollapsesAcrossElements) {
  expectText({
      {u"<p> a  b\n\tc ", "a b c|"},
      {u"<p>a <b> b</b> <i> </i> c", "a b c|"},
      {u"<p>a<b> </b>b", "a b|"},
      {u"<p>a <br> b", "a/b|"},
      {u"<p>a&nbsp; b", "a\u00a0 b|"},
      {u"<p>a <!-- --> b<wbr>c", "a bc|"},
      {u"<p> </p><p>a</p> <p> <b> </b> </p>", "a|"},
      {u"<div>a <div> b </div> c</div>", "a|b|c|"},
      {u"a<span hidden>x</span> <span style='display:none'>y</span>b", "a b|"},
      {u"<p>a <span style='display:inline-block'> b <i> c </i> </span> d", "a b c d|"},
      {u"<p>a <span style='display:inline-block'> </span> d", "a d|"},
      {u"<p><span style='display:inline-block'> b</span>d <span style='display:inline-block'>c </span> ",
       "bd c|"},
  });
}

TEST(InlineText, WhiteSpaceIsKeptWhereStylesSaySo) {
  expectText({
      {u"<pre>a  b\n\n\tc\n</pre>d", "a  b||^c|d|"},
      {u"<pre>\n\na</pre>", "|a|"},
      {u"<pre>  a <b> b</b></pre>", "  a  b|"},
      {u"<div style='white-space:pre-line'> a  b \n c\n\nd</div>", "a b|c||d|"},
      {u"<div style='white-space:pre-wrap'>a  b\nc</div>", "a  b|c|"},
      {u"<div style='white-space:break-spaces'>a  </div>", "a  |"},
      {u"<div style='white-space:nowrap'>a\n b</div>", "a b|"},
      {u"<p style='white-space:pre'>a\nb</p>", "a/b|"},
      {u"<p>a <span style='white-space:pre'> b </span> c", "a  b  c|"},
  });
}

TEST(InlineText, LinesAndParagraphsEndWhereABrowserEndsThem) {
  expectText({
      {u"<p>a<br>b<br>", "a/b|"},
      {u"<p>a<br><br>b", "a//b|"},
      {u"<p><br></p><p>a", "|a|"},
      {u"<div>a<br><br>b<br></div>c", "a||b|c|"},
      {u"<div><br></div>a", "|a|"},
      {u"<div><div></div><span></span><div> </div></div>", ""},
      {u"<b>a<div>b</div>c</b>", "a|b|c|"},
      {u"<h1>a<br>b</h1>", "a/b|"},
      {u"<div style='display:flex'>a<span>b</span> <span>c</span><i style='display:math'>d</i>e</div>",
       "a|b|c|d|e|"},
      {u"<div style='display:flex;white-space:pre'><i>a</i> <i>b</i></div>", "a|b|"},
      {u"<div style='display:contents'>a</div>b", "ab|"},
      {u"<p>a<i style='display:inline-block'></i>b<i style='display:inline-flex'></i>c"
       u"<i style='display:inline-grid'></i>d",
       "abcd|"},
      {u"<p>a<i style='display:inline-flex'>b</i>c<i style='display:inline-grid'>d<b></b></i>", "abc|d|"},
      {u"", ""},
  });
}

TEST(InlineText, HiddenTextIsLeftOutButNotWhatShowsInIt) {
  expectText({
      {u"<p style='visibility:hidden'>a <span style='visibility:visible'>b</span> c</p>", "b|"},
      {u"<p><span style='font-size:0'>a</span>b", "b|"},
      {u"<title>t</title><script>s</script><style>p{}</style>a<noframes>n</noframes><template>x</template>",
       "a|"},
      {u"<iframe>a</iframe><audio>b</audio>d", "d|"},
      {u"<meter>m</meter><progress>p</progress>d", "d|"},
      {u"<svg><metadata>a</metadata><symbol><text>b</text></symbol><clipPath><text>c</text></clipPath><mask>"
       u"<text>d</text></mask><pattern><text>e</text></pattern><marker><text>f</text></marker><defs><text>g"
       u"</text></defs><style>h</style><text>i</text></svg>",
       "i|"},
      {u"<canvas>without <b>scripts</b></canvas>", "without scripts|"},
      {u"<svg><title>t</title><desc>d</desc> x <text>a</text><g><text>b<tspan>c</tspan></text></g></svg>",
       "a bc|"},
      {u"<p>a <math> <mi>x</mi> <mo>=</mo> <mn>1</mn><annotation>tex</annotation></math> b", "a x=1 b|"},
      {u"<svg><text>a<tspan>b<g>c</g></tspan></text><tspan>d</tspan><text>e<a>f</a></text></svg>", "ab ef|"},
      {u"<math>a<mi>b</mi><mtext>c</mtext><ms>d</ms><mrow>e<mn>1</mn></mrow></math>", "bcd1|"},
      {u"<p><ruby>漢<rp>(</rp><rt>kan</rt><rp>)</rp></ruby>", "漢kan|"},
  });
}

TEST(InlineText, CaseIsMappedByLanguage) {
  expectText({
      {u"<p style='text-transform:uppercase'>straße <span lang=tr>i</span>i", "STRASSE İI|"},
      {u"<p lang=lt style='text-transform:lowercase'>ÀB", "àb|"},
      {u"<p lang=el style='text-transform:uppercase'>άλφα", "ΑΛΦΑ|"},
      {u"<p style='text-transform:capitalize'>don't stop-me no<b>w élan ǆ ßa 'q' 3d</b>",
       "Don't Stop-Me Now Élan ǅ Ssa 'Q' 3d|"},
      {u"<p style='text-transform:capitalize'>“a b”—c don’t a\u200db \U00010428a",
       "“A B”—C Don’t A\u200db \U00010400a|"},
      {u"<p style='text-transform:capitalize'><span lang=tr>iki</span> <span lang=az>iki</span> iki",
       "İki İki Iki|"},
  });
}

TEST(InlineText, QuotesFollowLanguageAndDepth) {
  expectText({
      {u"<p><q>a <q>b</q></q>", "“a ‘b’”|"},
      {u"<p lang=de><q>a <q>b</q></q> <q lang=fr>c</q>", "„a ‚b‘“ «c»|"},
      {u"<p lang=de-CH><q>a</q>", "«a»|"},
  });
  // The marks of the languages, outer ones first.
  const struct {
    std::u16string_view languages, marks;
  } cases[] = {
      {u"en del pt zh en-GB da", u"“”‘’"},
      {u"de cs sk sl DE-AT hr is", u"„“‚‘"},
      {u"de-CH de-LI fr-CH fa", u"«»‹›"},
      {u"es ca el it pt-PT", u"«»“”"},
      {u"ja zh-Hant zh-TW zh-HK zh-Hant-TW", u"「」『』"},
      {u"fi sv he", u"””’’"},
      {u"pl ro", u"„”«»"},
      {u"ru uk", u"«»„“"},
      {u"nb nn no", u"«»‘’"},
      {u"fr fr-BE", u"«»«»"},
      {u"fr-CA", u"«»”“"},
      {u"hu", u"„”»«"},
      {u"lt", u"„“„“"},
      {u"ar", u"”“’‘"},
  };
  for (const auto &[languages, marks] : cases)
    for (std::u16string_view rest = languages; !rest.empty();) {
      const std::u16string language(rest.substr(0, rest.find(u' ')));
      rest.remove_prefix(std::min(language.size() + 1, rest.size()));
      const std::u16string expected{marks[0], u'a', marks[2], u'b', marks[3], marks[1], u'|'};
      EXPECT_EQ(plainDump(u"<p lang=" + language + u"><q>a<q>b</q></q>"),
                NSString::stringWithCharacters(expected).UTF8String())
          << NSString::stringWithCharacters(language).UTF8String();
    }
}

TEST(InlineText, FormControlsShowTheirText) {
  expectText({
      {u"<p>a <button> b </button> c", "a b c|"},
      {u"<input type=reset><input type=RESET value=r><input type=color value=c><input type=email>", "Resetr|"},
      {u"<input value=x><input type=password value=secret><input type=submit><input type=hidden value=h>",
       "xSubmit|"},
      {u"<input type=checkbox value=a><input type=RADIO value=b><input type=file value=c>"
       u"<input type=range value=d>e",
       "e|"},
      {u"<select><option label=''> b</select>", "b|"},
      {u"e<select style='display:inline-flex'><option>a<option selected> b  c<option>d</select>f", "eb cf|"},
      {u"<select><option disabled>a<option label=L>b</select>", "L|"},
      {u"<select size=3><option>a<optgroup label=G><option>b</select>", "a|G|b|"},
      {u"<textarea>a  b\nc</textarea>", "a  b|c|"},
      {u"<object data=x.bin><p>fallback</object>", "fallback|"},
  });
}

}  // namespace
}  // namespace nimbo::detail
