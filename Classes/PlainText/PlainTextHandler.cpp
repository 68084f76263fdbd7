// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextHandler.hpp"

#include <algorithm>

#include "Classes/Markup/TagScanner.hpp"
#include "Classes/PlainText/PlainTextAttributes.hpp"
#include "Classes/PlainText/PlainTextRuns.hpp"
#include "Classes/PlainText/SimplePlainTextHandler.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

void PlainTextRecord::restartEverywhere() {
  writer.restart();
  isJunkFound = false;
  bodyCounter = kEverywhere;
  markerMask = 7;
  linkAndHeadingDepth = 0;
  elements = {};
  hasTitle = false;
  pageColor = {};
}

namespace {

using detail::HiddenReason;
using detail::StartTag;
using detail::TagBreak;
using detail::TagElement;
using detail::TagRule;

bool isControlWithoutText(std::u16string_view type) {
  constexpr std::u16string_view kTypes[] = {u"hidden", u"password", u"checkbox", u"radio",
                                            u"file",   u"color",    u"range"};
  return std::any_of(std::begin(kTypes), std::end(kTypes),
                     [&](std::u16string_view name) { return detail::equalsNoCase(type, name); });
}

/// One step of the conversion: a tag, and the text in front of it.
class Step {
 public:
  Step(PlainTextRecord &record, std::u16string_view page, std::uint32_t tagLocation, std::uint32_t tagLength,
       std::uint32_t textLocation)
      : record_(record),
        writer_(record.writer),
        elements_(record.elements),
        page_(page),
        tag_(page.substr(tagLocation, tagLength)),
        text_(textLocation < tagLocation ? page.substr(textLocation, tagLocation - textLocation)
                                         : std::u16string_view()) {}

  void handle(std::uint32_t nameLocation, std::uint32_t nameLength, int kind) {
    if (elements_.literal != TagElement::kOther && handleLiteral(nameLocation, nameLength)) return;
    if (!text_.empty()) writeText(text_, elements_.preDepth > 0, true);
    if (kind == kComment || kind == kMarkedSection) stayBehindLink();
    if (kind == kComment) {
      if (record_.options.googleTags) record_.markerMask = detail::markerMaskBehind(tag_, record_.markerMask);
      return;
    }
    if (kind != kOrdinaryTag || nameLength == 0) return;
    name_ = detail::packedTagName(page_.data() + nameLocation, nameLength);
    const TagRule &rule = detail::ruleOfTag(name_);
    depthChange_ = depthChangeOfTag(tag_);
    followJunk(rule);
    leaveImpliedElements(rule);
    writeBreak(rule.tagBreak);
    if (rule.element != TagElement::kOther) handleElement(rule);
  }

 private:
  bool isEndTag() const { return tag_.size() > 1 && tag_[1] == u'/'; }
  /// `part` is a part of the page.
  void writeText(std::u16string_view part, bool isPreformatted, bool isEncoded) {
    if (part.empty()) return;
    const auto readable = static_cast<std::size_t>(page_.data() + page_.size() - part.data());
    detail::writeTextRun(record_, {part, readable, isPreformatted, isEncoded});
  }

  /// In a textarea or the like: false when this tag ends it.
  bool handleLiteral(std::uint32_t nameLocation, std::uint32_t nameLength) {
    const TagElement element =
        nameLength > 0
            ? detail::ruleOfTag(detail::packedTagName(page_.data() + nameLocation, nameLength)).element
            : TagElement::kOther;
    const bool isEnd = (isEndTag() && element == elements_.literal) || element == TagElement::kBody ||
                       element == TagElement::kHead;
    writeText(text_, true, elements_.literal == TagElement::kTextarea);
    if (isEnd) {
      elements_.literal = TagElement::kOther;
      text_ = {};
      return false;
    }
    if (element != TagElement::kRawText) writeText(tag_, true, false);
    return true;
  }

  StartTag startTag(const TagRule &rule) const { return {tag_, name_, rule}; }

  HiddenReason hiddenReason(const TagRule &rule) const {
    return detail::hiddenReasonOfTag(startTag(rule),
                                     elements_.background.isOpen() ? NSString() : record_.pageColor);
  }

  void followJunk(const TagRule &rule) {
    if (!record_.options.removeJunk || rule.element == TagElement::kRawText) return;
    if (depthChange_ < 0) {
      if (elements_.background.isOpen()) elements_.background.isEndedByEndTag(name_, rule);
      if (elements_.hidden) elements_.hidden.endTag(name_, rule);
    } else if (depthChange_ > 0 && !isVoid(rule)) {
      followBackground(rule);
      followHidden(rule);
    }
  }

  void followBackground(const TagRule &rule) {
    detail::FollowedElement &background = elements_.background;
    if (background.isOpen() && !background.isEndedByStartTag(startTag(rule))) return;
    if (!record_.pageColor || rule.element == TagElement::kBody) return;
    if (detail::hasOwnBackground(startTag(rule), record_.pageColor)) background.begin(startTag(rule));
  }

  void followHidden(const TagRule &rule) {
    detail::HiddenElement &hidden = elements_.hidden;
    if (hidden && !hidden.isEndedByStartTag(startTag(rule))) return;
    if (rule.element == TagElement::kBody || rule.element == TagElement::kHead) return;
    const HiddenReason reason = hiddenReason(rule);
    if (reason != HiddenReason::kNone) hidden.begin(startTag(rule), reason);
  }

  static bool isVoid(const TagRule &rule) {
    return rule.element == TagElement::kVoid || rule.element == TagElement::kImage ||
           rule.element == TagElement::kInput;
  }

  /// A title has no tags in it, a list of options only those of options.
  void leaveImpliedElements(const TagRule &rule) {
    if (elements_.isInTitle) leaveTitle();
    if (elements_.isInSelect && rule.element != TagElement::kOption && rule.element != TagElement::kOptgroup)
      leaveSelect();
  }

  void leaveTitle() {
    elements_.isInTitle = false;
    if (writer_.length() <= elements_.titleStart) return;
    record_.hasTitle = true;
    writer_.writeLineFeeds(2);
  }

  void leaveSelect() { elements_.isInSelect = elements_.isInUnselectedOption = false; }

  void writeBreak(TagBreak tagBreak) {
    if (tagBreak == TagBreak::kNone || !detail::isPlaceOfText(record_) || elements_.hidden) return;
    switch (tagBreak) {
      case TagBreak::kSpace:
        return writer_.separate();
      case TagBreak::kLine:
        return writer_.endLine();
      case TagBreak::kLineFeed:
        return writer_.writeLineFeeds(1);
      case TagBreak::kEmptyLine:
        return writer_.writeLineFeeds(2);
      default:
        return writer_.writeCellSpace();
    }
  }

  void handleElement(const TagRule &rule) {
    switch (rule.element) {
      case TagElement::kBody:
        record_.bodyCounter += depthChange_;
        elements_ = {};
        if (depthChange_ > 0) record_.pageColor = detail::attributeOfTag(tag_, "BGCOLOR");
        return;
      case TagElement::kHead:
        record_.bodyCounter -= depthChange_;
        elements_ = {};
        return;
      case TagElement::kNoframes:
        record_.bodyCounter += depthChange_;
        if (depthChange_ != 0) elements_.isInNoframes = depthChange_ > 0;
        return;
      case TagElement::kNoscript:
        record_.bodyCounter += depthChange_;
        if (depthChange_ != 0) elements_.isInNoscript = depthChange_ > 0;
        return;
      case TagElement::kRawText:
        // An element that ends is one tag, with its end tag in it, where the scanner saw it begin.
        if (depthChange_ > 0 && tag_.rfind(u"</") == tag_.npos)
          elements_.rawText = name_;
        else if (isEndTag() && elements_.rawText == name_)
          elements_.rawText = 0;
        return stayBehindLink();
      case TagElement::kTitle:
        if (depthChange_ <= 0) return;
        elements_.isInTitle = true;
        elements_.titleStart = writer_.length();
        if (detail::isTextShown(record_)) writer_.endLine();
        return;
      case TagElement::kLink:
        if (isEndTag())
          elements_.lastLinkEnd = tag_.data() + tag_.size();
        else if (elements_.lastLinkEnd == tag_.data() && detail::isPlaceOfText(record_))
          writer_.separate();
        [[fallthrough]];
      case TagElement::kHeading:
        if (depthChange_ > 0) ++record_.linkAndHeadingDepth;
        if (depthChange_ < 0 && record_.linkAndHeadingDepth > 0) --record_.linkAndHeadingDepth;
        return;
      case TagElement::kPre:
        if (depthChange_ > 0) ++elements_.preDepth;
        if (depthChange_ < 0 && elements_.preDepth > 0) --elements_.preDepth;
        elements_.isFirstFeedDropped = depthChange_ > 0;
        return;
      case TagElement::kTextarea:
      case TagElement::kXmp:
      case TagElement::kPlaintext:
        if (depthChange_ <= 0) return;
        elements_.literal = rule.element;
        elements_.isFirstFeedDropped = true;
        return;
      case TagElement::kImage:
        return writeAttribute(rule, "ALT");
      case TagElement::kInput:
        return writeInput(rule);
      case TagElement::kSelect:
        if (depthChange_ > 0) enterSelect();
        return;
      case TagElement::kOption:
        if (depthChange_ > 0 && elements_.isInSelect) enterOption();
        return;
      default:
        return;
    }
  }

  /// What is never shown stands between links as if it were not there.
  void stayBehindLink() {
    if (elements_.lastLinkEnd == tag_.data()) elements_.lastLinkEnd += tag_.size();
  }

  void writeAttribute(const TagRule &rule, const char *name) {
    if (isEndTag() || !detail::isTextShown(record_)) return;
    const NSString value = detail::attributeOfTag(tag_, name);
    if (!value) return;
    if (record_.options.removeJunk && hiddenReason(rule) != HiddenReason::kNone) {
      record_.isJunkFound = true;
      return;
    }
    writer_.separate();
    detail::writeTextRun(record_, {value.view(), value.length()});
    writer_.separate();
  }

  void writeInput(const TagRule &rule) {
    if (!detail::isTextShown(record_)) return;
    const NSString type = detail::attributeOfTag(tag_, "TYPE");
    if (type && isControlWithoutText(type.view())) return;
    writeAttribute(rule, type && detail::equalsNoCase(type.view(), u"image") ? "ALT" : "VALUE");
  }

  void enterSelect() {
    elements_.isInSelect = true;
    elements_.hasOption = false;
    const NSString size = detail::attributeOfTag(tag_, "SIZE");
    elements_.showsAllOptions = detail::hasBareAttribute(tag_, u"multiple") || (size && size != u"1"_ns);
    elements_.selectMark = writer_.mark();
  }

  void enterOption() {
    if (elements_.showsAllOptions) return;
    const bool isSelected = detail::hasBareAttribute(tag_, u"selected");
    if (isSelected && elements_.hasOption) writer_.goBackTo(elements_.selectMark);
    elements_.isInUnselectedOption = elements_.hasOption && !isSelected;
    elements_.hasOption = true;
  }

  PlainTextRecord &record_;
  PlainTextWriter &writer_;
  PlainTextRecord::Elements &elements_;
  const std::u16string_view page_;
  const std::u16string_view tag_;
  std::u16string_view text_;
  std::uint64_t name_ = 0;
  int depthChange_ = 0;
};

/// Whether a tag begins at the "<" for a browser: "a < b" is text.
bool beginsTag(std::u16string_view page, std::size_t less) {
  if (less + 1 >= page.size()) return false;
  const unichar c = page[less + 1];
  return c == u'/' || c == u'!' || c == u'?' || isASCIILetter(c);
}

/// Where a tag begins inside one that is text to a browser; its end when there is none.
std::size_t innerTag(std::u16string_view page, std::size_t tag, std::size_t end) {
  while ((tag = std::min(page.find(u'<', tag + 1), end)) < end && !beginsTag(page, tag)) continue;
  return tag;
}

/// The name of a tag that begins with "<" and, if at all, "/".
NSRange nameOfTag(std::u16string_view page, std::size_t tag) {
  const std::size_t start = tag + 1 + (page[tag + 1] == u'/');
  const auto isPart = [](unichar c) { return c > u' ' && c != u'/' && c != u'>'; };
  std::size_t end = start;
  while (end < page.size() && isPart(page[end])) ++end;
  return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
}

/// Where the end tag of the script or style of this packed name begins in what the scanner took for one tag,
/// else the end of that.
std::size_t rawTextEnd(std::u16string_view page, std::size_t tag, std::size_t end, std::uint64_t rawText) {
  const std::u16string_view part = page.substr(0, end);
  while ((tag = std::min(part.find(u"</", tag), end)) < end) {
    const NSRange name = nameOfTag(part, tag);
    if (detail::packedTagName(part.data() + name.location, name.length) == rawText) break;
    ++tag;
  }
  return tag;
}

}  // namespace

bool PlainTextHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                      std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                      std::uint32_t textLocation, int kind, void *context) {
  const std::u16string_view page(characters, string.length());
  PlainTextRecord &record = *static_cast<PlainTextRecord *>(context);
  const std::size_t end = std::min<std::size_t>(tagLocation + std::size_t{tagLength}, page.size());
  const std::uint64_t rawText = record.elements.rawText;
  std::size_t inner = rawText ? rawTextEnd(page, tagLocation, end, rawText) : end;
  if (inner == end) {
    inner =
        kind == kOrdinaryTag && !beginsTag(page, tagLocation) ? innerTag(page, tagLocation, end) : tagLocation;
  }
  NSRange name{nameLocation, nameLength};
  if (inner > tagLocation) {
    kind = page.substr(inner, end - inner).starts_with(u"<!-") ? kComment : kOrdinaryTag;
    name = inner < end && kind == kOrdinaryTag ? nameOfTag(page, inner) : NSRange{NSNotFound, 0};
    tagLocation = static_cast<std::uint32_t>(inner);
    tagLength = static_cast<std::uint32_t>(end - inner);
  }
  Step(record, page, tagLocation, tagLength, textLocation).handle(name.location, name.length, kind);
  return false;
}

}  // namespace nimbo
