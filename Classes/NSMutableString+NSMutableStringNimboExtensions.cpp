// SPDX-License-Identifier: Apache-2.0
#include "Classes/NSMutableString+NSMutableStringNimboExtensions.hpp"

#include <algorithm>

#include "platform/Foundation/NSStringNormalization.hpp"
#include "platform/Foundation/UTF8.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

namespace {

bool needsFix(unichar unit) {
  return isSurrogate(unit) || (unit >= 0xf400 && unit <= 0xf8ff);
}

}  // namespace

void fixAndNormalizeString(NSMutableString &string) {
  unichar *const units = string.mutableCharacters();
  std::replace_if(units, units + string.length(), needsFix, u' ');
  precomposeStringWithCanonicalMapping(string);
}

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
