// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedItemFields.hpp"

#include <string_view>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

/// Whether an identifier is that of a page.
bool isPage(std::u16string_view identifier) {
  return startsWithASCIINoCase(identifier, "http://") || startsWithASCIINoCase(identifier, "https://");
}

}  // namespace

void FeedItemFields::take(FeedElement element, const NSString &text, bool isPlain) {
  using enum FeedElement;
  const auto setMarkup = [&](NSString &value, bool &isPlainValue) {
    if (value.length() > 0) return;
    value = text;
    isPlainValue = isPlain;
  };
  switch (element) {
    case kTitle:
      return setMarkup(item.title, item.isPlainTitle);
    case kDescription:
    case kSubtitle:
      return setMarkup(item.description, item.isPlainDescription);
    case kContent:
      return setMarkup(item.content, item.isPlainContent);
    case kLink:
      return setIfEmpty(item.link, text);
    case kCreator:
    case kName:
      return setIfEmpty(item.author, text);
    case kPublished:
      setIfEmpty(item.dateString, text);
      return setIfEmpty(item.publishedString, text);
    case kUpdated:
      setIfEmpty(item.dateString, text);
      return setIfEmpty(item.updatedString, text);
    case kCategory:
    case kSubject:
      return item.tags.push_back(text);
    case kPermanentLink:
      if (isPage(text.view())) setIfEmpty(permanentLink, text);
      return setIfEmpty(item.identifier, text);
    case kIdentifier:
      return setIfEmpty(item.identifier, text);
    case kURL:
    case kPicture:
      return setIfEmpty(item.image, text);
    default:
      return takeOther(element, text);
  }
}

void FeedItemFields::takeOther(FeedElement element, const NSString &text) {
  using enum FeedElement;
  switch (element) {
    case kOtherTitle:
      return setIfEmpty(others.title, text);
    case kOtherDescription:
      return setIfEmpty(others.description, text);
    case kOtherContent:
      return setIfEmpty(others.content, text);
    case kOtherAuthor:
      return setIfEmpty(others.author, text);
    case kOtherPublished:
      return setIfEmpty(others.publishedString, text);
    case kOtherUpdated:
      return setIfEmpty(others.updatedString, text);
    default:
      return;
  }
}

void FeedItemFields::useOthers() {
  setIfEmpty(item.title, others.title);
  setIfEmpty(item.description, others.description);
  setIfEmpty(item.content, others.content);
  setIfEmpty(item.author, others.author);
  setIfEmpty(item.publishedString, others.publishedString);
  setIfEmpty(item.updatedString, others.updatedString);
  setIfEmpty(item.dateString, item.publishedString);
  setIfEmpty(item.dateString, item.updatedString);
}

}  // namespace nimbo::detail
