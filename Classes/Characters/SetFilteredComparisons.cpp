// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/SetFilteredComparisons.hpp"

#include "Classes/Characters/CharacterTables.hpp"

namespace nimbo {

namespace {

/// A null fold table compares the units themselves.
bool compareMembers(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB,
                    const CharacterSetRep *set, const unichar *foldTable, bool resultWhenSecondRunsOut) {
  if (!set) return lenA == 0 && lenB == 0;
  const auto toMember = [set](const unichar *units, std::uint32_t length, std::uint32_t index) {
    while (index < length && !set->contains(units[index])) ++index;
    return index;
  };
  std::uint32_t j = toMember(b, lenB, 0);
  for (std::uint32_t i = toMember(a, lenA, 0); i < lenA; i = toMember(a, lenA, i + 1)) {
    if (j == lenB) return resultWhenSecondRunsOut;
    if (foldTable ? foldTable[a[i]] != foldTable[b[j]] : a[i] != b[j]) return false;
    j = toMember(b, lenB, j + 1);
  }
  return j == lenB;
}

}  // namespace

bool equalCharsOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB,
                                 const CharacterSetRep *set) {
  return compareMembers(a, lenA, b, lenB, set, nullptr, false);
}

bool equalCharsNoCaseOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b,
                                       std::uint32_t lenB, const CharacterSetRep *set) {
  return compareMembers(a, lenA, b, lenB, set, initUpperCharsTable(), false);
}

bool hasPrefixCharsOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB,
                                     const CharacterSetRep *set) {
  return compareMembers(a, lenA, b, lenB, set, nullptr, true);
}

bool hasPrefixCharsNoCaseOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b,
                                           std::uint32_t lenB, const CharacterSetRep *set) {
  return compareMembers(a, lenA, b, lenB, set, initUpperCharsTable(), true);
}

bool _equalStringsUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set,
                                       Flag noCase, Flag resultWhenSecondRunsOut) {
  return compareMembers(s1.characters(), s1.length(), s2.characters(), s2.length(), set,
                        noCase ? initUpperCharsTable() : nullptr, resultWhenSecondRunsOut);
}

bool equalStringsUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set) {
  return _equalStringsUsingCharacterSetRep(s1, s2, set, false, false);
}

bool equalStringsNoCaseUsingCharacterSetRep(const NSString &s1, const NSString &s2,
                                            const CharacterSetRep *set) {
  return _equalStringsUsingCharacterSetRep(s1, s2, set, true, false);
}

bool hasPrefixUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set) {
  return _equalStringsUsingCharacterSetRep(s1, s2, set, false, true);
}

bool hasPrefixNoCaseUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set) {
  return _equalStringsUsingCharacterSetRep(s1, s2, set, true, true);
}

}  // namespace nimbo
