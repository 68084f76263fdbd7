// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/StyledBlocks.hpp"

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/PlainText/PlainTextStyle.hpp"

namespace nimbo::detail {

namespace {

/// Whether the word stands in the tag at all, which is rare and found fast.
bool mentionsDisplay(std::u16string_view tag) {
  constexpr std::string_view kDisplay = "display";
  return fastCaseInsensitiveUnicharsContainChars(tag.data(), static_cast<std::uint32_t>(tag.size()),
                                                 kDisplay.data(), kDisplay.size());
}

}  // namespace

bool StyledBlocks::begin(const PlainTextTag &startTag) {
  if (isVoid(startTag.rule.element) || !mentionsDisplay(startTag.shape.tag()) ||
      !findingsOfStyle(startTag.shape.ownAttribute("style"), {}).isBlock)
    return enter(startTag);
  open_.push_back({startTag.packedName, 1});
  return true;
}

bool StyledBlocks::end(const PlainTextTag &endTag) {
  if (open_.back().packedName != endTag.packedName || --open_.back().depth > 0) return false;
  open_.pop_back();
  return true;
}

}  // namespace nimbo::detail
