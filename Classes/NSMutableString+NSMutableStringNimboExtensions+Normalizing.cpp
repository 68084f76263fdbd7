// SPDX-License-Identifier: Apache-2.0
#include "Classes/NSMutableString+NSMutableStringNimboExtensions+Normalizing.hpp"

#include <algorithm>

#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/UTF8.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

namespace {

bool needsFix(unichar unit) {
  return isSurrogate(unit) || (unit >= 0xf400 && unit <= 0xf8ff);
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
  std::replace_if(units, units + string.length(), needsFix, u' ');
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
