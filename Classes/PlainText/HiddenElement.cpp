// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/HiddenElement.hpp"

#include "Classes/PlainText/PlainTextStyle.hpp"

namespace nimbo::detail {

namespace {

constexpr std::u16string_view kFeedDateClass = u"feed_date";

bool hasReadableSize(const TagShape &tag) {
  return findingsOfStyle(tag.ownAttribute("style"), {}).size == StyleFindings::Size::kReadable;
}

}  // namespace

HiddenReason hiddenReasonOfTag(const TagShape &tag, std::u16string_view pageColor) {
  if (tag.hasAttribute("hidden")) return HiddenReason::kInvisible;
  const StyleFindings findings = findingsOfStyle(tag.ownAttribute("style"), pageColor);
  if (findings.isInvisible) return HiddenReason::kInvisible;
  if (findings.size == StyleFindings::Size::kTiny) return HiddenReason::kTiny;
  if (findings.isInPageColor) return HiddenReason::kSameColor;
  if (!pageColor.empty() && isSameColor(tag.ownAttribute("color"), pageColor)) return HiddenReason::kSameColor;
  return tag.ownAttribute("class").find(kFeedDateClass) == std::u16string_view::npos ? HiddenReason::kNone
                                                                                     : HiddenReason::kFeedDate;
}

bool hasOwnBackground(const TagShape &tag, std::u16string_view pageColor) {
  if (!tag.ownAttribute("background").empty()) return true;
  const std::u16string_view color = tag.ownAttribute("bgcolor");
  return (!color.empty() && !isSameColor(color, pageColor)) ||
         findingsOfStyle(tag.ownAttribute("style"), pageColor).hasOwnBackground;
}

void HiddenElement::begin(const PlainTextTag &startTag, HiddenReason reason) {
  reason_ = reason;
  element_.begin(startTag);
}

bool HiddenElement::isEndedByStartTag(const PlainTextTag &tag) {
  if (reason_ != HiddenReason::kTiny || !hasReadableSize(tag.shape)) return element_.isEndedByStartTag(tag);
  *this = {};
  return true;
}

}  // namespace nimbo::detail
