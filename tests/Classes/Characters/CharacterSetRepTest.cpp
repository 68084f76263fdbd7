// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/CharacterSetRep.hpp"

#include <gtest/gtest.h>

#include <string>

#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"

namespace nimbo {
namespace {

TEST(CharacterSetRep, AddsAFewToThePlatformsSets) {
  const NSCharacterSet white = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  const NSCharacterSet space = NSCharacterSet::whitespaceCharacterSet();
  std::u16string moreWhite, moreSpace;
  for (std::uint32_t code = 0; code <= 0xffff; ++code) {
    const auto c = static_cast<unichar>(code);
    if (whiteCharacterSetRep()->contains(c) != white.characterIsMember(c)) moreWhite += c;
    if (spaceCharacterSetRep()->contains(c) != space.characterIsMember(c)) moreSpace += c;
  }
  EXPECT_EQ(moreWhite, std::u16string(u"\0\3\ufeff\ufffc", 4));
  EXPECT_EQ(moreSpace, std::u16string(u"\0", 1));
  EXPECT_EQ(emptyCharacterSetRep()->bytes, NSCharacterSet::BitmapRepresentation{});
  EXPECT_EQ(lowerCharacterSetRep()->bytes,
            NSCharacterSet::lowercaseLetterCharacterSet().bitmapRepresentation());
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
