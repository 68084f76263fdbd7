// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/NSArray+FeedExtensions.hpp"

#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Feeds/AppendItem2Feed.hpp"
#include "Classes/Feeds/FeedDictionaries.hpp"
#include "Classes/Feeds/FeedPageFrame.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
inline namespace FeedExtensions {

namespace {

/// A page of the items, each of which `append(page, item)` writes.
template <class Append>
NSString pageOfItems(const NSArray &items, bool isDisplayed, Append append) {
  return answerOr(NSString(), [&] {
    NSMutableString page;
    page.append(detail::kPageStart);
    if (isDisplayed) detail::appendStyleSheet(page, true);
    page.append(detail::kBodyStart);
    for (const id &item : items)
      if (const NSDictionary dictionary = item.dictionary()) append(page, detail::itemOfDictionary(dictionary));
    page.append(detail::kPageEnd);
    return std::move(page).string();
  });
}

}  // namespace

NSString stringByConvertingItemsToDisplayHTML(const NSArray &items, Flag isSafe) {
  return pageOfItems(items, true, [&](NSMutableString &page, const FeedItem &item) {
    detail::appendItem(page, isSafe ? detail::safeItemByName(item) : item);
  });
}

NSString stringByConvertingItemsToSearchableHTML(const NSArray &items) {
  return pageOfItems(items, false, [](NSMutableString &page, const FeedItem &item) {
    AppendItem2Feed(&page, item.title, item.content, item.description, item.link, {}, {}, {}, {});
  });
}

}  // namespace FeedExtensions
}  // namespace nimbo
