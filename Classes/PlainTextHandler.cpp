// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainTextHandler.hpp"

#include <algorithm>

#include "Classes/EntityConversion.hpp"
#include "Classes/FastSearches.hpp"
#include "Classes/PlainTextAttributes.hpp"
#include "Classes/SimplePlainTextHandler.hpp"
#include "Classes/TagScanner.hpp"

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

/// Shorter texts keep their character references.
constexpr std::size_t kShortestDecoded = 4;
/// Shorter comments hide nothing from search engines.
constexpr std::uint32_t kLongestPlainComment = 18;
constexpr unsigned kIndexMarker = 1;

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
    if (!text_.empty()) writeText(text_, readable(text_), elements_.preDepth > 0, true);
    if (kind == kComment) {
      if (record_.options.googleTags && tag_.size() > kLongestPlainComment) readMarkers();
      return;
    }
    if (kind != kOrdinaryTag || nameLength == 0) return;
    name_ = detail::packedTagName(page_.data() + nameLocation, nameLength);
    const TagRule &rule = detail::ruleOfTag(name_);
    depthChange_ = depthChangeOfTag(tag_);
    followHidden(rule);
    leaveImpliedElements(rule);
    writeBreak(rule.tagBreak);
    if (rule.element != TagElement::kOther) handleElement(rule);
  }

 private:
  bool isEndTag() const { return tag_.size() > 1 && tag_[1] == u'/'; }
  bool isPlace() const {
    return record_.bodyCounter >= 1 && !elements_.isInNoframes && !elements_.isInNoscript;
  }
  /// How many units of the page stand from the beginning of a part of it on.
  std::size_t readable(std::u16string_view part) const {
    return part.empty() ? 0 : static_cast<std::size_t>(page_.data() + page_.size() - part.data());
  }
  /// Whether text is written here.
  bool isShown() const {
    return isPlace() && !(record_.options.googleTags && !(record_.markerMask & kIndexMarker)) &&
           !(elements_.isInTitle && record_.hasTitle) && !elements_.isInUnselectedOption;
  }

  /// In a textarea or the like: false when this tag ends it.
  bool handleLiteral(std::uint32_t nameLocation, std::uint32_t nameLength) {
    const TagElement element =
        nameLength > 0
            ? detail::ruleOfTag(detail::packedTagName(page_.data() + nameLocation, nameLength)).element
            : TagElement::kOther;
    const bool isEnd = (isEndTag() && element == elements_.literal) || element == TagElement::kBody ||
                       element == TagElement::kHead;
    writeText(text_, readable(text_), true, elements_.literal == TagElement::kTextarea);
    if (isEnd) {
      elements_.literal = TagElement::kOther;
      text_ = {};
      return false;
    }
    if (element != TagElement::kRawText) writeText(tag_, readable(tag_), true, false);
    return true;
  }

  /// `readable` units stand at the text.
  void writeText(std::u16string_view text, std::size_t readable, bool isPreformatted, bool isDecoded) {
    if (isPreformatted && elements_.isFirstFeedDropped) dropFirstFeed(&text);
    if (text.empty() || !isShown()) return;
    if (elements_.hidden) {
      noteHiddenText(text);
      return;
    }
    const std::uint32_t start = writer_.length();
    writeUnits(text, readable, isPreformatted, isDecoded && text.size() >= kShortestDecoded);
    if (record_.options.removeJunk) removeJunk(start, isPreformatted);
  }

  void dropFirstFeed(std::u16string_view *text) {
    if (text->empty()) return;
    if (text->starts_with(u"\r\n"))
      text->remove_prefix(2);
    else if (text->front() == u'\n' || text->front() == u'\r')
      text->remove_prefix(1);
    elements_.isFirstFeedDropped = false;
  }

  void noteHiddenText(std::u16string_view text) {
    const CharacterSetRep &whites = *whiteCharacterSetRep();
    if (elements_.hidden.reason() != HiddenReason::kFeedDate &&
        !std::all_of(text.begin(), text.end(), [&](unichar c) { return whites.contains(c); }))
      record_.isJunkFound = true;
  }

  void writeUnits(std::u16string_view text, std::size_t readable, bool isPreformatted, bool isDecoded) {
    const bool hasReferences = isDecoded && (record_.options.entities || record_.options.stdEntities);
    const bool isFolded = hasReferences && record_.options.entities && record_.options.nonUmlauted;
    if (isPreformatted || record_.options.reformat || isFolded) {
      if (isFolded || (hasReferences && text.find(u'&') != text.npos)) text = decoded(text);
      if (isPreformatted)
        writer_.writePreformatted(text);
      else if (record_.options.reformat)
        writer_.writeReformatted(text);
      else
        writer_.writeCollapsed(text, text.size(), false);
      return;
    }
    const std::uint32_t taken = writer_.writeCollapsed(text, readable, hasReferences);
    if (taken == text.size()) return;
    text = decoded(text.substr(taken));
    writer_.writeCollapsed(text, text.size(), false);
  }

  std::u16string_view decoded(std::u16string_view text) {
    const auto length = static_cast<std::uint32_t>(text.size());
    if (record_.decoded.size() < length) record_.decoded.resize(length);
    unichar *const units = record_.decoded.data();
    const PlainTextOptions &options = record_.options;
    const std::uint32_t count =
        options.entities ? convertEntities2Characters(text.data(), units, 0, length, options.stdEntities, false,
                                                      options.nonUmlauted)
                         : convertStandardEntities2Characters(text.data(), units, length);
    return {units, count};
  }

  void removeJunk(std::uint32_t start, bool isPreformatted) {
    if (!isPreformatted && writer_.length() > start &&
        detail::isJunkText(writer_.textSince(start), record_.linkAndHeadingDepth > 0)) {
      writer_.goBackTo({start});
      record_.isJunkFound = true;
    }
    if (writer_.length() - writer_.lineMark() >= detail::kOverlongLine) {
      writer_.goBackTo({writer_.lineMark()});
      record_.isJunkFound = true;
    }
  }

  void readMarkers() {
    const auto length = static_cast<std::uint32_t>(tag_.size());
    const auto contains = [&](const char *word, std::uint32_t wordLength) {
      return fastCaseInsensitiveUnicharsContainChars(tag_.data(), length, word, wordLength) != nullptr;
    };
    const bool isOff = contains("googleoff:", 10);
    const bool isOn = contains("googleon:", 9);
    if (!isOff && !isOn) return;
    unsigned bits = 0;
    if (contains("all", 3)) {
      bits = 7;
    } else {
      if (contains("index", 5)) bits |= 1;
      if (contains("snippet", 7)) bits |= 2;
      if (contains("anchor", 6)) bits |= 4;
    }
    if (isOff) record_.markerMask &= ~bits;
    if (isOn) record_.markerMask |= bits;
  }

  void followHidden(const TagRule &rule) {
    if (!record_.options.removeJunk || rule.element == TagElement::kRawText) return;
    detail::HiddenElement &hidden = elements_.hidden;
    if (depthChange_ < 0) {
      if (hidden) hidden.endTag(name_, rule);
      return;
    }
    if (depthChange_ == 0 || isVoid(rule)) return;
    const StartTag start{tag_, name_, rule};
    if (hidden && !hidden.isEndedByStartTag(start)) return;
    if (rule.element == TagElement::kBody || rule.element == TagElement::kHead) return;
    const HiddenReason reason = detail::hiddenReasonOfTag(start, record_.pageColor);
    if (reason != HiddenReason::kNone) hidden.begin(start, reason);
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
    writer_.writeLineFeeds(2, !record_.options.reformat);
  }

  void leaveSelect() { elements_.isInSelect = elements_.isInUnselectedOption = false; }

  void writeBreak(TagBreak tagBreak) {
    if (tagBreak == TagBreak::kNone || !isPlace() || elements_.hidden) return;
    switch (tagBreak) {
      case TagBreak::kSpace:
        return writer_.separate();
      case TagBreak::kLine:
        return writer_.endLine();
      case TagBreak::kLineFeed:
        return writer_.writeLineFeeds(1, !record_.options.reformat);
      case TagBreak::kEmptyLine:
        return writer_.writeLineFeeds(2, !record_.options.reformat);
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
      case TagElement::kTitle:
        if (depthChange_ <= 0) return;
        elements_.isInTitle = true;
        elements_.titleStart = writer_.length();
        if (isShown()) writer_.endLine();
        return;
      case TagElement::kLink:
        if (isEndTag())
          elements_.lastLinkEnd = tag_.data() + tag_.size();
        else if (elements_.lastLinkEnd == tag_.data() && isPlace())
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
        return writeAttribute("ALT");
      case TagElement::kInput:
        return writeInput();
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

  void writeAttribute(const char *name) {
    if (isEndTag() || !isShown()) return;
    const NSString value = detail::attributeOfTag(tag_, name);
    if (!value) return;
    writer_.separate();
    writeText(value.view(), value.length(), false, true);
    writer_.separate();
  }

  void writeInput() {
    if (!isShown()) return;
    const NSString type = detail::attributeOfTag(tag_, "TYPE");
    if (type && isControlWithoutText(type.view())) return;
    writeAttribute(type && detail::equalsNoCase(type.view(), u"image") ? "ALT" : "VALUE");
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

}  // namespace

bool PlainTextHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                      std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                      std::uint32_t textLocation, int kind, void *context) {
  Step(*static_cast<PlainTextRecord *>(context), {characters, string.length()}, tagLocation, tagLength,
       textLocation)
      .handle(nameLocation, nameLength, kind);
  return false;
}

}  // namespace nimbo
