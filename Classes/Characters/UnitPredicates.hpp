// SPDX-License-Identifier: Apache-2.0
//
// Predicates and maps of code units, for algorithms. Any thread may use them.
//
//     isLineBreak(u'\n');  // true
//     lengthOfLineBreak(u"a\r\nb", 1);  // 2
//     const bool isBlank = std::all_of(units.begin(), units.end(), isSpace(false));
#pragma once

#include <algorithm>
#include <array>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The units that end a line or stand between pieces of text: form feed, line feed, carriage return, the line
/// and the paragraph separator, end of text, attachment, byte order mark.
constexpr bool isLineBreak(unichar c) {
  return c == 0x000a || c == 0x000d || c == 0x000c || c == 0x0003 || c == 0x2028 || c == 0x2029 ||
         c == 0xfffc || c == 0xfeff;
}

/// How many units the line break at index `at` has: 2 for CR LF, 1 for another one, 0 for none.
constexpr std::uint32_t lengthOfLineBreak(std::u16string_view units, std::size_t at) {
  if (at >= units.size() || !isLineBreak(units[at])) return 0;
  return units[at] == u'\r' && at + 1 < units.size() && units[at + 1] == u'\n' ? 2 : 1;
}

/// A predicate that tells whether a unit is in a set, which it borrows and which must not be null.
struct IsPartOfSet {
  /// The set.
  const CharacterSetRep *set;
  /// Whether the unit is in the set.
  bool operator()(unichar c) const noexcept { return set->contains(c); }
};

/// The predicate of the white set.
inline IsPartOfSet isWhite() {
  return {whiteCharacterSetRep()};
}

/// The predicate of the digit set.
inline IsPartOfSet isDigit() {
  return {digitCharacterSetRep()};
}

/// The predicate of the white set when line breaks count too, else the space set.
inline IsPartOfSet isSpace(Flag andFeeds) {
  return {andFeeds ? whiteCharacterSetRep() : spaceCharacterSetRep()};
}

/// A predicate that tells whether a unit is one of those of a string, which it borrows.
struct IsUnitOf {
  /// The units of the string.
  std::u16string_view units;
  /// Whether the unit is one of them.
  bool operator()(unichar c) const noexcept { return units.find(c) != units.npos; }
};

/// So many comparisons take about as long as making a set.
inline constexpr std::uint64_t kComparisonsOfSet = 512;

/// The answer of `function(predicate)`, where the predicate tells in the fastest way whether one of `length`
/// units is one of those of a string.
template <class Function>
auto withUnitsOf(std::u16string_view units, std::uint32_t length, Function function) {
  if (std::uint64_t{units.size()} * length <= kComparisonsOfSet) return function(IsUnitOf{units});
  CharacterSetRep set{};
  for (const unichar c : units) set.insert(c);
  return function(IsPartOfSet{&set});
}

/// The same for the units as `map(unichar)` has them.
template <class Map, class Function>
auto withMappedUnitsOf(std::u16string_view units, std::uint32_t length, Map map, Function function) {
  if (units.size() <= kComparisonsOfSet && units.size() * length <= kComparisonsOfSet) {
    std::array<unichar, kComparisonsOfSet> mapped;
    std::ranges::transform(units, mapped.begin(), map);
    return function(IsUnitOf{{mapped.data(), units.size()}});
  }
  CharacterSetRep set{};
  for (const unichar c : units) set.insert(map(c));
  return function(IsPartOfSet{&set});
}

/// A predicate that holds for one unit.
struct IsUnit {
  /// The unit.
  unichar unit;
  /// Whether this is the unit.
  constexpr bool operator()(unichar c) const noexcept { return c == unit; }
};

/// A map that folds units by a table of `CharacterTables.hpp`, which it borrows.
struct EntryOf {
  /// The table, of 65536 entries.
  const unichar *table;
  /// The table's entry for the unit.
  unichar operator()(unichar c) const noexcept { return table[c]; }
};

}  // namespace nimbo
