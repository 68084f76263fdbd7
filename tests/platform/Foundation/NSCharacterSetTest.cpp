// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSCharacterSet.hpp"

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>

#include "platform/Foundation/Unicode/UnicharMapping.hpp"

namespace nimbo {
namespace {

icu::UnicodeSet setOfPattern(const char16_t *pattern) {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeSet set(icu::UnicodeString(pattern), status);
  EXPECT_TRUE(U_SUCCESS(status));
  return set;
}

TEST(NSCharacterSet, HoldsWhatThePatternsOfUnicodeSay) {
  const struct {
    NSCharacterSet set;
    const char16_t *pattern;
  } cases[] = {
      {NSCharacterSet::letterCharacterSet(), u"[[:L:][:M:]]"},
      {NSCharacterSet::lowercaseLetterCharacterSet(), u"[:Ll:]"},
      {NSCharacterSet::uppercaseLetterCharacterSet(), u"[[:Lu:][:Lt:]]"},
      {NSCharacterSet::decimalDigitCharacterSet(), u"[:Nd:]"},
      {NSCharacterSet::alphanumericCharacterSet(), u"[[:L:][:M:][:N:]]"},
      {NSCharacterSet::whitespaceCharacterSet(), u"[[:Zs:]\\u0009]"},
      {NSCharacterSet::whitespaceAndNewlineCharacterSet(), u"[[:Z:]\\u0009-\\u000D\\u0085]"},
  };
  for (const auto &c : cases) {
    const icu::UnicodeSet expected = setOfPattern(c.pattern);
    for (std::uint32_t code = 0; code <= 0xffff; ++code) {
      const bool isMember = expected.contains(static_cast<UChar32>(code));
      ASSERT_EQ((bitmap(c.set)[code >> 3] >> (code & 7) & 1) != 0, isMember) << std::hex << code;
      ASSERT_EQ(c.set.characterIsMember(static_cast<unichar>(code)), isMember) << std::hex << code;
    }
  }
}

TEST(NSUnicharMapping, AgreesWithMappedStringsForEachUnit) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2 *const decomposer = icu::Normalizer2::getNFDInstance(status);
  const icu::Locale root = icu::Locale::getRoot();
  const icu::UnicodeSet marks = setOfPattern(u"[:M:]"), titlecase = setOfPattern(u"[:Lt:]");
  for (std::uint32_t code = 0; code <= 0xffff; ++code) {
    const auto c = static_cast<unichar>(code);
    const auto expected = [c](const icu::UnicodeString &mapped) {
      return mapped.length() == 1 ? mapped.charAt(0) : c;
    };
    const icu::UnicodeString unit(c);
    ASSERT_EQ(uppercaseUnichar(c), expected(icu::UnicodeString(unit).toUpper(root))) << std::hex << code;
    ASSERT_EQ(lowercaseUnichar(c), expected(icu::UnicodeString(unit).toLower(root))) << std::hex << code;
    ASSERT_EQ(isTitlecaseUnichar(c), titlecase.contains(c)) << std::hex << code;
    const icu::UnicodeString decomposed = decomposer->normalize(unit, status);
    icu::UnicodeString rest;
    for (std::int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1)) {
      if (!marks.contains(decomposed.char32At(i))) rest.append(decomposed.char32At(i));
    }
    ASSERT_EQ(unicharByFoldingDiacritics(c), expected(rest)) << std::hex << code;
  }
  ASSERT_TRUE(U_SUCCESS(status));
}

}  // namespace
}  // namespace nimbo
