// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo::detail {

/// Follows links and headings: how deep they are nested, and whether a link follows another one directly, from
/// which its text must then be set apart.
class LinksAndHeadings {
 public:
  bool isInside() const { return depth_ > 0; }
  /// Whether nothing that is shown stands between the end of a link and the tag.
  bool endsLinkAt(const TagShape &tag) const { return linkEnd_ == tag.tagRange().location; }

  /// The tag is one of a link.
  void followLink(const PlainTextTag &tag) {
    if (tag.shape.isEndTag()) linkEnd_ = endOf(tag.shape);
    followHeading(tag);
  }
  /// The tag is one of a heading.
  void followHeading(const PlainTextTag &tag) {
    if (tag.depthChange > 0) ++depth_;
    if (tag.depthChange < 0 && depth_ > 0) --depth_;
  }
  /// The tag, a comment or script, is never shown, as if it did not stand behind a link.
  void passOver(const TagShape &tag) {
    if (endsLinkAt(tag)) linkEnd_ = endOf(tag);
  }
  /// Forgets the last link.
  void leaveLink() { linkEnd_ = NSNotFound; }

 private:
  static std::uint32_t endOf(const TagShape &tag) { return tag.tagRange().location + tag.tagRange().length; }

  std::uint32_t depth_ = 0;
  /// Behind the last end tag of a link, and what is never shown behind that.
  std::uint32_t linkEnd_ = NSNotFound;
};

}  // namespace nimbo::detail
