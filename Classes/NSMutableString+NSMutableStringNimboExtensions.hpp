// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Cleans text of unsure origin in place: each unit that is a surrogate (of a pair too) or in the private range
/// U+F400 to U+F8FF becomes a space; then the string is brought into NFC.
void fixAndNormalizeString(NSMutableString &string);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
