// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/TextPlace.hpp"

namespace nimbo::detail {

void TextPlace::followAlternative(const PlainTextTag &tag) {
  bodyDepth_ += tag.depthChange;
  if (tag.depthChange == 0) return;
  (tag.name == TagName::kNoframes ? isInNoframes_ : isInNoscript_) = tag.depthChange > 0;
}

void TextPlace::beginUnshown(const PlainTextTag &startTag) {
  if (unshown_.isOpen()) return;
  if (startTag.name == TagName::kDialog && startTag.shape.hasAttribute("open")) return;
  // Without an address, the content is all there is.
  if (startTag.name == TagName::kObject && startTag.shape.ownAttribute("data").empty()) return;
  unshown_.begin(startTag);
}

void TextPlace::endUnshown(const PlainTextTag &tag) {
  if (tag.depthChange < 0)
    unshown_.isEndedByEndTag(tag);
  else if (!isVoid(tag.rule.element))
    unshown_.isEndedByStartTag(tag);
}

void TextPlace::followRawText(const PlainTextTag &tag) {
  // An element that ends is one tag, with its end tag in it, where the scanner saw it begin.
  if (tag.depthChange > 0 && tag.shape.tag().rfind(u"</") == std::u16string_view::npos)
    rawText_ = tag.name;
  else if (tag.shape.isEndTag() && rawText_ == tag.name)
    rawText_ = TagName::kUnknown;
}

}  // namespace nimbo::detail
