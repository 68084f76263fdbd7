// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo::detail {

/// Follows the comments by which a page hides parts of itself from search engines: "googleoff: index" ...
/// "googleon: index"; likewise for snippets and for the texts of links, and "all" for all three.
class SearchEngineMarkers {
 public:
  /// Whether the text belongs into an index.
  bool areIndexed() const { return (mask_ & kIndex) != 0; }
  void followComment(std::u16string_view comment);

 private:
  static constexpr unsigned kIndex = 1, kSnippet = 2, kAnchor = 4;

  unsigned mask_ = kIndex | kSnippet | kAnchor;
};

}  // namespace nimbo::detail
