// SPDX-License-Identifier: Apache-2.0
//
// Feeds (RSS, RDF, Atom) as items and as pages; docs/feeds.md tells what is read. Text that is no feed is never
// an error. Any thread may call these.
//
//     if (!isFeed(text)) return;
//     for (const id &item : getItemsOfFeed(text, feedURL))
//     NSLog(item.dictionary().objectForKey(u"title"_ns).string()); const NSString page =
//     stringByConvertingFeed(text, feedURL, false);
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace FeedExtensions {

/// Whether the root of a feed ("rss", "feed" or "rdf:RDF") comes before the tags of a page.
bool isFeed(const NSString &string);
/// The same; `*isComplete` tells whether the root's end tag is there, too.
bool isFeedComplete(const NSString &string, bool *isComplete = nullptr);

/// A dictionary for each item that has an end tag or is followed by another one; empty when there is none.
///
/// | key | value |
/// |---|---|
/// | "title", "description", "content", "author" | strings, "" when there is none |
/// | "tags" | an array of strings, when there are any |
/// | "enclosures" | an array of dictionaries of the strings "url" and "length", when there are any |
/// | "calendarDate" | the date; the present one when the item has none, or none that can be read |
/// | "date" | the date as the feed has it, "" when there is none |
/// | "link" | the URL of the page, "" when there is none |
///
/// The first element for a value that is not empty counts. Links that begin with "/" are made absolute against
/// the URL, which may be nil. Links to the news service whose host the user default `NewsAggregatorHost` names
/// are those of the pages that they lead on to.
NSArray getItemsOfFeed(const NSString &string, const NSURL &feedURL = NSURL());

/// The feed as a page, with a link to the style sheet of the user default `linkableFeedStyleSheet` or with its
/// text. The string itself when it is no feed. Texts are written as the feed has them; with `isSafe` nothing
/// of it runs in the page.
NSString stringByConvertingFeed(const NSString &string, const NSURL &feedURL,
                                Flag toDisplayHTMLUsingLinkedStyleSheet, Flag isSafe = false);
/// The same without a URL.
NSString stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(const NSString &string, Flag isLinked,
                                                                  Flag isSafe = false);

/// A page of items with the text of the style sheet in place of the link to a file's, so that the page needs no
/// other file. The string itself when it has no such link or there is no style sheet.
NSString stringByReplacingLinkedStyleSheet(const NSString &string);

}  // namespace FeedExtensions
}  // namespace nimbo
