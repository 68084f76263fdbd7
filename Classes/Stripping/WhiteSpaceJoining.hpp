// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo::detail {

/// Appends a space unless the text ends in white space. An empty text does not, nor does one that ends in
/// U+0000.
inline void appendSpaceIfNeeded(NSMutableString &text) {
  const unichar last = text.length() > 0 ? text.view().back() : 0;
  if (last == 0 || !whiteCharacterSetRep()->contains(last)) text.appendCharacter(u' ');
}

}  // namespace nimbo::detail
