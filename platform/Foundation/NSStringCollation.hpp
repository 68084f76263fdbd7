// SPDX-License-Identifier: Apache-2.0
//
// The order of strings for people:
//
//     std::vector<NSString> names = {u"Zoë"_ns, u"ámos"_ns};
//     std::sort(names.begin(), names.end(), [](const NSString &a, const NSString &b) {
//       return localizedCaseInsensitiveCompare(a, b) == NSOrderedAscending;
//     });
#pragma once

#include "platform/Foundation/NSComparisonResult.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Compares in the order of the user's language (`$LC_ALL`, `$LC_COLLATE`, `$LANG` when first asked), without
/// regard to case; accents count, canonically equivalent strings are the same. What names no language stands
/// for an order that serves all. Nil counts as empty. Any thread may compare.
NSComparisonResult localizedCaseInsensitiveCompare(const NSString &a, const NSString &b);

}  // namespace nimbo
