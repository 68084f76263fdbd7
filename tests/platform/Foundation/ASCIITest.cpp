// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/ASCII.hpp"

#include <gtest/gtest.h>

#include <string>

namespace nimbo {
namespace {

constexpr std::string_view kCapitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ", kSmall = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kDigits = "0123456789", kHexDigits = "0123456789abcdef0123456789ABCDEF";

/// Whether the header says of a unit what the alphabets say; `byte` is the unit, or what is in no alphabet.
template <class Unit>
bool isReadRightly(Unit unit, char byte) {
  const std::size_t capital = kCapitals.find(byte), small = kSmall.find(byte), hex = kHexDigits.find(byte);
  const bool isCapital = capital != kCapitals.npos, isSmall = small != kSmall.npos;
  const bool isDigit = kDigits.find(byte) != kDigits.npos;
  return isASCIIUppercase(unit) == isCapital && isASCIILowercase(unit) == isSmall &&
         isASCIILetter(unit) == (isCapital || isSmall) && isASCIIDigit(unit) == isDigit &&
         (!isDigit || digitValue(unit) == kDigits.find(byte)) &&
         isASCIIWhiteSpace(unit) == (kWhiteSpace.find(byte) != kWhiteSpace.npos) &&
         isASCIIAlphanumeric(unit) == (isCapital || isSmall || isDigit) &&
         toASCIILower(unit) == (isCapital ? static_cast<Unit>(kSmall[capital]) : unit) &&
         toASCIIUpper(unit) == (isSmall ? static_cast<Unit>(kCapitals[small]) : unit) &&
         isASCIIHexDigit(unit) == (hex != kHexDigits.npos) &&
         hexDigitValue(unit) == (hex != kHexDigits.npos ? hex % 16 : 16);
}

TEST(ASCII, ReadsEveryUnitAndByte) {
  for (unsigned i = 0; i < 0x10000; ++i)
    ASSERT_TRUE(isReadRightly(static_cast<char16_t>(i), i < 0x80 ? static_cast<char>(i) : '\0')) << i;
  for (unsigned i = 0; i < 0x100; ++i)
    ASSERT_TRUE(isReadRightly(static_cast<char>(i), i < 0x80 ? static_cast<char>(i) : '\0')) << i;
  for (std::uint32_t i = 0; i < 32; ++i) {
    ASSERT_EQ(lowerHexDigit(i), kHexDigits[i % 16]);
    ASSERT_EQ(upperHexDigit<char16_t>(i), static_cast<char16_t>(kHexDigits[i % 16 + 16])) << i;
  }
}

TEST(ASCII, ComparesWithoutCase) {
  constexpr std::u16string_view kText = u"Key-1";
  static_assert(equalsASCIINoCase(kText, "key-1") && equalsASCIINoCase(std::string_view("KEY-1"), "key-1"));
  static_assert(equalsASCIINoCase(std::u16string_view(), "") && !equalsASCIINoCase(kText, "key-"));
  static_assert(!equalsASCIINoCase(kText, "key-11") && !equalsASCIINoCase(kText, "key\r1"));
  static_assert(startsWithASCIINoCase(kText, "key-1") && startsWithASCIINoCase(kText, "ke"));
  static_assert(endsWithASCIINoCase(kText, "key-1") && endsWithASCIINoCase(kText, "y-1"));
  static_assert(!startsWithASCIINoCase(kText, "key-11") && !startsWithASCIINoCase(kText, "ey"));
  static_assert(!endsWithASCIINoCase(kText, "xkey-1") && !endsWithASCIINoCase(kText, "-"));
  static_assert(equalsOneOfASCIINoCase(kText, {"key", "key-1"}) && !equalsOneOfASCIINoCase(kText, {"key", ""}));
  // Neither the sign of the kelvin nor wide letters are ASCII, and no unit is that of its low byte.
  EXPECT_FALSE(equalsASCIINoCase(std::u16string_view(u"\u212aey-1"), "key-1"));
  EXPECT_FALSE(equalsASCIINoCase(std::u16string_view(u"\uff4bey-1"), "key-1"));
  EXPECT_FALSE(equalsASCIINoCase(std::u16string_view(u"\u016bey-1"), "key-1"));
}

}  // namespace
}  // namespace nimbo
