// SPDX-License-Identifier: Apache-2.0
//
// Items of feeds, as `getItemsOfFeed` answers them, one by one. Values that are missing or no strings count as
// empty. Any thread may call these.
//
//     const NSDictionary item = getItemsOfFeed(text)[0].dictionary();
//     if (!isEmptyFeedItem(item)) show(stringByConvertingItemToDisplayHTML(item));
//     index(stringByConvertingItemToSearchableHTML(item));
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDictionary.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace FeedExtensions {

/// The item as a page, with the text of the style sheet that `linkableFeedStyleSheet` names. With `isSafe`
/// nothing of it runs in the page.
NSString stringByConvertingItemToDisplayHTML(const NSDictionary &item, Flag isSafe = false);
/// The same with a link to the style sheet, or with its text.
NSString stringByConvertingItemToDisplayHTMLUsingLinkedStyleSheet(const NSDictionary &item, Flag isLinked,
                                                                  Flag isSafe = false);
/// Title, link and text as a page without a style sheet.
NSString stringByConvertingItemToSearchableHTML(const NSDictionary &item);

/// Whether the item says nothing beyond its title: its text (the content, or else the description) is white or
/// equals the title, whatever the case, all that are no letters, or frames in it.
bool isEmptyFeedItem(const NSDictionary &item);

}  // namespace FeedExtensions
}  // namespace nimbo
