// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PreformattedElement.hpp"

#include "Classes/Characters/UnitPredicates.hpp"

namespace nimbo::detail {

std::u16string_view PreformattedElement::textBehindStartTag(std::u16string_view text) {
  const bool skips = skipsLineBreak_ && (text.front() == u'\n' || text.front() == u'\r');
  skipsLineBreak_ = false;
  return skips ? text.substr(lengthOfLineBreak(text, 0)) : text;
}

}  // namespace nimbo::detail
