// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/SearchEngineMarkers.hpp"

#include <cstdint>

#include "Classes/Characters/FastSearches.hpp"

namespace nimbo {

namespace {

/// Comments of so many units or fewer are no markers.
constexpr std::size_t kLongestPlainComment = 18;

bool contains(std::u16string_view comment, std::string_view word) {
  return fastCaseInsensitiveUnicharsContainChars(comment.data(), static_cast<std::uint32_t>(comment.size()),
                                                 word.data(), static_cast<std::uint32_t>(word.size()));
}

}  // namespace

void SearchEngineMarkers::followComment(std::u16string_view comment) {
  if (comment.size() <= kLongestPlainComment) return;
  const bool isOff = contains(comment, "googleoff:");
  const bool isOn = contains(comment, "googleon:");
  if (!isOff && !isOn) return;
  unsigned named = 0;
  if (contains(comment, "index")) named |= kIndex;
  if (contains(comment, "snippet")) named |= kSnippet;
  if (contains(comment, "anchor")) named |= kAnchor;
  if (contains(comment, "all")) named |= kIndex | kSnippet | kAnchor;
  if (isOff) mask_ &= ~named;
  if (isOn) mask_ |= named;
}

}  // namespace nimbo
