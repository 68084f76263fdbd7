// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainTextJunk.hpp"

#include "Classes/CharacterSetRep.hpp"
#include "Classes/FastSearches.hpp"
#include "Classes/PlainTextAttributes.hpp"
#include "Classes/PlainTextStyle.hpp"

namespace nimbo::detail {

namespace {

constexpr std::size_t kOverlongText = 10000;
constexpr std::size_t kOverlongLinkOrHeading = 3500;
constexpr std::size_t kShortestSplitText = 100;
constexpr std::size_t kMostGroups = 4;
constexpr std::size_t kLongestAverageGroup = 5;

bool isSplit(std::u16string_view text) {
  const CharacterSetRep &alphaNums = *alphaNumCharacterSetRep();
  std::size_t groups = 0, units = 0;
  bool isInGroup = false;
  for (const unichar c : text) {
    const bool isPart = !alphaNums.contains(c);
    groups += isPart && !isInGroup;
    units += isPart;
    isInGroup = isPart;
  }
  return groups > kMostGroups && units > groups * kLongestAverageGroup;
}

bool isBlock(const TagRule &rule) {
  return rule.tagBreak == TagBreak::kEmptyLine || rule.tagBreak == TagBreak::kLine ||
         (rule.tagBreak == TagBreak::kLineFeed && rule.element != TagElement::kVoid);
}

}  // namespace

bool isJunkText(std::u16string_view text, bool isInLinkOrHeading) {
  return text.size() > (isInLinkOrHeading ? kOverlongLinkOrHeading : kOverlongText) ||
         (text.size() >= kShortestSplitText && isSplit(text));
}

HiddenReason hiddenReasonOfTag(const StartTag &tag, const NSString &pageColor) {
  if (hasBareAttribute(tag.units, u"hidden")) return HiddenReason::kInvisible;
  if (const NSString style = attributeOfTag(tag.units, "STYLE")) {
    const StyleFindings findings = findingsOfStyle(style.view(), pageColor);
    if (findings.isInvisible) return HiddenReason::kInvisible;
    if (findings.size == StyleFindings::Size::kTiny) return HiddenReason::kTiny;
    if (findings.isInPageColor) return HiddenReason::kSameColor;
  }
  if (pageColor) {
    const NSString color = attributeOfTag(tag.units, "COLOR");
    if (color && isSameColor(color.view(), pageColor.view())) return HiddenReason::kSameColor;
  }
  const NSString names = attributeOfTag(tag.units, "CLASS");
  if (names && fastUnicharsContainChars(names.characters(), names.length(), "feed_date", 9))
    return HiddenReason::kFeedDate;
  return HiddenReason::kNone;
}

bool hasReadableSize(const StartTag &tag) {
  const NSString style = attributeOfTag(tag.units, "STYLE");
  return style && findingsOfStyle(style.view(), {}).size == StyleFindings::Size::kReadable;
}

void HiddenElement::begin(const StartTag &tag, HiddenReason reason) {
  *this = {};
  reason_ = reason;
  element_ = tag.rule.element;
  name_ = tag.name;
  depth_ = 1;
}

bool HiddenElement::isEndedByStartTag(const StartTag &tag) {
  const bool isItem = element_ == TagElement::kListItem;
  if ((reason_ == HiddenReason::kTiny && hasReadableSize(tag)) ||
      (isItem && tag.name == name_ && listDepth_ == 0) ||
      (element_ == TagElement::kParagraph && isBlock(tag.rule))) {
    *this = {};
    return true;
  }
  if (isItem && tag.rule.element == TagElement::kList) ++listDepth_;
  if (!isItem && tag.name == name_) ++depth_;
  return false;
}

void HiddenElement::endTag(std::uint64_t name, const TagRule &rule) {
  if (element_ == TagElement::kListItem) {
    if (rule.element == TagElement::kList && listDepth_ > 0)
      --listDepth_;
    else if (listDepth_ == 0 && (name == name_ || rule.element == TagElement::kList))
      *this = {};
  } else if (name == name_ && --depth_ == 0) {
    *this = {};
  }
}

}  // namespace nimbo::detail
