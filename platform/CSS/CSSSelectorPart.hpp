// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "platform/CSS/CSSSelector.hpp"

namespace nimbo {

enum class CSSSelectorPartKind : std::uint8_t {
  kUniversal,
  kType,
  kId,
  kClass,
  kHasAttribute,
  kAttributeIs,
  kAttributeHasWord,
  kAttributeHasDashPrefix,
  kAttributeBegins,
  kAttributeEnds,
  kAttributeContains,
  kIs,  ///< Also ":where()", and "&".
  kNot,
  kHas,
  kNthChild,
  kNthLastChild,
  kNthOfType,
  kNthLastOfType,
  kLanguage,
  kRightToLeft,
  kLeftToRight,
  kScope,
  kRoot,
  kEmpty,
  kOnlyChild,
  kOnlyOfType,
  kLink,
  kChecked,
  kDisabled,
  kEnabled,
  kRequired,
  kOptional,
  kReadOnly,
  kReadWrite,
  kDefined,
  kNever,
};

/// A simple selector. In a complex selector the last compound stands first; a part with a combinator is the
/// last of its compound, and what follows it is the compound to the left of that combinator.
struct CSSSelectorPart {
  CSSSelectorPartKind kind = CSSSelectorPartKind::kUniversal;
  CSSCombinator combinator = CSSCombinator::kNone;
  /// Of an attribute: whether its value is compared in any case.
  bool ignoresCase = false;
  /// Of an attribute: whether that holds for HTML elements alone.
  bool ignoresCaseInHTML = false;
  /// Of a type, id, class or attribute.
  CSSName name = kNoCSSName;
  /// Of a type or attribute: as elements of HTML have it.
  CSSName lowercaseName = kNoCSSName;
  /// The elements at the places step * n + offset, n being 0 or more.
  std::int32_t step = 0, offset = 0;
  /// How many units, selectors or ranges of languages there are.
  std::uint32_t count = 0;
  union {
    const char16_t *units = nullptr;
    const CSSSelector *selectors;
    const std::u16string_view *ranges;
  };

  std::u16string_view text() const { return {units, count}; }
  std::span<const CSSSelector> list() const { return {selectors, count}; }
  std::span<const std::u16string_view> languages() const { return {ranges, count}; }
};

}  // namespace nimbo
