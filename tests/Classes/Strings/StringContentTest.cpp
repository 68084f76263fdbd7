// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <vector>

#include "Classes/Collections/NSArray+NSStringExtensions.hpp"
#include "Classes/Strings/NSData+ASCII.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

const NSString kLoneSurrogates = NSString::stringWithCharacters(u"\xdc00\xd800");

TEST(StringComparing, FoldsWholeCharacters) {
  const struct {
    NSString string, part;
    bool prefix, suffix, equal;
  } cases[] = {
      {u"Stra\u00dfe"_ns, u"STRASSE"_ns, true, true, true},
      {u"Stra\u00dfe"_ns, u"stras"_ns, false, false, false},
      {u"\u00dfa\u00df"_ns, u"ss"_ns, true, true, false},
      {u"\u00dfa\u00df"_ns, u"s"_ns, false, false, false},
      {u"abab"_ns, u"AB"_ns, true, true, false},
      {u"xab"_ns, u"AB"_ns, false, true, false},
      {u"\U00010400x\U00010428"_ns, u"\U00010428"_ns, true, true, false},
      {u"\u03a3"_ns, u"\u03c2"_ns, true, true, true},
      {u"ab"_ns, u"abc"_ns, false, false, false},
      {u"ab"_ns, u""_ns, false, false, false},
      {u""_ns, u""_ns, false, false, true},
      {u"ab"_ns, NSString(), false, false, false},
      {NSString(), NSString(), false, false, false},
      {kLoneSurrogates, kLoneSurrogates, true, true, true},
  };
  for (const auto &c : cases) {
    const NSString string = exactString(c.string.view());
    const NSString receiver = c.string ? string : c.string;
    EXPECT_EQ(hasPrefixNoCase(receiver, c.part), c.prefix) << c.string.UTF8String();
    EXPECT_EQ(hasSuffixNoCase(receiver, c.part), c.suffix) << c.string.UTF8String();
    EXPECT_EQ(isEqualToStringNoCase(receiver, c.part), c.equal) << c.string.UTF8String();
  }
}

TEST(StringComparing, ComparesARange) {
  const NSString string = exactString(u"xa\u00c9\u4e2d");
  const struct {
    NSRange range;
    NSString other;
    bool equal, noCase, ascii, nonUmlauted;
  } cases[] = {
      {{1, 2}, u"a\u00c9"_ns, true, true, true, true},
      {{1, 2}, u"A\u00e9"_ns, false, true, true, true},
      {{1, 2}, u"ae"_ns, false, false, true, true},
      {{3, 1}, u"\u4e2e"_ns, false, false, true, false},
      {{3, 1}, u" "_ns, false, false, true, false},
      {{4, 0}, u""_ns, true, true, true, true},
      {{1, 2}, u"a"_ns, false, false, false, false},
      {{3, 2}, u"\u4e2d"_ns, false, false, false, false},
      {{5, 0}, u""_ns, false, false, false, false},
      {{3, 0xffffffff}, u"\u4e2dx"_ns, false, false, false, false},
      {{0, 0}, NSString(), false, false, false, false},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.other.UTF8String());
    EXPECT_EQ(rangeIsEqualTo(string, c.range, c.other), c.equal);
    EXPECT_EQ(rangeIsEqualToNoCase(string, c.range, c.other), c.noCase);
    EXPECT_EQ(rangeIsAsciiEqualToNoCase(string, c.range, c.other), c.ascii);
    EXPECT_EQ(rangeIsNonUmlautedEqualToNoCase(string, c.range, c.other), c.nonUmlauted);
  }
  EXPECT_TRUE(isAsciiEqualToStringNoCase(u"\u00e4\u00df"_ns, u"A\u4e2d"_ns));
  EXPECT_FALSE(isNonUmlautedEqualToStringNoCase(u"\u00e4\u00df"_ns, u"A\u4e2d"_ns));
  EXPECT_TRUE(isNonUmlautedEqualToStringNoCase(u"\u00e4\u00df"_ns, u"A\u00df"_ns));
  EXPECT_FALSE(isNonUmlautedEqualToStringNoCase(NSString(), u""_ns));
}

TEST(StringComparing, HasEnds) {
  EXPECT_EQ(stringWithCharacter(u'\0').length(), 1u);
  EXPECT_EQ(initWithCharacter(u'a'), u"a"_ns);
  EXPECT_EQ(firstCharacter(u"ab"_ns), u'a');
  EXPECT_EQ(lastCharacter(u"ab"_ns), u'b');
  EXPECT_EQ(firstCharacter(u"a"_ns) + lastCharacter(u"a"_ns), 2 * u'a');
  for (const NSString &nothing : {NSString(), NSString::string()}) {
    EXPECT_EQ(firstCharacter(nothing) + lastCharacter(nothing), 0);
    EXPECT_TRUE(isStringEmpty(nothing));
    EXPECT_FALSE(isStringNotEmpty(nothing));
  }
}

TEST(StringContent, ClassifiesUnits) {
  const struct {
    NSString string;
    bool ascii, umlauted, upper, lower, mashed;
  } cases[] = {
      {NSString(), false, false, false, false, false},
      {u""_ns, true, false, false, false, false},
      {u"A 1"_ns, true, false, true, false, false},
      {u"a\u00df\u007f"_ns, false, false, false, true, false},
      {u"\u00c9"_ns, false, true, true, false, false},
      {u"1"_ns, true, false, false, false, false},
      {kLoneSurrogates, false, false, false, false, false},
      {u"HelloWorld"_ns, true, false, false, false, true},
      {u"AbCd EF"_ns, true, false, false, false, true},
      {u"GoodNight"_ns, true, false, false, false, true},
      {u"Hello"_ns, true, false, false, false, false},
      {u"HELLO"_ns, true, false, true, false, false},
      {u"HeLLo"_ns, true, false, false, false, false},
      {u"HelloW"_ns, true, false, false, false, false},
      {u"helloWorld"_ns, true, false, false, false, false},
      {u"Hello World"_ns, true, false, false, false, false},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.string.UTF8String());
    EXPECT_EQ(isAsciiString(c.string), c.ascii);
    EXPECT_EQ(isUmlautedString(c.string), c.umlauted);
    EXPECT_EQ(isUpperCaseString(c.string), c.upper);
    EXPECT_EQ(isLowerCaseString(c.string), c.lower);
    EXPECT_EQ(isMashedWord(exactString(c.string.view())), c.mashed);
  }
  EXPECT_TRUE(onlyWhiteCharacters(nullptr, 0));
  EXPECT_TRUE(onlyWhiteCharacters(u"\n\0 ", 3));
  EXPECT_FALSE(onlyWhiteCharacters(u" a", 2));
  EXPECT_TRUE(containsCharacters(u"abc"_ns, u"xc"_ns));
  EXPECT_FALSE(containsCharacters(u"abc"_ns, u"x"_ns));
  EXPECT_FALSE(containsCharacters(u"abc"_ns, NSString()));
  const std::uint8_t bytes[] = {0x00, 0x7f, 0x80};
  EXPECT_TRUE(isAsciiString(NSData::dataWithBytes(bytes, 2)));
  EXPECT_FALSE(isAsciiString(NSData::dataWithBytes(bytes, 3)));
  EXPECT_TRUE(isAsciiString(NSData::data()));
  EXPECT_FALSE(isAsciiString(NSData()));
}

TEST(StringContent, ReadsNumbers) {
  const NSString text = exactString(u"a007 18446744073709551616 12");
  EXPECT_EQ(countNumbers(text), 3u);
  EXPECT_EQ(countNumbers(NSString()), 0u);
  EXPECT_TRUE(containsNumber(text, 7));
  EXPECT_TRUE(containsNumber(text, 12));
  for (const std::uint64_t absent : {0u, 1u, 2u, 70u, 112u})
    EXPECT_FALSE(containsNumber(text, absent)) << absent;
  EXPECT_TRUE(containsNumber(u"18446744073709551615"_ns, UINT64_MAX));
  EXPECT_TRUE(containsNumber(u"00"_ns, 0));
  EXPECT_TRUE(containsNumberWithNDigits(text, 20));
  for (const std::int32_t absent : {21, 0, -1, INT32_MAX})
    EXPECT_FALSE(containsNumberWithNDigits(text, absent));
  EXPECT_FALSE(containsNumberWithNDigits(u"\u0660\u0660"_ns, 1));
}

TEST(StringContent, CountsAngleBrackets) {
  const struct {
    NSString string;
    std::uint32_t lt, gt;
    bool balanced;
  } cases[] = {
      {u"a"_ns, 0, 0, false}, {u"<>>"_ns, 1, 2, false}, {u"><"_ns, 1, 1, true}, {NSString(), 0, 0, false}};
  for (const auto &c : cases) {
    std::uint32_t lt = 9, gt = 9;
    EXPECT_EQ(countLTGT(c.string, &lt, &gt), c.balanced);
    EXPECT_EQ(countLTGT(c.string, nullptr, nullptr), c.balanced);
    EXPECT_EQ(lt, c.lt);
    EXPECT_EQ(gt, c.gt);
  }
}

TEST(StringValues, ReadsBooleansAndKeys) {
  for (const auto &yes :
       {u"YES"_ns, u"On"_ns, u"1"_ns, u"tRue"_ns, u" \n-007x"_ns, u"+2"_ns, u"99999999999999999999"_ns})
    EXPECT_TRUE(boolValue(exactString(yes.view()))) << yes.UTF8String();
  for (const auto &no : {u"y"_ns, u"0"_ns, u"off"_ns, u"-"_ns, u"000"_ns, u"0x1"_ns, u"x1"_ns, u" yes"_ns,
                         u""_ns, u"--1"_ns, NSString()})
    EXPECT_FALSE(boolValue(exactString(no.view()))) << no.UTF8String();
  EXPECT_EQ(typedValueForKeys(u"two"_ns, {u"one"_ns, u"TWO"_ns, u"two"_ns}), 1u);
  EXPECT_EQ(typedValueForKeys(u"two"_ns, {u"one"_ns, NSString(), u"two"_ns}), NSNotFound);
  EXPECT_EQ(typedValueForKeys(u"two"_ns, {}), NSNotFound);
  EXPECT_EQ(typedValueForKeys(NSString(), {u""_ns}), NSNotFound);
}

TEST(StringValues, RotatesListsAndReformats) {
  const NSString text = u"xyz XYZ 1\u00e4"_ns;
  EXPECT_EQ(stringByRotating(text, 3), u"abc ABC 1\u00e4"_ns);
  EXPECT_EQ(stringByRotating(text, -23), stringByRotating(text, 29));
  for (const std::int32_t whole : {0, 26, -52}) EXPECT_TRUE(stringByRotating(text, whole).identicalTo(text));
  EXPECT_EQ(stringByRotating(text, INT32_MIN), stringByRotating(text, -24));
  EXPECT_EQ(stringByRotating13(stringByRotating13(text)), text);
  EXPECT_EQ(dump(u"A\n\u00e4"_ns), u"0: 0041 A\n1: 000a\n2: 00e4\n"_ns);
  EXPECT_EQ(dumpAsArray(u"A\u20ac"_ns), u"{0x0041, 0x20ac}"_ns);
  EXPECT_EQ(dumpAsArray(u""_ns), u"{}"_ns);
  EXPECT_FALSE(dump(NSString()));
  EXPECT_FALSE(dumpAsArray(NSString()));
  std::vector<char> chars(3);
  EXPECT_EQ(getChars(u"a\u00ff\u0100b"_ns, chars), 3u);
  EXPECT_EQ(std::string(chars.begin(), chars.end()), "a\xff?");
  EXPECT_EQ(getChars(NSString(), chars), 0u);
  EXPECT_EQ(reformattedMailing(u"\nDear all, \r\nthis is\nlong.\n\n\n> quoted\n> more\nEnd\n- a\n  b\nc\n"_ns),
            u"Dear all, this is long.\n\n> quoted\n> more\nEnd\n- a\n  b c"_ns);
}

TEST(ArraysOfStrings, AnswerTheFirstMatch) {
  const std::vector<NSString> strings = {u"a"_ns, NSString(), u"\u00c4B"_ns, u"\u00e4b"_ns};
  const NSArray array = {1, u"a"_ns, u"\u00c4B"_ns, u"\u00e4b"_ns};
  EXPECT_EQ(indexOfStringEqualTo(strings, u"\u00e4b"_ns), 3u);
  EXPECT_EQ(indexOfStringEqualToNoCase(strings, u"\u00e4b"_ns), 2u);
  EXPECT_EQ(indexOfStringEqualTo(array, u"\u00e4b"_ns), 3u);
  EXPECT_EQ(indexOfStringEqualToNoCase(array, u"\u00e4b"_ns), 2u);
  EXPECT_TRUE(containsString(array, u"a"_ns) && containsString(strings, u"a"_ns));
  EXPECT_TRUE(containsStringNoCase(array, u"A"_ns) && containsStringNoCase(strings, u"A"_ns));
  EXPECT_FALSE(containsString(array, u"A"_ns) || containsString(strings, u"A"_ns));
  EXPECT_FALSE(containsString(array, NSString()) || containsStringNoCase(strings, NSString()));
  EXPECT_FALSE(containsString(NSArray(), u"a"_ns));
}

}  // namespace
}  // namespace nimbo
