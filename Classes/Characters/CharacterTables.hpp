// SPDX-License-Identifier: Apache-2.0
//
// Tables that fold code units, and lookups in them:
//
//     const unichar *const upper = initUpperCharsTable();
//     for (unichar &c : units) c = upper[c];
//     umlautsToAscii(u'é');  // u'e'
//     toAscii(u'☃');  // u' '
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A table has one entry for each code unit, with the unit that it folds to; U+FFFF and surrogates fold to
/// themselves. Tables are made of ICU's data on first use, from any thread, and live as long as the process;
/// nobody frees them. A lookup makes its table when it is not there: a loop over many units does better with
/// the table's pointer.
inline constexpr std::uint32_t kCharsTableEntries = 0x10000;

namespace detail {

/// The table of `initUmlautsCharsTable`; null until it is made.
extern std::atomic<const unichar *> umlautsCharsTable;
/// The table of `initUpperCharsTable`; null until it is made.
extern std::atomic<const unichar *> upperCharsTable;
/// The table of `initLowerCharsTable`; null until it is made.
extern std::atomic<const unichar *> lowerCharsTable;
/// The table of `initUpperUmlautsCharsTable`; null until it is made.
extern std::atomic<const unichar *> upperUmlautsCharsTable;
/// The table of `initLowerUmlautsCharsTable`; null until it is made.
extern std::atomic<const unichar *> lowerUmlautsCharsTable;

/// Makes the table of `initUmlautsCharsTable`, once for all threads.
const unichar *makeUmlautsCharsTable();
/// Makes the table of `initUpperCharsTable`, once for all threads.
const unichar *makeUpperCharsTable();
/// Makes the table of `initLowerCharsTable`, once for all threads.
const unichar *makeLowerCharsTable();
/// Makes the table of `initUpperUmlautsCharsTable`, once for all threads.
const unichar *makeUpperUmlautsCharsTable();
/// Makes the table of `initLowerUmlautsCharsTable`, once for all threads.
const unichar *makeLowerUmlautsCharsTable();

/// The table, made first when it is not there.
inline const unichar *charsTable(const std::atomic<const unichar *> &table, const unichar *(*make)()) {
  const unichar *const made = table.load(std::memory_order_acquire);
  return made ? made : make();
}

}  // namespace detail

/// The table of letters and marks without their diacritics, as far as one unit is left of them.
inline const unichar *initUmlautsCharsTable() {
  return detail::charsTable(detail::umlautsCharsTable, detail::makeUmlautsCharsTable);
}

/// The table of lowercase letters (Ll) in upper case, where that is one unit.
inline const unichar *initUpperCharsTable() {
  return detail::charsTable(detail::upperCharsTable, detail::makeUpperCharsTable);
}

/// The table of uppercase letters (Lu) in lower case, where that is one unit. The titlecase letters, although
/// the platform counts them as uppercase, stay themselves.
inline const unichar *initLowerCharsTable() {
  return detail::charsTable(detail::lowerCharsTable, detail::makeLowerCharsTable);
}

/// The table that takes diacritics away, then folds to upper case.
inline const unichar *initUpperUmlautsCharsTable() {
  return detail::charsTable(detail::upperUmlautsCharsTable, detail::makeUpperUmlautsCharsTable);
}

/// The table that takes diacritics away, then folds to lower case.
inline const unichar *initLowerUmlautsCharsTable() {
  return detail::charsTable(detail::lowerUmlautsCharsTable, detail::makeLowerUmlautsCharsTable);
}

/// The unit in upper case (`initUpperCharsTable`).
inline unichar toUpper(unichar c) {
  return initUpperCharsTable()[c];
}

/// The unit in lower case (`initLowerCharsTable`).
inline unichar toLower(unichar c) {
  return initLowerCharsTable()[c];
}

/// The unit without diacritics; despite the name, not only ASCII.
inline unichar umlautsToAscii(unichar c) {
  return initUmlautsCharsTable()[c];
}

/// The unit without diacritics in upper case; not only ASCII.
inline unichar umlautsToUpperAscii(unichar c) {
  return initUpperUmlautsCharsTable()[c];
}

/// The unit without diacritics in lower case; not only ASCII.
inline unichar umlautsToLowerAscii(unichar c) {
  return initLowerUmlautsCharsTable()[c];
}

/// The unit without diacritics; a space when that is not ASCII.
inline unichar toAscii(unichar c) {
  const unichar u = umlautsToAscii(c);
  return u < 128 ? u : u' ';
}

/// As `toAscii`, in lower case.
inline unichar toLowerAscii(unichar c) {
  return toASCIILower(toAscii(c));
}

/// As `toAscii`, in upper case.
inline unichar toUpperAscii(unichar c) {
  return toASCIIUpper(toAscii(c));
}

/// How a byte of a pattern compares with units: as a signed one, so that a byte above 0x7F never equals a unit
/// of Latin-1. Patterns of bytes are for ASCII.
constexpr unichar unicharOfChar(char c) {
  return static_cast<unichar>(static_cast<signed char>(c));
}

}  // namespace nimbo
