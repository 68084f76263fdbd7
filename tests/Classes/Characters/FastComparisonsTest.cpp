// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/FastComparisons.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Classes/Characters/SetFilteredComparisons.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"
#include "tests/support/ExactBuffer.hpp"

namespace nimbo {
namespace {

std::uint32_t sizeOf(const auto &run) {
  return static_cast<std::uint32_t>(run.size());
}

TEST(FastComparisons, CompareUnitsAndSignedBytes) {
  const struct {
    std::u16string_view a, b;
    std::int32_t exact, noCase;
  } units[] = {
      {u"", u"", 0, 0},
      {u"ab", u"abc", -1, -1},
      {u"abc", u"", 3, 3},
      {u"b", u"a", 1, 1},
      {u"a", u"B", 'a' - 'B', 'A' - 'B'},
      {u"_", u"a", '_' - 'a', '_' - 'A'},
      {u"aé", u"AÉx", 32, -1},
      {u"ß", u"SS", 0xdf - 'S', 0xdf - 'S'},
      {u"\xffff", u"\x0001", 0xfffe, 0xfffe},
      {u"\xd800", u"\xe000", -0x800, -0x800},
  };
  for (const auto &c : units) {
    const ExactBuffer a(c.a), b(c.b);
    const std::uint32_t lenA = sizeOf(c.a), lenB = sizeOf(c.b);
    EXPECT_EQ(compareCharacters(a.data(), lenA, b.data(), lenB), c.exact);
    EXPECT_EQ(fastCompareUnichars(b.data(), lenB, a.data(), lenA), -c.exact);
    EXPECT_EQ(caseInsensitiveCompareCharacters(a.data(), lenA, b.data(), lenB), c.noCase);
    EXPECT_EQ(fastCaseInsensitiveCompareUnichars(b.data(), lenB, a.data(), lenA), -c.noCase);
  }

  const struct {
    std::u16string_view a;
    std::string_view b;
    std::int32_t exact, noCase;
  } bytes[] = {
      {u"", "", 0, 0},           {u"AbC", "AbC", 0, 0},
      {u"AbC", "aBcd", -32, -1}, {u"\u00e9", "\xe9", 0xe9 - 0xffe9, 0xc9 - 0xffe9},
      {u"\xffe9", "\xe9", 0, 0}, {u"\xff80", "\x7f", 0xff80 - 0x7f, 0xff80 - 0x7f},
  };
  for (const auto &c : bytes) {
    const ExactBuffer<unichar> a(c.a);
    const ExactBuffer<char> b(c.b);
    const std::uint32_t lenA = sizeOf(c.a), lenB = sizeOf(c.b);
    EXPECT_EQ(compareCharacters(a.data(), lenA, b.data(), lenB), c.exact);
    EXPECT_EQ(caseInsensitiveCompareCharacters(a.data(), lenA, b.data(), lenB), c.noCase);
    // Units that are bytes compare as bytes do.
    std::string narrow;
    for (const unichar u : c.a) narrow += static_cast<char>(u);
    if (std::ranges::all_of(c.a, [](unichar u) { return u < 0x80 || u >= 0xff80; })) {
      EXPECT_EQ(fastCompareChars(narrow.data(), lenA, b.data(), lenB), c.exact);
      EXPECT_EQ(fastCaseInsensitiveCompareChars(narrow.data(), lenA, b.data(), lenB), c.noCase);
    }
  }
  EXPECT_EQ(fastCompareUnichars(nullptr, 0, nullptr, 0), 0);
  EXPECT_EQ(fastCaseInsensitiveCompareChars("a", 1, nullptr, 0), 1);
}

TEST(SetFilteredComparisons, PassOverWhatIsNotInTheSet) {
  const struct {
    NSString a, b;
    bool equal, equalNoCase, prefix, prefixNoCase;
  } cases[] = {
      {NSString(), NSString::string(), true, true, true, true},
      {NSString(), u"a"_ns, false, false, false, false},
      {u"a"_ns, NSString(), false, false, true, true},
      {u"--"_ns, NSString(), true, true, true, true},
      {u"a-b"_ns, u"ab"_ns, true, true, true, true},
      {u"ab"_ns, u"abc"_ns, false, false, false, false},
      {u"ab"_ns, u"ab..."_ns, true, true, true, true},
      {u"abc"_ns, u"a.b"_ns, false, false, true, true},
      {u"Foo-Bar 2"_ns, u"foobar2"_ns, false, true, false, true},
      {u"foo bar"_ns, u"FOO"_ns, false, false, false, true},
      {u"foo bar"_ns, u"foo"_ns, false, false, true, true},
      {u"Straße"_ns, u"STRASSE"_ns, false, false, false, false},
      {u"\u00e9!"_ns, u"\u00c9"_ns, false, true, false, true},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.a.UTF8String() + " | " + c.b.UTF8String());
    const CharacterSetRep *const set = alphaNumCharacterSetRep();
    EXPECT_EQ(equalStringsUsingCharacterSetRep(c.a, c.b, set), c.equal);
    EXPECT_EQ(equalStringsNoCaseUsingCharacterSetRep(c.a, c.b, set), c.equalNoCase);
    EXPECT_EQ(hasPrefixUsingCharacterSetRep(c.a, c.b, set), c.prefix);
    EXPECT_EQ(hasPrefixNoCaseUsingCharacterSetRep(c.a, c.b, set), c.prefixNoCase);
  }
  // The units themselves are members or not, not what they fold to.
  EXPECT_FALSE(equalStringsNoCaseUsingCharacterSetRep(u"aB"_ns, u"AB"_ns, upperCharacterSetRep()));
  EXPECT_TRUE(equalStringsNoCaseUsingCharacterSetRep(u"aB"_ns, u"B"_ns, upperCharacterSetRep()));
  EXPECT_TRUE(equalStringsUsingCharacterSetRep(u"a"_ns, u"b"_ns, emptyCharacterSetRep()));
  EXPECT_FALSE(equalStringsUsingCharacterSetRep(u"a"_ns, u"a"_ns, nullptr));
  EXPECT_FALSE(hasPrefixNoCaseUsingCharacterSetRep(u"a"_ns, NSString(), nullptr));
  EXPECT_TRUE(hasPrefixUsingCharacterSetRep(NSString(), NSString::string(), nullptr));
}

TEST(SetFilteredComparisons, AgreeWithFilteredCopies) {
  std::mt19937 random(41);
  const CharacterSetRep *const set = alphaNumCharacterSetRep();
  const std::u16string_view alphabet = u"aAb- ";
  for (int round = 0; round < 20000; ++round) {
    std::u16string runs[2], members[2], folded[2];
    for (int i = 0; i < 2; ++i) {
      for (std::uint32_t length = random() % 6; length > 0; --length) runs[i] += alphabet[random() % 5];
      for (const unichar c : runs[i]) {
        if (!set->contains(c)) continue;
        members[i] += c;
        folded[i] += upperCharsTable()[c];
      }
    }
    const ExactBuffer<unichar> a(runs[0]), b(runs[1]);
    const std::uint32_t lenA = sizeOf(runs[0]), lenB = sizeOf(runs[1]);
    ASSERT_EQ(equalCharsOfCharacterSetRep(a.data(), lenA, b.data(), lenB, set), members[0] == members[1]);
    ASSERT_EQ(equalCharsNoCaseOfCharacterSetRep(a.data(), lenA, b.data(), lenB, set), folded[0] == folded[1]);
    ASSERT_EQ(hasPrefixCharsOfCharacterSetRep(a.data(), lenA, b.data(), lenB, set),
              members[0].starts_with(members[1]));
    ASSERT_EQ(hasPrefixCharsNoCaseOfCharacterSetRep(a.data(), lenA, b.data(), lenB, set),
              folded[0].starts_with(folded[1]));
  }
}

}  // namespace
}  // namespace nimbo
