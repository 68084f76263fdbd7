// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "Classes/PlainText/FollowedElement.hpp"

namespace nimbo::detail {

/// Why the text of an element is left out.
enum class HiddenReason : std::uint8_t {
  kNone,
  kInvisible,  ///< Not displayed, not visible, or outside the page.
  kTiny,       ///< Too small to be read.
  kSameColor,  ///< In the colour of the page.
  kFeedDate,   ///< The date line of an article in the page made of a feed; not junk, but no part of the text.
};

/// Why the tag's element is hidden by its attributes. `pageColor` is the colour behind it where that is the
/// body's, else empty.
HiddenReason hiddenReasonOfTag(const TagShape &tag, std::u16string_view pageColor);
/// Whether the tag puts a picture or another colour than the body's behind its text.
bool hasOwnBackground(const TagShape &tag, std::u16string_view pageColor);

/// Follows a hidden element to its end.
class HiddenElement {
 public:
  explicit operator bool() const { return element_.isOpen(); }
  HiddenReason reason() const { return reason_; }

  void begin(const PlainTextTag &startTag, HiddenReason reason);
  /// As that of `FollowedElement`; what has a size of its own ends an element that is too small.
  bool isEndedByStartTag(const PlainTextTag &tag);
  /// As that of `FollowedElement`.
  bool isEndedByEndTag(const PlainTextTag &tag) { return element_.isEndedByEndTag(tag); }

 private:
  HiddenReason reason_ = HiddenReason::kNone;
  FollowedElement element_;
};

}  // namespace nimbo::detail
