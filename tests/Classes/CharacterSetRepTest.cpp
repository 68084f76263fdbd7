// SPDX-License-Identifier: Apache-2.0
#include "Classes/CharacterSetRep.hpp"

#include <gtest/gtest.h>
#include <unicode/uniset.h>

#include <string>

#include "Classes/NSString+NSStringNimboExtensions+Characters.hpp"

namespace nimbo {
namespace {

TEST(CharacterSetRep, HoldsWhatThePatternsOfUnicodeSay) {
  const struct {
    const CharacterSetRep *set;
    const char16_t *pattern;
  } cases[] = {
      {emptyCharacterSetRep(), u"[]"},
      {whiteCharacterSetRep(), u"[[:Z:]\\u0000\\u0003\\u0009-\\u000D\\u0085\\uFEFF\\uFFFC]"},
      {spaceCharacterSetRep(), u"[[:Zs:]\\u0000\\u0009]"},
      {upperCharacterSetRep(), u"[[:Lu:][:Lt:]]"},
      {lowerCharacterSetRep(), u"[:Ll:]"},
      {digitCharacterSetRep(), u"[:Nd:]"},
      {alphaNumCharacterSetRep(), u"[[:L:][:M:][:N:]]"},
      {alphaCharacterSetRep(), u"[[:L:][:M:]]"},
  };
  for (const auto &c : cases) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeSet expected(icu::UnicodeString(c.pattern), status);
    ASSERT_TRUE(U_SUCCESS(status));
    for (std::uint32_t code = 0; code <= 0xffff; ++code) {
      const bool isMember = c.set->bytes[code >> 3] & 1u << (code & 7);
      ASSERT_EQ(isMember, expected.contains(static_cast<UChar32>(code))) << std::hex << code;
      ASSERT_EQ(c.set->contains(static_cast<unichar>(code)), isMember);
    }
  }
  const NSCharacterSet letters = NSCharacterSet::letterCharacterSet();
  EXPECT_TRUE(std::equal(alphaCharacterSetRep()->bytes.begin(), alphaCharacterSetRep()->bytes.end(), bitmap(letters)));
  EXPECT_EQ(firstAlphaCharacter(), u'A');
  EXPECT_EQ(lastAlphaCharacter(), 0xffdc);
}

TEST(CharacterSetRep, AnswersForStrings) {
  using namespace std::string_view_literals;
  const NSString nulAndTab = NSString::stringWithCharacters(u"\0\t"sv);
  const NSString surrogate = NSString::stringWithCharacters(u"\xd835"sv);
  struct Row {
    NSString text;
    // contains: digit, white, alpha, alphaNum; is: alphaNum, alpha, digit, white, space.
    std::string answers;
  };
  const Row rows[] = {
      {NSString(), "---- ---ws"},
      {NSString::string(), "---- ---ws"},
      {u"abc"_ns, "--an Aa---"},
      {u"abc1"_ns, "d-an A----"},
      {u"12\u0663"_ns, "d--n A-d--"},
      {u"\u00bd"_ns, "---n A----"},
      {u" a"_ns, "-wan -----"},
      {u"e\u0301"_ns, "--an Aa---"},
      {nulAndTab, "-w-- ---ws"},
      {u"\n"_ns, "-w-- ---w-"},
      {u" \u00a0\u3000"_ns, "-w-- ---ws"},
      {u"\u0003\ufffc\ufeff\u2028\u0085\v"_ns, "-w-- ---w-"},
      {u"\u200b\u2060"_ns, "---- -----"},
      {u"-"_ns, "---- -----"},
      {surrogate, "---- -----"},
  };
  for (const Row &row : rows) {
    const NSString &s = row.text;
    std::string answers;
    const auto note = [&](bool answer, char letter) { answers += answer ? letter : '-'; };
    note(containsDigitCharacter(s), 'd');
    note(containsWhiteCharacter(s), 'w');
    note(containsAlphaCharacter(s), 'a');
    note(containsAlphaNumCharacter(s), 'n');
    answers += ' ';
    note(isAlphaNumString(s), 'A');
    note(isAlphaString(s), 'a');
    note(isDigitString(s), 'd');
    note(isWhiteString(s), 'w');
    note(isSpaceString(s), 's');
    EXPECT_EQ(answers, row.answers) << s.UTF8String();
  }
  EXPECT_TRUE(containsCharacterPartOfCharacterSetRep(u"aB"_ns, upperCharacterSetRep()));
  EXPECT_FALSE(containsCharacterPartOfCharacterSetRep(u"a"_ns, nullptr));
  EXPECT_FALSE(charactersPartOfSet(u"a"_ns, nullptr, true));
}

}  // namespace
}  // namespace nimbo
