// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextHandler.hpp"

#include <optional>

#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/PlainText/BrowserTags.hpp"
#include "Classes/PlainText/PlainTextConversion.hpp"
#include "Classes/PlainText/PlainTextRuns.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

using detail::HiddenReason;
using detail::PlainTextConversion;
using detail::PlainTextTag;
using detail::TagBreak;
using detail::TagElement;

/// Whether an input of the type shows no text of its own.
bool isControlWithoutText(std::u16string_view type) {
  return equalsOneOfASCIINoCase(type, {"hidden", "password", "checkbox", "radio", "file", "color", "range"});
}

/// One step of the conversion: a tag, and the text in front of it.
class Step {
 public:
  Step(const TagShape &shape, PlainTextConversion &conversion) : shape_(shape), conversion_(conversion) {}

  void run() {
    if (conversion_.preformatted.literal() == TagElement::kOther)
      writePart(shape_.text(), conversion_.preformatted.isInPre(), true);
    else if (staysLiteral())
      return;
    if (shape_.kind() == kComment || shape_.kind() == kMarkedSection) conversion_.links.passOver(shape_);
    if (shape_.kind() == kComment && conversion_.options.googleTags)
      conversion_.markers.followComment(shape_.tag());
    if (!shape_.isOrdinary() || shape_.name().empty()) return;
    const PlainTextTag tag(shape_);
    if (conversion_.options.removeJunk) conversion_.hidden.follow(tag);
    conversion_.place.followUnshown(tag);
    leaveImpliedElements(tag);
    const TagBreak tagBreak = conversion_.styledBlocks.beginOrEndAt(tag) ? TagBreak::kLine : tag.rule.tagBreak;
    if (conversion_.options.forReading)
      writeReadableBreak(tag, tagBreak);
    else
      writeBreak(tagBreak);
    if (tag.rule.element != TagElement::kOther) handleElement(tag);
  }

 private:
  /// `part` is a part of the page.
  void writePart(std::u16string_view part, bool isPreformatted, bool isEncoded) {
    if (part.empty()) return;
    const std::u16string_view page = shape_.markup();
    const auto readable = static_cast<std::size_t>(page.data() + page.size() - part.data());
    detail::writeTextRun(conversion_, {part, readable, isPreformatted, isEncoded});
  }

  /// In a textarea or the like, writes the text, and the tag too unless it ends the element, and answers
  /// whether it does not.
  bool staysLiteral() {
    const TagElement literal = conversion_.preformatted.literal();
    const TagElement element = detail::ruleOfTag(shape_.tagName()).element;
    writePart(shape_.text(), true, literal == TagElement::kTextarea);
    if ((shape_.isEndTag() && element == literal) || element == TagElement::kBody ||
        element == TagElement::kHead) {
      conversion_.preformatted.endLiteral();
      return false;
    }
    if (element != TagElement::kRawText) writePart(shape_.tag(), true, false);
    return true;
  }

  /// A title has no tags in it, a list of options only those of options.
  void leaveImpliedElements(const PlainTextTag &tag) {
    if (conversion_.title.isOpen()) conversion_.title.end(conversion_.writer);
    if (tag.rule.element != TagElement::kOption && tag.rule.element != TagElement::kOptgroup)
      conversion_.select.end();
  }

  /// What a reader sees between texts: margins only around paragraphs, tables and outermost lists.
  void writeReadableBreak(const PlainTextTag &tag, TagBreak tagBreak) {
    const bool isList = tag.rule.element == TagElement::kList && tag.name != TagName::kTable;
    if (isList && tag.depthChange < 0 && conversion_.listDepth > 0) --conversion_.listDepth;
    const bool isInList = isList && conversion_.listDepth > 0;
    if (isList && tag.depthChange > 0) ++conversion_.listDepth;
    if (tag.name == TagName::kBr) {
      if (isShown()) conversion_.writer.breakLine();
    } else if (tagBreak == TagBreak::kEmptyLine || isList) {
      if (!isShown()) return;
      if (isInList || tag.name == TagName::kDiv)
        conversion_.writer.endLine();
      else
        conversion_.writer.endParagraph();
    } else if (tagBreak == TagBreak::kLineFeed) {
      writeBreak(TagBreak::kLine);
    } else {
      writeBreak(tagBreak == TagBreak::kCell ? TagBreak::kSpace : tagBreak);
    }
  }

  bool isShown() const {
    return conversion_.place.allowsText() && conversion_.hidden.reason() == HiddenReason::kNone;
  }

  void writeBreak(TagBreak tagBreak) {
    if (tagBreak == TagBreak::kNone || !isShown()) return;
    switch (tagBreak) {
      case TagBreak::kSpace:
        return conversion_.writer.separate();
      case TagBreak::kLine:
        return conversion_.writer.endLine();
      case TagBreak::kLineFeed:
        return conversion_.writer.writeLineFeeds(1);
      case TagBreak::kEmptyLine:
        return conversion_.writer.writeLineFeeds(2);
      default:
        return conversion_.writer.writeCellSpace();
    }
  }

  void handleElement(const PlainTextTag &tag) {
    switch (tag.rule.element) {
      case TagElement::kBody:
      case TagElement::kHead:
        return followPartOfPage(tag);
      case TagElement::kNoframes:
      case TagElement::kNoscript:
        return conversion_.place.followAlternative(tag);
      case TagElement::kRawText:
        conversion_.place.followRawText(tag);
        return conversion_.links.passOver(shape_);
      case TagElement::kLink:
        return followLink(tag);
      case TagElement::kHeading:
        return conversion_.links.followHeading(tag);
      case TagElement::kPre:
        return conversion_.preformatted.followPre(tag);
      case TagElement::kImage:
        return writeAttribute("alt");
      case TagElement::kInput:
        return writeInput();
      default:
        if (tag.depthChange > 0) beginElement(tag);
    }
  }

  void beginElement(const PlainTextTag &tag) {
    switch (tag.rule.element) {
      case TagElement::kTitle:
        conversion_.title.begin(conversion_.writer);
        if (conversion_.showsText()) conversion_.writer.endLine();
        return;
      case TagElement::kTextarea:
      case TagElement::kXmp:
      case TagElement::kPlaintext:
        return conversion_.preformatted.beginLiteral(tag.rule.element);
      case TagElement::kSelect:
        return conversion_.select.begin(shape_, conversion_.writer);
      case TagElement::kOption:
        return conversion_.select.beginOption(shape_, conversion_.writer);
      case TagElement::kUnshown:
        return conversion_.place.beginUnshown(tag);
      default:
        return;
    }
  }

  void followPartOfPage(const PlainTextTag &tag) {
    const bool isBody = tag.rule.element == TagElement::kBody;
    conversion_.place.changeBodyDepth(isBody ? tag.depthChange : -tag.depthChange);
    conversion_.leaveElements();
    if (isBody && tag.depthChange > 0) conversion_.hidden.setPageColor(shape_.ownAttribute("bgcolor"));
  }

  void followLink(const PlainTextTag &tag) {
    if (!shape_.isEndTag() && conversion_.links.endsLinkAt(shape_) && conversion_.place.allowsText())
      conversion_.writer.separate();
    conversion_.links.followLink(tag);
  }

  void writeAttribute(std::string_view name) {
    if (shape_.isEndTag() || !conversion_.showsText()) return;
    const std::u16string_view value = shape_.ownAttribute(name);
    if (value.empty()) return;
    if (conversion_.options.removeJunk && conversion_.hidden.reasonOf(shape_) != HiddenReason::kNone) {
      conversion_.isJunkFound = true;
      return;
    }
    conversion_.writer.separate();
    writePart(value, false, true);
    conversion_.writer.separate();
  }

  void writeInput() {
    if (!conversion_.showsText()) return;
    const std::u16string_view type = shape_.ownAttribute("type");
    if (!isControlWithoutText(type)) writeAttribute(equalsASCIINoCase(type, "image") ? "alt" : "value");
  }

  const TagShape &shape_;
  PlainTextConversion &conversion_;
};

void convertTag(const TagShape &tag, PlainTextRecord &record) {
  PlainTextConversion &conversion = record.conversion();
  conversion.makeRoom(tag);
  const TagName rawText = conversion.place.rawText();
  std::optional<TagShape> other;
  if (!detail::isBrowserTag(tag, rawText)) other = detail::browserTag(tag, rawText);
  Step(other ? *other : tag, conversion).run();
}

}  // namespace

const TagHandler PlainTextHandler = tagHandler<convertTag>;

}  // namespace nimbo
