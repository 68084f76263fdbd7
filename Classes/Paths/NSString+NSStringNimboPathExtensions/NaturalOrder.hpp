// SPDX-License-Identifier: Apache-2.0
//
// The natural order of file names, in which "file9" stands before "file10". The answer is negative, 0 or
// positive; any thread may ask. The two are walked in step from their beginnings:
// - Where both have a run of the digits "0" to "9", the smaller number comes first, whatever its length;
//   of equal numbers the one with fewer leading zeros, at once.
// - Else units are compared one by one, by their difference; a digit against another unit, too.
// - When either ends, the difference of the lengths decides: what is the beginning of the other comes first.
// This is a total order of the names (of their foldings); 0 means the same units (the same foldings). A nil
// `other` gives -1 always, so that nil can have no place in a sorted list. A nil `name` counts as empty.
//
//     compareWithLastPathComponent(u"file9"_ns, u"file10"_ns) < 0;  // true
//     caseInsensitiveCompareWithLastPathComponent(u"Page2"_ns, u"page2"_ns);  // 0
//     compareWithLastPathComponent(u"a"_ns, NSString());  // -1
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboPathExtensions {

/// Compares the units as they are.
std::int32_t compareWithLastPathComponent(const NSString &name, const NSString &other);
/// Compares the units' entries in `upperCharsTable`.
std::int32_t caseInsensitiveCompareWithLastPathComponent(const NSString &name, const NSString &other);
/// Compares the units' entries in `upperUmlautsCharsTable`.
std::int32_t nonUmlautedCaseInsensitiveCompareWithLastPathComponent(const NSString &name,
                                                                    const NSString &other);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
