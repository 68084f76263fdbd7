// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Normalizing.hpp"

#include <algorithm>

#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"
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

/// A space for each stray unit from `i` to `end`, but for those of pairs; answers where to go on, which is one
/// unit behind the end when a pair crosses it.
std::size_t replaceUnpairedUnits(unichar *units, std::size_t i, std::size_t end, std::size_t length) {
  for (; i < end; ++i) {
    const bool isPair = isHighSurrogate(units[i]) && i + 1 < length && isLowSurrogate(units[i + 1]);
    if (isPair)
      ++i;
    else if (isStray(units[i]))
      units[i] = u' ';
  }
  return i;
}

void fixString(NSMutableString &string, bool keepsPairs) {
  unichar *const units = string.mutableCharacters();
  const std::size_t length = string.length();
  for (std::size_t i = 0; i < length;) {
    i += detail::findUnicharInRanges(units + i, length - i, kStrayUnits);
    const std::size_t end = std::min(length, i + kUnitsAfterStrayOne);
    if (keepsPairs) {
      i = replaceUnpairedUnits(units, i, end, length);
    } else {
      std::replace_if(units + i, units + end, isStray, u' ');
      i = end;
    }
  }
  precomposeStringWithCanonicalMapping(string);
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
  fixString(string, false);
}

void fixAndNormalizeStringKeepingPairs(NSMutableString &string) {
  fixString(string, true);
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
