// SPDX-License-Identifier: Apache-2.0
#include "tools/URLOperands.hpp"

#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

NSURL URLOfOperand(const std::string &operand) {
  const NSString string = NSString::stringWithLossyUTF8String(operand);
  NSURL url = NSURL::URLWithString(string);
  if (!url.scheme()) url = URLWithNormalizedStringURL(string);
  if (!url.scheme()) throw UsageError("'" + operand + "' is no absolute URL");
  return url;
}

}  // namespace nimbo
