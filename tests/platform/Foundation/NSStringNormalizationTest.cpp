// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringNormalization.hpp"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <utility>

#include "platform/Foundation/NSStringCollation.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/GrowthRatio.hpp"
#include "tests/support/VectorTargets.hpp"

namespace nimbo {
namespace {

/// The plain twin.
std::u16string normalizedByICU(std::u16string_view text, const UNormalizer2 *(*form)(UErrorCode *)) {
  std::u16string result(text.size() * 18 + 1, u'\0');
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2 *const normalizer = form(&error);
  result.resize(static_cast<std::size_t>(unorm2_normalize(normalizer, text.data(),
                                                          static_cast<std::int32_t>(text.size()), result.data(),
                                                          static_cast<std::int32_t>(result.size()), &error)));
  EXPECT_TRUE(U_SUCCESS(error));
  return result;
}

void expectAsICU(std::u16string_view text) {
  const std::u16string expected = normalizedByICU(text, unorm2_getNFCInstance);
  const NSString string = NSString::stringWithCharacters(text);
  const NSString composed = precomposedStringWithCanonicalMapping(string);
  ASSERT_EQ(composed.view(), expected);
  ASSERT_EQ(composed.identicalTo(string), text == expected);
  NSMutableString edited(string);
  precomposeStringWithCanonicalMapping(edited);
  ASSERT_EQ(edited.view(), expected);
  // Of an exact block, so that reading behind it is noticed.
  const ExactBuffer<unichar> exact(text, text.size() % 3);
  if (isQuicklyPrecomposed({exact.data(), text.size()})) {
    ASSERT_EQ(text, expected);
  }
}

// Letters, Hangul, jamo and marks; what grows, what composes only at a distance, halves of pairs.
constexpr std::u16string_view kPieces[] = {
    u"e",          u"\u00e9",     u"\u0301", u"\u0323",
    u"\u0302",     u"\u0345",     u"\u1100", u"\u1161",
    u"\u11a8",     u"\ud55c",     u"\uac00", u"\u0915",
    u"\u093c",     u"\u094d",     u"\u30ab", u"\u3099",
    u"\u212b",     u"\ufb2c",     u"\u0344", u"\uf900",
    u"\U0001d160", u"\U0001d15f", u"\u4e2d", u"\xd834",
    u"\xdd65",     u"\u0410",     u"\u0306", u"\u2000",
    u"\u0f73",     u"\u09c7",     u"\u09be", u"\U00011099\U000110ba",
    u"\u0e01",     u"\u0e38",     u"\u0e48", u"\u0651",
};

TEST(NSStringNormalization, AgreesWithICUAtEverySplitPoint) {
  forEachVectorTarget([] {
    for (const std::u16string_view doubtful :
         {u"e\u0301", u"\u1112\u1161\u11ab", u"\u0323\u0302", u"\U0001d160"}) {
      for (const unichar filler : {u'x', u'\u4e2d', u'\uac00', u'\u0627', u'\u0e48', u'\u0e01'}) {
        for (std::size_t place = 0; place <= 150; ++place) {
          std::u16string text(150, filler);
          expectAsICU(text.insert(place, doubtful));
          expectAsICU(text.insert(text.size() / 2, doubtful));
          expectAsICU(std::u16string(place, filler).append(doubtful).append(place % 20, filler));
          if (::testing::Test::HasFatalFailure()) return;
        }
      }
    }
  });
}

TEST(NSStringNormalization, AgreesWithICUOnRandomMixes) {
  std::mt19937 random(3);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (std::uint32_t n = random() % 12; n > 0; --n) {
      text.append(random() % 4 ? 0 : random() % 100, kPieces[random() % std::size(kPieces)][0]);
      for (std::uint32_t k = random() % 5; k > 0; --k) text += kPieces[random() % std::size(kPieces)];
    }
    expectAsICU(text);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

// Text of one script with what is common to all between, as it is and with one unit out of place.
TEST(NSStringNormalization, AgreesWithICUOnEveryScript) {
  forEachVectorTarget([] {
    std::mt19937 random(5);
    for (std::uint32_t page = 0; page < 0x10000; page += 0x80) {
      for (int round = 0; round < 6; ++round) {
        std::u16string text;
        for (int n = 0; n < 200; ++n)
          text += random() % 6 ? static_cast<unichar>(page + random() % 0x80)
                               : std::u16string_view(u" a\u00e9\u02ff\u2010\u205f")[random() % 6];
        text = normalizedByICU(text, unorm2_getNFCInstance);
        expectAsICU(text);
        text[random() % text.size()] = kPieces[random() % std::size(kPieces)][0];
        expectAsICU(text);
        if (::testing::Test::HasFatalFailure()) return;
      }
    }
  });
}

TEST(NSStringNormalization, KnowsTheOrderOfEveryTwoKindsOfMarks) {
  std::map<std::uint8_t, unichar> marks;
  for (std::uint32_t c = 0; c <= 0xffff; ++c) marks.emplace(u_getCombiningClass(c), static_cast<unichar>(c));
  ASSERT_GT(marks.size(), 40u);
  forEachVectorTarget([&] {
    for (const auto &former : marks) {
      for (const auto &latter : marks) {
        std::u16string text(60, u'x');
        text[30] = former.second;
        text[31] = latter.second;
        expectAsICU(text);
        if (::testing::Test::HasFatalFailure()) return;
      }
    }
  });
}

TEST(NSStringNormalization, KnowsEveryUnit) {
  EXPECT_FALSE(precomposedStringWithCanonicalMapping(NSString()));
  for (std::uint32_t c = 0; c <= 0xffff; ++c) {
    const auto unit = static_cast<unichar>(c);
    expectAsICU({&unit, 1});
    expectAsICU(std::u16string(u"e\u0323").append(1, unit).append(u"\u0301"));
    if (::testing::Test::HasFatalFailure()) return;
  }
}

constexpr struct {
  CFStringNormalizationForm form;
  const UNormalizer2 *(*icu)(UErrorCode *);
} kForms[] = {{kCFStringNormalizationFormD, unorm2_getNFDInstance},
              {kCFStringNormalizationFormC, unorm2_getNFCInstance},
              {kCFStringNormalizationFormKD, unorm2_getNFKDInstance},
              {kCFStringNormalizationFormKC, unorm2_getNFKCInstance}};

void expectEachFormAsICU(std::u16string_view text) {
  for (const auto &[form, icu] : kForms) {
    NSMutableString string(NSString::stringWithCharacters(text));
    CFStringNormalize(string, form);
    ASSERT_EQ(string.view(), normalizedByICU(text, icu));
  }
}

TEST(NSStringNormalization, HasEachForm) {
  for (const std::u16string_view text : {u"plain", u"\u00e9\ufb01\uac01\ufdfa", u"e\u0301\u0323", u""})
    expectEachFormAsICU(text);
}

// Marks of many classes, of two units, that decompose, only for compatibility or to marks only; halves of
// pairs.
constexpr std::u16string_view kMarks[] = {
    u"\u0301", u"\u0323", u"\u0345",     u"\u0334",     u"\u0344", u"\u0f71", u"\u0f72",     u"\u0f73",
    u"\u3099", u"\uff9e", u"\U0001d165", u"\U0001d16d", u"\u05b0", u"\u0651", u"\U000110ba", u"\u0308",
};

TEST(NSStringNormalization, OrdersLongRunsOfMarksAsICU) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    std::u16string text;
    for (std::uint32_t runs = 1 + random() % 3; runs > 0; --runs) {
      text += kPieces[random() % std::size(kPieces)];
      const std::uint32_t kinds = 1 + random() % std::size(kMarks), first = random() % std::size(kMarks);
      for (std::uint32_t n = random() % 150; n > 0; --n)
        text += kMarks[(first + random() % kinds) % std::size(kMarks)];
    }
    expectEachFormAsICU(text);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

std::u16string manyMarks(std::u16string_view base, std::u16string_view marks, std::size_t length) {
  std::u16string text(base);
  while (text.size() < length) text += marks;
  return text;
}

TEST(NSStringNormalization, TakesTimeByTheLengthOfARunOfMarks) {
  for (const std::u16string_view marks :
       {u"\u0323\u0301", u"\u0f71\u0f72", u"\u0f73", u"\U0001d165\u0301", u"\uff9e\u0301"}) {
    for (const auto &[form, icu] : kForms) {
      expectLinearTime(8000, [&, form = form](std::size_t length) {
        NSMutableString string(NSString::stringWithCharacters(manyMarks(u"e", marks, length)));
        CFStringNormalize(string, form);
      });
    }
  }
}

TEST(NSStringCollation, TakesTimeByTheLengthOfARunOfMarks) {
  for (const std::u16string_view marks : {u"\u0323\u0301", u"\u0f71", u"\u0f71\u0f72", u"\u0f73"}) {
    expectLinearTime(4000, [&](std::size_t length) {
      const NSString a = NSString::stringWithCharacters(manyMarks(u"e", marks, length)),
                     b = NSString::stringWithCharacters(manyMarks(u"e\u0300", marks, length));
      EXPECT_NE(localizedCaseInsensitiveCompare(a, b), NSOrderedSame);
      EXPECT_EQ(localizedCaseInsensitiveCompare(a, a), NSOrderedSame);
    });
  }
}

TEST(NSStringCollationDeathTest, KnowsNoCaseInAnyLocale) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // A process has one order.
  const std::pair<std::string, int> locales[] = {{"en_US_POSIX", -1},         {"/usr/lib/locale/de", -1},
                                                 {std::string(300, 'x'), -1}, {"de@colCaseLevel=yes", -1},
                                                 {"sv_SE.UTF-8@=", 1},        {"C.UTF-8", -1}};
  for (const auto &[locale, orderOfUmlaut] : locales) {
    const auto exitInLocale = [&, wanted = orderOfUmlaut] {
      ::setenv("LC_ALL", locale.c_str(), 1);
      const bool isCaseless = localizedCaseInsensitiveCompare(u"Ab"_ns, u"aB"_ns) == NSOrderedSame;
      std::_Exit(isCaseless && localizedCaseInsensitiveCompare(u"\u00f6"_ns, u"z"_ns) == wanted ? 0 : 1);
    };
    EXPECT_EXIT(exitInLocale(), testing::ExitedWithCode(0), "") << locale;
  }
}

TEST(NSStringCollation, SortsLongRunsOfMarksAsTheirEquivalents) {
  const std::u16string turns = manyMarks(u"e", u"\u0323\u0301", 201);
  const std::u16string ordered = normalizedByICU(turns, unorm2_getNFDInstance);
  const auto compared = [](std::u16string_view a, std::u16string_view b) {
    return localizedCaseInsensitiveCompare(NSString::stringWithCharacters(a),
                                           NSString::stringWithCharacters(b));
  };
  EXPECT_EQ(compared(turns, ordered), NSOrderedSame);
  EXPECT_EQ(compared(turns, u"f"), NSOrderedAscending);
  EXPECT_EQ(compared(turns, u"e"), NSOrderedDescending);
  EXPECT_EQ(compared(turns + u"a", turns + u"b"), NSOrderedAscending);
}

}  // namespace
}  // namespace nimbo
