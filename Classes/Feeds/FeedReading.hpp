// SPDX-License-Identifier: Apache-2.0
//
// Whole feeds by one call, and what else they can be written as; docs/feeds.md tells what is read. Any thread
// may call these.
//
//     const std::optional<Feed> feed = readFeed(text, NSURL::URLWithString(u"https://example.org/feed"_ns));
//     if (feed) for (const FeedItem &item : feed->items) NSLog(u"%@: %@", item.title, item.link);
//     const NSString page = stringByConvertingFeedToHTML(*feed);
#pragma once

#include <optional>

#include "Classes/Feeds/Feed.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Reads a feed of any format: all that `getItemsOfFeed` reads, and more. Namespaces count instead of prefixes,
/// elements of other names fill in for what an item lacks, items count that never end, and links are made
/// absolute against the bases that the feed tells, or else the URL, which may be nil. Nothing when the text is
/// no feed.
std::optional<Feed> readFeed(const NSString &text, const NSURL &url = NSURL());

/// The feed that an object of JSON is, as JSON Feed 1.0 and 1.1 have it; nothing when it is none.
std::optional<Feed> feedOfJSONFeed(const NSDictionary &object);

/// The item as `getItemsOfFeed` has it, and "id", "published", "updated" and "image", strings, where there are
/// any.
NSDictionary dictionaryOfFeedItem(const FeedItem &item);

/// How a page of a feed is made.
struct FeedPageOptions {
  /// Whether texts are written without what might run something (`safeMarkup`), and else as the feed has them.
  bool isSafe = true;
  /// Whether the style sheet is linked to; else its text is a part of the page.
  bool isLinked = false;
  /// What links in texts are made absolute against, when `isSafe`; nil leaves them as they are.
  NSURL baseURL = {};
};

/// The feed as a page of the same form as that of `stringByConvertingFeed`.
NSString stringByConvertingFeedToHTML(const Feed &feed, const FeedPageOptions &options = {});

/// The feed as an object of JSON Feed 1.1. Titles and summaries are plain text there. An item without an
/// identifier has its link, its title or its place for one.
NSDictionary JSONFeedOfFeed(const Feed &feed);

/// The feed as OPML 2.0, a list of subscriptions with this one in it. `url` is where the feed is when it does
/// not tell; it may be nil.
NSString OPMLOfFeed(const Feed &feed, const NSURL &url);

}  // namespace nimbo
