// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// The lines of a configuration text without the comments, which begin with "#", each without white characters
/// at its ends. Empty lines stay; nil has no lines.
std::vector<NSString> configLines(const NSString &string);

/// The value of a line that begins with the key (without regard to case) and a white character: the rest,
/// without white characters at its ends. Nil when the line is another one, when the value or the key is empty,
/// and for nil.
NSString configValueForKey(const NSString &line, const NSString &key);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
