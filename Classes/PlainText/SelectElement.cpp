// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/SelectElement.hpp"

namespace nimbo::detail {

void SelectElement::begin(const TagShape &startTag, const PlainTextWriter &writer) {
  const std::u16string_view size = startTag.ownAttribute("size");
  isOpen_ = true;
  hasOption_ = false;
  showsAllOptions_ = startTag.hasAttribute("multiple") || (!size.empty() && size != u"1");
  start_ = writer.mark();
}

void SelectElement::beginOption(const TagShape &startTag, PlainTextWriter &writer) {
  if (!isOpen_ || showsAllOptions_) return;
  const bool isSelected = startTag.hasAttribute("selected");
  if (isSelected && hasOption_) writer.goBackTo(start_);
  isInHiddenOption_ = hasOption_ && !isSelected;
  hasOption_ = true;
}

}  // namespace nimbo::detail
