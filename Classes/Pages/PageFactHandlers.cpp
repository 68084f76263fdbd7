// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/PageFactHandlers.hpp"

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/Pages/PageFactTags.hpp"
#include "Classes/Pages/TagTests.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Content.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Removing.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

using detail::endsElement;
using detail::equalsNoCase;
using detail::readMetaContent;

constexpr std::string_view kIconRelation = "shortcut icon";

bool retrieveTitle(const TagShape &tag, NSMutableString &title) {
  const TagName name = tag.tagName();
  if (name != TagName::kTitle || !endsElement(tag)) return name == TagName::kBody;
  title.setLength(0);
  title.append(tag.text());
  return true;
}

bool retrieveBaseURL(const TagShape &tag, NSURL &base) {
  const TagName name = tag.tagName();
  if (name != TagName::kBase) return name == TagName::kBody;
  const std::u16string_view link = detail::linkOfBaseTag(tag);
  if (link.empty()) return false;
  base = baseURL(NSString::stringWithCharacters(link));
  return true;
}

bool retrieveCanonicalURL(const TagShape &tag, NSString &url) {
  const TagName name = tag.tagName();
  if (name != TagName::kLink) return name == TagName::kBody;
  url = detail::canonicalURLOfLinkTag(tag);
  return static_cast<bool>(url);
}

bool retrieveDate(const TagShape &tag, NSString &date) {
  const TagName name = tag.tagName();
  if (name != TagName::kMeta) return name == TagName::kBody;
  if (!detail::isDateMeta(tag.attribute("NAME"), tag.attribute("HTTP-EQUIV"))) return false;
  date = detail::stringUnlessEmpty(readMetaContent(tag));
  return static_cast<bool>(date);
}

bool retrieveFavIcon(const TagShape &tag, NSString &icon) {
  if (tag.tagName() != TagName::kLink) return false;
  icon = detail::favIconOfLinkTag(tag);
  return static_cast<bool>(icon);
}

bool retrieveMetaAttribute(const TagShape &tag, MetaAttributeContext &context) {
  const TagName name = tag.tagName();
  if (name != TagName::kMeta) return name == TagName::kBody;
  const std::u16string_view value = tag.attribute(context.attributeName);
  if (value.empty() ||
      (!equalsNoCase(value, context.firstValue.view()) && !equalsNoCase(value, context.secondValue.view()))) {
    return false;
  }
  if (const auto content = readMetaContent(tag); !content.empty()) context.result.join(content);
  return false;
}

template <bool isConverted>
bool retrieveMetaData(const TagShape &tag, MetaDataContext &context) {
  const TagName tagName = tag.tagName();
  if (tagName != TagName::kMeta) return tagName == TagName::kBody;
  const std::u16string_view name = tag.attribute("NAME");
  const std::u16string_view content = name.empty() ? name : readMetaContent(tag);
  if (content.empty()) return false;
  if constexpr (isConverted)
    context.join(name, detail::convertedMetaContent(content).view());
  else
    context.join(name, content);
  return false;
}

void retrieveKeywordsDescriptionTitle(const TagShape &tag, KeywordsDescriptionTitleContext &context) {
  const TagName name = tag.tagName();
  if (name == TagName::kMeta)
    context.addMeta(tag.attribute("NAME"), readMetaContent(tag));
  else if (name == TagName::kTitle && endsElement(tag))
    context.title.joinFirst(tag.text());
}

}  // namespace

namespace detail {

std::u16string_view linkOfBaseTag(const TagShape &tag) {
  return isOpeningTag(tag) ? tag.attribute("HREF") : std::u16string_view();
}

NSString canonicalURLOfLinkTag(const TagShape &tag, Flag preservingMeaning) {
  if (!isOpeningTag(tag) || !equalsNoCase(tag.attribute("REL"), "canonical")) return {};
  NSString url = normalizedStringURL(stringUnlessEmpty(tag.attribute("HREF")), false, preservingMeaning);
  return url && url.view().front() == u'#' ? NSString() : url;
}

NSString favIconOfLinkTag(const TagShape &tag, Flag preservingMeaning) {
  if (!isOpeningTag(tag) || !findNoCase(tag.attribute("REL"), kIconRelation)) return {};
  return normalizedRelLink(stringUnlessEmpty(tag.attribute("HREF")), preservingMeaning);
}

bool isDateMeta(std::u16string_view name, std::u16string_view headerField) {
  return equalsNoCase(name, "date") || equalsNoCase(name, "dc.date") ||
         equalsNoCase(headerField, "last-modified");
}

NSString convertedMetaContent(std::u16string_view content) {
  const NSString text = stringByConvertingEntitiesToCharacters(NSString::stringWithCharacters(content));
  if (countLTGT(text, nullptr, nullptr))
    return stringByRemovingMultipleFeeds(stringByConvertingHtml2PlainText(text));
  return stringByRemovingMultipleSpacesAndFeeds(text, true);
}

}  // namespace detail

void KeywordsDescriptionTitleContext::addMeta(std::u16string_view name, std::u16string_view content) {
  constexpr std::size_t kShortest = std::string_view("title").size();
  constexpr std::size_t kLongest = std::string_view("dc.description").size();
  if (name.size() < kShortest || name.size() > kLongest || content.empty()) return;
  if (equalsNoCase(name, "title"))
    title.joinFirst(content);
  else if (equalsNoCase(name, "keywords"))
    keywords.join(content);
  else if (equalsNoCase(name, "dc.title"))
    dcTitle.joinFirst(content);
  else if (equalsNoCase(name, "IndexTitle"))
    indexTitle.joinFirst(content);
  else if (equalsNoCase(name, "description"))
    description.join(content);
  else if (equalsNoCase(name, "dc.keywords"))
    dcKeywords.join(content);
  else if (equalsNoCase(name, "dc.description"))
    dcDescription.join(content);
}

void MetaDataContext::join(std::u16string_view name, std::u16string_view content) {
  const NSString key = lowercaseString(NSString::stringWithCharacters(name));
  const auto [place, isNew] = places_.try_emplace(key, values_.size());
  if (isNew) values_.emplace_back(key, JoinedText());
  values_[place->second].second.join(content);
}

NSDictionary MetaDataContext::dictionary() && {
  NSDictionary dictionary = NSDictionary::dictionary();
  for (auto &[key, value] : values_) dictionary.setObject(std::move(value).string(), key);
  return dictionary;
}

const TagHandler RetrieveTitleHandler = tagHandler<retrieveTitle>;
const TagHandler RetrieveBaseURLHandler = tagHandler<retrieveBaseURL>;
const TagHandler RetrieveCanonicalURLHandler = tagHandler<retrieveCanonicalURL>;
const TagHandler RetrieveDateHandler = tagHandler<retrieveDate>;
const TagHandler RetrieveFavIconHandler = tagHandler<retrieveFavIcon>;
const TagHandler RetrieveMetaAttributeHandler = tagHandler<retrieveMetaAttribute>;
const TagHandler RetrieveMetaDataHandler = tagHandler<retrieveMetaData<false>>;
const TagHandler RetrieveConvertedMetaDataHandler = tagHandler<retrieveMetaData<true>>;
const TagHandler RetrieveKeywordsDescriptionTitleHandler = tagHandler<retrieveKeywordsDescriptionTitle>;

NSString getFavIcon(const unichar *characters, std::uint32_t nameLocation, std::uint32_t nameLength,
                    std::uint32_t tagLocation, std::uint32_t tagLength) {
  const TagShape tag({characters, std::size_t{tagLocation} + tagLength}, {nameLocation, nameLength},
                     {tagLocation, tagLength}, tagLocation, kOrdinaryTag);
  return tag.tagName() == TagName::kLink ? detail::favIconOfLinkTag(tag) : NSString();
}

NSURL baseURL(const NSString &string) {
  return baseURL(string, false);
}

NSURL baseURL(const NSString &string, Flag preservingMeaning) {
  const NSString normalized = normalizedStringURL(string, false, preservingMeaning);
  if (!normalized) return {};
  if (normalized.view().front() != u'#') {
    NSURL url = URLWithNormalizedStringURL(normalized);
    if (isRemoteWebKitURL(url)) return url;
  }
  NSLog(u"Invalid base: %@", normalized);
  return {};
}

}  // namespace nimbo
