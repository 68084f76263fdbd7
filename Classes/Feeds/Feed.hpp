// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Foundation/Attributes.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A file that belongs to an item, such as the sound of a podcast. Strings are nil where the feed has none.
struct FeedEnclosure {
  /// Where it is.
  NSString url;
  /// As the feed tells it, mostly bytes.
  NSString length;
  /// Its media type.
  NSString type;
};

/// What a feed tells of an item, or of itself. Strings are nil or empty where it tells nothing.
struct FeedItem {
  /// Markup, but where `isPlainTitle`.
  NSString title;
  /// Description or summary: markup, but where `isPlainDescription`.
  NSString description;
  /// The full text: markup, but where `isPlainContent`.
  NSString content;
  /// The name of the first author.
  NSString author;
  /// The date as the feed has it; `date` reads it.
  NSString dateString;
  /// When it was published, as the feed has it.
  NSString publishedString;
  /// When it was last changed, as the feed has it.
  NSString updatedString;
  /// The page.
  NSString link;
  /// What tells it from all others.
  NSString identifier;
  /// The URL of a picture.
  NSString image;
  /// The names of its categories, in their order.
  std::vector<NSString> tags;
  /// Its files, in their order.
  std::vector<FeedEnclosure> enclosures;
  /// Whether the title is no markup: "<" stands for itself.
  bool isPlainTitle = false;
  /// The same of the description.
  bool isPlainDescription = false;
  /// The same of the content.
  bool isPlainContent = false;
};

/// The family of formats that a feed is written in.
enum class FeedFormat : std::uint8_t {
  kRSS,   ///< RSS 0.9x and 2.0, and the older channel definitions.
  kRDF,   ///< RSS 0.90 and 1.0.
  kAtom,  ///< Atom 0.3 and 1.0.
  kJSON,  ///< JSON Feed.
};

/// A feed and its items.
struct Feed {
  /// How it is written.
  FeedFormat format = FeedFormat::kRSS;
  /// What it tells of itself.
  FeedItem header;
  /// Its own URL, as it tells it; nil when it does not.
  NSString feedURL;
  /// The language of its texts, as "en-us"; nil when it tells none.
  NSString language;
  /// The items, in their order.
  std::vector<FeedItem> items;
};

}  // namespace nimbo
