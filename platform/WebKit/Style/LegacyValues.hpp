// SPDX-License-Identifier: Apache-2.0
//
// The values of presentational attributes, by the HTML standard's rules for what old pages write.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/CSS/CSSColor.hpp"
#include "platform/CSS/CSSValue.hpp"

namespace nimbo::detail {

/// The colour of an attribute such as "bgcolor": nearly any text is one, as "chucknorris" is. Nothing for empty
/// text and for "transparent".
std::optional<CSSColor> legacyColor(std::u16string_view text);

/// The length or percentage of an attribute such as "width", which may go on behind it; no value when there is
/// none.
CSSValue legacyDimension(std::u16string_view text);

/// The number that the text begins with; nothing when there is none or when it has a minus. Large ones are cut.
std::optional<std::uint32_t> legacyNonNegativeInteger(std::u16string_view text);

/// The value of "font-size" that the "size" of a "font" element means; no value when it is no number.
CSSValue legacyFontSize(std::u16string_view text);

}  // namespace nimbo::detail
