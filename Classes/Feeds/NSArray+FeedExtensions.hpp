// SPDX-License-Identifier: Apache-2.0
//
// Items of feeds, as `getItemsOfFeed` answers them, on one page. What is no dictionary is passed over. Any
// thread may call these.
//
//     const NSString page = stringByConvertingItemsToDisplayHTML(getItemsOfFeed(text));
//     writeToFile(page, path, true, NSUTF8StringEncoding);
//     index(stringByConvertingItemsToSearchableHTML(items));
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace FeedExtensions {

/// The items with all their fields, with a link to the style sheet that `linkableFeedStyleSheet` names. With
/// `isSafe` nothing of them runs in the page.
NSString stringByConvertingItemsToDisplayHTML(const NSArray &items, Flag isSafe = false);
/// Title, link and text of the items, without a style sheet.
NSString stringByConvertingItemsToSearchableHTML(const NSArray &items);

}  // namespace FeedExtensions
}  // namespace nimbo
