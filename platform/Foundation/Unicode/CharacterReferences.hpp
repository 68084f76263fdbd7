// SPDX-License-Identifier: Apache-2.0
//
// The character references of HTML: "&eacute;", "&#233;", "&#xe9;". Any thread may read them.
//
//     const CharacterReference reference = readCharacterReference(u"&notit;", false);
//     reference.view() == u"\u00ac" && reference.length == 4;  // true
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a character reference stands for.
struct CharacterReference {
  /// The units it stands for are the first ones here.
  std::array<unichar, 4> units{};
  /// How many these are.
  std::uint32_t unitCount = 0;
  /// How many units the reference is long, "&" counted; 0 when there is none.
  std::uint32_t length = 0;

  /// The units it stands for.
  std::u16string_view view() const NIMBO_LIFETIMEBOUND { return {units.data(), unitCount}; }
};

/// The reference that the text begins with, at its "&". In an attribute, one without its semicolon is none in
/// front of a letter, a digit or "=".
CharacterReference readCharacterReference(std::u16string_view text, bool isInAttribute);

}  // namespace nimbo
