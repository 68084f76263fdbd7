// SPDX-License-Identifier: Apache-2.0
//
// What `removeJunk` takes out of a page.
#pragma once

#include <cstdint>
#include <string_view>

#include "Classes/PlainText/FollowedElement.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// So many units without a break are no text that a person wrote.
inline constexpr std::uint32_t kOverlongLine = 20001;

/// Whether a text that stands between two tags, its blanks collapsed, is junk: longer than 10000 units, or than
/// 3500 within a link or heading, which are short by nature; or, from 100 units on, split by more than 4 groups
/// of units that are neither letters nor digits, of more than 5 units on average.
bool isJunkText(std::u16string_view text, bool isInLinkOrHeading);

/// Why the text of an element is left out.
enum class HiddenReason : std::uint8_t {
  kNone,
  kInvisible,  ///< Not displayed, not visible, or outside the page.
  kTiny,       ///< Too small to be read.
  kSameColor,  ///< In the colour of the page.
  kFeedDate,   ///< The date line of an article in the page made of a feed; not junk, but no part of the text.
};

/// Why the tag's element is hidden by its attributes; `pageColor` is the colour behind it where that is the
/// body's, else nil.
HiddenReason hiddenReasonOfTag(const StartTag &tag, const NSString &pageColor);
/// Whether the tag puts a picture or another colour than the body's behind its text.
bool hasOwnBackground(const StartTag &tag, const NSString &pageColor);

/// Follows a hidden element to its end.
class HiddenElement {
 public:
  explicit operator bool() const { return element_.isOpen(); }
  HiddenReason reason() const { return reason_; }

  void begin(const StartTag &tag, HiddenReason reason);
  /// As those of `FollowedElement`; what has a size of its own ends an element that is too small.
  bool isEndedByStartTag(const StartTag &tag);
  void endTag(std::uint64_t name, const TagRule &rule) { element_.isEndedByEndTag(name, rule); }

 private:
  HiddenReason reason_ = HiddenReason::kNone;
  FollowedElement element_;
};

}  // namespace nimbo::detail
