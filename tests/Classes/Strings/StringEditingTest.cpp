// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

struct Case {
  NSString answer, expected;
};

void expectAll(std::initializer_list<Case> cases) {
  int index = 0;
  for (const Case &c : cases) {
    EXPECT_EQ(c.answer, c.expected) << "case " << index << ": " << c.answer.UTF8String();
    ++index;
  }
}

TEST(StringCase, MapsEachUnit) {
  const NSString text = u"\u00c4b\u00e9 \u00df\u4e2d"_ns;
  expectAll({
      {uppercaseAsciiString(text), u"ABE   "_ns},
      {lowercaseAsciiString(text), u"abe   "_ns},
      {asciiString(text), u"Abe   "_ns},
      {nonUmlautedString(text), u"Abe \u00df\u4e2d"_ns},
      {uppercaseNonUmlautedString(text), u"ABE \u00df\u4e2d"_ns},
      {lowercaseNonUmlautedString(text), u"abe \u00df\u4e2d"_ns},
      {nonUmlautedString(u"e\u0301"_ns), u"e\u0301"_ns},
      {nonUmlautedNormalizedString(u"E\u0301"_ns), u"E"_ns},
      {uppercaseNonUmlautedNormalizedString(u"e\u0301"_ns), u"E"_ns},
      {lowercaseNonUmlautedNormalizedString(u"E\u0301"_ns), u"e"_ns},
      {caseInsensitiveStringByRemovingNonAlphaNumericCharacters(u"Caf\u00c9-2, x!"_ns), u"cafe2x"_ns},
  });
}

TEST(StringNormalizing, HasFormsAndLowersInBothCases) {
  const NSString text = u"E\u0301\ufb01\u00c9"_ns;
  expectAll({
      {normalizedString(text), u"\u00c9\ufb01\u00c9"_ns},
      {normalizedString(text, kCFStringNormalizationFormD), u"E\u0301\ufb01E\u0301"_ns},
      {normalizedString(text, kCFStringNormalizationFormKD), u"E\u0301fiE\u0301"_ns},
      {normalizedString(text, kCFStringNormalizationFormKC), u"\u00c9fi\u00c9"_ns},
      {normalizedUppercaseString(text), u"\u00e9\ufb01\u00e9"_ns},
      {normalizedLowercaseString(text), u"\u00e9\ufb01\u00e9"_ns},
      {normalizedString(NSString()), NSString()},
  });
  const NSString normal = u"abc"_ns;
  EXPECT_FALSE(normalizedString(normal).identicalTo(normal));
}

TEST(StringNormalizing, MapsWholeCharactersInPlace) {
  NSMutableString text(u"stra\u00dfe DON'T \U00010428"_ns);
  uppercase(text);
  EXPECT_EQ(text.view(), u"STRASSE DON'T \U00010400");
  capitalize(text);
  EXPECT_EQ(text.view(), u"Strasse Don't \U00010400");
  lowercase(text);
  EXPECT_EQ(text.view(), u"strasse don't \U00010428");
  NSMutableString nothing;
  for (const auto edit : {lowercase, uppercase, capitalize}) edit(nothing);
  EXPECT_EQ(nothing.length(), 0u);
}

TEST(StringRemoving, RemovesTheNamedClass) {
  const NSString text = u"a1\t \u00a0\nb\u2028\ufeff\u0660"_ns;
  expectAll({
      {stringByRemovingWhiteCharacters(text), u"a1b\u0660"_ns},
      {stringByRemovingSpaces(text), u"a1\nb\u2028\ufeff\u0660"_ns},
      {stringByRemovingTabs(text), u"a1 \u00a0\nb\u2028\ufeff\u0660"_ns},
      {stringByRemovingFeeds(text), u"a1\t \u00a0b\u0660"_ns},
      {stringByRemovingDigits(text), u"a\t \u00a0\nb\u2028\ufeff"_ns},
      {uppercaseStringByRemovingDigits(u"a1\u00e9\u00df"_ns), u"A\u00c9\u00df"_ns},
      {lowercaseStringByRemovingDigits(u"A1\u00c9"_ns), u"a\u00e9"_ns},
      {stringByRemovingCharacters(u"a-b"_ns, nullptr), u"a-b"_ns},
      {stringByRemovingCharactersOfString(u"a-b"_ns, NSString()), u"a-b"_ns},
      {stringByRemovingMultipleFeeds(u"a\n\n\nb\r\n\r\nc\nd\r\n"_ns), u"a\nb\r\nc\nd\r\n"_ns},
      {stringByRemovingMultipleSpacesAndFeeds(u" \t a \n\n b\t"_ns, false), u" a \n\n b "_ns},
      {stringByRemovingMultipleSpacesAndFeeds(u" \t a \n\n b\n"_ns, true), u" a b "_ns},
      {reformattedStringByRemovingCharactersOfString(u" [a]  [\n] b "_ns, u"[]"_ns), u"a b"_ns},
  });
}

TEST(StringTrimming, TrimsTheNamedEnds) {
  expectAll({
      {stringByTrimmingWhiteSpaces(u"\n\ufeff a b\u00a0\n"_ns), u"a b"_ns},
      {stringByTrimmingFeeds(u"\n a\n \r\n"_ns), u" a\n "_ns},
      {stringByTrimmingDigits(u"12a3b4"_ns), u"a3b"_ns},
      {stringByTrimmingCharacter(u"--a-b--"_ns, u'-'), u"a-b"_ns},
      {stringByTrimmingPrefixCharacter(u"--a--"_ns, u'-'), u"a--"_ns},
      {stringByTrimmingSuffixCharacter(u"--a--"_ns, u'-'), u"--a"_ns},
      {stringByTrimmingEnclosingCharacter(u"''a'"_ns, u'\''), u"'a"_ns},
      {stringByTrimmingEnclosingCharacter(u"'a"_ns, u'\''), u"'a"_ns},
      {stringByTrimmingEnclosingCharacter(u"'"_ns, u'\''), u"'"_ns},
      {stringByTrimmingEnclosingCharacter(u"''"_ns, u'\''), u""_ns},
      {stringByTrimmingEllipsis(u"...a.b\u2026.."_ns), u"...a.b"_ns},
      {stringByTrimmingEllipsis(u"..\u2026"_ns), u""_ns},
      {stringByTrimmingSpacesAndFeeds(u"\t\n a \n "_ns, false), u"\n a \n"_ns},
      {stringByTrimmingSpacesAndFeeds(u"\t\n a \n "_ns, true), u"a"_ns},
      {stringByTrimmingSpacesOfLeftSideAndFeeds(u" \na\n "_ns, true), u"a\n "_ns},
      {stringByTrimmingSpacesOfRightSideAndFeeds(u" \na\n "_ns, false), u" \na\n"_ns},
      {stringByTrimmingSpacesInRange(u"ab  cd"_ns, {1, 3}, false), u"b"_ns},
      {stringByTrimmingSpacesInRange(u"ab"_ns, {3, 1}, false), u""_ns},
  });
  EXPECT_EQ(trimSpacesInRange(u"a \n b"_ns, {1, 3}, false), (NSRange{2, 1}));
  EXPECT_EQ(trimWhiteSpacesInRange(u"a \n b"_ns, {1, 3}), (NSRange{4, 0}));
  EXPECT_EQ(trimWhiteSpacesInRange(u" a "_ns, {1, NSNotFound}), (NSRange{1, 1}));
  EXPECT_EQ(trimWhiteSpacesInRange(u"a"_ns, {1, 5}), (NSRange{1, 0}));
  EXPECT_EQ(trimWhiteSpacesInRange(u"a"_ns, {2, 0}), (NSRange{NSNotFound, 0}));
  EXPECT_EQ(trimWhiteSpacesInRange(NSString(), {0, 0}), (NSRange{NSNotFound, 0}));
}

TEST(StringReplacing, ReplacesFromLeftToRight) {
  const NSString same = u"same"_ns;
  expectAll({
      {stringByReplacingString(u"aaaaa"_ns, u"aa"_ns, u"b"_ns), u"bba"_ns},
      {stringByReplacingString(u"a\u00c4"_ns, u"\u00e4"_ns, u"long"_ns), u"a\u00c4"_ns},
      {stringByReplacingString(u"a\u00c4"_ns, u"\u00e4"_ns, u"long"_ns, false), u"along"_ns},
      {stringByReplacingString(u"ab"_ns, u""_ns, u"x"_ns), u"ab"_ns},
      {stringByReplacingString(u"ab"_ns, NSString(), u"x"_ns), u"ab"_ns},
      {stringByReplacingString(u"ab"_ns, u"a"_ns, NSString()), u"ab"_ns},
      {stringByReplacingCharacter(u"Aa"_ns, u'a', u'b'), u"Ab"_ns},
      {stringByReplacingCharacter(u"Aa"_ns, u'a', u'b', false), u"Ab"_ns},
      {stringByReplacingCharacter(u"Aa"_ns, u'A', u'b', false), u"ba"_ns},
      {stringByReplacingCharacter(u"a-"_ns, u'-', u'+', false), u"a+"_ns},
  });
  EXPECT_TRUE(stringByReplacingCharacter(same, u's', u's').identicalTo(same));
  EXPECT_TRUE(stringByReplacingString(same, u"S"_ns, u"x"_ns).identicalTo(same));
  NSMutableString text(u"[x] and [x]"_ns);
  replaceStringWithFormat(text, u"[x]"_ns, u"%@%%%@%d%@%"_ns, {u"%@"_ns, NSString()});
  EXPECT_EQ(text.view(), u"%@%%d% and %@%%d%");
}

TEST(StringEditing, EditsInPlaceInsideTheBounds) {
  NSMutableString text;
  appendCharacter(text, u'b');
  insertCharacter(text, u'a', 0);
  insertCharacter(text, u'c', 2);
  insertCharacter(text, u'x', 4);
  appendCharacters(text, text.characters(), 2);
  appendSubstring(text, u"0123"_ns, {2, NSNotFound});
  appendSubstring(text, u"0123"_ns, {4, 1});
  appendTrimmedString(text, u" d e\n"_ns);
  appendTrimmedString(text, NSString());
  EXPECT_EQ(text.view(), u"abcab23d e");
  removeCharacterAtIndex(text, text.length());
  removeCharacterAtIndex(text, 0);
  deleteString(text, u"b"_ns);
  EXPECT_EQ(text.view(), u"ca23d e");
  removeAttachments(text);
  removeLinks(text);
  removeAttribute(text, u"ca"_ns);
  EXPECT_EQ(text.view(), u"ca23d e");
}

TEST(StringEditing, CountsTabStopsFromTheLastFeed) {
  NSMutableString text(u"a   b  \n    c d"_ns);
  encodeTabs(text, 4);
  EXPECT_EQ(text.view(), u"a\tb  \n\tc d");
  decodeTabs(text, 2);
  EXPECT_EQ(text.view(), u"a b  \n  c d");
  const struct {
    std::uint32_t width, encodedLength;
  } widths[] = {
      {0, 600}, {1, 600}, {kMaximumTabWidth, 2 + 600 % kMaximumTabWidth}, {kMaximumTabWidth + 1, 600}};
  for (const auto &[width, encodedLength] : widths) {
    NSMutableString spaces(exactString(std::u16string(600, u' ')));
    encodeTabs(spaces, width);
    EXPECT_EQ(spaces.length(), encodedLength) << width;
  }
}

}  // namespace
}  // namespace nimbo
