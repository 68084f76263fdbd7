// SPDX-License-Identifier: Apache-2.0
//
// Comparisons of two runs, unit by unit, which any thread may make. They answer the difference (left - right)
// of the first units that differ, as numbers; of the lengths when none does. Bytes count as signed
// (`unicharOfChar`). A run of length 0 may be null.
//
//     fastCompareUnichars(u"ab", 2, u"b", 1);  // -1
//     fastCaseInsensitiveCompareUnicharsWithChars(u"Title", 5, "TITLE", 5);  // 0
//     const bool isFirst = fastCompareChars(a.data(), 3, b.data(), 3) < 0;
#pragma once

#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Compares units with units.
std::int32_t fastCompareUnichars(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB);
/// Compares units with bytes.
std::int32_t fastCompareUnicharsWithChars(const unichar *a, std::uint32_t lenA, const char *b,
                                          std::uint32_t lenB);
/// Compares bytes with bytes, as the units 0x0000 to 0x007F and 0xFF80 to 0xFFFF.
std::int32_t fastCompareChars(const char *a, std::uint32_t lenA, const char *b, std::uint32_t lenB);

/// Compares units with units by their entries in `initUpperCharsTable`.
std::int32_t fastCaseInsensitiveCompareUnichars(const unichar *a, std::uint32_t lenA, const unichar *b,
                                                std::uint32_t lenB);
/// Compares units with bytes by their entries in `initUpperCharsTable`.
std::int32_t fastCaseInsensitiveCompareUnicharsWithChars(const unichar *a, std::uint32_t lenA, const char *b,
                                                         std::uint32_t lenB);
/// Compares bytes with bytes by their entries in `initUpperCharsTable`.
std::int32_t fastCaseInsensitiveCompareChars(const char *a, std::uint32_t lenA, const char *b,
                                             std::uint32_t lenB);

}  // namespace nimbo
