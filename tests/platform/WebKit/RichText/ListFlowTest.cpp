// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "platform/WebKit/RichText/CounterStyles.hpp"
#include "platform/WebKit/RichText/Counters.hpp"
#include "platform/WebKit/RichText/GeneratedContent.hpp"
#include "platform/WebKit/RichText/ParagraphMaker.hpp"
#include "tests/platform/WebKit/RichText/PageDump.hpp"

namespace nimbo::detail {
namespace {

TEST(ListFlow, MarkersCountAsListsSay) {
  expectText({
      {u"<ul><li>a<ul><li>b<ul><li>c</ul></ul><li>d</ul>", "^•^a|^◦^b|^▪^c|^•^d|"},
      {u"<ol><li>a<li value=7>b<li>c</ol><ol start=-1><li>d<li>e</ol>", "^1.^a|^7.^b|^8.^c|^-1.^d|^0.^e|"},
      {u"<ol reversed><li>a<li>b</ol><ol reversed start=9><li>c<li>d</ol>", "^2.^a|^1.^b|^9.^c|^8.^d|"},
      {u"<ol reversed> <li>a</li> <!--x--> <li>b</li> <p>c</p></ol>", "^2.^a|^1.^b|c|"},
      {u"<ol><li>a<ol><li>b</ol><li>c</ol>", "^1.^a|^1.^b|^2.^c|"},
      {u"<ol><li>a<p>b</p><li><p>c", "^1.^a|b|^2.^c|"},
      {u"<ol><li><li>b<li><ul><li>c</ul></ol>", "^1.^|^2.^b|^3.^|^◦^c|"},
      {u"<ol><li hidden>a<li>b<div style='display:list-item'>c</div></ol>", "^1.^b|^2.^c|"},
      {u"<ol start=99999999999><li>a</ol>", "^2147483647.^a|"},
      {u"<ul style='list-style:none'><li>a</ul>", "a|"},
      // A list that has ended says nothing of items behind it, but its counter goes on.
      {u"<ol reversed><li>a<li>b</ol><p style='display:list-item;list-style:decimal'>c", "^2.^a|^1.^b|^2.^c|"},
      {u"<ul><li style='visibility:hidden'>a<li>b</ul>", "^•^b|"},
  });
}

TEST(ListFlow, MarkersComeInAllStyles) {
  expectText({
      {u"<ol type=a start=26><li>a<li>b</ol>", "^z.^a|^aa.^b|"},
      {u"<ol type=I start=1999><li>a</ol><ol type=i start=4000><li>b</ol>", "^MCMXCIX.^a|^4000.^b|"},
      {u"<ol type=i start=3999><li>a</ol><ol type=I start=0><li>b</ol><ol type=a start=-1><li>c</ol>",
       "^mmmcmxcix.^a|^0.^b|^-1.^c|"},
      {u"<ol style='list-style:decimal-leading-zero'><li>a</ol>", "^01.^a|"},
      {u"<ol style='list-style:decimal-leading-zero' start=9><li>a<li>b</ol>", "^09.^a|^10.^b|"},
      {u"<ol style='list-style:decimal-leading-zero' start=-10><li>a<li>b</ol>", "^-10.^a|^-09.^b|"},
      {u"<ol style='list-style:lower-greek' start=24><li>a<li>b</ol>", "^ω.^a|^αα.^b|"},
      {u"<ol style='list-style:upper-latin' start=0><li>a</ol>", "^0.^a|"},
      {u"<ol style='list-style:arabic-indic' start=12><li>a</ol>", "^١٢.^a|"},
      {u"<ol style='list-style:hebrew' start=15><li>a</ol>", "^טו.^a|"},
      {u"<ol style='list-style:armenian' start=9999><li>a<li>b</ol>", "^ՔՋՂԹ.^a|^10000.^b|"},
      {u"<ol style='list-style:upper-armenian' start=-1><li>a<li>b<li>c</ol>", "^-1.^a|^0.^b|^Ա.^c|"},
      {u"<ol style='list-style:lower-armenian' start=1020><li>a</ol>", "^ռի.^a|"},
      {u"<ol style='list-style:georgian' start=19999><li>a<li>b</ol>", "^ჵჰშჟთ.^a|^20000.^b|"},
      {u"<ul type=A><li>a</ul><ol type=disc><li>b</ol><ul><li type=A>c<li type=circle>d</ul>",
       "^•^a|^1.^b|^A.^c|^◦^d|"},
      {u"<style>li{counter-increment:x list-item 3}</style><ol><li>a<li>b</ol>", "^3.^a|^6.^b|"},
      {u"<ol style='list-style:disclosure-open'><li>a</ol><ol style='list-style:disclosure-closed'><li>b</ol>",
       "a|b|"},
      {u"<style>li::before{content:counter(i,disclosure-open) counter(i,disclosure-closed)}</style><li "
       u"style='list-style:none'>a",
       "▾▸a|"},
      {u"<style>li::marker{content:counter(list-item,none) 'x'}</style><ol><li>a</ol>", "^x^a|"},
      {u"<style>b::before{content:'(';display:inline-block}</style>a <b>c</b>", "a (c|"},
      {u"<style>b::before{content:'(';display:inline-flex}b::after{content:')';display:inline-grid}</style>"
       u"a <b>c</b>",
       "a (c)|"},
      {u"<ol style='list-style:unheard-of'><li>a</ol>", "^1.^a|"},
      {u"<style>li::marker{color:red}</style><ol><li>a</ol>", "^1.^a|"},
      {u"<style>.n::marker{content:none}.m::marker{content:''}</style><ol><li class=n>a<li>b<li class=m>c</ol>",
       "a|^2.^b|c|"},
      {u"<ul style='list-style:\"→ \"'><li>a</ul>", "^→^a|"},
      {u"<style>li::marker{content:'(' counter(list-item, upper-roman) ') '}</style><ol><li>a</ol>", "^(I)^a|"},
  });
}

TEST(ListFlow, NumbersAreWrittenInManyWays) {
  const auto text = [](std::int32_t number, const CSSValue &style) {
    return NSString::stringWithCharacters(textOfCounter(number, style)).UTF8String();
  };
  const auto named = [](std::u16string_view name) { return CSSValue::text(CSSValueKind::kIdentifier, name); };
  std::string greek, latin;
  for (std::int32_t number = 1; number <= 24; ++number) greek += text(number, CSSKeyword::kLowerGreek);
  EXPECT_EQ(greek, "αβγδεζηθικλμνξοπρστυφχψω");
  for (const std::int32_t number : {1, 26, 27, 52, 53, 702, 703})
    latin += text(number, CSSKeyword::kLowerLatin) + " ";
  EXPECT_EQ(latin, "a z aa az ba zz aaa ");
  const struct {
    std::int32_t number;
    std::string roman, hebrew;
  } numbers[] = {{444, "cdxliv", "תמד"},
                 {111, "cxi", "קיא"},
                 {222, "ccxxii", "רכב"},
                 {333, "cccxxxiii", "שלג"},
                 {555, "dlv", "תקנה"},
                 {666, "dclxvi", "תרסו"},
                 {777, "dcclxxvii", "תשעז"},
                 {888, "dccclxxxviii", "תתפח"},
                 {999, "cmxcix", "תתקצט"},
                 {15, "xv", "טו"},
                 {16, "xvi", "טז"},
                 {1000, "m", "1000"},
                 {3999, "mmmcmxcix", "3999"},
                 {4000, "4000", "4000"},
                 {0, "0", "0"}};
  for (const auto &[number, roman, hebrew] : numbers) {
    EXPECT_EQ(text(number, CSSKeyword::kLowerRoman), roman);
    EXPECT_EQ(text(number, named(u"hebrew")), hebrew);
  }
  for (const auto &[name, digits] :
       std::initializer_list<std::pair<std::u16string_view, std::string_view>>{{u"arabic-indic", "-١٠"},
                                                                               {u"bengali", "-১০"},
                                                                               {u"cambodian", "-១០"},
                                                                               {u"devanagari", "-१०"},
                                                                               {u"gujarati", "-૧૦"},
                                                                               {u"gurmukhi", "-੧੦"},
                                                                               {u"kannada", "-೧೦"},
                                                                               {u"khmer", "-១០"},
                                                                               {u"lao", "-໑໐"},
                                                                               {u"malayalam", "-൧൦"},
                                                                               {u"mongolian", "-᠑᠐"},
                                                                               {u"myanmar", "-၁၀"},
                                                                               {u"oriya", "-୧୦"},
                                                                               {u"persian", "-۱۰"},
                                                                               {u"tamil", "-௧௦"},
                                                                               {u"telugu", "-౧౦"},
                                                                               {u"thai", "-๑๐"},
                                                                               {u"tibetan", "-༡༠"},
                                                                               {u"unheard-of", "-10"}})
    EXPECT_EQ(text(-10, named(name)), digits);
  EXPECT_EQ(text(-2147483647 - 1, CSSKeyword::kDecimal), "-2147483648");
}

TEST(ListFlow, ParagraphsSayTheirLists) {
  EXPECT_EQ(
      paragraphDump(u"<ol style='margin:0' start=3><li>a<ul><li>b</ul></ol>c"),
      "<first=0 head=30 list2={decimal}.3>^3.^a|<first=0 head=60 list2={decimal}.3 list3={circle}1>^◦^b|c|");
  for (const std::u16string_view list :
       {u"<menu style='margin:0'><li>a</menu>", u"<dir style='margin:0'><li>a</dir>"})
    EXPECT_EQ(paragraphDump(list), "<first=0 head=30 list2={disc}1>^•^a|");
  EXPECT_EQ(
      paragraphDump(u"<style>li::marker{content:'x '}</style><ul style='margin:0;list-style:none'><li>a</ul>"),
      "<first=0 head=30 list0=x 1>^x^a|");
  const NSAttributedString text = textOfHTML(u"<ul style='padding:0'><li>a</ul>").text;
  const NSParagraphStyle &style = *text.attributesAtIndex(0)->paragraphStyle;
  ASSERT_EQ(style.tabStops.size(), 2U);
  EXPECT_GT(style.tabStops[0].location, 0) << "a marker needs room even where its list has none";
  EXPECT_EQ(style.tabStops[1].location, style.headIndent);
  // Markers of one list begin in one column.
  const NSAttributedString deep = textOfHTML(u"<ul style='margin:0;padding:50px'><li>a</ul>").text;
  const NSParagraphStyle &item = *deep.attributesAtIndex(0)->paragraphStyle;
  EXPECT_EQ(item.tabStops[0].location, item.headIndent - 20);
}

TEST(ListFlow, ContentIsGenerated) {
  expectText({
      {u"<style>p::before{content:'[' attr(title) '] '}p::after{content:'\\A x';white-space:pre}</style><p "
       u"title=t>a",
       "[t] a/x|"},
      {u"<style>body{counter-reset:s}h2{counter-increment:s}h2::before{content:counter(s) '. '}</style>"
       u"<h2>a</h2><h2>b</h2>",
       "1. a|2. b|"},
      {u"<style>ul{counter-reset:i;list-style:none}li::before{counter-increment:i;content:counters(i,'.') ' '}"
       u"</style><ul><li>a<ul><li>b<li>c</ul><li>d</ul>",
       "1 a|1.1 b|1.2 c|2 d|"},
      {u"<style>ul{counter-reset:i;list-style:none}li::before{counter-increment:i;content:counters(i,'-',"
       u"upper-roman)}</style><ul><li>a<ul><li>b<li>c</ul></ul>",
       "Ia|I-Ib|I-IIc|"},
      {u"<style>p{counter-increment:n 2}p::before{content:counter(n,lower-roman)}</style><p>a<p>b", "iia|ivb|"},
      {u"<style>p{counter-increment:n 2147483647 m -2147483648}p::before{content:counter(n) counter(m)}</style>"
       u"<p>a<p>b",
       "2147483647-2147483648a|2147483647-2147483648b|"},
      {u"<style>div{counter-reset:n 4}i{counter-increment:n}b{counter-set:n "
       u"9}i::after,b::after{content:counter(n)}"
       u"</style><div><i></i><b></b><i></i></div>",
       "5910|"},
      {u"<style>i::before{content:'\\d7ff \\e000 \\f8ff "
       u"\\f900'}b::before{content:none}s::before{display:block;content:'x'}"
       u"</style>a<i></i><b>b</b><s>c</s>",
       "a\ud7ff\uf900b|x|c|"},
      {u"<style>p{quotes:'<' '>' '[' ']'}i{quotes:none}</style><p><q>a<q>b<q>c</q></q></q><i><q>d</q></i>",
       "<a[b[c]]>d|"},
      {u"<style>i::before{content:no-open-quote}i::after{content:no-close-quote}</style><i><q>a</q></i><q>b</"
       u"q>",
       "‘a’“b”|"},
      {u"<style>.c::after{content:'';display:table}</style><div class=c>a</div>b", "a|b|"},
  });
}

TEST(ListFlow, GeneratedContentIsLimited) {
  std::u16string html = u"<style>i::before{content:'";
  html.append(std::size_t{1} << 20, u'x');
  html += u"'}</style>";
  for (int i = 0; i < 40; ++i) html += u"<i></i>";
  EXPECT_EQ(textOfHTML(html).text.length(), GeneratedContent::kMaximumUnits + 1);
}

TEST(ListFlow, PartsWithoutTextAreLimited) {
  std::u16string html = u"<style>i::before{content:";
  constexpr std::size_t kParts = std::size_t{1} << 14;
  for (std::size_t i = 0; i < kParts; ++i) html += u"attr(a)";
  html += u"}b::before{content:'x'}</style><b></b>";
  for (std::size_t i = 0; i < GeneratedContent::kMaximumParts / kParts; ++i) html += u"<i></i>";
  EXPECT_EQ(plainDump(html + u"<b></b>c"), "xc|");
}

TEST(ListFlow, ChangesOfCountersAreLimited) {
  std::u16string html = u"<style>i{counter-increment:";
  constexpr std::size_t kChanges = std::size_t{1} << 14;
  for (std::size_t i = 0; i < kChanges; ++i) html += u"n ";
  html += u"}b::before{content:counter(n)}</style>";
  for (std::size_t i = 0; i <= Counters::kMaximumChanges / kChanges; ++i) html += u"<i></i>";
  EXPECT_EQ(plainDump(html + u"<b></b>"), std::to_string(Counters::kMaximumChanges) + "|");
}

TEST(ListFlow, DeepListsAreLimited) {
  std::u16string html;
  for (int i = 0; i < 100; ++i) html += u"<ul><li>a";
  const NSAttributedString text = textOfHTML(html).text;
  EXPECT_EQ(text.attributesAtIndex(text.length() - 1)->paragraphStyle->textLists.size(),
            ParagraphMaker::kMaximumLists);
}

}  // namespace
}  // namespace nimbo::detail
