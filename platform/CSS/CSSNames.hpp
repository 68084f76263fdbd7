// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSArena.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A name of elements, attributes, classes, ids or custom properties, as a number: equal names of one table
/// have equal numbers, from 1 on without gaps.
using CSSName = std::uint32_t;
/// No name, which equals the name of nothing.
inline constexpr CSSName kNoCSSName = 0;

/// The names that a page and its style sheets use. Names are case-sensitive. Any thread may read a table that
/// nobody changes.
class CSSNames {
 public:
  /// A table that has all names of `base`, which must outlive it and stay as it is, under their numbers.
  explicit CSSNames(const CSSNames *base = nullptr);

  /// The number of the name, which is copied when it is new; `kNoCSSName` for an empty name. Raises
  /// `std::bad_alloc`.
  CSSName intern(std::u16string_view name);
  /// The number of the name with its ASCII letters in lower case.
  CSSName internLowercase(std::u16string_view name);
  /// The number of the name; `kNoCSSName` when the table lacks it.
  CSSName find(std::u16string_view name) const;
  /// The name of a number of this table, borrowed from it; empty for `kNoCSSName`.
  std::u16string_view text(CSSName name) const NIMBO_LIFETIMEBOUND;
  /// How many names there are, those of the base among them; no number is greater.
  std::size_t size() const { return baseSize_ + names_.size(); }

 private:
  struct Entry {
    std::u16string_view text;
    std::uint64_t hash;
  };

  CSSName find(std::u16string_view name, std::uint64_t hash) const;
  void grow();

  const CSSNames *base_;
  std::size_t baseSize_;
  CSSArena arena_;
  std::vector<Entry> names_;
  std::vector<std::uint32_t> slots_;
};

}  // namespace nimbo
