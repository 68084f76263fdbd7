// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringTextFinding.hpp"
#include "tests/support/GrowthRatio.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

constexpr NSRange kNowhere{NSNotFound, 0};

/// The rule of the searches for one unit, written down plainly.
bool matches(unichar unit, unichar character, bool caseInsensitive) {
  const unichar upper = toUpper(character);
  if (upper == toLower(character)) return unit == character;
  return (caseInsensitive ? toUpper(unit) : unit) == upper;
}

TEST(FindCharacter, AgreesWithThePlainRule) {
  RandomStrings strings;
  for (int sample = 0; sample < 100; ++sample) {
    const NSString string = strings.next();
    for (const unichar character : u"aA-\u00e4\u00c4\u00df") {
      for (const bool caseInsensitive : {false, true}) {
        for (std::uint32_t start = 0; start <= string.length() + 1; ++start) {
          std::uint32_t first = NSNotFound, last = NSNotFound, count = 0;
          for (std::uint32_t i = start; i < string.length(); ++i) {
            if (!matches(string.characterAtIndex(i), character, caseInsensitive)) continue;
            if (count++ == 0) first = i;
            last = i;
          }
          ASSERT_EQ(findCharacter(string, character, start, caseInsensitive), first);
          ASSERT_EQ(findLastCharacter(string, character, static_cast<std::int32_t>(start), caseInsensitive),
                    last);
          ASSERT_EQ(countCharacter(string, character, start, caseInsensitive), count);
          ASSERT_EQ(containsCharacter(string, character, start, caseInsensitive), count > 0);
        }
      }
    }
  }
}

TEST(FindCharacter, LooksForCapitalsWhenTheCaseMatters) {
  EXPECT_EQ(findCharacter(u"Aa"_ns, u'a'), 0u);
  EXPECT_EQ(countCharacter(u"aaa"_ns, u'a'), 0u);
  EXPECT_EQ(findCharacter(u"xa"_ns, u'a'), NSNotFound);
  EXPECT_EQ(findCharacter(u"xa"_ns, u'a', true), 1u);
  EXPECT_EQ(findCharacter(u"a-b"_ns, u'-'), 1u);
  EXPECT_EQ(findLastCharacter(u"aAa"_ns, u'a', true), 2u);
  EXPECT_EQ(findLastCharacter(u"A-A"_ns, u'A', -5, false), 2u);
  EXPECT_EQ(findLastCharacter(NSString(), u'a', -1, true), NSNotFound);
  EXPECT_EQ(findLastCharacter(u"aAa"_ns, u'A'), 1u);
  EXPECT_FALSE(containsCharacter(u"xa"_ns, u'a'));
  EXPECT_FALSE(containsCharacter(NSString(), u'-'));
  EXPECT_EQ(countCharacter(NSString(), u'-'), 0u);
}

TEST(FindOneOf, AnswersTheFirstPosition) {
  const NSString string = exactString(u"x\u00c4b");
  EXPECT_EQ(findOneOf(string, u"b\u00e4"_ns), 2u);
  EXPECT_EQ(findOneOf(string, u"b\u00e4"_ns, true), 1u);
  EXPECT_EQ(findOneOf(string, u"B\u00e4"_ns, 2, true), 2u);
  EXPECT_EQ(findOneOf(string, u"b"_ns, 3, false), NSNotFound);
  EXPECT_EQ(findOneOf(string, u""_ns), NSNotFound);
  EXPECT_EQ(findOneOf(string, NSString()), NSNotFound);
  EXPECT_EQ(findOneOf(NSString(), u"b"_ns), NSNotFound);
}

TEST(ListsOfCharacters, AgreeWithPlainOnesHoweverLong) {
  RandomStrings strings;
  for (int round = 0; round < 300; ++round) {
    // Long ones are looked up in a set, short ones one by one.
    std::u16string text, list;
    for (int n = round % 8; n >= 0; --n) text += strings.next().view();
    for (int n = round % 3; n > 0; --n) list += strings.next().view();
    const NSString string = exactString(text), characters = exactString(list);
    for (const bool noCase : {false, true}) {
      const auto isListed = [&](unichar unit) {
        return std::ranges::any_of(list,
                                   [=](unichar c) { return noCase ? toUpper(c) == toUpper(unit) : c == unit; });
      };
      const auto found = static_cast<std::uint32_t>(std::ranges::find_if(text, isListed) - text.begin());
      ASSERT_EQ(findOneOf(string, characters, noCase), found < text.size() ? found : NSNotFound);
      if (noCase) continue;
      ASSERT_EQ(containsCharacters(string, characters), found < text.size());
      NSMutableString edited(string);
      removeCharactersOfString(edited, characters);
      std::erase_if(text, isListed);
      ASSERT_EQ(edited.view(), text);
      ASSERT_EQ(stringByRemovingCharactersOfString(string, characters).view(), text);
      text = string.view();
    }
  }
}

TEST(Ranges, MayLieAnywhere) {
  RandomStrings strings;
  for (int round = 0; round < 40; ++round) {
    const NSString string = strings.next();
    const std::uint32_t length = string.length();
    for (const std::uint32_t location : {0u, length / 2, length, length + 1, NSNotFound, 0xffffffffu}) {
      for (const std::uint32_t count : {0u, 1u, length, NSNotFound, 0xffffffffu}) {
        const NSRange range{location, count};
        const NSString part = string.substringWithRange(range);
        for (const NSRange trimmed :
             {trimSpacesInRange(string, range, true), trimWhiteSpacesInRange(string, range),
              findString(string, u"a"_ns, range, false, FindDirection::kBackward, true)}) {
          if (trimmed.location != NSNotFound) {
            ASSERT_LE(std::uint64_t{trimmed.location} + trimmed.length, length);
          }
        }
        ASSERT_EQ(stringByTrimmingSpacesInRange(string, range, true).view(),
                  stringByTrimmingSpacesAndFeeds(part, true).view());
        ASSERT_EQ(rangeIsEqualTo(string, {location, part.length()}, part), location <= length);
        NSMutableString edited(string);
        appendSubstring(edited, string, range);
        ASSERT_EQ(edited.view().substr(length), part.view());
      }
      NSMutableString edited(string);
      removeCharacterAtIndex(edited, location);
      ASSERT_EQ(edited.length(), location < length ? length - 1 : length);
    }
  }
}

TEST(Lines, EndAtFeeds) {
  const struct {
    NSString string;
    std::vector<NSString> lines;
    NSString feed;
  } cases[] = {
      {u"a\r\nb\n\rc"_ns, {u"a"_ns, u"b"_ns, u""_ns, u"c"_ns}, u"\r\n"_ns},
      {u"a\n"_ns, {u"a"_ns}, u"\n"_ns},
      {u"\r"_ns, {u""_ns}, u"\r"_ns},
      {u"a\u2028b\u0003c\ufffcd\ufeffe\f"_ns, {u"a"_ns, u"b"_ns, u"c"_ns, u"d"_ns, u"e"_ns}, u"\u2028"_ns},
      {u"a\u0085b\v"_ns, {u"a\u0085b\v"_ns}, u""_ns},
      {u""_ns, {}, u""_ns},
      {NSString(), {}, NSString()},
  };
  for (const auto &c : cases) {
    const NSString string = c.string ? exactString(c.string.view()) : NSString();
    EXPECT_EQ(lines(string), c.lines) << c.string.UTF8String();
    EXPECT_EQ(numberOfLines(string), c.lines.size());
    EXPECT_EQ(firstLine(string), c.lines.empty() ? c.string : c.lines[0]);
    EXPECT_EQ(feedOfLine(string), c.feed);
    EXPECT_EQ(hasFeedOfLine(string), c.feed.length() > 0);
  }
}

TEST(Words, StandAroundTheIndex) {
  const NSString string = exactString(u"ab, c1");
  for (const std::uint32_t index : {0u, 1u}) EXPECT_EQ(getWordRangeAtIndex(string, index), (NSRange{0, 2}));
  for (const std::uint32_t index : {4u, 5u}) EXPECT_EQ(getWordAtIndex(string, index), u"c1"_ns);
  for (const std::uint32_t index : {2u, 3u, 6u, NSNotFound}) {
    EXPECT_EQ(getWordRangeAtIndex(string, index), kNowhere);
    EXPECT_EQ(getWordAtIndex(string, index), u""_ns);
  }
  EXPECT_EQ(numberOfWordsUsingDefaultSeparation(string), 2u);
  EXPECT_EQ(numberOfWordsUsingDefaultSeparation(u" - "_ns) + numberOfWordsUsingDefaultSeparation(NSString()),
            0u);
  EXPECT_EQ(firstWord(u"hello world"_ns), u"hello"_ns);
  EXPECT_EQ(firstWord(u" hello"_ns), u""_ns);
  EXPECT_EQ(lastWord(u"hello world"_ns), u""_ns);
  EXPECT_FALSE(firstWord(NSString()));
  EXPECT_EQ(getSubstringAtIndex(u"a;b c;d"_ns, 3, u";"_ns), u"b c"_ns);
  EXPECT_EQ(getSubstringAtIndex(u"a;b"_ns, 1, u";"_ns), u""_ns);
  EXPECT_EQ(getSubstringAtIndex(u"a;b"_ns, 1, u""_ns), u"a;b"_ns);
  EXPECT_EQ(getSubstringRangeAtIndex(u"a;b"_ns, 0, NSString()), kNowhere);
}

TEST(Words, EndAtAnyOfManySeparators) {
  expectLinearTime(16000, [](std::size_t length) {
    std::u16string separators;
    while (separators.size() < length)
      separators += static_cast<unichar>(u'\u4e00' + separators.size() % 20000);
    const NSString string = exactString(u"\u4e01" + std::u16string(length, u'a') + u"\u4e02");
    EXPECT_EQ(getSubstringRangeAtIndex(string, 5, exactString(separators)),
              (NSRange{1, static_cast<std::uint32_t>(length)}));
  });
}

TEST(Links, EndBeforePunctuation) {
  const struct {
    NSString string;
    std::uint32_t index;
    NSRange range;
  } cases[] = {
      {u"to: ab@cd."_ns, 6, {4, 5}},
      {u"@ab"_ns, 0, kNowhere},
      {u"(me@x.org)*"_ns, 3, {1, 8}},
      {u"..a.b@c@d"_ns, 5, {2, 5}},
      {u".a@b"_ns, 2, {1, 3}},
      {u"\u201ca@b\u201d"_ns, 2, {1, 3}},
      {u"a@"_ns, 1, {0, 2}},
      {u"see <http://x/(a)>, b"_ns, 8, {5, 12}},
      {u"see http://x/?!. b"_ns, 4, {4, 9}},
      {u" ab"_ns, 0, {1, 2}},
      {u"..."_ns, 1, kNowhere},
      {u"ab"_ns, 2, kNowhere},
      {NSString(), 0, kNowhere},
  };
  for (const auto &c : cases) {
    const NSString string = exactString(c.string.view());
    EXPECT_EQ(getLinkRangeAtIndex(string, c.index), c.range) << c.string.UTF8String();
    EXPECT_EQ(getLinkAtIndex(string, c.index), string.substringWithRange(c.range));
  }
}

TEST(ConfigurationText, HasLinesAndValues) {
  EXPECT_EQ(configLines(u" # no\nKey  a b \r\n\n\t#\nx#\n"_ns),
            (std::vector<NSString>{u"Key  a b"_ns, u""_ns, u"x#"_ns}));
  EXPECT_EQ(configValueForKey(u"Key \t a b "_ns, u"kEY"_ns), u"a b"_ns);
  for (const auto &line : {u"Key"_ns, u"Key "_ns, u"Key=a"_ns, u" Key a"_ns, u"Ke a b"_ns, NSString()})
    EXPECT_FALSE(configValueForKey(exactString(line.view()), u"key"_ns)) << line.UTF8String();
  EXPECT_FALSE(configValueForKey(u" a"_ns, u""_ns));
  EXPECT_FALSE(configValueForKey(u" a"_ns, NSString()));
}

TEST(TextFinding, FindsSubstrings) {
  const struct {
    NSString string, substring;
    std::uint32_t count, countNoCase;
    bool contains, containsNoCase;
  } cases[] = {
      {u"aAaA"_ns, u"aa"_ns, 0, 2, false, true},
      {u"aaa"_ns, u"aa"_ns, 1, 1, true, true},
      {u"Stra\u00dfe"_ns, u"SS"_ns, 0, 1, false, true},
      {u"\u00df"_ns, u"ss"_ns, 0, 1, false, false},
      {u"\u00df."_ns, u"s"_ns, 0, 0, false, false},
      {u"\u0130x"_ns, u"i\u0307X"_ns, 0, 1, false, false},
      {u"ak\u212aYx"_ns, u"\u212ay"_ns, 0, 1, false, true},
      {u"xk\u212aY"_ns, u"Ky"_ns, 0, 1, false, true},
      {u"x\U00010428"_ns, u"\U00010400"_ns, 0, 1, false, true},
      {u"ab"_ns, u"ab"_ns, 1, 1, true, true},
      {u"ab"_ns, u""_ns, 0, 0, false, false},
      {u""_ns, u""_ns, 0, 0, false, false},
      {u"ab"_ns, NSString(), 0, 0, false, false},
      {NSString(), u"a"_ns, 0, 0, false, false},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.string.UTF8String() + " " + c.substring.UTF8String());
    const NSString string = c.string ? exactString(c.string.view()) : c.string;
    EXPECT_EQ(countSubstring(string, c.substring), c.count);
    EXPECT_EQ(countSubstring(string, c.substring, false), c.countNoCase);
    EXPECT_EQ(containsSubstring(string, c.substring), c.contains);
    EXPECT_EQ(containsSubstring(string, c.substring, false), c.containsNoCase);
    EXPECT_EQ(containsSubstrings(string, {NSString(), c.substring}, false), c.containsNoCase);
  }
  EXPECT_FALSE(containsSubstrings(u"ab"_ns, {}));
  const char *const patterns[] = {"zz", "abc"};
  EXPECT_TRUE(containsSubCStrings(u"xABCx"_ns, patterns, false));
  EXPECT_FALSE(containsSubCStrings(u"xABCx"_ns, patterns));
  EXPECT_FALSE(containsSubCStrings(NSString(), patterns));
  EXPECT_FALSE(containsSubCStrings(u"xABCx"_ns, {}));
}

TEST(TextFinding, TakesTimeByTheLengthOfTheText) {
  for (const bool caseSensitive : {false, true}) {
    expectLinearTime(8000, [=](std::size_t length) {
      const NSString string = exactString(std::u16string(length, u'a')),
                     different = exactString(std::u16string(length / 2, u'a') + u"b"),
                     same = exactString(std::u16string(length / 2, u'a'));
      EXPECT_FALSE(containsSubstring(string, different, caseSensitive));
      EXPECT_EQ(countSubstring(string, different, caseSensitive), 0u);
      EXPECT_EQ(countSubstring(string, same, caseSensitive), 2u);
      EXPECT_FALSE(hasSuffixNoCase(string, different));
      EXPECT_TRUE(hasSuffixNoCase(string, same));
    });
  }
}

TEST(TextFinding, SearchesARangeInEitherDirection) {
  const NSString string = exactString(u"ab Ab \u00df ab");
  constexpr auto kForward = FindDirection::kForward, kBackward = FindDirection::kBackward;
  const struct {
    NSString find;
    NSRange range;
    bool caseSensitive;
    FindDirection direction;
    bool wrap;
    NSRange expected;
  } cases[] = {
      {u"ab"_ns, {1, NSNotFound}, true, kForward, false, {8, 2}},
      {u"ab"_ns, {1, NSNotFound}, false, kForward, false, {3, 2}},
      {u"ab"_ns, {0, 8}, false, kBackward, false, {3, 2}},
      {u"ab"_ns, {0, 9}, true, kBackward, false, {0, 2}},
      {u"ab"_ns, {1, 6}, true, kForward, false, kNowhere},
      {u"ab"_ns, {1, 6}, true, kForward, true, {0, 2}},
      {u"ab"_ns, {1, 6}, true, kBackward, true, {8, 2}},
      {u"SS"_ns, {0, NSNotFound}, false, kBackward, false, {6, 1}},
      {u"ab"_ns, {99, 1}, true, kForward, true, {0, 2}},
      {NSString(), {0, 2}, true, kForward, true, kNowhere},
  };
  for (const auto &c : cases)
    EXPECT_EQ(findString(string, c.find, c.range, c.caseSensitive, c.direction, c.wrap), c.expected);
}

}  // namespace
}  // namespace nimbo
