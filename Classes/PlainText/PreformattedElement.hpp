// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo::detail {

/// Follows the elements that keep their white space: pre, and textarea, xmp and plaintext, in which tags are
/// text.
class PreformattedElement {
 public:
  /// Whether white space is kept because of pre.
  bool isInPre() const { return preDepth_ > 0; }
  /// The element in which tags are text; `kOther` where none is open.
  TagElement literal() const { return literal_; }

  void followPre(const PlainTextTag &tag) {
    if (tag.depthChange > 0) ++preDepth_;
    if (tag.depthChange < 0 && preDepth_ > 0) --preDepth_;
    skipsLineBreak_ = tag.depthChange > 0;
  }
  void beginLiteral(TagElement element) {
    literal_ = element;
    skipsLineBreak_ = true;
  }
  void endLiteral() { literal_ = TagElement::kOther; }

  /// The text without a line break directly behind the start tag. To be called once for each text that keeps
  /// its white space, which is not empty.
  std::u16string_view textBehindStartTag(std::u16string_view text);

 private:
  std::uint32_t preDepth_ = 0;
  bool skipsLineBreak_ = false;
  TagElement literal_ = TagElement::kOther;
};

}  // namespace nimbo::detail
