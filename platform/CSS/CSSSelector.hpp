// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/CSS/CSSArena.hpp"
#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/CSS/CSSNames.hpp"

namespace NIMBO_PUBLIC nimbo {

struct CSSSelectorPart;

/// What stands between a compound and the one to its left.
enum class CSSCombinator : std::uint8_t {
  kNone,  ///< Nothing: the part to the left belongs to the same compound, or there is none.
  kDescendant,
  kChild,
  kNextSibling,
  kSubsequentSibling,
};

/// The box that a selector's rules are for.
enum class CSSPseudoElement : std::uint8_t {
  kNone,  ///< The element itself.
  kBefore,
  kAfter,
  kMarker,
};

/// How much a selector weighs: ids, then classes and the like, then types, 21 bits each, each at most all ones.
using CSSSpecificity = std::uint64_t;

/// The specificity of so many ids, classes and types.
constexpr CSSSpecificity specificity(std::uint64_t ids, std::uint64_t classes, std::uint64_t types) {
  return ids << 42 | classes << 21 | types;
}

/// A complex selector. Its parts stand from right to left, as they are matched: the last compound first.
/// It is borrowed from the arena that it was read into.
struct CSSSelector {
  /// The simple selectors.
  std::span<const CSSSelectorPart> parts;
  /// How much it weighs.
  CSSSpecificity specificity = 0;
  /// The box that it is for.
  CSSPseudoElement pseudoElement = CSSPseudoElement::kNone;
  /// What an element must have for the selector to match: the id, else a class, else the type that the last
  /// compound asks for.
  enum class Key : std::uint8_t { kAny, kId, kClass, kType };
  /// Which of them there is.
  Key key = Key::kAny;
  /// Its name; `kNoCSSName` when the compound asks for none of them.
  CSSName keyName = kNoCSSName;
  /// No bit.
  static constexpr std::uint16_t kNoFilterBit = 0xffff;
  /// Bits that the filter of the element's ancestors must have, as `CSSElements` makes it; none behind the
  /// first `kNoFilterBit`.
  std::array<std::uint16_t, 4> ancestorBits = {kNoFilterBit, kNoFilterBit, kNoFilterBit, kNoFilterBit};
};

/// How selectors are read.
struct CSSSelectorReading {
  /// The table that names go to, or are looked up in; never null.
  CSSNames *names = nullptr;
  /// In which classes and ids are compared.
  CSSMode mode = CSSMode::kStandard;
  /// Whether names that the table lacks stay unknown. A selector that asks for one is valid but matches nothing
  /// and is left out. Sheets that are read after the page, for that page alone, are read so.
  bool onlyKnownNames = false;
};

/// A list of selectors. Nothing when one of them is invalid; selectors that are valid but can match nothing are
/// left out. The list lies in the arena.
std::optional<std::span<const CSSSelector>> readSelectors(std::u16string_view text,
                                                          const CSSSelectorReading &reading, CSSArena &arena);

}  // namespace nimbo
