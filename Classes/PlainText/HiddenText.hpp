// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "Classes/PlainText/HiddenElement.hpp"

namespace nimbo::detail {

/// Follows what a reader of the page does not see: hidden elements, and text in the colour of the page, unless
/// an element around it has a background of its own.
class HiddenText {
 public:
  /// Why the text here is left out; `kNone` when it is not.
  HiddenReason reason() const { return element_ ? element_.reason() : HiddenReason::kNone; }
  /// Why the tag's own text, that of an attribute, is hidden.
  HiddenReason reasonOf(const TagShape &tag) const;

  void follow(const PlainTextTag &tag);
  /// The colour of the body; empty when it has none.
  void setPageColor(std::u16string_view color) { pageColor_ = color; }
  /// Leaves all elements but the body.
  void leaveElements() {
    element_ = {};
    background_ = {};
  }

 private:
  void followBackground(const PlainTextTag &startTag);
  void followElement(const PlainTextTag &startTag);

  std::u16string pageColor_;
  /// The outermost element that is hidden.
  HiddenElement element_;
  /// The outermost element with a background of its own.
  FollowedElement background_;
};

}  // namespace nimbo::detail
