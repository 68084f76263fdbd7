// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSCharacterSet.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A bitmap of code units in the layout of `NSCharacterSet`: every unit has its bit, so that membership needs
/// no check of bounds. The sets below are made on first use, from any thread, and live as long as the process.
struct CharacterSetRep {
  NSCharacterSet::BitmapRepresentation bytes;

  bool contains(unichar c) const noexcept { return bytes[c >> 3] >> (c & 7) & 1; }
  void insert(unichar c) noexcept { bytes[c >> 3] = static_cast<std::uint8_t>(bytes[c >> 3] | 1u << (c & 7)); }
};

const CharacterSetRep *emptyCharacterSetRep();
/// The platform's whitespace and newlines (Z*, U+0009 to U+000D, U+0085), and U+0000, U+0003 (end of text),
/// U+FFFC (attachment) and U+FEFF (byte order mark).
const CharacterSetRep *whiteCharacterSetRep();
/// Horizontal blanks: Zs and U+0009, and U+0000.
const CharacterSetRep *spaceCharacterSetRep();
/// Lu and Lt.
const CharacterSetRep *upperCharacterSetRep();
/// Ll.
const CharacterSetRep *lowerCharacterSetRep();
/// Nd.
const CharacterSetRep *digitCharacterSetRep();
/// L*, M* and N*.
const CharacterSetRep *alphaNumCharacterSetRep();
/// L* and M*.
const CharacterSetRep *alphaCharacterSetRep();

/// The lowest and the highest member of the alpha set.
unichar firstAlphaCharacter();
unichar lastAlphaCharacter();

/// Whether a unit of the string is in the set; false when the string is nil or empty or the set null.
bool characterPartOfSet(const NSString &string, const CharacterSetRep *set);

/// Whether all units of the string are in the set; `emptyResult` when it is nil or empty, false when the set is
/// null.
bool charactersPartOfSet(const NSString &string, const CharacterSetRep *set, Flag emptyResult);

}  // namespace nimbo
