// SPDX-License-Identifier: Apache-2.0
//
// Edits by functions of code units. Each kind of edit stands here once: a worker on a mutable string, and
// beside it the form for an immutable one, which answers the string itself when the edit changes nothing or
// there is no room for its result.
//
//     stringByRemovingUnits(u"1,000,000"_ns, [](unichar c) { return c == u','; });  // "1000000"
//     stringByMappingUnits(u"a/b"_ns, [](unichar c) { return c == u'/' ? u':' : c; });  // "a:b"
//     stringByTrimmingUnits(u"--x-"_ns, [](unichar c) { return c == u'-'; }, Ends::kLeft);  // "x-"
#pragma once

#include <algorithm>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What `edit(NSMutableString &)` makes of a copy. Where it can be known before that nothing would change, the
/// caller should answer the string without this.
template <class Edit>
NSString stringByEditing(const NSString &string, Edit edit) {
  if (string.length() == 0) return string;
  return answerOr(string, [&] {
    NSMutableString copy(string);
    edit(copy);
    return copy.view() == string.view() ? string : std::move(copy).string();
  });
}

/// Replaces each unit by `map(unichar)`.
template <class Map>
void mapUnits(NSMutableString &string, Map map) {
  unichar *const units = string.mutableCharacters();
  std::transform(units, units + string.length(), units, map);
}

/// The string with each unit replaced by `map(unichar)`.
template <class Map>
NSString stringByMappingUnits(const NSString &string, Map map) {
  const std::u16string_view units = string.view();
  if (std::all_of(units.begin(), units.end(), [&](unichar c) { return map(c) == c; })) return string;
  return answerOr(string, [&] {
    NSMutableString copy;
    copy.setLength(string.length());
    std::transform(units.begin(), units.end(), copy.mutableCharacters(), map);
    return std::move(copy).string();
  });
}

/// Removes the units for which `isRemoved(unichar)` holds.
template <class Predicate>
void removeUnits(NSMutableString &string, Predicate isRemoved) {
  unichar *const units = string.mutableCharacters();
  unichar *const end = std::remove_if(units, units + string.length(), isRemoved);
  string.setLength(static_cast<std::uint32_t>(end - units));
}

/// The string without the units for which `isRemoved(unichar)` holds.
template <class Predicate>
NSString stringByRemovingUnits(const NSString &string, Predicate isRemoved) {
  const std::u16string_view units = string.view();
  if (std::none_of(units.begin(), units.end(), isRemoved)) return string;
  return answerOr(string, [&] {
    NSMutableString copy;
    copy.setLength(string.length());
    unichar *const end = std::remove_copy_if(units.begin(), units.end(), copy.mutableCharacters(), isRemoved);
    copy.setLength(static_cast<std::uint32_t>(end - copy.mutableCharacters()));
    return std::move(copy).string();
  });
}

/// The string without the units for which `isRemoved(unichar)` holds, the others replaced by `map(unichar)`.
template <class Predicate, class Map>
NSString stringByRemovingAndMappingUnits(const NSString &string, Predicate isRemoved, Map map) {
  const std::u16string_view units = string.view();
  if (std::ranges::all_of(units, [&](unichar c) { return !isRemoved(c) && map(c) == c; })) return string;
  return stringByEditing(string, [&](NSMutableString &copy) {
    removeUnits(copy, isRemoved);
    mapUnits(copy, map);
  });
}

/// Which ends are trimmed.
enum class Ends { kBoth, kLeft, kRight };

/// What is left of `range`, which must lie inside `units`, without the units at its ends for which
/// `isTrimmed(unichar)` holds.
template <class Predicate>
NSRange trimmedRange(std::u16string_view units, NSRange range, Predicate isTrimmed, Ends ends = Ends::kBoth) {
  std::uint32_t start = range.location, end = range.location + range.length;
  if (ends != Ends::kRight)
    while (start < end && isTrimmed(units[start])) ++start;
  if (ends != Ends::kLeft)
    while (start < end && isTrimmed(units[end - 1])) --end;
  return {start, end - start};
}

/// The units of `range`; `otherwise` when there is no room for them.
inline NSString substringOr(const NSString &otherwise, const NSString &string, NSRange range) {
  return answerOr(otherwise, [&] { return string.substringWithRange(range); });
}

/// The string without the units at its ends for which `isTrimmed(unichar)` holds.
template <class Predicate>
NSString stringByTrimmingUnits(const NSString &string, Predicate isTrimmed, Ends ends = Ends::kBoth) {
  return substringOr(string, string, trimmedRange(string.view(), {0, string.length()}, isTrimmed, ends));
}

/// Removes the units at the ends for which `isTrimmed(unichar)` holds.
template <class Predicate>
void trimUnits(NSMutableString &string, Predicate isTrimmed, Ends ends = Ends::kBoth) {
  const NSRange kept = trimmedRange(string.view(), {0, string.length()}, isTrimmed, ends);
  string.setLength(kept.location + kept.length);
  string.deleteCharactersInRange({0, kept.location});
}

}  // namespace nimbo
