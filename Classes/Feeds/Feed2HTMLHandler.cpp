// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/Feed2HTMLHandler.hpp"

#include <algorithm>
#include <cstddef>

#include "Classes/Markup/ScanTags.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"
#include "platform/Foundation/NSDataBase64.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

constexpr std::u16string_view kCommentEnd = u"-->";

bool areEqual(std::u16string_view a, std::u16string_view b) {
  return a == b || std::ranges::equal(a, b, {}, toASCIILower<unichar>, toASCIILower<unichar>);
}

const unichar *endOf(std::u16string_view units) {
  return units.data() + units.size();
}

/// Whether the text of the element is markup, with others' elements in it.
bool holdsMarkup(FeedElement element) {
  using enum FeedElement;
  switch (element) {
    case kDescription:
    case kContent:
    case kSubtitle:
    case kOtherDescription:
    case kOtherContent:
      return true;
    default:
      return false;
  }
}

bool isTitle(FeedElement element) {
  return element == FeedElement::kTitle || element == FeedElement::kOtherTitle;
}

/// Whether a start tag tells that the end tag of the field in front of it is missing.
bool endsField(FeedElement field, FeedElement element) {
  using enum FeedElement;
  if (isNeverMarkup(element)) return true;
  if (holdsMarkup(field)) return false;
  switch (element) {
    case kTitle:
    case kLink:
    case kDescription:
    case kContent:
    case kAuthor:
    case kCategory:
      return true;
    default:
      return false;
  }
}

/// Whether a start tag is more than its name.
bool hasAttributes(const TagShape &tag) {
  return tag.tag().size() > tag.name().size() + 2;
}

/// An attribute without the white space and the references that it may have; empty when there is none.
NSString attributeText(const TagShape &tag, std::string_view name) {
  return hasAttributes(tag) ? feedText(tag.attribute(name), Decoding::kStandardEntities) : NSString();
}

void setIfEmpty(NSString &value, const NSString &text) {
  if (value.length() == 0) value = text;
}

/// Whether an identifier is that of a page.
bool isPage(std::u16string_view identifier) {
  return startsWithASCIINoCase(identifier, "http://") || startsWithASCIINoCase(identifier, "https://");
}

/// Whether a link begins with a scheme.
bool isAbsolute(std::u16string_view link) {
  const std::size_t colon = link.find_first_of(u":/?#");
  return colon != link.npos && link[colon] == u':' && colon > 0 && isASCIILetter(link[0]);
}

bool readTagOfFeed(const TagShape &tag, FeedContext &context) {
  return context.readTag(tag);
}

}  // namespace

const TagHandler Feed2HTMLHandler = tagHandler<readTagOfFeed>;

/// What stands between CDATA sections is scanned by itself: the scanner ends a section at "]>", and takes a
/// quote or a comment that begins in one for markup.
void FeedContext::read(std::u16string_view markup) {
  std::u16string_view rest = markup;
  bool stops = false;
  while (!rest.empty() && !stops) {
    const std::u16string_view part = rest.substr(0, nextSection(rest));
    bool isComment = false;
    scanTags(part, [&](const TagShape &tag) {
      isComment = isComment || (tag.kind() == kComment && endOf(tag.tag()) == endOf(part) &&
                                !part.ends_with(u"->") && !part.ends_with(u"!>"));
      return stops = readTag(tag);
    });
    rest.remove_prefix(part.size());
    const std::size_t end = isComment ? std::min(rest.find(kCommentEnd), rest.size()) : endOfSection(rest);
    if (end == rest.size()) break;
    rest.remove_prefix(end + kSectionEnd.size());
  }
  if (!stops) finish(endOf(markup));
}

bool FeedContext::readTag(const TagShape &tag) {
  if (!tag.isOrdinary()) {
    if (tag.kind() == kMarkedSection) noteSection(tag);
    return false;
  }
  if (tag.tag().data() < sectionEnd_) return false;
  if (insideItem_ && tag.isEndTag()) sink_.takeEndTagOfItem();
  if (!field_.name.empty() && readTagInField(tag)) return false;
  if (!isFeed_ && isWide()) namespaces_.readDeclarations(tag.tag());
  const FeedElement element = elementOf(tag.name());
  if (!isFeed_) return findRoot(tag, element);
  if (container_.element != FeedElement::kOther && readTagInContainer(tag, element)) return false;
  if (!tag.isEndTag())
    readStartTag(tag, element);
  else if (insideItem_ && element == FeedElement::kItem)
    endItem();
  return false;
}

FeedElement FeedContext::elementOf(std::u16string_view name) const {
  if (isWide()) {
    const FeedElement element = namespaces_.elementNamed(name);
    return element == FeedElement::kPage && insideItem_ ? FeedElement::kOtherContent : element;
  }
  const FeedElement element = feedElementNamed(name);
  return element < FeedElement::kFirstExtension ? element : FeedElement::kOther;
}

/// Remembers where a CDATA section really ends.
void FeedContext::noteSection(const TagShape &tag) {
  if (tag.tag().data() < sectionEnd_ || !tag.beginsWith(kSectionStart)) return;
  const std::size_t end = tag.markup().find(kSectionEnd, tag.tagRange().location);
  sectionEnd_ = end == tag.markup().npos ? endOf(tag.markup()) : tag.markup().data() + end + kSectionEnd.size();
}

bool FeedContext::findRoot(const TagShape &tag, FeedElement element) {
  using enum FeedElement;
  if (element == kPage) return true;
  isFeed_ = element == kRSS || element == kAtom || element == kRDF || element == kChannel;
  if (!isFeed_) return false;
  feed_.format = element == kAtom ? FeedFormat::kAtom : element == kRDF ? FeedFormat::kRDF : FeedFormat::kRSS;
  feedBase_ = itemBase_ = baseOf(tag, feedURL_);
  return false;
}

/// Looks at a tag within the open field; answers whether that was all.
bool FeedContext::readTagInField(const TagShape &tag) {
  if (areEqual(tag.name(), field_.name)) {
    if (tag.isEndTag() && field_.depth == 0) {
      closeField(tag.tag().data());
      return true;
    }
    field_.depth += static_cast<std::uint32_t>(tag.depthChange());
  } else if (tag.isEndTag()
                 ? insideItem_ && areEqual(tag.name(), itemName_)
                 : field_.form != TextForm::kInline && endsField(field_.element, elementOf(tag.name()))) {
    closeField(tag.tag().data());
    return false;
  }
  field_.hasMarkup = true;
  return true;
}

/// Looks at a tag within the open container; answers whether that was all.
bool FeedContext::readTagInContainer(const TagShape &tag, FeedElement element) {
  using enum FeedElement;
  if (tag.isEndTag()) {
    const bool isItem = insideItem_ && element == kItem;
    if (isItem || areEqual(tag.name(), container_.name)) closeContainer(tag.tag().data());
    return !isItem;
  }
  const bool isAuthor = container_.element == kAuthor;
  if ((isAuthor && element == kName) || (container_.element == kImage && element == kURL)) {
    openField(tag, element);
    return true;
  }
  if (element != kItem && !(isAuthor && endsField(kTitle, element))) return true;
  closeContainer(tag.tag().data());
  return false;
}

void FeedContext::readStartTag(const TagShape &tag, FeedElement element) {
  using enum FeedElement;
  switch (element) {
    case kItem:
      return beginItem(tag);
    case kLink:
      return readLink(tag);
    case kPermanentLink:
      return openField(tag, equalsASCIINoCase(tag.attribute("isPermaLink"), "false") ? kIdentifier : element);
    case kEnclosure:
      return readEnclosure(tag);
    case kAuthor:
    case kImage:
    case kForeign:
      if (tag.isStartTag()) container_ = {element, tag.name(), endOf(tag.tag())};
      return;
    case kCategory:
      if (const NSString term = attributeText(tag, "TERM"); term.length() > 0)
        return target().tags.push_back(term);
      return openField(tag, element);
    case kThumbnail:
      setIfEmpty(target().image, attributeText(tag, tag.hasAttribute("url") ? "URL" : "HREF"));
      return;
    case kOther:
    case kPage:
    case kRSS:
    case kAtom:
    case kRDF:
    case kChannel:
    case kName:
    case kURL:
      return;
    default:
      return openField(tag, element);
  }
}

void FeedContext::beginItem(const TagShape &tag) {
  if (insideItem_) endItem();
  insideItem_ = true;
  itemName_ = tag.name();
  if (isWide() && hasAttributes(tag)) {
    namespaces_.readDeclarations(tag.tag());
    itemBase_ = baseOf(tag, feedBase_);
    // Channel definitions have them there.
    setIfEmpty(item_.link, attributeText(tag, "HREF"));
    setIfEmpty(fallbacks_.item.updatedString, attributeText(tag, "LASTMOD"));
  }
  if (tag.isEmptyElementTag()) endItem();
}

void FeedContext::endItem() {
  container_ = {};
  insideItem_ = false;
  if (isWide()) {
    useFallbacks(item_);
    item_.link = resolved(item_.link);
  } else if (feedURL_ && item_.link.length() > 0 && item_.link.characterAtIndex(0) == u'/') {
    item_.link = resolved(item_.link);
  }
  // What a well-known generator writes instead of an item that it cannot print.
  if (item_.description != u"Array"_ns) sink_.takeItem(item_);
  item_ = {};
  if (isWide()) {
    fallbacks_ = {};
    itemBase_ = feedBase_;
  }
}

void FeedContext::readLink(const TagShape &tag) {
  const NSString address = attributeText(tag, "HREF");
  const std::u16string_view relation = tag.attribute("REL");
  const bool isAlternate = relation.empty() || equalsASCIINoCase(relation, "alternate");
  if (address.length() == 0) {
    if (isAlternate || !isWide()) openField(tag, FeedElement::kLink);
    return;
  }
  if (equalsASCIINoCase(relation, "self")) {
    if (!insideItem_) setIfEmpty(feed_.feedURL, address);
    return;
  }
  if (equalsASCIINoCase(relation, "edit") || startsWithASCIINoCase(relation, "service.")) return;
  if (isWide()) {
    if (equalsASCIINoCase(relation, "enclosure"))
      target().enclosures.push_back({address, attributeText(tag, "LENGTH"), attributeText(tag, "TYPE")});
    if (!isAlternate) return;
  }
  setIfEmpty(target().link, address);
}

void FeedContext::readEnclosure(const TagShape &tag) {
  FeedEnclosure enclosure{attributeText(tag, "URL"), attributeText(tag, "LENGTH"), attributeText(tag, "TYPE")};
  if (enclosure.url.length() > 0) target().enclosures.push_back(std::move(enclosure));
}

void FeedContext::openField(const TagShape &tag, FeedElement element) {
  if (!tag.isStartTag()) return;
  const std::u16string_view units = tag.tag();
  field_ = {.element = element, .name = tag.name(), .text = endOf(units)};
  if (hasAttributes(tag) && (isTitle(element) || holdsMarkup(element))) field_.form = textFormOfTag(units);
}

void FeedContext::closeField(const unichar *end) {
  const std::u16string_view units(field_.text, static_cast<std::size_t>(end - field_.text));
  if (field_.element == FeedElement::kTitle && !insideItem_ && !hasTitle_) {
    hasTitle_ = true;
    sink_.takeTitle(feedText(units, Decoding::kNone));
  }
  bool isPlain = false;
  const NSString text = textOfField(units, &isPlain);
  if (text.length() > 0) store(field_.element, text, isPlain);
  field_ = {};
}

void FeedContext::closeContainer(const unichar *end) {
  if (container_.element == FeedElement::kAuthor && target().author.length() == 0) {
    const std::u16string_view units(container_.text, static_cast<std::size_t>(end - container_.text));
    target().author =
        feedText(units.find(u'<') == units.npos || nextSection(units) < units.size() ? units : firstText(units),
                 isWide() ? Decoding::kReferences : Decoding::kEntities);
  }
  container_ = {};
}

/// The text of a field that may be markup; `*isPlain` tells when it is none.
NSString FeedContext::textOfMarkupField(std::u16string_view units, bool *isPlain) const {
  const bool isInline = field_.form == TextForm::kInline;
  if (!isWide()) {
    if (isInline) return inlineText(units);
    const bool isAsItStands = field_.hasMarkup && holdsMarkup(field_.element);
    return feedText(units, isAsItStands              ? Decoding::kNone
                           : isTitle(field_.element) ? Decoding::kEntities
                                                     : Decoding::kStandardEntities);
  }
  if (isInline || field_.form == TextForm::kMarkup) units = withoutEnclosingDiv(units);
  if (isInline) return inlineText(units);
  if (field_.form == TextForm::kBase64) {
    const NSData bytes = dataWithBase64EncodedString(feedText(units, Decoding::kNone));
    return NSString::stringWithLossyUTF8String(bytes.view());
  }
  *isPlain = field_.form == TextForm::kPlain;
  const bool isAsItStands = field_.hasMarkup && field_.form != TextForm::kMarkup;
  return feedText(units, isAsItStands ? Decoding::kNone : Decoding::kReferences);
}

NSString FeedContext::textOfField(std::u16string_view units, bool *isPlain) const {
  using enum FeedElement;
  if (isTitle(field_.element) || holdsMarkup(field_.element)) return textOfMarkupField(units, isPlain);
  if (field_.hasMarkup &&
      (field_.element == kCreator || field_.element == kName || field_.element == kOtherAuthor))
    units = firstText(units);
  if (field_.element == kLink) return feedText(units, Decoding::kStandardEntities);
  return feedText(units, isWide() ? Decoding::kReferences : Decoding::kEntities);
}

void FeedContext::store(FeedElement element, const NSString &text, bool isPlain) {
  using enum FeedElement;
  FeedItem &item = target();
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
      if (insideItem_ && isPage(text.view())) setIfEmpty(fallbacks_.permanentLink, text);
      return setIfEmpty(item.identifier, text);
    case kIdentifier:
      return setIfEmpty(item.identifier, text);
    case kURL:
    case kPicture:
      return setIfEmpty(item.image, text);
    case kLanguage:
      if (!insideItem_) setIfEmpty(feed_.language, text);
      return;
    default:
      return storeExtension(element, text);
  }
}

void FeedContext::storeExtension(FeedElement element, const NSString &text) {
  using enum FeedElement;
  FeedItem &item = (insideItem_ ? fallbacks_ : headerFallbacks_).item;
  switch (element) {
    case kOtherTitle:
      return setIfEmpty(item.title, text);
    case kOtherDescription:
      return setIfEmpty(item.description, text);
    case kOtherContent:
      return setIfEmpty(item.content, text);
    case kOtherAuthor:
      return setIfEmpty(item.author, text);
    case kOtherPublished:
      return setIfEmpty(item.publishedString, text);
    case kOtherUpdated:
      return setIfEmpty(item.updatedString, text);
    default:
      return;
  }
}

void FeedContext::useFallbacks(FeedItem &item) {
  const auto &[other, permanentLink] = &item == &feed_.header ? headerFallbacks_ : fallbacks_;
  setIfEmpty(item.title, other.title);
  setIfEmpty(item.description, other.description);
  setIfEmpty(item.content, other.content);
  setIfEmpty(item.author, other.author);
  setIfEmpty(item.publishedString, other.publishedString);
  setIfEmpty(item.updatedString, other.updatedString);
  setIfEmpty(item.dateString, item.publishedString);
  setIfEmpty(item.dateString, item.updatedString);
  setIfEmpty(item.link, permanentLink);
}

NSURL FeedContext::baseOf(const TagShape &tag, const NSURL &outer) const {
  if (!isWide()) return outer;
  const NSString base = attributeText(tag, "xml:base");
  if (base.length() == 0) return outer;
  const NSURL url = URLRelativeTo(base, outer);
  return url ? url : outer;
}

/// The link as an absolute one, where it is not and the base is known.
NSString FeedContext::resolved(const NSString &link) const {
  const NSURL &base = isWide() ? itemBase_ : feedURL_;
  if (link.length() == 0 || !base || isAbsolute(link.view())) return link;
  const NSURL url = URLRelativeTo(link, base);
  return url ? url.absoluteString() : link;
}

void FeedContext::finish(const unichar *end) {
  if (!isWide()) return;
  if (!field_.name.empty()) closeField(end);
  if (insideItem_) endItem();
  useFallbacks(feed_.header);
  itemBase_ = feedBase_;
  feed_.header.link = resolved(feed_.header.link);
  feed_.feedURL = resolved(feed_.feedURL);
}

}  // namespace nimbo::detail
