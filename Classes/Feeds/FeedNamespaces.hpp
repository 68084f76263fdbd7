// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Classes/Feeds/FeedElements.hpp"

namespace nimbo::detail {

/// The prefixes that a feed declares, and the elements that its names stand for. It borrows the markup.
class FeedNamespaces {
 public:
  /// Learns the prefixes that a tag declares. They last until a later tag declares them again.
  void readDeclarations(std::u16string_view tag);

  /// The element of a name, whose prefix is the one under which the feed knows the namespace.
  FeedElement elementNamed(std::u16string_view name) const;

 private:
  /// Most feeds declare a handful; more than these are not looked at.
  static constexpr std::size_t kMostPrefixes = 64;

  /// The declared one and the common one.
  using Prefixes = std::pair<std::u16string_view, std::u16string_view>;

  void declare(std::u16string_view prefix, std::u16string_view common);

  std::vector<Prefixes> commonPrefixes_;
};

}  // namespace nimbo::detail
