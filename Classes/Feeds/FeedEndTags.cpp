// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedEndTags.hpp"

#include <algorithm>

#include "Classes/Feeds/FeedTexts.hpp"

namespace nimbo::detail {

void FeedEndTags::take(const TagShape &tag, FeedElement element) {
  if (element == FeedElement::kOther || !tag.isOrdinary()) return;
  // No element is longer than the item that it is of.
  if (element == FeedElement::kItem) return openOnes_.fill(kNone);
  std::size_t &open = openOnes_[static_cast<std::size_t>(element)];
  if (tag.isStartTag()) {
    starts_.push_back({endOf(tag.tag()), open});
    open = starts_.size() - 1;
  } else if (tag.isEndTag() && open != kNone) {
    starts_[open].hasEnd = true;
    open = starts_[open].outer;
  }
}

bool FeedEndTags::haveThatOf(const unichar *text) const {
  const auto start = std::ranges::lower_bound(starts_, text, {}, &Start::text);
  return start != starts_.end() && start->text == text && start->hasEnd;
}

}  // namespace nimbo::detail
