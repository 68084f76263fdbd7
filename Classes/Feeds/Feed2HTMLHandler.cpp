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

bool areEqual(std::u16string_view a, std::u16string_view b) {
  return a == b || std::ranges::equal(a, b, {}, toASCIILower<unichar>, toASCIILower<unichar>);
}

/// Whether a start tag is more than its name.
bool hasAttributes(const TagShape &tag) {
  return tag.tag().size() > tag.name().size() + 2;
}

/// An attribute without the white space and the references that it may have; empty when there is none.
NSString attributeText(const TagShape &tag, std::string_view name) {
  return hasAttributes(tag) ? feedText(tag.attribute(name), Decoding::kStandardEntities) : NSString();
}

/// The text of an element by names alone: all of it, references decoded.
NSString textByName(FeedElement element, std::u16string_view units) {
  return feedText(units, holdsMarkup(element) || element == FeedElement::kLink ? Decoding::kStandardEntities
                                                                               : Decoding::kEntities);
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

bool FeedContext::readTag(const TagShape &tag) {
  if (tag.kind() == kClosingCall) finish(tag.tag().data());
  if (!tag.isOrdinary()) return false;
  if (insideItem_ && tag.isEndTag()) sink_.takeEndTagOfItem();
  if (!field_.name.empty() && readTagInField(tag)) return false;
  if (isWide() && !tag.isEndTag() && hasAttributes(tag)) namespaces_.readDeclarations(tag.tag());
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

/// Whether an end tag is that of what the open field is in.
bool FeedContext::isEndOfOuter(std::u16string_view name) const {
  return (insideItem_ && areEqual(name, itemName_)) ||
         (container_.element != FeedElement::kOther && areEqual(name, container_.name));
}

/// Whether the element of a text has an end tag within the open item, or in front of the next one.
bool FeedContext::hasEndTag(const unichar *text, std::u16string_view markup) {
  if (!endTags_) {
    endTags_.emplace();
    scanXMLTags(markup, [&](const TagShape &tag) { endTags_->take(tag, elementOf(tag.name())); });
  }
  return endTags_->haveThatOf(text);
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
                 ? isEndOfOuter(tag.name())
                 : field_.form != TextForm::kInline && endsField(field_.element, elementOf(tag.name())) &&
                       !hasEndTag(field_.text, tag.markup())) {
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
  const bool isOutside = isAuthor && endsField(kTitle, element) && !hasEndTag(container_.text, tag.markup());
  if (element != kItem && !isOutside) return true;
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
      // By names alone, an item's titles and links are those of all elements in it.
      if (element != kAuthor && insideItem_ && !isWide()) return;
      if (tag.isStartTag()) container_ = {element, tag.name(), endOf(tag.tag())};
      return;
    case kCategory:
      return readCategory(tag);
    case kThumbnail:
      setIfEmpty(fields().item.image, attributeText(tag, tag.hasAttribute("url") ? "URL" : "HREF"));
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
    itemBase_ = baseOf(tag, feedBase_);
    // Channel definitions have them there.
    setIfEmpty(item_.item.link, attributeText(tag, "HREF"));
    setIfEmpty(item_.others.updatedString, attributeText(tag, "LASTMOD"));
  }
  if (tag.isEmptyElementTag()) endItem();
}

void FeedContext::endItem() {
  container_ = {};
  insideItem_ = false;
  FeedItem &item = item_.item;
  if (isWide()) {
    item_.useOthers();
    setIfEmpty(item.link, item_.permanentLink);
    item.link = resolved(item.link);
  } else if (feedURL_ && item.link.length() > 0 && item.link.characterAtIndex(0) == u'/') {
    item.link = resolved(item.link);
  }
  // What a well-known generator writes instead of an item that it cannot print.
  if (item.description != u"Array"_ns) sink_.takeItem(item);
  item_ = {};
  if (isWide()) itemBase_ = feedBase_;
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
      fields().item.enclosures.push_back({address, attributeText(tag, "LENGTH"), attributeText(tag, "TYPE")});
    if (!isAlternate) return;
  }
  setIfEmpty(fields().item.link, address);
}

void FeedContext::readCategory(const TagShape &tag) {
  const NSString term = attributeText(tag, "TERM");
  openField(tag, FeedElement::kCategory);
  if (tag.isStartTag())
    field_.textOfEmpty = term;
  else if (term.length() > 0)
    fields().take(FeedElement::kCategory, term, false);
}

void FeedContext::readEnclosure(const TagShape &tag) {
  std::vector<FeedEnclosure> &enclosures = fields().item.enclosures;
  const auto asItStands = [&](std::string_view name) {
    return NSString::stringWithCharacters(tag.attribute(name));
  };
  if (!isWide())
    enclosures.push_back({asItStands("URL"), asItStands("LENGTH"), NSString()});
  else if (const NSString url = attributeText(tag, "URL"); url.length() > 0)
    enclosures.push_back({url, attributeText(tag, "LENGTH"), attributeText(tag, "TYPE")});
}

void FeedContext::openField(const TagShape &tag, FeedElement element) {
  if (!tag.isStartTag()) return;
  const std::u16string_view units = tag.tag();
  field_ = {.element = element, .name = tag.name(), .text = endOf(units)};
  if (hasAttributes(tag) && (isTitle(element) || holdsMarkup(element))) field_.form = textFormOfTag(units);
}

void FeedContext::closeField(const unichar *end) {
  const std::u16string_view units = between(field_.text, end);
  if (field_.element == FeedElement::kTitle && !insideItem_ && !hasTitle_) {
    hasTitle_ = true;
    sink_.takeTitle(feedText(units, Decoding::kNone));
  }
  bool isPlain = false;
  NSString text = isWide() ? textOfField(units, &isPlain) : textByName(field_.element, units);
  if (text.length() == 0) text = field_.textOfEmpty;
  if (text.length() > 0 && field_.element == FeedElement::kLanguage && !insideItem_)
    setIfEmpty(feed_.language, text);
  else if (text.length() > 0)
    fields().take(field_.element, text, isPlain);
  field_ = {};
}

void FeedContext::closeContainer(const unichar *end) {
  NSString &author = fields().item.author;
  if (container_.element == FeedElement::kAuthor && author.length() == 0) {
    const std::u16string_view units = between(container_.text, end);
    author = isWide() ? firstText(units) : textByName(FeedElement::kAuthor, units);
  }
  container_ = {};
}

/// The text of the open field by namespaces; `*isPlain` tells when it may be markup and is none.
NSString FeedContext::textOfField(std::u16string_view units, bool *isPlain) const {
  using enum FeedElement;
  if (isTitle(field_.element) || holdsMarkup(field_.element)) return textOfMarkupField(units, isPlain);
  const bool isName = field_.element == kCreator || field_.element == kName || field_.element == kOtherAuthor;
  return isName && field_.hasMarkup ? textWithoutTags(units) : feedText(units, Decoding::kReferences);
}

NSString FeedContext::textOfMarkupField(std::u16string_view units, bool *isPlain) const {
  const bool isInline = field_.form == TextForm::kInline;
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
  header_.useOthers();
  feed_.header = std::move(header_.item);
  itemBase_ = feedBase_;
  feed_.header.link = resolved(feed_.header.link);
  feed_.feedURL = resolved(feed_.feedURL);
}

}  // namespace nimbo::detail
