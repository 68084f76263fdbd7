// SPDX-License-Identifier: Apache-2.0
//
// What `removeJunk` takes out of a page.
#pragma once

#include <cstdint>
#include <string_view>

#include "Classes/PlainTextTags.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// So many units without a line's end are no text that a person wrote.
inline constexpr std::uint32_t kOverlongLine = 20001;

/// Whether a text that stands between two tags, its blanks collapsed, is junk: longer than 10000 units, or than
/// 3500 within a link or heading, which are short by nature; or, from 100 units on, split by more than 4 groups
/// of units that are neither letters nor digits, of more than 5 units on average.
bool isJunkText(std::u16string_view text, bool isInLinkOrHeading);

/// A start tag and the page it stands in.
struct StartTag {
  std::u16string_view units;
  std::uint64_t name;
  const TagRule &rule;
};

/// Why the text of an element is left out.
enum class HiddenReason : std::uint8_t {
  kNone,
  kInvisible,  ///< Not displayed, not visible, or outside the page.
  kTiny,       ///< Too small to be read.
  kSameColor,  ///< In the colour of the page.
  kFeedDate,   ///< The date line of an article in the page made of a feed; not junk, but no part of the text.
};

/// Why the tag's element is hidden by its attributes; `pageColor` is the body's colour, or nil.
HiddenReason hiddenReasonOfTag(const StartTag &tag, const NSString &pageColor);
/// Whether the tag gives its text a size that can be read.
bool hasReadableSize(const StartTag &tag);

/// Follows a hidden element to its end.
class HiddenElement {
 public:
  explicit operator bool() const { return reason_ != HiddenReason::kNone; }
  HiddenReason reason() const { return reason_; }

  void begin(const StartTag &tag, HiddenReason reason);
  /// Both are told of every tag inside the element; they may end it, and answer whether they did. An end is
  /// taken from the tag itself, or from one that implies it: the next item of a list, the end of the list, a
  /// block behind a paragraph.
  bool isEndedByStartTag(const StartTag &tag);
  void endTag(std::uint64_t name, const TagRule &rule);

 private:
  HiddenReason reason_ = HiddenReason::kNone;
  TagElement element_ = TagElement::kOther;
  std::uint64_t name_ = 0;
  std::uint32_t depth_ = 0;
  std::uint32_t listDepth_ = 0;
};

}  // namespace nimbo::detail
