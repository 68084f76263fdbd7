// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

/// A name in lower case and what it stands for.
template <class Value>
struct CSSNamedValue {
  std::string_view name;
  Value value;
};

/// A table of names, made at compile time, in which any case is found.
template <class Value, std::size_t N>
class CSSNameLookup {
 public:
  consteval explicit CSSNameLookup(const std::array<CSSNamedValue<Value>, N> &rows) : rows_(rows) {
    for (std::size_t i = 0; i < N; ++i) {
      longest_ = std::max(longest_, rows[i].name.size());
      std::size_t slot = hashOf(rows[i].name) % kSlots;
      while (slots_[slot] != 0) slot = (slot + 1) % kSlots;
      slots_[slot] = static_cast<std::uint16_t>(i + 1);
    }
  }

  /// What the name stands for, or null.
  const Value *find(std::u16string_view name) const {
    if (name.size() > longest_) return nullptr;
    for (std::size_t slot = hashOf(name) % kSlots; slots_[slot] != 0; slot = (slot + 1) % kSlots) {
      const CSSNamedValue<Value> &row = rows_[slots_[slot] - 1u];
      if (equalsASCIINoCase(name, row.name)) return &row.value;
    }
    return nullptr;
  }

 private:
  static constexpr std::size_t kSlots = std::bit_ceil(3 * N);

  template <class Unit>
  static constexpr std::size_t hashOf(std::basic_string_view<Unit> name) {
    std::uint32_t hash = static_cast<std::uint32_t>(name.size());
    for (const Unit c : name) hash = (hash ^ (static_cast<std::uint32_t>(c) | 0x20)) * 0x01000193;
    return hash ^ hash >> 15;
  }

  std::array<CSSNamedValue<Value>, N> rows_;
  std::array<std::uint16_t, kSlots> slots_{};
  std::size_t longest_ = 0;
};

}  // namespace nimbo::detail
