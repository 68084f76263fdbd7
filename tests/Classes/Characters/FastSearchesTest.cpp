// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/FastSearches.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/VectorTargets.hpp"

namespace nimbo {
namespace {

unichar unitOf(unichar c) {
  return c;
}

unichar unitOf(char c) {
  return static_cast<unichar>(static_cast<unsigned char>(c) < 0x80 ? c
                                                                   : 0xff00 | static_cast<unsigned char>(c));
}

/// The plain twin of the four searches: where the first match begins, -1 for none.
template <typename Element>
std::ptrdiff_t plainSearch(std::u16string_view h, std::basic_string_view<Element> n, bool noCase) {
  const auto fold = [noCase](unichar c) { return noCase ? toUpper(c) : c; };
  if (n.empty()) return -1;
  for (std::size_t p = 0; p + n.size() <= h.size(); ++p) {
    std::size_t i = 0;
    while (i < n.size() && fold(h[p + i]) == fold(unitOf(n[i]))) ++i;
    if (i == n.size()) return static_cast<std::ptrdiff_t>(p);
  }
  return -1;
}

std::ptrdiff_t offsetIn(const unichar *h, const unichar *found) {
  return found ? found - h : -1;
}

void expectAsPlain(std::u16string_view haystack, std::u16string_view needle, std::size_t shift) {
  const ExactBuffer<unichar> h(haystack, shift), n(needle);
  const auto lenH = static_cast<std::uint32_t>(haystack.size());
  const auto lenN = static_cast<std::uint32_t>(needle.size());
  ASSERT_EQ(offsetIn(h.data(), fastContainsUnichars(h.data(), lenH, n.data(), lenN)),
            plainSearch(haystack, needle, false));
  ASSERT_EQ(offsetIn(h.data(), fastCaseInsensitiveContainsUnichars(h.data(), lenH, n.data(), lenN)),
            plainSearch(haystack, needle, true));

  // The low bytes of the needle, which often are those of another one.
  std::string bytes;
  for (const unichar c : needle) bytes += static_cast<char>(c);
  const ExactBuffer<char> chars(bytes);
  const std::string_view bytesView = bytes;
  ASSERT_EQ(offsetIn(h.data(), positionOfCharacters(chars.data(), lenN, h.data(), lenH, true)),
            plainSearch(haystack, bytesView, false));
  ASSERT_EQ(offsetIn(h.data(), positionOfCharacters(chars.data(), lenN, h.data(), lenH, false)),
            plainSearch(haystack, bytesView, true));
}

TEST(FastSearches, FindAtEachPlaceOfEachLength) {
  forEachVectorTarget([] {
    for (std::size_t length = 1; length <= 100; ++length) {
      for (const std::u16string_view needle :
           {u"x", u"xy", u"xaaaaaY", u"\u03b8aaaaaaaaaaaaaaaaaaaS", u"s\u03b8is"}) {
        expectAsPlain(std::u16string(length, u'a'), needle, length % 5);
        for (std::size_t place = 0; place + needle.size() <= length; ++place) {
          std::u16string haystack(length, u'a');
          haystack.replace(place, needle.size(), needle);
          expectAsPlain(haystack, needle, place % 5);
          if (::testing::Test::HasFatalFailure()) return;
        }
      }
    }
  });
}

TEST(FastSearches, AgreeWithPlainOnesOnRandomRuns) {
  EXPECT_EQ(fastContainsUnichars(u"abc", 3, nullptr, 0), nullptr);
  EXPECT_EQ(fastCaseInsensitiveContainsUnichars(nullptr, 0, u"a", 1), nullptr);
  // Units with one to four units of the same fold, bytes above 0x7F as units, and what low bytes confuse.
  const std::u16string_view alphabet =
      u"aAbsS\u017f\u0422\u0442\u1c84\u1c85\u00e9\u00c9\uffe9\u0161\u01c5\xd800\xffff\u0000";
  forEachVectorTarget([&] {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
      const std::size_t letters = 2 + random() % (alphabet.size() - 1);
      std::u16string haystack, needle;
      for (std::uint32_t n = random() % 150; n > 0; --n) haystack += alphabet[random() % letters];
      for (std::uint32_t n = random() % 5; n > 0; --n) needle += alphabet[random() % letters];
      if (random() % 2 && !haystack.empty())
        needle = haystack.substr(random() % haystack.size(), random() % 90);
      expectAsPlain(haystack, needle, round % 9);
      if (::testing::Test::HasFatalFailure()) return;
    }
  });
}

TEST(FastSearches, AgreeWithPlainOnesWhereTheAnchorsFitEverywhere) {
  const auto repeated = [](std::size_t count, std::u16string_view part) {
    std::u16string units;
    while (count-- > 0) units += part;
    return units;
  };
  // Long enough that the linear search is begun, given up for the anchors, and begun again.
  const std::u16string runs[] = {repeated(60000, u"a"),
                                 repeated(700, u"a") + repeated(40000, u".") + repeated(900, u"a"),
                                 repeated(20000, u"aab"), repeated(9000, u"aA\u00e9")};
  std::vector<std::u16string> needles = {u"aba", u"aabaaa", u"aaaaaaab", u"baaaaaaa", u"\u00c9aaAb"};
  for (const std::size_t n : {3u, 40u}) needles.push_back(repeated(n, u"a") + u"b" + repeated(n, u"a"));
  for (const std::u16string &run : runs) {
    for (const std::u16string &needle : needles) {
      expectAsPlain(run, needle, 0);
      for (const std::size_t place : {std::size_t{0}, std::size_t{600}, run.size() / 2 + 1, run.size()}) {
        expectAsPlain(std::u16string(run).insert(place, needle), needle, place % 5);
        if (::testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

TEST(FastSearches, FindALongNeedleInARunOfItsUnits) {
  const std::u16string half(6000, u'a'), needle = half + u"b" + half;
  const auto lenN = static_cast<std::uint32_t>(needle.size());
  for (const std::size_t before : {0, 1, 700, 123456}) {
    const std::u16string h = std::u16string(before, u'a') + needle + half;
    const auto lenH = static_cast<std::uint32_t>(h.size());
    EXPECT_EQ(offsetIn(h.data(), fastContainsUnichars(h.data(), lenH, needle.data(), lenN)),
              static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(offsetIn(h.data(), fastCaseInsensitiveContainsUnichars(h.data(), lenH, needle.data(), lenN)),
              static_cast<std::ptrdiff_t>(before));
  }
  const std::u16string none(100000, u'a');
  EXPECT_EQ(fastContainsUnichars(none.data(), 100000, needle.data(), lenN), nullptr);
}

TEST(FastContainsSubCStrings, FindsAnyPattern) {
  const unichar *const lower = initLowerCharsTable();
  const auto padded = [](std::uint32_t blanks, std::u16string_view end) {
    return NSString::stringWithCharacters(std::u16string(blanks, u' ').append(end));
  };
  const struct {
    NSString text;
    std::uint32_t length;
    std::vector<const char *> patterns;
    bool exact, folded;
  } cases[] = {
      {u"xABCx"_ns, 5, {"abc"}, false, true},
      {u"xabcx"_ns, 5, {"zz", "abc"}, true, true},
      {u"xabcx"_ns, 5, {"ABC"}, false, false},
      {u"XABCX"_ns, 5, {"ABC"}, true, false},
      {u"xabcx"_ns, 5, {"zz", nullptr, "abc"}, false, false},
      {u"xabcx"_ns, 5, {}, false, false},
      {u"xabcx"_ns, 4, {"cx"}, false, false},
      {u"xabcx"_ns, 99, {"cx"}, true, true},
      {u"xabcx"_ns, 0, {"x"}, false, false},
      {u"abc"_ns, 3, {"abcd", "abc"}, true, true},
      {u"abc"_ns, 3, {""}, false, false},
      {NSString::stringWithCharacters(std::u16string_view(u"a\0", 2)), 2, {""}, true, true},
      {NSString::stringWithCharacters(std::u16string_view(u"a\0", 2)), 1, {""}, false, false},
      {u"\u00e9"_ns, 1, {"\xe9"}, false, false},
      {u"\uffe9"_ns, 1, {"\xe9"}, true, true},
      {NSString(), 5, {"", "a"}, false, false},
      {padded(253, u"abC"), 256, {"abc"}, false, true},
      {padded(254, u"abC"), 257, {"abc"}, false, true},
      {padded(254, u"abC"), 256, {"abc"}, false, false},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(fastContainsSubCStrings(c.text, c.length, c.patterns, nullptr), c.exact) << c.text.UTF8String();
    EXPECT_EQ(fastContainsSubCStrings(c.text, c.length, c.patterns, lower), c.folded) << c.text.UTF8String();
  }
}

}  // namespace
}  // namespace nimbo
