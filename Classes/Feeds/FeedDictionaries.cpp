// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedDictionaries.hpp"

#include <utility>

#include "Classes/Dates/NSString+Date.hpp"
#include "Classes/Feeds/FeedTexts.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo::detail {

NSDictionary dictionaryOfItem(const FeedItem &item) {
  NSArray tags, enclosures;
  if (!item.tags.empty()) tags = NSArray(std::vector<id>(item.tags.begin(), item.tags.end()));
  for (const FeedEnclosure &one : item.enclosures)
    enclosures.addObject(NSDictionary{{u"url"_ns, orEmpty(one.url)}, {u"length"_ns, orEmpty(one.length)}});
  const auto moment = item.dateString.length() > 0 ? date(item.dateString) : std::nullopt;
  return {{u"title"_ns, orEmpty(item.title)},
          {u"description"_ns, orEmpty(item.description)},
          {u"content"_ns, orEmpty(item.content)},
          {u"author"_ns, orEmpty(item.author)},
          {u"tags"_ns, tags},
          {u"enclosures"_ns, enclosures},
          {u"calendarDate"_ns, moment ? *moment : NSDate::date()},
          {u"date"_ns, orEmpty(item.dateString)},
          {u"link"_ns, orEmpty(item.link)}};
}

FeedItem itemOfDictionary(const NSDictionary &dictionary) {
  const auto text = [&](const NSString &key) { return dictionary.objectForKey(key).string(); };
  FeedItem item;
  item.title = text(u"title"_ns);
  item.description = text(u"description"_ns);
  item.content = text(u"content"_ns);
  item.author = text(u"author"_ns);
  item.dateString = text(u"date"_ns);
  item.link = text(u"link"_ns);
  for (const id &tag : dictionary.objectForKey(u"tags"_ns).array())
    if (const NSString name = tag.string()) item.tags.push_back(name);
  for (const id &one : dictionary.objectForKey(u"enclosures"_ns).array())
    if (const NSDictionary enclosure = one.dictionary())
      item.enclosures.push_back({enclosure.objectForKey(u"url"_ns).string(),
                                 enclosure.objectForKey(u"length"_ns).string(), NSString()});
  return item;
}

NewsAggregator::NewsAggregator() {
  const NSString host = NSUserDefaults::standardUserDefaults().stringForKey(u"NewsAggregatorHost"_ns);
  if (host.length() > 0) prefix_ = stringWithFormat(u"http://%@/news/url?", host);
}

NSString NewsAggregator::withoutRedirect(const NSString &link) const {
  if (!hasPrefixNoCase(link, prefix_)) return link;
  const std::u16string_view units = link.view();
  const std::size_t parameter = units.find(u"&url=");
  if (parameter == units.npos) return link;
  const std::size_t start = units.find(u"http", parameter);
  if (start == units.npos) return link;
  const std::u16string_view target = units.substr(start);
  return NSString::stringWithCharacters(target.substr(0, target.find(u"&cid=")));
}

}  // namespace nimbo::detail
