// SPDX-License-Identifier: Apache-2.0
//
// Orders of strings, for sorting: how the string stands to another one. Each is a total order (of the
// foldings, where cases are folded); nil counts as empty. Any thread may compare.
//
//     sortAscending(u"a"_ns, u"B"_ns);  // NSOrderedDescending
//     sortCaseInsensitiveAscending(u"a"_ns, u"B"_ns);  // NSOrderedAscending
//     const auto isBefore = [](auto &a, auto &b) { return comparePaths(a, b) == NSOrderedAscending; };
//     std::sort(paths.begin(), paths.end(), isBefore);
#pragma once

#include "platform/Foundation/NSComparisonResult.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace Sorting {

/// Compares the units as they are.
NSComparisonResult sortAscending(const NSString &string, const NSString &other);
/// Compares as `sortAscending`, in reverse.
NSComparisonResult sortDescending(const NSString &string, const NSString &other);
/// Compares the units' entries in `upperCharsTable`.
NSComparisonResult sortCaseInsensitiveAscending(const NSString &string, const NSString &other);
/// Compares as `sortCaseInsensitiveAscending`, in reverse.
NSComparisonResult sortCaseInsensitiveDescending(const NSString &string, const NSString &other);
/// Compares as `localizedCaseInsensitiveCompare`.
NSComparisonResult sortLocalizedCaseInsensitiveAscending(const NSString &string, const NSString &other);
/// Compares as `sortLocalizedCaseInsensitiveAscending`, in reverse.
NSComparisonResult sortLocalizedCaseInsensitiveDescending(const NSString &string, const NSString &other);

/// Puts the shorter one first; those of one length as `sortCaseInsensitiveAscending`.
NSComparisonResult sortAscendingByLength(const NSString &string, const NSString &other);
/// Puts the longer one first; those of one length as `sortCaseInsensitiveAscending`, too.
NSComparisonResult sortDescendingByLength(const NSString &string, const NSString &other);

/// Puts the path of fewer components (`pathComponents`) first; those of as many by the first two components
/// that differ in `sortCaseInsensitiveAscending`.
NSComparisonResult comparePaths(const NSString &path, const NSString &other);

}  // namespace Sorting
}  // namespace nimbo
