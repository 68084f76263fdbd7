// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Normalizing.hpp"

#include <algorithm>

#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/Vectors/UnicharRanges.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

namespace {

using detail::UnicharRange;

/// Surrogates, and the part of the private range that text of unsure origin has its own signs in.
constexpr UnicharRange kStrayUnits[] = {{u'\xd800', u'\xdfff'}, {u'\uf400', u'\uf8ff'}};

/// Stray units stand together: the pairs of a sentence of emoji, say. This many are looked at one by one after
/// each before others are looked for again.
constexpr std::size_t kUnitsAfterStrayOne = 32;

bool isStray(unichar unit) {
  return kStrayUnits[0].contains(unit) || kStrayUnits[1].contains(unit);
}

}  // namespace

void normalizeString(NSMutableString &string, CFStringNormalizationForm form) {
  CFStringNormalize(string, form);
}

void normalizeUppercaseString(NSMutableString &string) {
  normalizeLowercaseString(string);
}

void normalizeLowercaseString(NSMutableString &string) {
  precomposeStringWithCanonicalMapping(string);
  CFStringLowercase(string);
}

void fixAndNormalizeString(NSMutableString &string) {
  unichar *const units = string.mutableCharacters();
  const std::size_t length = string.length();
  for (std::size_t i = 0; i < length;) {
    i += detail::findUnicharInRanges(units + i, length - i, kStrayUnits);
    const std::size_t end = std::min(length, i + kUnitsAfterStrayOne);
    std::replace_if(units + i, units + end, isStray, u' ');
    i = end;
  }
  precomposeStringWithCanonicalMapping(string);
}

void lowercase(NSMutableString &string) {
  CFStringLowercase(string);
}

void uppercase(NSMutableString &string) {
  CFStringUppercase(string);
}

void capitalize(NSMutableString &string) {
  CFStringCapitalize(string);
}

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
