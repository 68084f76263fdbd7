// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What pages mean by the unit: from U+0080 to U+009F the character that Windows Latin 1 has there, else
/// itself.
char16_t windowsCharacter(char16_t unit);

/// A numeric character reference as browsers read it.
struct NumericReference {
  /// Its units, with the semicolon when there is one; 0 when there is no reference.
  std::uint32_t length = 0;
  /// What it stands for: from 0x80 to 0x9f the characters that Windows has there, U+FFFD for what is none.
  char32_t character = 0;
};

/// The reference that a text begins with, of which the first two units are "&#".
///
///     numericReferenceAt(u"&#8364;5");  // {7, U'\u20ac'}
NumericReference numericReferenceAt(std::u16string_view text);

}  // namespace nimbo
