// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo::detail {

/// Follows elements that stand in lines of their own because their "style" attribute says so, though others of
/// their name do not.
class StyledBlocks {
 public:
  /// Must be told of every tag with a name, and answers whether such an element begins or ends with it.
  bool beginOrEndAt(const PlainTextTag &tag) {
    if (tag.rule.tagBreak > TagBreak::kSpace) return false;
    if (tag.depthChange > 0) return tag.shape.tag().size() >= kShortestTag ? begin(tag) : enter(tag);
    return tag.depthChange < 0 && !open_.empty() && end(tag);
  }
  /// Leaves all elements.
  void leave() { open_.clear(); }

 private:
  /// The length of "<b style=display:flex>".
  static constexpr std::size_t kShortestTag = 22;

  struct Block {
    std::uint64_t packedName;
    /// How many elements of the name are open in it, itself counted.
    std::uint32_t depth;
  };

  bool begin(const PlainTextTag &startTag);
  /// The tag begins an element that is no such one.
  bool enter(const PlainTextTag &startTag) {
    if (!open_.empty() && open_.back().packedName == startTag.packedName) ++open_.back().depth;
    return false;
  }
  bool end(const PlainTextTag &endTag);

  std::vector<Block> open_;
};

}  // namespace nimbo::detail
