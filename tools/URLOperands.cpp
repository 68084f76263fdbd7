// SPDX-License-Identifier: Apache-2.0
#include "tools/URLOperands.hpp"

#include "Classes/URLs/TypedURLs.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

NSURL URLOfOperand(const std::string &operand) {
  NSURL url = URLWithTypedString(NSString::stringWithLossyUTF8String(operand));
  if (!url.scheme()) throw UsageError("'" + operand + "' is no absolute URL");
  return url;
}

}  // namespace nimbo
