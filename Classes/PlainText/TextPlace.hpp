// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Classes/PlainText/FollowedElement.hpp"

namespace nimbo::detail {

/// Follows where text may stand on a page: in the body, but not in what stands for scripts, frames and embedded
/// things, and not behind a script or style that never ends.
class TextPlace {
 public:
  /// With `onlyBody` the page begins outside of the body, else everything counts as in it.
  explicit TextPlace(bool onlyBody) : bodyDepth_(onlyBody ? 0 : kEverywhere) {}

  bool isInBody() const { return bodyDepth_ >= 1; }
  bool allowsText() const {
    return isInBody() && !isInNoframes_ && !isInNoscript_ && !unshown_.isOpen() &&
           rawText_ == TagName::kUnknown;
  }
  /// The script or style whose start tag alone the scanner told of; `kUnknown` where none is open.
  TagName rawText() const { return rawText_; }

  /// Enters the body with a positive change, leaves it with a negative one.
  void changeBodyDepth(std::int32_t change) { bodyDepth_ += change; }
  /// The tag is one of "noframes" or "noscript".
  void followAlternative(const PlainTextTag &tag);
  /// Begins an element of which no content is shown, unless the tag is that of one which is open for all to
  /// see.
  void beginUnshown(const PlainTextTag &startTag);
  /// Must be told of every tag with a name; the element may end with it.
  void followUnshown(const PlainTextTag &tag) {
    if (unshown_.isOpen() && tag.depthChange != 0) endUnshown(tag);
  }
  /// The tag is one of "script" or "style".
  void followRawText(const PlainTextTag &tag);
  /// Leaves all elements but the body.
  void leaveElements() {
    isInNoframes_ = isInNoscript_ = false;
    rawText_ = TagName::kUnknown;
    unshown_ = {};
  }

 private:
  /// No page has so many end tags that this depth comes down to 0.
  static constexpr std::int32_t kEverywhere = 0x3fffffff;

  void endUnshown(const PlainTextTag &tag);

  std::int32_t bodyDepth_;
  bool isInNoframes_ = false;
  bool isInNoscript_ = false;
  TagName rawText_ = TagName::kUnknown;
  /// The outermost element of which no content is shown.
  FollowedElement unshown_;
};

}  // namespace nimbo::detail
