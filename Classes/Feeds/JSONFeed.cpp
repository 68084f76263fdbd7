// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "Classes/Dates/NSString+Date.hpp"
#include "Classes/Feeds/FeedReading.hpp"
#include "Classes/Feeds/FeedTexts.hpp"
#include "platform/Foundation/NSNumber.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

constexpr std::u16string_view kVersion = u"https://jsonfeed.org/version/1";

/// The first string that is not empty under one of the keys; numbers count as their digits.
NSString firstText(const NSDictionary &object, std::initializer_list<NSString> keys) {
  for (const NSString &key : keys)
    if (NSString text = stringValue(object.objectForKey(key)); text.length() > 0) return text;
  return {};
}

/// The name of the first author: in a list since version 1.1, alone before.
NSString authorOf(const NSDictionary &object) {
  const NSArray authors = object.objectForKey(u"authors"_ns).array();
  const id &first = authors.count() > 0 ? authors[0] : object.objectForKey(u"author"_ns);
  return firstText(first.dictionary(), {u"name"_ns, u"url"_ns});
}

FeedItem itemOf(const NSDictionary &object) {
  FeedItem item;
  item.title = firstText(object, {u"title"_ns});
  item.description = firstText(object, {u"summary"_ns});
  item.content = firstText(object, {u"content_html"_ns});
  item.isPlainTitle = item.isPlainDescription = true;
  item.isPlainContent = !item.content;
  if (item.isPlainContent) item.content = firstText(object, {u"content_text"_ns});
  item.author = authorOf(object);
  item.publishedString = firstText(object, {u"date_published"_ns});
  item.updatedString = firstText(object, {u"date_modified"_ns});
  item.dateString = item.publishedString ? item.publishedString : item.updatedString;
  item.link = firstText(object, {u"url"_ns, u"external_url"_ns});
  item.identifier = firstText(object, {u"id"_ns});
  item.image = firstText(object, {u"image"_ns, u"banner_image"_ns});
  for (const id &tag : object.objectForKey(u"tags"_ns).array())
    if (const NSString name = tag.string(); name.length() > 0) item.tags.push_back(name);
  for (const id &one : object.objectForKey(u"attachments"_ns).array()) {
    const NSDictionary attachment = one.dictionary();
    if (const NSString url = firstText(attachment, {u"url"_ns}))
      item.enclosures.push_back(
          {url, firstText(attachment, {u"size_in_bytes"_ns}), firstText(attachment, {u"mime_type"_ns})});
  }
  return item;
}

/// Sets fields that are not empty.
class Fields {
 public:
  void set(const NSString &key, const NSString &value) {
    if (value.length() > 0) object_.setObject(value, key);
  }
  void setDate(const NSString &key, const NSString &text) {
    const auto moment = text.length() > 0 ? date(text) : std::nullopt;
    if (const auto written = moment ? moment->ISO8601String() : std::nullopt)
      object_.setObject(NSString::stringWithUTF8String(*written), key);
  }
  void setList(const NSString &key, std::vector<id> values) {
    if (!values.empty()) object_.setObject(NSArray(std::move(values)), key);
  }
  void setAuthor(const NSString &name) {
    if (name.length() > 0) setList(u"authors"_ns, {NSDictionary{{u"name"_ns, name}}});
  }
  NSDictionary object() && { return std::move(object_); }

 private:
  NSDictionary object_ = NSDictionary::dictionary();
};

NSDictionary objectOf(const FeedEnclosure &enclosure) {
  NSDictionary object = {
      {u"url"_ns, enclosure.url},
      {u"mime_type"_ns, enclosure.type.length() > 0 ? enclosure.type : u"application/octet-stream"_ns}};
  const bool isNumber = std::ranges::all_of(enclosure.length.view(), isASCIIDigit<unichar>);
  if (const auto bytes = longLongValue(enclosure.length).value_or(0); isNumber && bytes > 0)
    object.setObject(bytes, u"size_in_bytes"_ns);
  return object;
}

/// The item at a place among the others, which identifies it when nothing else does.
NSDictionary objectOf(const FeedItem &item, std::size_t index) {
  Fields fields;
  const NSString title = detail::plainText(item.title, item.isPlainTitle);
  const NSString description = detail::plainText(item.description, item.isPlainDescription);
  const bool hasContent = item.content.length() > 0;
  const bool isPlain = hasContent ? item.isPlainContent : item.isPlainDescription;
  NSString identifier = stringWithFormat(u"%d", index);
  for (const NSString &one : {title, item.link, item.identifier})
    if (one.length() > 0) identifier = one;
  fields.set(u"id"_ns, identifier);
  fields.set(u"url"_ns, item.link);
  fields.set(u"title"_ns, title);
  fields.set(isPlain ? u"content_text"_ns : u"content_html"_ns, hasContent ? item.content : item.description);
  if (hasContent) fields.set(u"summary"_ns, description);
  fields.set(u"image"_ns, item.image);
  fields.setDate(u"date_published"_ns,
                 item.publishedString.length() > 0 ? item.publishedString : item.dateString);
  fields.setDate(u"date_modified"_ns, item.updatedString);
  fields.setAuthor(item.author);
  fields.setList(u"tags"_ns, {item.tags.begin(), item.tags.end()});
  std::vector<id> attachments;
  for (const FeedEnclosure &enclosure : item.enclosures) attachments.push_back(objectOf(enclosure));
  fields.setList(u"attachments"_ns, std::move(attachments));
  NSDictionary object = std::move(fields).object();
  // One of the two must be there.
  if (!hasContent && item.description.length() == 0) object.setObject(NSString::string(), u"content_text"_ns);
  return object;
}

}  // namespace

std::optional<Feed> feedOfJSONFeed(const NSDictionary &object) {
  if (!firstText(object, {u"version"_ns}).view().starts_with(kVersion)) return std::nullopt;
  Feed feed;
  feed.format = FeedFormat::kJSON;
  feed.header.title = firstText(object, {u"title"_ns});
  feed.header.isPlainTitle = feed.header.isPlainDescription = true;
  feed.header.description = firstText(object, {u"description"_ns});
  feed.header.link = firstText(object, {u"home_page_url"_ns});
  feed.header.image = firstText(object, {u"icon"_ns, u"favicon"_ns});
  feed.header.author = authorOf(object);
  feed.feedURL = firstText(object, {u"feed_url"_ns});
  feed.language = firstText(object, {u"language"_ns});
  for (const id &item : object.objectForKey(u"items"_ns).array())
    if (const NSDictionary fields = item.dictionary()) feed.items.push_back(itemOf(fields));
  return feed;
}

NSDictionary JSONFeedOfFeed(const Feed &feed) {
  Fields fields;
  fields.set(u"version"_ns, NSString::stringWithCharacters(std::u16string(kVersion) + u".1"));
  fields.set(u"title"_ns, detail::plainText(feed.header.title, feed.header.isPlainTitle));
  fields.set(u"home_page_url"_ns, feed.header.link);
  fields.set(u"feed_url"_ns, feed.feedURL);
  fields.set(u"description"_ns, detail::plainText(feed.header.description, feed.header.isPlainDescription));
  fields.set(u"icon"_ns, feed.header.image);
  fields.setAuthor(feed.header.author);
  fields.set(u"language"_ns, feed.language);
  NSDictionary object = std::move(fields).object();
  if (!object.objectForKey(u"title"_ns)) object.setObject(NSString::string(), u"title"_ns);
  std::vector<id> items;
  items.reserve(feed.items.size());
  for (const FeedItem &item : feed.items) items.push_back(objectOf(item, items.size()));
  object.setObject(NSArray(std::move(items)), u"items"_ns);
  return object;
}

}  // namespace nimbo
