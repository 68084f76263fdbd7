// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

struct Case {
  std::u16string_view string;
  /// No storage stands for the receiver itself.
  const char16_t *result;
};
constexpr const char16_t *kItself = nullptr;

void expectEach(const std::vector<Case> &cases, const std::function<NSString(const NSString &)> &strip) {
  for (const auto &[units, expected] : cases) {
    const NSString string = exactString(units), result = strip(string);
    SCOPED_TRACE(string.UTF8String());
    EXPECT_EQ(result.identicalTo(string), expected == kItself);
    const NSString wanted = expected ? NSString::stringWithCharacters(expected) : string;
    EXPECT_EQ(result.UTF8String(), wanted.UTF8String());
  }
  EXPECT_FALSE(strip(NSString()));
}

TEST(Stripping, OfAllTags) {
  expectEach({{u"<p>a</p><p>b</p>", u" a b"},
              {u"x", u" x"},
              {u"<br>", u""},
              {u"a <b>b</b>\u00a0<i>c &amp;<", u" a b \u00a0c &amp;<"},
              {u"a<!-- b -->c<script>d</script>e<![CDATA[f]]>", u" a c e"}},
             stripTags);
  const NSString endsInNul = stripTags(exactString({u"a\0<b>b", 6}));
  EXPECT_EQ(endsInNul.view(), std::u16string_view(u" a\0 b", 5));
}

TEST(Stripping, OfOneTag) {
  const auto strip = [](const NSString &s) { return stripTag(s, "FONT"); };
  expectEach({{u"<font size=2>a</FONT>b", u"ab"},
              {u"x<!-- <font> --><b>a</b><font/>", u"x<!-- <font> --><b>a</b>"},
              {u"a<fonts>b<p font>", kItself},
              {u"", kItself},
              {u"a<font>b<i>c</i><!--d--><font", u"ab<i>c</i><!--d--><font"}},
             strip);
  expectEach({{u"<font>", kItself}}, [](const NSString &s) { return stripTag(s, nullptr); });
  expectEach({{u"<font>", kItself}}, [](const NSString &s) { return stripTag(s, ""); });
  expectEach({{u"a<script>b</script", u"a"}, {u"a<script>b</script>c", u"ac"}},
             [](const NSString &s) { return stripTag(s, "SCRIPT"); });
}

TEST(Stripping, OfAttributes) {
  expectEach({{u"<a href='u' class=x>t</a>", u"<A HREF=\"u\">t</A>"},
              {u"<a src=s href=u/>", u"<A HREF=\"u/\"/>"},
              {u"<a href=\"u\"/>t<b c=d>", u"<A HREF=\"u\"/>t<b c=d>"},
              {u"1<a src=long/ >2<a/>3<a name=x />4</a x=y>", u"1<A SRC=\"long/\">234</A>"},
              {u"<b>a</b>", kItself}},
             [](const NSString &s) { return stripAttributesOfTag(s, "A"); });
}

TEST(Stripping, OfBodies) {
  const auto strip = [](const NSString &s) {
    return stripTagBodies(s, {u""_ns, u"<DIV"_ns, u"<script"_ns, u"<1"_ns});
  };
  expectEach({{u"a<div>b<div c>d<div/>e</DIV>f</div>g", u"af</div>g"},
              {u"a<div>b<div c>d<p/></div>e</div>f<div/>g", u"af<div/>g"},
              {u"a<divide>b<div>c</divide>d", u"ad"},
              {u"<div>a", u""},
              {u"a<p>b</p><!--c-->", kItself},
              {u"a<script>b</script>c<p>d<script/>e", u"ae"},
              {u"a<1>b<!--c-->d</1>e", u"ae"},
              {u"", kItself}},
             strip);
  expectEach({{u"<p>", kItself}}, [](const NSString &s) { return stripTagBodies(s, {}); });
  expectEach({{u"<p>a", kItself}}, [](const NSString &s) { return stripTagBodies(s, {NSString()}); });
}

TEST(Stripping, OfAllButBodies) {
  const auto strip = [](const NSString &s) { return stripTagBodies(s, {u"<td"_ns, u"<script"_ns}, true); };
  expectEach(
      {{u"a<tr><TD b>c<td>d</td>e</td>f<td>g<br>h</td></tr>", u"<TD b>c<td>d</td>e</td>\n<td>g<br>h</td>\n"},
       {u"a<td/>b<td>c<td/>d<td>e", u"<td>c<td/>\n<td>e"},
       {u"<td>a<!-- b", u"<td>a<!-- b"},
       {u"a<script>b</script>c<p>", u"<script>b</script>c<p>"}},
      strip);
  EXPECT_FALSE(strip(u"a<p>b"_ns));
  EXPECT_FALSE(strip(u""_ns));
  EXPECT_FALSE(stripTagBodiesExcept(u"<td>"_ns, {}));
}

TEST(Stripping, OfObjects) {
  expectEach({{u"a<img src=b alt='c d'>e", u"a c d e"},
              {u"a <img alt=b/> c<img>d", u"a b/ c d"},
              {u"<img alt='' title='b &amp; <i'>,", u" b &amp; &lt;i ,"},
              {u"<a><img alt=alternative></a>b", u"<a> alternative</a> b"},
              {u"a<object title=text><param name=b value=c><p>d<object>e</object></object>f", u"a text f"},
              {u"a<object><embed src=b><p>c</p></object>d", u"a<p> c</p> d"},
              {u"a<object title=text><p>b<object></object>c", u"a text<p> b c"},
              {u"a</object title=b>c</img alt=d>e", u"a c e"},
              {u"<video title=text/><p>a<iframe title=\"other\">b</iframe></video>", u" text/<p> a other"},
              {u"<p>a</p><objects>", kItself}},
             stripObjects);
}

}  // namespace
}  // namespace nimbo
