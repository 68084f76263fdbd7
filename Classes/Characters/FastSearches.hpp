// SPDX-License-Identifier: Apache-2.0
//
// Searches of a run of units `h` for a run `n`, which any thread may make. They answer where the first match
// begins, a pointer into `h`, or null when there is none; also null when `n` is empty. Bytes count as signed
// (`unicharOfChar`). A run of length 0 may be null.
//
//     const std::u16string_view page = u"A small page";
//     const unichar *const found = fastContainsUnichars(page.data(), 12, u"page", 4);
//     if (found) place = found - page.data();
#pragma once

#include <cstdint>
#include <span>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Searches for units.
const unichar *fastContainsUnichars(const unichar *h, std::uint32_t lenH, const unichar *n, std::uint32_t lenN);
/// Searches for bytes.
const unichar *fastUnicharsContainChars(const unichar *h, std::uint32_t lenH, const char *n,
                                        std::uint32_t lenN);
/// Searches for units, comparing entries in `initUpperCharsTable`.
const unichar *fastCaseInsensitiveContainsUnichars(const unichar *h, std::uint32_t lenH, const unichar *n,
                                                   std::uint32_t lenN);
/// Searches for bytes, comparing entries in `initUpperCharsTable`.
const unichar *fastCaseInsensitiveUnicharsContainChars(const unichar *h, std::uint32_t lenH, const char *n,
                                                       std::uint32_t lenN);

/// Whether one of the patterns, which end with a zero byte, stands in the first `length` units of the string
/// (in all, when it is shorter). A null pointer ends the list early. With a fold table, the units are folded
/// but the patterns are not: a search without regard to case takes `initLowerCharsTable()` and patterns in
/// lower case. An empty pattern is found where a U+0000 is.
bool fastContainsSubCStrings(const NSString &string, std::uint32_t length,
                             std::span<const char *const> patterns, const unichar *foldTable);

}  // namespace nimbo
