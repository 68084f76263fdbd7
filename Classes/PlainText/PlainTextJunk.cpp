// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextJunk.hpp"

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/FastSearches.hpp"
#include "Classes/PlainText/PlainTextAttributes.hpp"
#include "Classes/PlainText/PlainTextStyle.hpp"

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

bool hasReadableSize(const StartTag &tag) {
  const NSString style = attributeOfTag(tag.units, "STYLE");
  return style && findingsOfStyle(style.view(), {}).size == StyleFindings::Size::kReadable;
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

bool hasOwnBackground(const StartTag &tag, const NSString &pageColor) {
  if (attributeOfTag(tag.units, "BACKGROUND")) return true;
  const NSString color = attributeOfTag(tag.units, "BGCOLOR");
  if (color && !isSameColor(color.view(), pageColor.view())) return true;
  const NSString style = attributeOfTag(tag.units, "STYLE");
  return style && findingsOfStyle(style.view(), pageColor).hasOwnBackground;
}

void HiddenElement::begin(const StartTag &tag, HiddenReason reason) {
  reason_ = reason;
  element_.begin(tag);
}

bool HiddenElement::isEndedByStartTag(const StartTag &tag) {
  if (reason_ != HiddenReason::kTiny || !hasReadableSize(tag)) return element_.isEndedByStartTag(tag);
  *this = {};
  return true;
}

}  // namespace nimbo::detail
