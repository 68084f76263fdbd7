// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Comparisons of two runs, unit by unit. They answer the difference (left - right) of the first units that
/// differ, as numbers; of the lengths when none does. "CaseInsensitive" compares the units' entries in
/// `upperCharsTable`. Bytes count as signed (`unicharOfChar`). A run of length 0 may be null.

std::int32_t fastCompareUnichars(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB);
std::int32_t fastCompareUnicharsWithChars(const unichar *a, std::uint32_t lenA, const char *b,
                                          std::uint32_t lenB);
/// Bytes are compared as the units 0x0000 to 0x007F and 0xFF80 to 0xFFFF.
std::int32_t fastCompareChars(const char *a, std::uint32_t lenA, const char *b, std::uint32_t lenB);

std::int32_t fastCaseInsensitiveCompareUnichars(const unichar *a, std::uint32_t lenA, const unichar *b,
                                                std::uint32_t lenB);
std::int32_t fastCaseInsensitiveCompareUnicharsWithChars(const unichar *a, std::uint32_t lenA, const char *b,
                                                         std::uint32_t lenB);
std::int32_t fastCaseInsensitiveCompareChars(const char *a, std::uint32_t lenA, const char *b,
                                             std::uint32_t lenB);

}  // namespace nimbo
