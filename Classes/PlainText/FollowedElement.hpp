// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo::detail {

/// Follows an element from its start tag to its end, in markup that leaves end tags out. The end is taken from
/// its own end tag or from one that implies it: the next item, cell, row or option, a block behind a paragraph,
/// the end of an element that it stands in.
class FollowedElement {
 public:
  bool isOpen() const { return depth_ > 0; }

  void begin(const PlainTextTag &startTag);
  /// Must be told of every start tag while the element is open, and answers whether that ends it; the tag is
  /// then not a part of the element.
  bool isEndedByStartTag(const PlainTextTag &tag);
  /// Must be told of every end tag while the element is open, and answers whether that ends it.
  bool isEndedByEndTag(const PlainTextTag &tag);

 private:
  /// How many elements of a name are open in it.
  struct InnerElements {
    TagName name;
    std::uint32_t count;
  };

  bool isItem() const { return rule_.element == TagElement::kListItem; }
  bool isImpliedEnd(const PlainTextTag &startTag) const;
  bool endsWith(const PlainTextTag &container) const;
  std::uint32_t *innerCount(TagName name);

  std::uint64_t packedName_ = 0;
  TagName name_ = TagName::kUnknown;
  TagRule rule_;
  std::uint32_t depth_ = 0;
  std::uint32_t listDepth_ = 0;
  std::vector<InnerElements> inner_;
};

}  // namespace nimbo::detail
