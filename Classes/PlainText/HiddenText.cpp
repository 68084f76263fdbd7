// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/HiddenText.hpp"

namespace nimbo::detail {

HiddenReason HiddenText::reasonOf(const TagShape &tag) const {
  return hiddenReasonOfTag(tag, background_.isOpen() ? std::u16string_view() : pageColor_);
}

void HiddenText::follow(const PlainTextTag &tag) {
  if (tag.rule.element == TagElement::kRawText) return;
  if (tag.depthChange < 0) {
    if (background_.isOpen()) background_.isEndedByEndTag(tag);
    if (element_) element_.isEndedByEndTag(tag);
  } else if (tag.depthChange > 0 && !isVoid(tag.rule.element)) {
    followBackground(tag);
    followElement(tag);
  }
}

void HiddenText::followBackground(const PlainTextTag &startTag) {
  if (background_.isOpen() && !background_.isEndedByStartTag(startTag)) return;
  if (pageColor_.empty() || startTag.rule.element == TagElement::kBody) return;
  if (hasOwnBackground(startTag.shape, pageColor_)) background_.begin(startTag);
}

void HiddenText::followElement(const PlainTextTag &startTag) {
  if (element_ && !element_.isEndedByStartTag(startTag)) return;
  if (startTag.rule.element == TagElement::kBody || startTag.rule.element == TagElement::kHead) return;
  const HiddenReason reason = reasonOf(startTag.shape);
  if (reason != HiddenReason::kNone) element_.begin(startTag, reason);
}

}  // namespace nimbo::detail
