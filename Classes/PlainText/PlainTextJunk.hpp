// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace nimbo::detail {

/// A text of so many units without a break is not one that a person wrote.
inline constexpr std::uint32_t kOverlongLine = 20001;

/// Whether a text that stands between two tags, its blanks collapsed, is junk: longer than 10000 units, or than
/// 3500 within a link or heading, which are short by nature; or, from 100 units on, split by more than 4 groups
/// of units that are neither letters nor digits, of more than 5 units on average.
bool isJunkText(std::u16string_view text, bool isInLinkOrHeading);

}  // namespace nimbo::detail
