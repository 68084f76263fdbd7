// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/NSDictionary+FeedExtensions.hpp"

#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/SetFilteredComparisons.hpp"
#include "Classes/Feeds/AppendItem2Feed.hpp"
#include "Classes/Feeds/FeedDictionaries.hpp"
#include "Classes/Feeds/FeedPageFrame.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
inline namespace FeedExtensions {

namespace {

NSString stringByConvertingItemToHTML(const FeedItem &item, bool isDisplayed, Flag isLinked) {
  return answerOr(NSString(), [&] {
    NSMutableString page;
    page.append(detail::kPageStart);
    if (isDisplayed) detail::appendStyleSheet(page, isLinked);
    if (item.author.length() > 0) appendFormat(page, u"<meta name=\"author\" content=\"%@\"/>", item.author);
    page.append(detail::kBodyStart);
    if (isDisplayed)
      detail::appendItem(page, item);
    else
      AppendItem2Feed(&page, item.title, item.content, item.description, item.link, {}, {}, {}, {});
    page.append(detail::kPageEnd);
    return std::move(page).string();
  });
}

}  // namespace

NSString stringByConvertingItemToDisplayHTML(const NSDictionary &item, Flag isSafe) {
  return stringByConvertingItemToDisplayHTMLUsingLinkedStyleSheet(item, false, isSafe);
}

NSString stringByConvertingItemToDisplayHTMLUsingLinkedStyleSheet(const NSDictionary &item, Flag isLinked,
                                                                  Flag isSafe) {
  const FeedItem fields = detail::itemOfDictionary(item);
  return stringByConvertingItemToHTML(isSafe ? detail::safeItemByName(fields) : fields, true, isLinked);
}

NSString stringByConvertingItemToSearchableHTML(const NSDictionary &item) {
  return stringByConvertingItemToHTML(detail::itemOfDictionary(item), false, false);
}

bool isEmptyFeedItem(const NSDictionary &item) {
  const NSString title = item.objectForKey(u"title"_ns).string(),
                 content = item.objectForKey(u"content"_ns).string();
  const NSString body = content.length() > 0 ? content : item.objectForKey(u"description"_ns).string();
  return !body || isWhiteString(body) || isEqualToStringNoCase(title, body) ||
         equalStringsNoCaseUsingCharacterSetRep(title, body, alphaCharacterSetRep()) ||
         title == stripTag(body, "IFRAME");
}

}  // namespace FeedExtensions
}  // namespace nimbo
