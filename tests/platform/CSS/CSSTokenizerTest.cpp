// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSTokenizer.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/platform/CSS/CSSText.hpp"

namespace nimbo {
namespace {

/// Each token as a letter for its kind and its content.
std::string tokensOf(std::u16string_view units) {
  constexpr std::string_view kKinds = ".ifah'\"uUdn%m_<>:;,[]()  ";
  CSSTokenizer tokenizer(units);
  CSSArena arena;
  std::string text;
  for (CSSToken token = tokenizer.next(); token.type != CSSTokenType::kEnd; token = tokenizer.next()) {
    if (!text.empty()) text += ' ';
    if (token.type == CSSTokenType::kLeftBrace || token.type == CSSTokenType::kRightBrace) {
      text += token.type == CSSTokenType::kLeftBrace ? "{" : "}";
      continue;
    }
    text += kKinds[static_cast<std::size_t>(token.type)];
    switch (token.type) {
      case CSSTokenType::kDelim:
        text += textOf(units.substr(token.location, 1));
        break;
      case CSSTokenType::kDimension:
        text += textOfNumber(tokenizer.number(token)) + "," + textOf(tokenizer.text(token, arena));
        break;
      case CSSTokenType::kNumber:
      case CSSTokenType::kPercentage:
        text += textOfNumber(tokenizer.number(token)) + (token.flag ? "" : "~");
        break;
      case CSSTokenType::kHash:
        text += textOf(tokenizer.text(token, arena)) + (token.flag ? "" : "~");
        break;
      default:
        text += textOf(tokenizer.text(token, arena));
    }
  }
  return text;
}

TEST(CSSTokenizer, ReadsTheTokensOfTheStandard) {
  struct Case {
    std::u16string text;
    std::string tokens;
  };
  using namespace std::string_literals;
  const Case cases[] = {
      {u"", ""},
      {u"a b", "ia _ ib"},
      {u"/* x */a/**/b/*", "ia ib"},
      {u"a/", "ia d/"},
      {u"-", "d-"},
      {u"1-", "n1 d-"},
      {u"@-", "d@ d-"},
      {u"-a --b -- - -1 --1", "i-a _ i--b _ i-- _ d- _ n-1 _ i--1"},
      {u"a(b) A1_-é", "fa ib ) _ iA1_-é"},
      {u"@media @ @-x @1", "amedia _ d@ _ a-x _ d@ n1"},
      {u"#a #1a # #- #\0 #"s, "ha _ h1a~ _ d# _ h-~ _ h\ufffd _ d#"},
      {u"'a\"b' \"c'd\"", "'a\"b _ 'c'd"},
      {u"'a", "'a"},
      {u"'a\nb", "\"a _ ib"},
      {u"'a\\\nb' 'a\\\r\nb' 'a\\'b'", "'ab _ 'ab _ 'a'b"},
      {u"'a\\", "'a"},
      {u"\\61 b \\000061b \\g \\", "iab _ iab _ ig _ i\ufffd"},
      {u"\\0 x \\d800 x \\110000 x \\10ffff x", "i\ufffdx _ i\ufffdx _ i\ufffdx _ i\U0010ffffx"},
      // The blank behind the digits, of which there are no more than six, belongs to the escape.
      {u"\\61(b \\61\tb \\61\r\nb \\0000611 b", "fa ib _ iab _ iab _ ia1 _ ib"},
      {u"@\\61 #\\61  -\\61 #\\\n", "aa ha _ i-a d# d\\ _"},
      {u"\\1f600", "i\U0001f600"},
      {u"\\\n", "d\\ _"},
      {u"a\0b"s, "ia\ufffdb"},
      {u"1 +1 -1.5 .5 1. 1e3 1e+3 1e 1E-2x",
       "n1 _ n1 _ n-1.5~ _ n0.5~ _ n1 d. _ n1000~ _ n1000~ _ m1,e _ m0.01,x"},
      {u"+.5 -.5 +.a 1e+x 1E2", "n0.5~ _ n-0.5~ _ d+ d. ia _ m1,e d+ ix _ n100~"},
      {u"1px 2% 3\\70x 1-- 1-a +", "m1,px _ %2 _ m3,px _ m1,-- _ m1,-a _ d+"},
      {u"999999999 9999999999 +4294967296 -999999999", "n1e+09 _ n1e+10 _ n4.295e+09 _ n-1e+09"},
      {u"999999999999 1e999 1e-999 0.0000000000000000000000000000000000000000001",
       "n1e+12 _ n3.403e+38~ _ n0~ _ n1e-43~"},
      {u"2" + std::u16string(70, u'0') + u"e-70 ." + std::u16string(400, u'0') + u"1 1" +
           std::u16string(400, u'0') + u" -01" + std::u16string(400, u'0'),
       "n2~ _ n0~ _ n3.403e+38 _ n-3.403e+38"},
      {u"url(a) url( a ) url('a') URL(a\\)b) url(", "ua _ ua _ furl 'a ) _ ua)b _ u"},
      {u"url(a b) c url(a\"b) d url(a(b) e", "U _ ic _ U _ id _ U _ ie"},
      {u"url(a b\\) c", "U"},
      {u"url(a", "ua"},
      {u"url(a ", "ua"},
      {u"url( 'a') u\\72l(a)", "furl _ 'a ) _ ua"},
      {u"url(\\61)b url(\\\n)c", "ua ib _ U ic"},
      {u"url(a\0b)"s, "ua\ufffdb"},
      {u"url(\x08)url(\x0b)url(\x0e)url(\x1f)url(\x7f)url(\x80)", "U U U U U u\u0080"},
      {u"<!-- --> <!- ->", "< _ > _ d< d! d- _ d- d>"},
      {u":;,[](){}", ": ; , [ ] ( ) { }"},
      {u" \t\r\n\f", "_"},
      {u"~=|*>.", "d~ d= d| d* d> d."},
  };
  for (const Case &test : cases) EXPECT_EQ(tokensOf(test.text), test.tokens) << textOf(test.text);
}

/// Tokens stand one behind the other, with comments between them alone.
TEST(CSSTokenizer, LeavesNothingOut) {
  constexpr std::u16string_view kUnits = u"aE1-+.#@\\'\"(){}[];:,/* \n\r%<!>uUrRlL\u00e9\xd800";
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text(random() % 24, u' ');
    for (char16_t &c : text) c = kUnits[random() % kUnits.size()];
    CSSTokenizer tokenizer(text);
    std::uint32_t end = 0;
    CSSToken token;
    do {
      token = tokenizer.next();
      ASSERT_GE(token.location, end) << textOf(text);
      if (token.location > end) {
        ASSERT_EQ(text.substr(end, 2), u"/*") << textOf(text);
      }
      ASSERT_TRUE(token.end > token.location || token.type == CSSTokenType::kEnd) << textOf(text);
      ASSERT_LE(token.contentLocation, token.contentEnd) << textOf(text);
      ASSERT_LE(token.contentEnd, token.end) << textOf(text);
      end = token.end;
    } while (token.type != CSSTokenType::kEnd);
    ASSERT_EQ(end, text.size());
  }
}

}  // namespace
}  // namespace nimbo
