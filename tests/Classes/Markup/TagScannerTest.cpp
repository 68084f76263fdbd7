// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/TagScanner.hpp"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>

#include "Classes/Markup/ScanTags.hpp"
#include "tests/Classes/Markup/PlainTagScanner.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/StringSamples.hpp"
#include "tests/support/VectorTargets.hpp"

namespace nimbo {
namespace {

constexpr NSRange kNoName{NSNotFound, 0};

TEST(TagScanner, MeetsEdgeCases) {
  struct Case {
    std::u16string_view string;
    std::vector<TagCall> calls;  // but for the closing one
    std::uint32_t lastText;
  };
  const auto tag = [](NSRange name, NSRange range, std::uint32_t text = 0) {
    return TagCall{kOrdinaryTag, name, range, {text, 0}};
  };
  const auto comment = [](std::uint32_t length, int kind = kComment) {
    return TagCall{kind, kNoName, {0, length}, {0, 0}};
  };
  const Case cases[] = {
      {u"abc", {}, 0},
      {u"<p>x", {tag({1, 1}, {0, 3})}, 3},
      {u"a</p ><1>", {tag({3, 1}, {1, 5}), tag(kNoName, {6, 3}, 6)}, 9},
      {u"<?xml a?><!DOCTYPE b>", {tag({2, 3}, {0, 9}), tag({11, 7}, {9, 12}, 9)}, 21},
      {u"<a href='x>y'>", {tag({1, 1}, {0, 14})}, 14},
      {u"<a href=x\">\"y'>z", {tag({1, 1}, {0, 11})}, 11},
      {u"<a title=it's>", {tag({1, 1}, {0, 14})}, 14},
      {u"<a b= \t'c>'>", {tag({1, 1}, {0, 12})}, 12},
      {u"<a b=='c>'>", {tag({1, 1}, {0, 11})}, 11},
      {u"<a it's \"x\">'", {tag({1, 1}, {0, 12})}, 12},
      {u"<a <b>c", {tag({1, 1}, {0, 6})}, 6},
      {u"a<b>c<a href", {tag({2, 1}, {1, 3})}, 4},
      {u"<!---->", {comment(7)}, 7},
      {u"<!-->", {comment(5)}, 5},
      {u"<!->x", {comment(4)}, 4},
      {u"<!-x->-->", {comment(6)}, 6},
      {u"<!-x!>y->", {comment(9)}, 9},
      {u"<!-- a > b !> -> --!>", {comment(21)}, 21},
      {u"<!--[if IE]>-->", {comment(15)}, 15},
      {u"<![CDATA[a>b]]>", {comment(15, kMarkedSection)}, 15},
      {u"<![endif]-->", {comment(12, kMarkedSection)}, 12},
      {u"<!-- unfinished", {comment(15)}, 15},
      {u"<!-", {comment(3)}, 3},
      {u"<!", {}, 0},
      {u"<![ \"]\"", {comment(7, kMarkedSection)}, 7},
      {u"<script>if (a<b) x='</b>';</script>y", {tag({1, 6}, {0, 35})}, 35},
      {u"<SCRIPT>a</Script >", {tag({1, 6}, {0, 19})}, 19},
      {u"<script/>a</script>", {tag({1, 6}, {0, 9}), tag({12, 6}, {10, 9}, 9)}, 19},
      {u"<style>a</\u017ftyle>", {tag({1, 5}, {0, 16})}, 16},
      {u"<style>a</\ufb06yle>", {tag({1, 5}, {0, 15})}, 15},
      {u"<script><!-- document.write('</script>') --></script>", {tag({1, 6}, {0, 53})}, 53},
      {u"<script><!-- </script>-->", {tag({1, 6}, {0, 22})}, 22},
      {u"<script>a</style>", {tag({1, 6}, {0, 8}), tag({11, 5}, {9, 8}, 8)}, 17},
      {u"<style>a</style", {tag({1, 5}, {0, 16})}, 16},
  };
  for (Case one : cases) {
    SCOPED_TRACE(NSString::stringWithCharacters(one.string).UTF8String());
    one.calls.push_back(
        {kClosingCall, kNoName, {static_cast<std::uint32_t>(one.string.size()), 0}, {one.lastText, 0}});
    for (const bool isMutable : {false, true})
      EXPECT_EQ(callsOfScanner(exactString(one.string), isMutable), one.calls);
    EXPECT_EQ(PlainTagScanner(one.string).calls(), one.calls);
  }
  for (const NSString &string : {NSString(), NSString::string()}) {
    EXPECT_FALSE(GetTagsOfString(string, nullptr, nullptr, false));
    EXPECT_FALSE(GetTagsOfString(string, nullptr, nullptr, true));
  }
}

/// Markup made of what the scanner has rules for, and of text that moves it against the vectors.
std::u16string hostileMarkup(std::mt19937 &random, std::size_t length) {
  static constexpr std::u16string_view kUnits = u"<>!-[]\"'=/ as\u013c\u3c3c\uff1e";
  static constexpr std::u16string_view kPieces[] = {u"script",
                                                    u"style",
                                                    u"<script>",
                                                    u"<style>",
                                                    u"<!--",
                                                    u"-->",
                                                    u"<a b=\"",
                                                    u"<style a='</style>",
                                                    u"' b=",
                                                    u"</script",
                                                    u"</\u017fcript",
                                                    u"</STYLE",
                                                    u"text which is longer than a vector of units"};
  std::u16string markup;
  while (markup.size() < length) {
    if (random() % 2)
      markup += kUnits[random() % kUnits.size()];
    else
      markup += kPieces[random() % std::size(kPieces)];
  }
  markup.resize(length);
  return markup;
}

/// What `scanTags` tells a lambda, of units at the end of their heap block.
std::vector<TagCall> callsOfLambda(std::u16string_view markup, std::size_t shift) {
  const ExactBuffer<unichar> buffer(markup, shift);
  std::vector<TagCall> calls;
  scanTags({buffer.data(), markup.size()}, [&](const TagShape &tag) {
    calls.push_back({tag.kind(), tag.nameRange(), tag.tagRange(), {tag.textLocation(), 0}});
  });
  return calls;
}

TEST(TagScanner, AgreesWithPlainOneOnHostileMarkup) {
  forEachVectorTarget([] {
    std::mt19937 random(7);
    for (std::size_t round = 0; round < 4000; ++round) {
      // Around the ends of blocks and windows as often as anywhere.
      static constexpr std::size_t edges[] = {64, 128, 512, 576, 1024};
      const std::size_t length = round % 2 ? 1 + random() % 300 : edges[random() % 5] - 2 + random() % 5;
      const std::u16string markup = hostileMarkup(random, length);
      ASSERT_EQ(callsOfLambda(markup, round % 9), PlainTagScanner(markup).calls())
          << NSString::stringWithCharacters(markup).UTF8String();
    }
  });
}

TEST(TagScanner, GoesBackIntoValuesOfRawTextTags) {
  std::u16string markup;
  for (std::size_t padding = 0; markup.size() < 3000; ++padding)
    markup += u"<style a='</style>' b=" + std::u16string(padding * 5 % 97, u'=');
  markup += u">";
  EXPECT_EQ(callsOfLambda(markup, 0), PlainTagScanner(markup).calls());
}

TEST(TagScanner, StopsWhenToldTo) {
  const NSString string = u"<a>b<!--c--><d><!-- e"_ns;
  const std::vector<TagCall> all = callsOfScanner(string, false);
  ASSERT_EQ(all.size(), 5u);
  for (std::size_t count = 1; count <= 5; ++count) {
    for (const bool isMutable : {false, true}) {
      // Who stops at a comment without end is told of the end all the same.
      const std::size_t expected = count == 4 ? 5 : count;
      EXPECT_EQ(callsOfScanner(string, isMutable, count).size(), expected);
    }
  }
}

TEST(TagScanner, LetsHandlersChangeACopy) {
  const NSString string = u"a<b>c<i>d"_ns;
  EXPECT_TRUE(GetTagsOfString(
      string,
      [](const NSString &whole, const unichar *characters, std::uint32_t, std::uint32_t, std::uint32_t location,
         std::uint32_t, std::uint32_t text, int, void *) {
        EXPECT_NE(characters, whole.characters());
        // What an earlier call wrote is still there.
        EXPECT_EQ(text == 0 || characters[0] == u'<', true);
        std::fill(const_cast<unichar *>(characters), const_cast<unichar *>(characters) + location, u'<');
        return false;
      },
      nullptr, true));
  EXPECT_EQ(string, u"a<b>c<i>d"_ns);
}

TEST(TagScanner, LetsExceptionsOut) {
  for (const bool isMutable : {false, true}) {
    EXPECT_THROW(GetTagsOfString(
                     u"<a><b>"_ns,
                     [](const NSString &, const unichar *, std::uint32_t, std::uint32_t, std::uint32_t,
                        std::uint32_t, std::uint32_t, int, void *) -> bool { throw std::runtime_error("no"); },
                     nullptr, isMutable),
                 std::runtime_error);
  }
}

}  // namespace
}  // namespace nimbo
