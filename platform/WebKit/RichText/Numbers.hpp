// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace nimbo::detail {

/// The decimal number that the text begins with, as "12", "-0.5" or "1e3", which is taken off it; nothing when
/// there is none. It is finite.
std::optional<double> takeNumber(std::u16string_view *text);

/// The integer that the value of an attribute begins with, behind blanks; what follows it does not matter.
/// Nothing when there is none. It is cut to what an integer can be.
std::optional<std::int32_t> integerOfAttribute(std::optional<std::u16string_view> value);

}  // namespace nimbo::detail
