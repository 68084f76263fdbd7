// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/PageContents.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "Classes/Pages/PageFactHandlers.hpp"
#include "Classes/Pages/PageFactTags.hpp"
#include "Classes/Pages/PageLinkTags.hpp"
#include "Classes/Pages/TagTests.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Removing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Trimming.hpp"

namespace nimbo {

namespace {

using detail::endsElement;
using detail::equalsNoCase;
using detail::isOpeningTag;

/// Text as a person reads it; nil when it is blank.
NSString readableText(const NSString &text) {
  const NSString converted = stringByConvertingEntitiesToCharacters(text);
  NSString result = stringByTrimmingWhiteSpaces(stringByRemovingMultipleSpacesAndFeeds(converted, true));
  return result.length() > 0 ? result : NSString();
}

/// Reads the facts of a page, tag by tag.
class FactsReader {
 public:
  FactsReader(PageFacts &facts, Flag preservingMeaning)
      : facts_(facts), preservingMeaning_(preservingMeaning) {}

  void visit(const TagShape &tag, TagName name) {
    switch (name) {
      case TagName::kTitle:
        if (endsElement(tag)) visitTitle(tag);
        break;
      case TagName::kLink:
        if (isInHead_ && !facts_.canonicalURL)
          facts_.canonicalURL = detail::canonicalURLOfLinkTag(tag, preservingMeaning_);
        if (!facts_.favIcon) facts_.favIcon = detail::favIconOfLinkTag(tag, preservingMeaning_);
        break;
      case TagName::kMeta:
        visitMeta(tag);
        break;
      case TagName::kBody:
        isInHead_ = false;
        [[fallthrough]];
      case TagName::kHead:
      case TagName::kHtml:
        if (isOpeningTag(tag)) markupSeen_ = true;
        break;
      case TagName::kUnknown:
        if (!markupSeen_ && isOpeningTag(tag) && detail::isFeedRoot(tag)) facts_.isFeed = true;
        break;
      default:
        break;
    }
  }

  /// Takes the base that a tag has named.
  void takeBase(const NSURL &base) {
    if (isInHead_ && !hasBase_) facts_.baseURL = base;
    hasBase_ = true;
  }

  void end() {
    const auto indexed = [](JoinedText &core, JoinedText &plain) {
      return std::move(core ? core : plain).string();
    };
    facts_.indexedKeywords = indexed(indexed_.dcKeywords, indexed_.keywords);
    facts_.indexedDescription = indexed(indexed_.dcDescription, indexed_.description);
    facts_.indexedTitle = indexed(indexed_.dcTitle, indexed_.title);
    facts_.indexTitle = std::move(indexed_.indexTitle).string();
    facts_.author = std::move(author_).string();
    facts_.copyright = std::move(copyright_).string();
    facts_.refresh = std::move(refresh_).string();
    facts_.robots = std::move(robots_).string();
    facts_.metaAttributes = std::move(metas_).dictionary();
    facts_.title = title_ ? title_ : NSString::string();
    facts_.normalizedTitle = stringByTrimmingWhiteSpaces(stringByConvertingEntitiesToCharacters(facts_.title));
  }

 private:
  void visitTitle(const TagShape &tag) {
    if (isInHead_ && !title_) title_ = NSString::stringWithCharacters(tag.text());
    indexed_.title.joinFirst(tag.text());
  }

  void visitMeta(const TagShape &tag) {
    const std::u16string_view content = detail::readMetaContent(tag);
    if (content.empty()) return;
    const std::u16string_view name = tag.attribute("NAME"), field = tag.attribute("HTTP-EQUIV");
    indexed_.addMeta(name, content);
    if (isOpeningTag(tag)) {
      if (equalsNoCase(name, "robots")) robots_.join(content, u",");
      if (equalsNoCase(name, "revisit-after")) facts_.revisit = NSString::stringWithCharacters(content);
    }
    if (!isInHead_) return;
    if (equalsNoCase(field, "refresh")) refresh_.join(content);
    if (!facts_.date && detail::isDateMeta(name, field)) facts_.date = NSString::stringWithCharacters(content);
    if (name.empty()) return;
    if (equalsNoCase(name, "author") || equalsNoCase(name, "dc.author")) author_.join(content);
    if (equalsNoCase(name, "copyright") || equalsNoCase(name, "dc.rights")) copyright_.join(content);
    metas_.join(name, detail::convertedMetaContent(content).view());
  }

  PageFacts &facts_;
  const Flag preservingMeaning_;
  bool isInHead_ = true, markupSeen_ = false, hasBase_ = false;
  NSString title_;
  KeywordsDescriptionTitleContext indexed_;
  JoinedText author_, copyright_, refresh_, robots_;
  MetaDataContext metas_;
};

/// Reads the links of a page, tag by tag.
class LinksReader {
 public:
  LinksReader(std::vector<PageLink> &links, const PageContentsOptions &options)
      : links_(links), options_(options) {}

  /// Takes the text in front of a tag, which need not be looked at otherwise.
  void takeText(const TagShape &tag) {
    if (text_) text_->append(tag.text());
  }

  void visit(const TagShape &tag, TagName name) {
    if (name == TagName::kA) endAnchor();
    if (!isOpeningTag(tag)) return;
    const Flag meaning = options_.preservingMeaning;
    switch (name) {
      case TagName::kA:
      case TagName::kArea:
        if (!add(PageLinkKind::kLink, detail::URLOfTag(tag, "HREF", meaning), tag) || !options_.withDetails)
          break;
        links_.back().isNoFollow = detail::isNoFollowTag(tag);
        if (name == TagName::kA) beginAnchor();
        break;
      case TagName::kFrame:
      case TagName::kIframe:
        add(PageLinkKind::kFrame, detail::URLOfTag(tag, "SRC", meaning), tag);
        break;
      case TagName::kImg:
      case TagName::kBody:
        add(PageLinkKind::kImage, detail::imageOfTag(tag, name, meaning), tag);
        break;
      case TagName::kLink:
        add(PageLinkKind::kImage, detail::imageOfTag(tag, name, meaning), tag);
        add(PageLinkKind::kSheetOrScript, detail::sheetOrScriptOfTag(tag, name, meaning), tag);
        break;
      case TagName::kScript:
      case TagName::kStyle:
        visitRawText(tag, name);
        break;
      case TagName::kEmbed:
      case TagName::kObject:
        add(PageLinkKind::kObject, detail::URLOfTag(tag, "HREF", meaning), tag);
        break;
      default:
        break;
    }
    if (options_.withDetails && (name == TagName::kImg || name == TagName::kArea)) takeAlternative(tag);
  }

  void endAnchor() {
    if (!text_) return;
    NSString text = readableText(std::move(*text_).string());
    links_[anchor_].text = text ? text : alternative_;
    text_.reset();
    alternative_ = NSString();
  }

 private:
  bool add(PageLinkKind kind, NSString url, const TagShape &tag) {
    if (!url) return false;
    links_.push_back({kind, std::move(url), {}, tag.tagRange()});
    return true;
  }

  void beginAnchor() {
    text_.emplace();
    anchor_ = links_.size() - 1;
  }

  /// Takes the "ALT" of a tag for its own link, which is the last one, and for one without text around it.
  void takeAlternative(const TagShape &tag) {
    const NSString alternative = readableText(detail::stringUnlessEmpty(tag.attribute("ALT")));
    if (!links_.empty() && links_.back().place.location == tag.tagRange().location)
      links_.back().text = alternative;
    if (text_ && !alternative_) alternative_ = alternative;
  }

  /// An element without a source of its own may import one, if it is a style.
  void visitRawText(const TagShape &tag, TagName name) {
    const std::u16string_view startTag = startTagOf(tag.tag());
    const TagShape start({tag.markup().data(), tag.tagRange().location + startTag.size()}, tag.nameRange(),
                         {tag.tagRange().location, static_cast<std::uint32_t>(startTag.size())},
                         tag.textLocation(), kOrdinaryTag);
    NSString url = detail::URLOfTag(start, "SRC", options_.preservingMeaning);
    if (!url && name == TagName::kStyle) url = detail::importOfElement(tag.tag(), options_.preservingMeaning);
    add(PageLinkKind::kSheetOrScript, std::move(url), tag);
  }

  /// The start tag of an element: up to the first ">" that is not in quotes.
  static std::u16string_view startTagOf(std::u16string_view element) {
    std::size_t i = 0;
    while ((i = element.find_first_of(u"\"'>", i)) < element.size() && element[i] != u'>')
      i = std::min(element.find(element[i], i + 1), element.size() - 1) + 1;
    return element.substr(0, i < element.size() ? i + 1 : element.size());
  }

  std::vector<PageLink> &links_;
  const PageContentsOptions &options_;
  /// The text of the open anchor, which is the link of this index.
  std::optional<NSMutableString> text_;
  std::size_t anchor_ = 0;
  NSString alternative_;
};

}  // namespace

PageContents contentsOfPage(const NSString &page, const PageContentsOptions &options) {
  PageContents contents;
  FactsReader facts(contents.facts, options.preservingMeaning);
  LinksReader links(contents.links, options);
  answerOr(false, [&] {
    scanTags(page, [&](const TagShape &tag) {
      links.takeText(tag);
      const TagName name = tag.tagName();
      if (name == TagName::kBase) {
        const std::u16string_view link = detail::linkOfBaseTag(tag);
        if (link.empty()) return;
        contents.linksBaseURL = baseURL(NSString::stringWithCharacters(link), options.preservingMeaning);
        return facts.takeBase(contents.linksBaseURL);
      }
      facts.visit(tag, name);
      links.visit(tag, name);
    });
    links.endAnchor();
    return true;
  });
  answerOr(false, [&] { return facts.end(), true; });
  return contents;
}

}  // namespace nimbo
