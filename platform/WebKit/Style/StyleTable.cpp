// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/StyleTable.hpp"

#include <random>

namespace nimbo::detail {

std::uint64_t hashOfWords(std::span<const std::uint64_t> words) {
  static const std::uint64_t seed = [] {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random() | 1;
  }();
  __extension__ typedef unsigned __int128 Product;
  std::uint64_t hash = seed;
  for (const std::uint64_t word : words) {
    const Product product = static_cast<Product>(hash ^ word) * (seed ^ 0x9e3779b97f4a7c15);
    hash = static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }
  return hash;
}

}  // namespace nimbo::detail
