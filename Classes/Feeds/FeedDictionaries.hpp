// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Feeds/Feed.hpp"
#include "platform/Foundation/NSDictionary.hpp"

namespace nimbo::detail {

/// An item as `getItemsOfFeed` answers it.
NSDictionary dictionaryOfItem(const FeedItem &item);

/// The fields of such a dictionary; those that are missing or no strings are nil.
FeedItem itemOfDictionary(const NSDictionary &dictionary);

/// The news service whose links lead on to pages, by the user default `NewsAggregatorHost`.
class NewsAggregator {
 public:
  NewsAggregator();

  /// Where a link of the service leads to; any other link itself.
  NSString withoutRedirect(const NSString &link) const;

 private:
  /// Nil when there is no such service.
  NSString prefix_;
};

}  // namespace nimbo::detail
