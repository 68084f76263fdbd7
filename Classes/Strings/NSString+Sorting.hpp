// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSComparisonResult.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace Sorting {

// How the string stands to another one. Each is an order (of the foldings, where cases are folded); nil counts
// as empty. "Descending" is the reverse. "CaseInsensitive" compares by `upperCharsTable`, unit by unit.

/// By the units as they are.
NSComparisonResult sortAscending(const NSString &string, const NSString &other);
NSComparisonResult sortDescending(const NSString &string, const NSString &other);
NSComparisonResult sortCaseInsensitiveAscending(const NSString &string, const NSString &other);
NSComparisonResult sortCaseInsensitiveDescending(const NSString &string, const NSString &other);
/// As `localizedCaseInsensitiveCompare`.
NSComparisonResult sortLocalizedCaseInsensitiveAscending(const NSString &string, const NSString &other);
NSComparisonResult sortLocalizedCaseInsensitiveDescending(const NSString &string, const NSString &other);

/// The shorter, the longer one first; those of one length in case-insensitive order, ascending in both.
NSComparisonResult sortAscendingByLength(const NSString &string, const NSString &other);
NSComparisonResult sortDescendingByLength(const NSString &string, const NSString &other);

/// The path of fewer components (`pathComponents`) first, else by the first two components that differ without
/// regard to case.
NSComparisonResult comparePaths(const NSString &path, const NSString &other);

}  // namespace Sorting
}  // namespace nimbo
