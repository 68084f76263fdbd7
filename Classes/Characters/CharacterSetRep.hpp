// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSCharacterSet.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A bitmap of code units in the layout of `NSCharacterSet`: every unit has its bit, so that membership needs
/// no check of bounds. The sets below are made on first use, from any thread, and live as long as the process;
/// nobody frees them. The names of general categories are Unicode's, by the tables of ICU.
///
///     const bool isWord = charactersPartOfSet(u"word"_ns, alphaCharacterSetRep(), false);
///     CharacterSetRep vowels{};
///     for (const unichar c : std::u16string_view(u"aeiou")) vowels.insert(c);
///     const bool hasVowel = characterPartOfSet(u"word"_ns, &vowels);
struct CharacterSetRep {
  /// The bit `c & 7` of byte `c >> 3` stands for the unit `c`.
  NSCharacterSet::BitmapRepresentation bytes;

  /// Whether the unit is in the set.
  bool contains(unichar c) const noexcept { return bytes[c >> 3] >> (c & 7) & 1; }
  /// Adds the unit.
  void insert(unichar c) noexcept { bytes[c >> 3] = static_cast<std::uint8_t>(bytes[c >> 3] | 1u << (c & 7)); }
};

/// The empty set.
const CharacterSetRep *emptyCharacterSetRep();
/// The white set: the platform's whitespace and newlines (Z*, U+0009 to U+000D, U+0085), and U+0000, U+0003
/// (end of text), U+FFFC (attachment) and U+FEFF (byte order mark).
const CharacterSetRep *whiteCharacterSetRep();
/// The space set, horizontal blanks: Zs and U+0009, and U+0000.
const CharacterSetRep *spaceCharacterSetRep();
/// The upper set, uppercase and titlecase letters: Lu and Lt.
const CharacterSetRep *upperCharacterSetRep();
/// The lower set, lowercase letters: Ll.
const CharacterSetRep *lowerCharacterSetRep();
/// The digit set, decimal digits: Nd.
const CharacterSetRep *digitCharacterSetRep();
/// The alphaNum set, letters, marks and numbers: L*, M* and N*.
const CharacterSetRep *alphaNumCharacterSetRep();
/// The alpha set, letters and marks: L* and M*.
const CharacterSetRep *alphaCharacterSetRep();

/// The lowest member of the alpha set.
unichar firstAlphaCharacter();
/// The highest member of the alpha set.
unichar lastAlphaCharacter();

/// Whether a unit of the string is in the set; false when the string is nil or empty or the set null.
bool characterPartOfSet(const NSString &string, const CharacterSetRep *set);

/// Whether all units of the string are in the set; `emptyResult` when it is nil or empty, false when the set is
/// null.
bool charactersPartOfSet(const NSString &string, const CharacterSetRep *set, Flag emptyResult);

}  // namespace nimbo
