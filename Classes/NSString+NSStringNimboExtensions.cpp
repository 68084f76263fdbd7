// SPDX-License-Identifier: Apache-2.0
#include "Classes/NSString+NSStringNimboExtensions.hpp"

#include <utility>

#include "Classes/NSMutableString+NSMutableStringNimboExtensions.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

NSString fixedAndNormalizedString(const NSString &string) {
  if (string.length() == 0) return string;
  NSMutableString copy(string);
  fixAndNormalizeString(copy);
  return std::move(copy).string();
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
