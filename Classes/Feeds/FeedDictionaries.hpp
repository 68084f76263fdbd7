// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Feeds/Feed.hpp"
#include "platform/Foundation/NSDictionary.hpp"

namespace nimbo::detail {

/// An item as `getItemsOfFeed` answers it.
NSDictionary dictionaryOfItem(const FeedItem &item);

/// The fields of such a dictionary; those that are missing or no strings are nil.
FeedItem itemOfDictionary(const NSDictionary &dictionary);

/// A link to the page that the news service's link in it leads to; any other link is answered itself.
NSString withoutRedirect(const NSString &link);

}  // namespace nimbo::detail
