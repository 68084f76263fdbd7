// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo::detail {

/// A start tag and what is known of its name.
struct StartTag {
  std::u16string_view units;
  std::uint64_t name;
  const TagRule &rule;
};

/// Follows an element from its start tag to its end, in markup that leaves end tags out. The end is taken from
/// its own end tag or from one that implies it: the next item, cell, row or option, a block behind a paragraph,
/// the end of an element that it stands in.
class FollowedElement {
 public:
  bool isOpen() const { return depth_ > 0; }

  void begin(const StartTag &tag);
  /// Both are told of every tag while the element is open, and answer whether it has ended; a start tag that
  /// ends it is not a part of it.
  bool isEndedByStartTag(const StartTag &tag);
  bool isEndedByEndTag(std::uint64_t name, const TagRule &rule);

 private:
  /// How many elements of a name are open in it.
  struct InnerElements {
    std::uint64_t name;
    std::uint32_t count;
  };

  bool isItem() const { return rule_.element == TagElement::kListItem; }
  bool isImpliedEnd(const StartTag &tag) const;
  bool endsWith(const TagRule &container) const;
  std::uint32_t *innerCount(std::uint64_t name);
  void leaveInner(std::uint32_t &count, const TagRule &rule);

  TagRule rule_{};
  std::uint32_t depth_ = 0;
  std::uint32_t listDepth_ = 0;
  std::vector<InnerElements> inner_;
};

}  // namespace nimbo::detail
