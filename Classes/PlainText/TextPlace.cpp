// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/TextPlace.hpp"

namespace nimbo::detail {

void TextPlace::followAlternative(const PlainTextTag &tag) {
  bodyDepth_ += tag.depthChange;
  if (tag.depthChange == 0) return;
  (tag.name == TagName::kNoframes ? isInNoframes_ : isInNoscript_) = tag.depthChange > 0;
}

void TextPlace::followRawText(const PlainTextTag &tag) {
  // An element that ends is one tag, with its end tag in it, where the scanner saw it begin.
  if (tag.depthChange > 0 && tag.shape.tag().rfind(u"</") == std::u16string_view::npos)
    rawText_ = tag.name;
  else if (tag.shape.isEndTag() && rawText_ == tag.name)
    rawText_ = TagName::kUnknown;
}

}  // namespace nimbo::detail
