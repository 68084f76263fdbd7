// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Follows the comments by which a page hides parts of itself from search engines: "googleoff: index" ...
/// "googleon: index"; likewise for snippets and for the texts of links, and "all" for all three. It is a plain
/// value.
///
///     SearchEngineMarkers markers;
///     markers.followComment(u"<!--googleoff: anchor-->");
///     markers.areAnchorsIndexed();  // false
class SearchEngineMarkers {
 public:
  /// Whether the text belongs into an index.
  bool areIndexed() const { return (mask_ & kIndex) != 0; }
  /// Whether the texts of links belong into an index of what the links lead to.
  bool areAnchorsIndexed() const { return (mask_ & kAnchor) != 0; }
  /// Takes a comment, with its delimiters; most are no markers.
  void followComment(std::u16string_view comment);

 private:
  static constexpr unsigned kIndex = 1, kSnippet = 2, kAnchor = 4;

  unsigned mask_ = kIndex | kSnippet | kAnchor;
};

}  // namespace nimbo
