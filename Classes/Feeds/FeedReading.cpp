// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedReading.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Feeds/Feed2HTMLHandler.hpp"
#include "Classes/Feeds/FeedDictionaries.hpp"
#include "Classes/Feeds/FeedPageFrame.hpp"
#include "Classes/Feeds/FeedTexts.hpp"
#include "Classes/Feeds/SafeMarkup.hpp"
#include "platform/Foundation/NSJSONSerialization.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

class ItemCollector : public detail::FeedSink {
 public:
  void takeItem(FeedItem &item) override {
    item.link = aggregator_.withoutRedirect(item.link);
    items.push_back(std::move(item));
  }

  std::vector<FeedItem> items;

 private:
  const detail::NewsAggregator aggregator_;
};

/// Whether a text is JSON rather than markup.
bool beginsWithBrace(std::u16string_view text) {
  const CharacterSetRep &white = *whiteCharacterSetRep();
  const auto first = std::ranges::find_if_not(text, [&](unichar c) { return white.contains(c); });
  return first != text.end() && *first == u'{';
}

/// The title as the page has it: markup.
NSString markupOfTitle(const FeedItem &header) {
  return header.isPlainTitle ? stringByConvertingCharactersToStandardEntities(header.title) : header.title;
}

}  // namespace

std::optional<Feed> readFeed(const NSString &text, const NSURL &url) {
  if (beginsWithBrace(text.view()))
    return feedOfJSONFeed(NSJSONSerialization::JSONObjectWithString(text).dictionary());
  ItemCollector collector;
  detail::FeedContext context(detail::FeedRules::kByNamespace, url, collector);
  GetTagsOfXML(text, detail::Feed2HTMLHandler, &context);
  if (!context.isFeed()) return std::nullopt;
  Feed feed = std::move(context.feed());
  feed.items = std::move(collector.items);
  return feed;
}

NSDictionary dictionaryOfFeedItem(const FeedItem &item) {
  NSDictionary dictionary = detail::dictionaryOfItem(item);
  const auto setIfAny = [&](const NSString &key, const NSString &value) {
    if (value.length() > 0) dictionary.setObject(value, key);
  };
  setIfAny(u"id"_ns, item.identifier);
  setIfAny(u"published"_ns, item.publishedString);
  setIfAny(u"updated"_ns, item.updatedString);
  setIfAny(u"image"_ns, item.image);
  return dictionary;
}

NSString stringByConvertingFeedToHTML(const Feed &feed, const FeedPageOptions &options) {
  NSMutableString page;
  page.append(detail::kPageStart);
  detail::appendStyleSheet(page, options.isLinked);
  const NSString title = markupOfTitle(feed.header);
  detail::appendPageTitle(page, options.isSafe ? safeText(title) : title);
  for (const FeedItem &item : feed.items)
    detail::appendItem(page, options.isSafe ? detail::safeItem(item, options.baseURL) : item);
  page.append(detail::kPageEnd);
  return std::move(page).string();
}

NSString OPMLOfFeed(const Feed &feed, const NSURL &url) {
  NSMutableString text;
  const auto appendAttribute = [&](std::u16string_view name, const NSString &value) {
    if (value.length() == 0) return;
    text.append(u" ");
    text.append(name);
    text.append(u"=\"");
    text.appendString(stringByConvertingCharactersToStandardEntities(value));
    text.append(u"\"");
  };
  const NSString title = detail::plainText(feed.header.title, feed.header.isPlainTitle);
  const NSString shownTitle = title.length() > 0 ? title : u"Feed"_ns;
  text.append(u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<opml version=\"2.0\">\n<head><title>");
  text.appendString(stringByConvertingCharactersToStandardEntities(shownTitle));
  text.append(u"</title></head>\n<body>\n<outline type=\"rss\"");
  appendAttribute(u"text", shownTitle);
  appendAttribute(u"title", title);
  appendAttribute(u"xmlUrl", url ? url.absoluteString() : feed.feedURL);
  appendAttribute(u"htmlUrl", feed.header.link);
  appendAttribute(u"description", detail::plainText(feed.header.description, feed.header.isPlainDescription));
  appendAttribute(u"language", feed.language);
  text.append(u"/>\n</body>\n</opml>");
  return std::move(text).string();
}

}  // namespace nimbo
