// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// All characters in lower case, by Unicode's rules without those of any language; the string itself when that
/// changes nothing. Nil for nil.
NSString lowercaseString(const NSString &string);

}  // namespace nimbo
