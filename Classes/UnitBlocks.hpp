// SPDX-License-Identifier: Apache-2.0
//
// Loops over blocks of a fixed length, which the compiler turns into vector code when the predicate has no
// branches.
#pragma once

#include <cstddef>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo {

constexpr std::size_t kUnitBlock = 16;

/// Whether the predicate holds for one of the `kUnitBlock` units.
template <class Predicate>
bool anyUnitOfBlock(const unichar *units, Predicate predicate) {
  unichar any = 0;
  for (std::size_t k = 0; k < kUnitBlock; ++k) any |= static_cast<unichar>(predicate(units[k]));
  return any != 0;
}

/// Whether the predicate holds for one of the units.
template <class Predicate>
bool anyUnit(const unichar *units, std::size_t length, Predicate predicate) {
  std::size_t i = 0;
  for (; i + kUnitBlock <= length; i += kUnitBlock)
    if (anyUnitOfBlock(units + i, predicate)) return true;
  for (; i < length; ++i)
    if (predicate(units[i])) return true;
  return false;
}

/// For how many units the predicate holds.
template <class Predicate>
std::size_t countUnits(const unichar *units, std::size_t length, Predicate predicate) {
  // As many units as a lane of 16 bits can count, and a whole number of vectors.
  constexpr std::size_t kBlock = 512;
  std::size_t total = 0, i = 0;
  for (; i + kBlock <= length; i += kBlock) {
    unichar count = 0;
    for (std::size_t k = 0; k < kBlock; ++k)
      count = static_cast<unichar>(count + static_cast<unichar>(predicate(units[i + k])));
    total += count;
  }
  for (; i < length; ++i) total += predicate(units[i]);
  return total;
}

}  // namespace nimbo
