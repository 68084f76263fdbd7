// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/LegacyValues.hpp"

#include <gtest/gtest.h>

#include <string>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {
namespace {

TEST(LegacyValues, TakesNearlyAnyTextAsAColor) {
  const struct {
    std::u16string text;
    std::optional<CSSColor> color;
  } cases[] = {
      {u"red", CSSColor{255, 0, 0}},
      {u" ReD\n", CSSColor{255, 0, 0}},
      {u"#1a2B3c", CSSColor{0x1a, 0x2b, 0x3c}},
      {u"1a2b3c", CSSColor{0x1a, 0x2b, 0x3c}},
      {u"#f80", CSSColor{255, 0x88, 0}},
      {u"f80", CSSColor{0xf, 8, 0}},
      {u"chucknorris", CSSColor{0xc0, 0, 0}},
      {u"#12345", CSSColor{0x12, 0x34, 0x50}},
      {u"zqbttv", CSSColor{0, 0xb0, 0}},
      {u"##fffff", CSSColor{0x0f, 0xff, 0xff}},
      {u"\U0001f600ff", CSSColor{0, 0xff, 0}},
      // Long parts keep their last eight digits, and of these the first that are not zero everywhere.
      {u"00000000a0000000000b0000000000c0", CSSColor{0xa0, 0xb0, 0xc0}},
      {u"6db6ec49efd278cd0bc92d1e5e072d68", CSSColor{0x6e, 0xcd, 0xe0}},
      {std::u16string(1000, u'f'), CSSColor{255, 255, 255}},
      // Nothing behind the first 128 units counts.
      {std::u16string(127, u'0') + u'f', CSSColor{0, 0, 0xf0}},
      {std::u16string(128, u'0') + u'f', CSSColor{0, 0, 0}},
      {u"", {}},
      {u"transparent", {}},
      {u" ", CSSColor{0, 0, 0}},
  };
  for (const auto &[text, color] : cases)
    EXPECT_EQ(legacyColor(text), color) << NSString::stringWithCharacters(text).UTF8String();
}

TEST(LegacyValues, ReadsNumbersThatGoOnAsSomethingElse) {
  const struct {
    std::u16string_view text;
    CSSUnit unit;
    double number;
  } dimensions[] = {{u"100", CSSUnit::kPixels, 100},     {u" 50%", CSSUnit::kPercent, 50},
                    {u"12.5em", CSSUnit::kPixels, 12.5}, {u"7.x", CSSUnit::kPixels, 7},
                    {u"0", CSSUnit::kPixels, 0},         {u"+3", CSSUnit::kPixels, 3}};
  for (const auto &[text, unit, number] : dimensions) {
    const CSSValue value = legacyDimension(text);
    ASSERT_TRUE(value);
    EXPECT_EQ(value.unit(), unit);
    EXPECT_DOUBLE_EQ(value.number(), number);
  }
  for (const std::u16string_view text : {u"", u"x1", u"-5", u".5"}) EXPECT_FALSE(legacyDimension(text));
  EXPECT_EQ(legacyNonNegativeInteger(u" 12px"), 12U);
  EXPECT_EQ(legacyNonNegativeInteger(u"+7"), 7U);
  EXPECT_EQ(legacyNonNegativeInteger(u"-1"), std::nullopt);
  EXPECT_EQ(legacyNonNegativeInteger(u"+"), std::nullopt);
  EXPECT_EQ(legacyNonNegativeInteger(u""), std::nullopt);
  EXPECT_GE(legacyNonNegativeInteger(u"99999999999999999999"), 900'000'000U);
}

TEST(LegacyValues, KeepsFontSizesBetweenOneAndSeven) {
  const struct {
    std::u16string_view text;
    CSSKeyword size;
  } cases[] = {{u"1", CSSKeyword::kXSmall},    {u" 3", CSSKeyword::kMedium},  {u"0", CSSKeyword::kXSmall},
               {u"+1", CSSKeyword::kLarge},    {u"-2", CSSKeyword::kXSmall},  {u"-9", CSSKeyword::kXSmall},
               {u"+9", CSSKeyword::kXXXLarge}, {u"4.7x", CSSKeyword::kLarge}, {u"8", CSSKeyword::kXXXLarge}};
  for (const auto &[text, size] : cases) EXPECT_TRUE(legacyFontSize(text).is(size));
  for (const std::u16string_view text : {u"", u"x", u"+", u"--1"}) EXPECT_FALSE(legacyFontSize(text));
}

}  // namespace
}  // namespace nimbo::detail
