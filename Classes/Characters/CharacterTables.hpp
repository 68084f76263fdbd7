// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A table has one entry for each code unit, with the unit that it folds to; U+FFFF and surrogates fold to
/// themselves. Tables are made on first use, from any thread, and live as long as the process.
inline constexpr std::uint32_t kCharsTableEntries = 0x10000;

namespace detail {

// Null until the table is made.
extern std::atomic<const unichar *> umlautsCharsTable;
extern std::atomic<const unichar *> upperCharsTable;
extern std::atomic<const unichar *> lowerCharsTable;
extern std::atomic<const unichar *> upperUmlautsCharsTable;
extern std::atomic<const unichar *> lowerUmlautsCharsTable;

const unichar *makeUmlautsCharsTable();
const unichar *makeUpperCharsTable();
const unichar *makeLowerCharsTable();
const unichar *makeUpperUmlautsCharsTable();
const unichar *makeLowerUmlautsCharsTable();

inline const unichar *charsTable(const std::atomic<const unichar *> &table, const unichar *(*make)()) {
  const unichar *const made = table.load(std::memory_order_acquire);
  return made ? made : make();
}

}  // namespace detail

/// Letters and marks without their diacritics, as far as one unit is left of them.
inline const unichar *initUmlautsCharsTable() {
  return detail::charsTable(detail::umlautsCharsTable, detail::makeUmlautsCharsTable);
}

/// Lowercase letters (Ll) in upper case, where that is one unit.
inline const unichar *initUpperCharsTable() {
  return detail::charsTable(detail::upperCharsTable, detail::makeUpperCharsTable);
}

/// Uppercase letters (Lu) in lower case, where that is one unit. The titlecase letters, although the platform
/// counts them as uppercase, stay themselves.
inline const unichar *initLowerCharsTable() {
  return detail::charsTable(detail::lowerCharsTable, detail::makeLowerCharsTable);
}

/// First without diacritics, then in upper case.
inline const unichar *initUpperUmlautsCharsTable() {
  return detail::charsTable(detail::upperUmlautsCharsTable, detail::makeUpperUmlautsCharsTable);
}

/// First without diacritics, then in lower case.
inline const unichar *initLowerUmlautsCharsTable() {
  return detail::charsTable(detail::lowerUmlautsCharsTable, detail::makeLowerUmlautsCharsTable);
}

// The lookups below make their table when it is not there. A loop over many units does better with the table's
// pointer.

inline unichar toUpper(unichar c) {
  return initUpperCharsTable()[c];
}

inline unichar toLower(unichar c) {
  return initLowerCharsTable()[c];
}

/// Without diacritics; despite the name, not only ASCII.
inline unichar umlautsToAscii(unichar c) {
  return initUmlautsCharsTable()[c];
}

/// Without diacritics in upper case; not only ASCII.
inline unichar umlautsToUpperAscii(unichar c) {
  return initUpperUmlautsCharsTable()[c];
}

/// Without diacritics in lower case; not only ASCII.
inline unichar umlautsToLowerAscii(unichar c) {
  return initLowerUmlautsCharsTable()[c];
}

/// Without diacritics; a space when that is not ASCII.
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
