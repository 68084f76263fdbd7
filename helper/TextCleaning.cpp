// SPDX-License-Identifier: Apache-2.0
#include "helper/TextCleaning.hpp"

#include <utility>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Normalizing.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"

namespace nimbo {

void cleanText(NSMutableString &text) {
  const id keepsPairs = NSUserDefaults::standardUserDefaults().objectForKey(u"KeepsSupplementaryCharacters"_ns);
  if (keepsPairs.boolean().value_or(false))
    fixAndNormalizeStringKeepingPairs(text);
  else
    fixAndNormalizeString(text);
}

NSString cleanedText(const NSString &text) {
  if (!text) return {};
  NSMutableString copy(text);
  cleanText(copy);
  return std::move(copy).string();
}

}  // namespace nimbo
