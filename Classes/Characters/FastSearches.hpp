// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Searches of a run of units `h` for a run `n`. They answer where the first match begins, inside `h`, or null
/// when there is none; also null when `n` is empty. "CaseInsensitive" compares the entries in
/// `upperCharsTable`. Bytes count as signed (`unicharOfChar`). A run of length 0 may be null.

const unichar *fastContainsUnichars(const unichar *h, std::uint32_t lenH, const unichar *n, std::uint32_t lenN);
const unichar *fastUnicharsContainChars(const unichar *h, std::uint32_t lenH, const char *n,
                                        std::uint32_t lenN);
const unichar *fastCaseInsensitiveContainsUnichars(const unichar *h, std::uint32_t lenH, const unichar *n,
                                                   std::uint32_t lenN);
const unichar *fastCaseInsensitiveUnicharsContainChars(const unichar *h, std::uint32_t lenH, const char *n,
                                                       std::uint32_t lenN);

/// Whether one of the patterns, which end with a zero byte, stands in the first `length` units of the string
/// (in all, when it is shorter). A null pointer ends the list early. With a fold table, the units are folded
/// but the patterns are not: without regard to case means `initLowerCharsTable()` and patterns in lower case.
/// An empty pattern is found where a U+0000 is.
bool fastContainsSubCStrings(const NSString &string, std::uint32_t length,
                             std::span<const char *const> patterns, const unichar *foldTable);

}  // namespace nimbo
