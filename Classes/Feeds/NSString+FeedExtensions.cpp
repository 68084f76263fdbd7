// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/NSString+FeedExtensions.hpp"

#include <optional>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Feeds/Feed2HTMLHandler.hpp"
#include "Classes/Feeds/FeedDictionaries.hpp"
#include "Classes/Feeds/FeedPageFrame.hpp"
#include "Classes/Feeds/RetrieveFeedHandlers.hpp"
#include "Classes/Feeds/SafeMarkup.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
inline namespace FeedExtensions {

namespace {

using detail::FeedContext;
using detail::FeedRules;

/// Gathers items as dictionaries.
class ItemGatherer : public detail::FeedSink {
 public:
  void takeItem(FeedItem &item) override {
    item.link = aggregator_.withoutRedirect(item.link);
    items_.push_back(detail::dictionaryOfItem(item));
  }
  NSArray items() && { return NSArray(std::move(items_)); }

 private:
  const detail::NewsAggregator aggregator_;
  std::vector<id> items_;
};

/// Writes items to a page.
class PageWriter : public detail::FeedSink {
 public:
  PageWriter(NSMutableString &page, bool isSafe) : page_(page), isSafe_(isSafe) {}

  void takeTitle(const NSString &title) override {
    if (!bodyStarted_) detail::appendPageTitle(page_, isSafe_ ? safeText(title) : title);
    bodyStarted_ = true;
  }
  void takeEndTagOfItem() override {
    if (!bodyStarted_) page_.append(detail::kBodyStart);
    bodyStarted_ = true;
  }
  void takeItem(FeedItem &item) override {
    takeEndTagOfItem();
    detail::appendItem(page_, isSafe_ ? detail::safeItemByName(item) : item);
  }
  bool bodyStarted() const { return bodyStarted_; }

 private:
  NSMutableString &page_;
  const bool isSafe_;
  bool bodyStarted_ = false;
};

/// Whether the tag links to a style sheet in a file, as the pages of items do.
bool isLinkToStyleSheet(const TagShape &tag) {
  return tag.tagName() == TagName::kLink && !tag.isEndTag() &&
         equalsASCIINoCase(tag.attribute("REL"), "stylesheet") &&
         startsWithASCIINoCase(tag.attribute("HREF"), "file:");
}

}  // namespace

bool isFeed(const NSString &string) {
  bool isFeed = false;
  return answerOr(false, [&] {
    GetTagsOfXML(string, RetrieveFeedHandler, &isFeed);
    return isFeed;
  });
}

bool isFeedComplete(const NSString &string, bool *isComplete) {
  CompleteFeedContext context;
  answerOr(false, [&] { return GetTagsOfXML(string, RetrieveCompleteFeedHandler, &context); });
  if (isComplete) *isComplete = context.isComplete;
  return context.isFeed;
}

NSArray getItemsOfFeed(const NSString &string, const NSURL &feedURL) {
  return answerOr(NSArray::array(), [&] {
    ItemGatherer gatherer;
    FeedContext context(FeedRules::kByName, feedURL, gatherer);
    GetTagsOfXML(string, detail::Feed2HTMLHandler, &context);
    return std::move(gatherer).items();
  });
}

NSString stringByConvertingFeed(const NSString &string, const NSURL &feedURL,
                                Flag toDisplayHTMLUsingLinkedStyleSheet, Flag isSafe) {
  return answerOr(string, [&] {
    NSMutableString page;
    page.reserve(string.length());
    page.append(detail::kPageStart);
    detail::appendStyleSheet(page, toDisplayHTMLUsingLinkedStyleSheet);
    PageWriter writer(page, isSafe);
    FeedContext context(FeedRules::kByName, feedURL, writer);
    GetTagsOfXML(string, detail::Feed2HTMLHandler, &context);
    if (!context.isFeed()) return string;
    page.append(writer.bodyStarted() ? detail::kPageEnd : detail::kHeadEnd);
    return std::move(page).string();
  });
}

NSString stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(const NSString &string, Flag isLinked,
                                                                  Flag isSafe) {
  return stringByConvertingFeed(string, NSURL(), isLinked, isSafe);
}

NSString stringByReplacingLinkedStyleSheet(const NSString &string) {
  return answerOr(string, [&] {
    std::optional<NSRange> link;
    scanTags(string, [&](const TagShape &tag) {
      if (isLinkToStyleSheet(tag)) link = tag.tagRange();
      return link || tag.tagName() == TagName::kBody;
    });
    const NSString element = link ? detail::styleElement() : NSString();
    if (!element) return string;
    // The line feed behind the element is that of the link.
    NSMutableString page(string);
    page.replaceCharactersInRange(*link, element.view().substr(0, element.length() - 1));
    return std::move(page).string();
  });
}

}  // namespace FeedExtensions
}  // namespace nimbo
