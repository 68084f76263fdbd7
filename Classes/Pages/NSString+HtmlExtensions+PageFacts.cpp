// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/NSString+HtmlExtensions+PageFacts.hpp"

#include <utility>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Pages/BaseTag.hpp"
#include "Classes/Pages/PageFactHandlers.hpp"
#include "Classes/Pages/ScanWithHandler.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Trimming.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
inline namespace HtmlExtensions {

namespace {

using detail::scannedWithHandler;

constexpr const char *kName = "NAME", *kHeaderField = "HTTP-EQUIV";

NSString metaAttribute(const NSString &page, const char *attribute, const NSString &first,
                       const NSString &second = {}) {
  MetaAttributeContext context{attribute, first, second, {}};
  detail::scanWithHandler(page, RetrieveMetaAttributeHandler, context);
  return std::move(context.result).string();
}

NSDictionary metaAttributes(const NSString &page, TagHandler handler) {
  return answerOr(NSDictionary::dictionary(),
                  [&] { return scannedWithHandler<MetaDataContext>(page, handler).dictionary(); });
}

NSString firstOf(JoinedText first, JoinedText second) {
  return std::move(first ? first : second).string();
}

/// The page with a "base" tag in place of some of it; with an empty URL without that part.
NSString withBaseTag(const NSString &page, NSRange range, const NSString &url) {
  return answerOr(page, [&] {
    const std::u16string_view before = page.view().substr(0, range.location);
    const std::u16string_view behind = page.view().substr(range.location + range.length);
    if (url.length() == 0) return stringByConcatenating(before, behind);
    return stringByConcatenating(before, std::u16string_view(u"<BASE href=\""),
                                 stringByConvertingCharactersToStandardEntities(url),
                                 std::u16string_view(u"\"/>\n"), behind);
  });
}

}  // namespace

NSString htmlTitle(const NSString &page) {
  return scannedWithHandler<NSMutableString>(page, RetrieveTitleHandler).string();
}

NSString normalizedHtmlTitle(const NSString &page) {
  NSString title = htmlTitle(page);
  if (title.length() == 0) return title;
  return stringByTrimmingWhiteSpaces(stringByConvertingEntitiesToCharacters(title));
}

NSURL htmlBaseURL(const NSString &page) {
  return scannedWithHandler<NSURL>(page, RetrieveBaseURLHandler);
}

NSString htmlCanonicalURL(const NSString &page) {
  return scannedWithHandler<NSString>(page, RetrieveCanonicalURLHandler);
}

NSString htmlDate(const NSString &page) {
  return scannedWithHandler<NSString>(page, RetrieveDateHandler);
}

NSString htmlFavIcon(const NSString &page) {
  return scannedWithHandler<NSString>(page, RetrieveFavIconHandler);
}

NSDictionary htmlMetaAttributes(const NSString &page) {
  return metaAttributes(page, RetrieveMetaDataHandler);
}

NSDictionary htmlMetaAttributesByConvertingEntitiesToCharacters(const NSString &page) {
  return metaAttributes(page, RetrieveConvertedMetaDataHandler);
}

void htmlMetaKeywords(const NSString &page, NSString *keywords, NSString *description, NSString *title,
                      NSString *indexTitle) {
  if (!keywords && !description && !title && !indexTitle) return;
  auto found =
      scannedWithHandler<KeywordsDescriptionTitleContext>(page, RetrieveKeywordsDescriptionTitleHandler);
  if (keywords) *keywords = firstOf(std::move(found.dcKeywords), std::move(found.keywords));
  if (description) *description = firstOf(std::move(found.dcDescription), std::move(found.description));
  if (title) *title = firstOf(std::move(found.dcTitle), std::move(found.title));
  if (indexTitle) *indexTitle = std::move(found.indexTitle).string();
}

NSString htmlMetaKeywords(const NSString &page) {
  return metaAttribute(page, kName, u"keywords"_ns, u"dc.keywords"_ns);
}

NSString htmlMetaDescription(const NSString &page) {
  return metaAttribute(page, kName, u"description"_ns, u"dc.description"_ns);
}

NSString htmlMetaTitle(const NSString &page) {
  return metaAttribute(page, kName, u"title"_ns, u"dc.title"_ns);
}

NSString htmlMetaAuthor(const NSString &page) {
  return metaAttribute(page, kName, u"author"_ns, u"dc.author"_ns);
}

NSString htmlMetaCopyright(const NSString &page) {
  return metaAttribute(page, kName, u"copyright"_ns, u"dc.rights"_ns);
}

NSString htmlMetaDate(const NSString &page) {
  return metaAttribute(page, kName, u"date"_ns, u"dc.date"_ns);
}

NSString htmlMetaIndexTitle(const NSString &page) {
  return metaAttribute(page, kName, u"IndexTitle"_ns);
}

NSString htmlMetaRefresh(const NSString &page) {
  return metaAttribute(page, kHeaderField, u"refresh"_ns);
}

NSString htmlMetaHTTPEquiv(const NSString &page, const NSString &name) {
  return metaAttribute(page, kHeaderField, name);
}

NSString htmlMetaAttributeWithName(const NSString &page, const NSString &name) {
  return metaAttribute(page, kName, name);
}

NSString stringByAddingBaseURL(const NSString &page, const NSString &url) {
  if (url.length() == 0) return page;
  const auto place = scannedWithHandler<BaseTagContext>(page, SetBaseURLHandler);
  if (place.baseTagStart != NSNotFound || place.headEnd == NSNotFound) return page;
  return withBaseTag(page, {place.headEnd, 0}, url);
}

NSString stringBySettingBaseURL(const NSString &page, const NSString &url) {
  if (!url) return page;
  const auto place = scannedWithHandler<BaseTagContext>(page, SetBaseURLHandler);
  if (place.baseTagStart != NSNotFound)
    return withBaseTag(page, {place.baseTagStart, place.baseTagLength}, url);
  if (place.headEnd == NSNotFound || url.length() == 0) return page;
  return withBaseTag(page, {place.headEnd, 0}, url);
}

}  // namespace HtmlExtensions
}  // namespace nimbo
