// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/CharacterSetRep.hpp"

#include <algorithm>
#include <initializer_list>

namespace nimbo {

namespace {

CharacterSetRep copyOf(const NSCharacterSet &set, std::initializer_list<unichar> more = {}) {
  CharacterSetRep rep{set.bitmapRepresentation()};
  for (const unichar c : more) rep.insert(c);
  return rep;
}

}  // namespace

const CharacterSetRep *emptyCharacterSetRep() {
  static constexpr CharacterSetRep set{};
  return &set;
}

const CharacterSetRep *whiteCharacterSetRep() {
  static const CharacterSetRep set =
      copyOf(NSCharacterSet::whitespaceAndNewlineCharacterSet(),
             {u'\0', u'\f', u'\n', u'\r', u'\u2028', u'\u2029', u'\3', u'\ufffc', u'\t', u'\ufeff', u'\u00a0'});
  return &set;
}

const CharacterSetRep *spaceCharacterSetRep() {
  static const CharacterSetRep set = copyOf(NSCharacterSet::whitespaceCharacterSet(), {u'\0', u'\t'});
  return &set;
}

const CharacterSetRep *upperCharacterSetRep() {
  static const CharacterSetRep set = copyOf(NSCharacterSet::uppercaseLetterCharacterSet());
  return &set;
}

const CharacterSetRep *lowerCharacterSetRep() {
  static const CharacterSetRep set = copyOf(NSCharacterSet::lowercaseLetterCharacterSet());
  return &set;
}

const CharacterSetRep *digitCharacterSetRep() {
  static const CharacterSetRep set = copyOf(NSCharacterSet::decimalDigitCharacterSet());
  return &set;
}

const CharacterSetRep *alphaNumCharacterSetRep() {
  static const CharacterSetRep set = copyOf(NSCharacterSet::alphanumericCharacterSet());
  return &set;
}

const CharacterSetRep *alphaCharacterSetRep() {
  static const CharacterSetRep set = copyOf(NSCharacterSet::letterCharacterSet());
  return &set;
}

unichar firstAlphaCharacter() {
  static const unichar minChar = [] {
    std::uint32_t c = 0;
    while (c < 0xffff && !alphaCharacterSetRep()->contains(static_cast<unichar>(c))) ++c;
    return static_cast<unichar>(c);
  }();
  return minChar;
}

unichar lastAlphaCharacter() {
  static const unichar maxChar = [] {
    std::uint32_t c = 0xffff;
    while (c > 0 && !alphaCharacterSetRep()->contains(static_cast<unichar>(c))) --c;
    return static_cast<unichar>(c);
  }();
  return maxChar;
}

bool characterPartOfSet(const NSString &string, const CharacterSetRep *set) {
  return set && std::ranges::any_of(string.view(), [set](unichar c) { return set->contains(c); });
}

bool charactersPartOfSet(const NSString &string, const CharacterSetRep *set, Flag emptyResult) {
  if (string.length() == 0) return emptyResult;
  return set && std::ranges::all_of(string.view(), [set](unichar c) { return set->contains(c); });
}

}  // namespace nimbo
