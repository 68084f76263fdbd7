// SPDX-License-Identifier: Apache-2.0
//
// Text of configuration files: lines of a key and a value. Any thread may read it.
//
//     for (const NSString &line : configLines(u"# limits\npages 10 # at most\n"_ns))
//       if (const NSString pages = configValueForKey(line, u"Pages"_ns)) return boolValue(pages);
//     configValueForKey(u"pages 10"_ns, u"PAGES"_ns);  // "10"
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
