// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Classes/Feeds/FeedElements.hpp"
#include "Classes/Markup/TagShape.hpp"

namespace nimbo::detail {

/// Which elements of a feed have end tags, and have them before an item ends or begins. It borrows the markup.
class FeedEndTags {
 public:
  FeedEndTags() { openOnes_.fill(kNone); }

  /// Takes the next tag of the feed.
  void take(const TagShape &tag, FeedElement element);

  /// Whether the element whose start tag ends at a place has an end tag.
  bool haveThatOf(const unichar *text) const;

 private:
  static constexpr std::size_t kNone = SIZE_MAX;

  struct Start {
    const unichar *text;
    /// The one of the same element that is open around it.
    std::size_t outer;
    bool hasEnd = false;
  };

  /// In their order.
  std::vector<Start> starts_;
  /// The innermost open one of each element.
  std::array<std::size_t, kFeedElements> openOnes_;
};

}  // namespace nimbo::detail
