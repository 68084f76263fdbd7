// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// What an element of a feed is for. Those from `kFirstExtension` on are read only by namespaces.
enum class FeedElement : std::uint8_t {
  kOther,
  /// "html", "head" and "body" in front of the root: no feed.
  kPage,
  kRSS,
  kAtom,
  kRDF,
  kItem,
  kTitle,
  kLink,
  kDescription,
  kContent,
  kAuthor,
  kCreator,
  kName,
  kPublished,
  kUpdated,
  kCategory,
  kEnclosure,
  /// Elements with titles, links and names that are not the item's or the feed's own.
  kImage,
  kForeign,

  kFirstExtension,
  kChannel = kFirstExtension,
  kIdentifier,
  kPermanentLink,
  kSubtitle,
  kLanguage,
  kURL,
  kPicture,
  kThumbnail,
  kSubject,
  kOtherTitle,
  kOtherDescription,
  kOtherContent,
  kOtherAuthor,
  kOtherPublished,
  kOtherUpdated,
};

inline constexpr std::size_t kFeedElements = static_cast<std::size_t>(FeedElement::kOtherUpdated) + 1;

/// The element of a tag's name in any case; a prefix is the one under which the element is commonly known.
FeedElement feedElementNamed(std::u16string_view name);

/// Whether the text of the element is a title, of whatever kind.
bool isTitle(FeedElement element);

/// Whether the text of the element is markup, with others' elements in it.
bool holdsMarkup(FeedElement element);

/// Whether an element can be where a field ends that has no end tag.
bool endsField(FeedElement field, FeedElement element);

}  // namespace nimbo::detail
