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
#include <bit>
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

namespace detail {
/// How many slots there are; at least half of them are empty.
inline constexpr std::size_t kEntitySlots = 512;
static_assert(std::has_single_bit(kEntitySlots) && kEntitySlots >= 2 * kEntityCount);

/// A short name and its character, which is 0 in an empty slot.
struct EntitySlot {
  EntityKey key;
  unichar character = 0;
};

/// The names that have a key, hashed with linear probing: a name stands in its slot or behind it, before the
/// next empty slot.
extern const std::array<EntitySlot, kEntitySlots> entitySlots;

/// The slot from which on a name is looked for.
constexpr std::size_t slotOfEntityKey(EntityKey key) {
  return key.value * 0x9e3779b97f4a7c15 >> (64 - std::bit_width(kEntitySlots - 1));
}
}  // namespace detail

/// The character of a name, case-sensitively; 0 when there is no such name. Names of more than
/// `EntityKey::kMaxLength` letters have no key and are not found.
inline unichar characterOfEntity(EntityKey key) {
  std::size_t slot = detail::slotOfEntityKey(key);
  while (detail::entitySlots[slot].character && detail::entitySlots[slot].key.value != key.value)
    slot = (slot + 1) % detail::kEntitySlots;
  return detail::entitySlots[slot].character;
}

}  // namespace nimbo
