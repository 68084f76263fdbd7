// SPDX-License-Identifier: Apache-2.0
#include "Classes/Entities/EntityConversion.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/Unicode/CharacterReferences.hpp"
#include "tests/Classes/Entities/PlainEntityDecoder.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/VectorTargets.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

struct Flags {
  bool standard = true, onlyNumeric = false, nonUmlauted = false;
};

std::u16string decoded(std::u16string_view text, Flags flags = {}) {
  const ExactBuffer<unichar> source(text);
  std::vector<unichar> result(text.size());
  const std::uint32_t written =
      convertEntities2Characters(source.data(), result.data(), 0, static_cast<std::uint32_t>(text.size()),
                                 flags.standard, flags.onlyNumeric, flags.nonUmlauted);
  return {result.data(), written};
}

struct Case {
  std::u16string_view text, expected;
};

TEST(EntityConversion, DecodesWhatItCanAndCopiesTheRest) {
  const Case cases[] = {
      {u"a&amp;b&quot;&lt;p&gt;&apos;", u"a&b\"<p>'"},
      // A fixed form ends with its last letter, whatever follows.
      {u"&ampx &quotient &lte &nbspx &gt&amp", u"&x \"ient <e \u00a0x >&"},
      {u"&am&l&quo&apo", u"&am&l&quo&apo"},
      {u"caf&eacute; &euro;&EURO;&Eacute&sup2 ", u"caf\u00e9 \u20ac&EURO;\u00c9\u00b2 "},
      {u"&cedil;&fnof;&epsilon;&thetasym; &;&", u"&cedil;&fnof;&epsilon;&thetasym; &;&"},
      {u"&Dagger;&dagger;&daggers;", u"\u2021\u2020&daggers;"},
      {u"&&&amp;amp;", u"&&&amp;"},
      {u"&#x20AC;&#X20ac;&#x1F600;&#233 ", u"\u20ac\u20ac&#x1F600;\u00e9 "},
      {u"&#65535;&#65537;&#99999;&#100000;", u"\uffff\u0001\u869f&#100000;"},
      {u"&#;&#x;&#y", u"\0\0\0y"sv},
      // Letters count by their low byte.
      {u"&\u0163opy;&\u0100;&pi\u0100;", u"\u00a9&\u0100;&pi\u0100;"},
      // At the end of the text the last unit of a run stands outside of it.
      {u"x&#65", u"x\u0006\x35"},
      {u"&#12345", u"\u04d2\x35"},
      {u"&#123456", u"\u3039\x36"},
      {u"&#1234567", u"&#1234567"},
      {u"&#x20AC0", u"\u20ac\x30"},
      {u"&#x", u"\0x"sv},
      {u"&#", u"&#"},
      {u"&copy", u"&copy"},
      {u"&pix", u"\u03c0x"},
      {u"&Dagger0", u"\u2021\x30"},
      {u"&Dagger00", u"&Dagger00"},
      // The neighbours of digits and letters end a name.
      {u"&pi/1234567&pi:1234567&pi@1234567&pi[1234567&pi`1234567&pi{1234567",
       u"\u03c0/1234567\u03c0:1234567\u03c0@1234567\u03c0[1234567\u03c0`1234567\u03c0{1234567"},
      {u"&frac12 1234567&frac12+1234567&AElig+1234567&zeta+1234567",
       u"\u00bd 1234567\u00bd+1234567\u00c6+1234567\u03b6+1234567"},
      {u"&a", u"&a"},
  };
  for (const Case &one : cases) EXPECT_EQ(decoded(one.text), one.expected);
}

TEST(EntityConversion, DecodesAsFarAsTheFlagsSay) {
  constexpr Flags kMarkupStays{.standard = false}, kOnlyNumeric{.onlyNumeric = true},
      kNonUmlauted{.nonUmlauted = true};
  const struct {
    Flags flags;
    std::u16string_view text, expected;
  } cases[] = {
      {kMarkupStays, u"a&amp;b&lt;&quot &apos;&nbsp;", u"a&amp;b&lt;&quot '\u00a0"},
      {kMarkupStays, u"&#60;&#x3E;&#38;&#34;&#65;", u"&#60;&#x3E;&#38;&#34;A"},
      {kOnlyNumeric, u"&eacute;&#233;&nbsp;&amp;", u"&eacute;\u00e9\u00a0&"},
      {kNonUmlauted, u"\u00fc&eacute;&#xE7;&amp;", u"uec&"},
      // Only the fixed form of the no-break space is not folded.
      {kNonUmlauted, u"&nbsp;", u"\u00a0"},
  };
  for (const auto &one : cases) EXPECT_EQ(decoded(one.text, one.flags), one.expected);
}

/// Text of pieces of references, so that every rule meets every other.
std::u16string randomText(std::mt19937 &random, std::size_t pieces) {
  static const std::u16string_view kPieces[] = {
      u"&",      u"&#",    u"&#x", u";",      u"amp",     u"lt",  u"gt",     u"quot",  u"apos",   u"nbsp",
      u"eacute", u"Alpha", u"pi",  u"frac12", u"epsilon", u"65",  u"3c",     u"20AC",  u"\u00e9", u"\u0163",
      u"\xd800", u" ",     u"z",   u"&amp;",  u"&#38;",   u"&t;", u"\u4e2d", u"aaaaaa"};
  std::uniform_int_distribution<std::size_t> index(0, std::size(kPieces) - 1);
  std::u16string text;
  while (pieces-- > 0) text += kPieces[index(random)];
  return text;
}

TEST(EntityConversion, AgreesWithThePlainDecoderWhereverTheTextEnds) {
  std::mt19937 random(20260101);
  for (int round = 0; round < 60; ++round) {
    const std::u16string text = randomText(random, 12);
    for (unsigned bits = 0; bits < 8; ++bits) {
      const Flags flags{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
      for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::u16string_view start = std::u16string_view(text).substr(0, length);
        const std::u16string expected =
            plainlyDecoded(start, flags.standard, flags.onlyNumeric, flags.nonUmlauted);
        ASSERT_EQ(decoded(start, flags), expected) << bits;
        std::u16string shared = u"&&" + std::u16string(start);
        shared.resize(convertEntities2Characters(shared.data(), shared.data(), 2,
                                                 static_cast<std::uint32_t>(length), flags.standard,
                                                 flags.onlyNumeric, flags.nonUmlauted));
        ASSERT_EQ(shared, expected) << bits;
      }
    }
  }
}

TEST(EntityConversion, FindsReferencesAtAnyDistance) {
  forEachVectorTarget([] {
    for (const unichar filling : {u'x', u'\u00e9'}) {
      for (std::size_t distance : {1, 15, 16, 17, 40, 2047, 2048, 2063, 2064, 2065, 5000}) {
        const std::u16string run(distance, filling);
        const std::u16string text = run + u"&amp;" + run + u"&euml;" + run;
        EXPECT_EQ(decoded(text), run + u'&' + run + u'\u00eb' + run) << distance;
        const std::u16string folded(distance, filling == u'x' ? u'x' : u'e');
        EXPECT_EQ(decoded(text, {.nonUmlauted = true}), folded + u'&' + folded + u'e' + folded) << distance;
      }
    }
  });
}

TEST(EntityConversion, EncodesMarkupHighCharactersOrNames) {
  using Encoder = NSString (*)(const NSString &);
  const Encoder markup = stringByConvertingCharactersToStandardEntities;
  const Encoder high = stringByConvertingHighCharactersToEntities;
  const Encoder names = stringByConvertingCharactersToEntities;
  const struct {
    Encoder encoder;
    NSString text, expected;
  } cases[] = {
      {markup, u"\u00e9<"_ns, u"\u00e9&lt;"_ns},
      {markup, u"a long text before 'it' & \"this\" >"_ns,
       u"a long text before 'it' &amp; &quot;this&quot; &gt;"_ns},
      {high, u"\u00e9<\u007f\u0080\u03e7\u03e8\u270f\u2710"_ns,
       u"&#233;<\u007f&#128;&#999;&#1000;&#9999;&#10000;"_ns},
      {high, u"\xd83d\xde00\uffff"_ns, u"&#55357;&#56832;&#65535;"_ns},
      {names, u"\u00e9<&\u2666\u2667\u00b8\u0192"_ns, u"&eacute;<&&diams;&#9831;&#184;&#402;"_ns},
      {names, u"\u03d1\u0391\u0080 plain"_ns, u"&thetasym;&Alpha;&#128; plain"_ns},
  };
  for (const auto &one : cases) EXPECT_EQ(one.encoder(one.text), one.expected);
  for (const Encoder encoder : {markup, high, names})
    for (const NSString &same : {NSString(), NSString::string(), u"plain 'text' of ASCII"_ns})
      EXPECT_TRUE(encoder(same).identicalTo(same));
}

TEST(EntityConversion, NamesComeBackAsTheirCharacters) {
  std::uint32_t decodedByName = 0;
  std::string others;
  for (std::size_t i = 0; i < kEntityCount; ++i) {
    const NSString character = NSString::stringWithCharacters(&entityCharacters[i], 1);
    const NSString entity = stringByConvertingCharactersToEntities(character);
    EXPECT_EQ(entity.UTF8String(), "&"s + entityStrings[i] + ";");
    decodedByName += stringByConvertingEntitiesToCharacters(entity) == character;
    if (readCharacterReference(entity.view(), false).view() != character.view())
      others += entityStrings[i] + " "s;
  }
  EXPECT_EQ(decodedByName, kEntityCount - 8);
  // Browsers mean other brackets by these names.
  EXPECT_EQ(others, "lang rang ");
}

TEST(EntityConversion, AnswersTheStringItselfWhenNothingIsDecoded) {
  const std::u16string longRun(300, u'x');
  const NSString longSame = NSString::stringWithCharacters(longRun + u"\u00e9&bogus;");
  for (const NSString &same :
       {NSString(), NSString::string(), u"abc"_ns, u"&lt"_ns, u"&#\u00e9"_ns, u"\u00fc &bogus;"_ns, longSame}) {
    EXPECT_TRUE(stringByConvertingEntitiesToCharacters(same).identicalTo(same));
    EXPECT_TRUE(stringByConvertingEntitiesToCharactersNonUmlauted(same, true).identicalTo(same));
    EXPECT_TRUE(stringByConvertingStandardEntitiesToCharacters(same).identicalTo(same));
  }
  const NSString longText = NSString::stringWithCharacters(longRun + u"&amp;\u00e9");
  EXPECT_EQ(stringByConvertingEntitiesToCharacters(longText).view(), longRun + u"&\u00e9");
  EXPECT_EQ(stringByConvertingEntitiesToCharactersNonUmlauted(longText, true).view(), longRun + u"&e");
  EXPECT_EQ(stringByConvertingEntitiesToCharacters(u"&amp"_ns), u"&"_ns);
  EXPECT_EQ(stringByConvertingStandardEntitiesToCharacters(u"&lt;&amp;lt;&quot;&gt;&amp &apos;&#65;"_ns),
            u"<&lt;\">&amp &apos;&#65;"_ns);
}

TEST(CharacterReferences, EndWhereTheyCan) {
  const struct {
    std::u16string_view text, units;
    /// In text, and in an attribute's value.
    std::uint32_t length, lengthInAttribute;
  } cases[] = {
      {u"", u"", 0, 0},
      {u"&", u"", 0, 0},
      {u"&1;", u"", 0, 0},
      {u"&nosuch;", u"", 0, 0},
      {u"&copy", u"\u00a9", 5, 5},
      {u"&copy;=", u"\u00a9", 6, 6},
      {u"&copy-", u"\u00a9", 5, 5},
      {u"&copy=", u"\u00a9", 5, 0},
      {u"&copy2", u"\u00a9", 5, 0},
      {u"&copyx", u"\u00a9", 5, 0},
      {u"&notit;", u"\u00ac", 4, 0},
      {u"&notin", u"\u00ac", 4, 0},
      {u"&notin;", u"\u2209", 7, 7},
      {u"&acE;", u"\u223e\u0333", 5, 5},
      {u"&acE", u"", 0, 0},
      {u"&Afr;", u"\U0001d504", 5, 5},
      {u"&#", u"", 0, 0},
      {u"&#;", u"", 0, 0},
      {u"&#x", u"", 0, 0},
      {u"&#xg;", u"", 0, 0},
      {u"&#65", u"A", 4, 4},
      {u"&#65;", u"A", 5, 5},
      {u"&#65=", u"A", 4, 4},
      {u"&#65a", u"A", 4, 4},
      {u"&#x41g", u"A", 5, 5},
      {u"&#X4a;", u"J", 6, 6},
      {u"&#0;", u"\ufffd", 4, 4},
      {u"&#xd7ff;", u"\ud7ff", 8, 8},
      {u"&#xd800;", u"\ufffd", 8, 8},
      {u"&#xdfff;", u"\ufffd", 8, 8},
      {u"&#xe000;", u"\ue000", 8, 8},
      {u"&#xffff;", u"\uffff", 8, 8},
      {u"&#x10000;", u"\U00010000", 9, 9},
      {u"&#x10ffff;", u"\U0010ffff", 10, 10},
      {u"&#x110000;", u"\ufffd", 10, 10},
      {u"&#4294967361;", u"\ufffd", 13, 13},
  };
  for (const auto &[text, units, length, lengthInAttribute] : cases) {
    for (const bool isInAttribute : {false, true}) {
      const std::uint32_t expected = isInAttribute ? lengthInAttribute : length;
      const CharacterReference found = readCharacterReference(text, isInAttribute);
      EXPECT_EQ(found.length, expected) << testing::PrintToString(text) << isInAttribute;
      EXPECT_EQ(found.view(), expected > 0 ? units : u"") << testing::PrintToString(text) << isInAttribute;
    }
  }
}

TEST(CharacterReferences, OfControlsMeanWhatWindowsHasThere) {
  for (int number = 0x7f; number <= 0xa0; ++number) {
    const char byte = static_cast<char>(number);
    const NSString inWindows = initWithData(NSData::dataWithBytes(&byte, 1), NSWindowsCP1252StringEncoding);
    const bool isMeant = inWindows.length() == 1;
    const std::u16string text = u"&#" + std::u16string(stringWithFormat(u"%d", number).view()) + u";";
    EXPECT_EQ(readCharacterReference(text, false).view(),
              isMeant ? std::u16string(inWindows.view()) : std::u16string(1, static_cast<unichar>(number)))
        << number;
  }
}

}  // namespace
}  // namespace nimbo
