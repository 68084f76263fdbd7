// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

/// Cleans the text of a document in place, as `fixAndNormalizeString` does; with the user default
/// "KeepsSupplementaryCharacters" as `fixAndNormalizeStringKeepingPairs` does.
void cleanText(NSMutableString &text);

/// The same of a copy; nil for nil.
NSString cleanedText(const NSString &text);

}  // namespace nimbo
