// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>

#include "platform/CSS/CSSValue.hpp"

namespace nimbo::detail {

/// The values of a list, or a value that is no list as the only one.
inline std::span<const CSSValue> valuesOf(const CSSValue &value NIMBO_LIFETIMEBOUND) {
  if (value.kind() == CSSValueKind::kList) return value.values();
  return {&value, value ? 1U : 0U};
}

/// A name of the author's own, even if it is a keyword elsewhere; empty for what is no name.
inline std::u16string nameOf(const CSSValue &value) {
  if (value.kind() == CSSValueKind::kIdentifier) return std::u16string(value.text());
  if (value.kind() != CSSValueKind::kKeyword) return {};
  const std::string_view name = nameOfCSSKeyword(value.keyword());
  return {name.begin(), name.end()};
}

/// A number as an integer, cut to what one can be.
inline std::int32_t integerOf(double number) {
  return static_cast<std::int32_t>(std::clamp(std::round(number), -2147483648.0, 2147483647.0));
}

}  // namespace nimbo::detail
