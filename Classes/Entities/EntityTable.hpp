// SPDX-License-Identifier: Apache-2.0
//
// The named entities of HTML, a character of one unit each. The tables are made at compile time; any thread
// may read them.
//
//     const std::int32_t index = indexOfEntityForCharacter(u'é');
//     entityStrings[index];  // "eacute"
//     EntityKey key;
//     for (const char letter : "eacute"sv) key.append(letter);
//     characterOfEntity(key);  // u'é'
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How many entities there are.
inline constexpr std::size_t kEntityCount = 246;

/// The names of the entities, without "&" and ";"; a null pointer ends them.
extern const std::array<const char *, kEntityCount + 1> entityStrings;
/// The character of each entity; a 0 ends them.
extern const std::array<unichar, kEntityCount + 1> entityCharacters;

/// The smallest of `entityCharacters`.
inline constexpr unichar minUmlChar = 0x00a0;
/// The largest of `entityCharacters`.
inline constexpr unichar maxUmlChar = 0x2666;

namespace detail {
/// The index of the entity of each unit from `minUmlChar` to `maxUmlChar`, or -1.
extern const std::array<std::int16_t, maxUmlChar - minUmlChar + 1> entityIndexes;
}  // namespace detail

/// The index of the entity that stands for a character; -1 when none does.
inline std::int32_t indexOfEntityForCharacter(unichar c) {
  return c >= minUmlChar && c <= maxUmlChar ? detail::entityIndexes[c - minUmlChar] : -1;
}

/// The bytes of a name of at most `kMaxLength` letters in one number, with a 1 in front of them, so that names
/// that differ only in their length differ.
struct EntityKey {
  /// The most letters that a name may have.
  static constexpr std::size_t kMaxLength = 6;

  /// The number.
  std::uint64_t value = 1;

  /// Adds a letter at the end.
  constexpr void append(std::uint8_t byte) { value = value << 8 | byte; }
  /// Takes the last letter away.
  constexpr void removeLast() { value >>= 8; }
};

/// The character of a name, case-sensitively; 0 when there is no such name. Names of more than
/// `EntityKey::kMaxLength` letters have no key and are not found.
unichar characterOfEntity(EntityKey key);

}  // namespace nimbo
