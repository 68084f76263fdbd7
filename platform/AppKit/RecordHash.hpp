// SPDX-License-Identifier: Apache-2.0
//
// Hashes of records and their fields, equal for equal ones.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "platform/AppKit/NSColor.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// The hash of a number, a truth value or an enumerator.
template <class T>
requires std::is_arithmetic_v<T> || std::is_enum_v<T>
constexpr std::size_t recordHash(T value) {
  if constexpr (std::is_floating_point_v<T>)
    return std::bit_cast<std::uint64_t>(static_cast<double>(value) + 0.0) >> 29;  // Zeros have two signs.
  else
    return static_cast<std::size_t>(value);
}

constexpr std::size_t recordHash(const NSColor &color) {
  return std::bit_cast<std::uint32_t>(color);
}

/// The hash of what knows its own.
template <class T>
requires requires(const T &value) {
  { value.hash() } -> std::same_as<std::size_t>;
}
std::size_t recordHash(const T &value) {
  return value.hash();
}

template <class T>
constexpr std::size_t recordHash(const std::optional<T> &value) {
  return value ? combinedHash(1, recordHash(*value)) : 0;
}

/// The hash of several values in this order.
template <class... Values>
std::size_t combinedRecordHash(const Values &...values) {
  std::size_t hash = 0;
  ((hash = combinedHash(hash, recordHash(values))), ...);
  return hash;
}

/// The hash of a list of elements that `hashOf` gives the hashes of.
template <class Elements, class HashOf>
std::size_t listHash(const Elements &elements, HashOf &&hashOf) {
  std::size_t hash = elements.size();
  for (const auto &element : elements) hash = combinedHash(hash, hashOf(element));
  return hash;
}

}  // namespace nimbo
