// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFWords.hpp"

#include <array>
#include <cstddef>

namespace nimbo {

namespace {

constexpr std::string_view kNames[] = {
#define QUIVERLEAF_RTF_NAME(name) #name,
    QUIVERLEAF_RTF_WORDS(QUIVERLEAF_RTF_NAME)
#undef QUIVERLEAF_RTF_NAME
};

constexpr std::size_t kSlots = 1024;
static_assert(std::size(kNames) < kSlots / 2);

constexpr std::size_t slotOf(std::string_view name) {
  std::uint32_t hash = static_cast<std::uint32_t>(name.size());
  for (const char c : name) hash = hash * 37 + static_cast<std::uint8_t>(c);
  return (hash ^ (hash >> 10)) % kSlots;
}

/// The words by the hash of their names; one whose slot is taken stands in the next free one.
constexpr auto kTable = [] {
  std::array<std::uint16_t, kSlots> table{};
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    std::size_t slot = slotOf(kNames[i]);
    while (table[slot] != 0) slot = (slot + 1) % kSlots;
    table[slot] = static_cast<std::uint16_t>(i + 1);
  }
  return table;
}();

}  // namespace

RTFWord wordNamed(std::string_view name) {
  for (std::size_t slot = slotOf(name); kTable[slot] != 0; slot = (slot + 1) % kSlots)
    if (kNames[kTable[slot] - 1] == name) return static_cast<RTFWord>(kTable[slot]);
  return RTFWord::unknown;
}

}  // namespace nimbo
