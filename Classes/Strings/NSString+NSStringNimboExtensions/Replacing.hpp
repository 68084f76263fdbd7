// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

// As the editing forms of `NSMutableString+NSMutableStringNimboExtensions+Replacing.hpp`. Answers the string
// itself when nothing is replaced; nil for nil.

NSString stringByReplacingString(const NSString &string, const NSString &replaced, const NSString &withString,
                                 Flag caseSensitive = true);
NSString stringByReplacingCharacter(const NSString &string, unichar character, unichar withCharacter,
                                    Flag caseSensitive = true);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
