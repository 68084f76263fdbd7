// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/StyledBlocks.hpp"

#include <array>
#include <bit>
#include <cstring>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/PlainText/PlainTextStyle.hpp"

namespace nimbo::detail {

namespace {

/// Whether "style", in any case, may be in the tag with room for such a style behind it: whether its "yl" is.
/// "<b st" stands in front of that at least, and "yle=display:flex>" from it on.
bool mayHaveStyle(std::u16string_view tag) {
  constexpr std::size_t kLanes = 8, kBlock = 2 * kLanes, kFirst = 5, kShortestRest = kBlock + 1;
  typedef std::uint16_t Units __attribute__((vector_size(kLanes * sizeof(unichar))));
  constexpr std::uint16_t kCase = 0x20, kY = u'y', kL = u'l';
  const auto hasWordAt = [&](std::size_t i) {
    Units first, second;
    std::memcpy(&first, tag.data() + i, sizeof first);
    std::memcpy(&second, tag.data() + i + 1, sizeof second);
    return ((first | kCase) == kY) & ((second | kCase) == kL);
  };
  for (std::size_t i = kFirst; i + kShortestRest <= tag.size(); i += kBlock) {
    const auto found = std::bit_cast<std::array<std::uint64_t, 2>>(hasWordAt(i) | hasWordAt(i + kLanes));
    if ((found[0] | found[1]) != 0) return true;
  }
  return false;
}

bool isBlockStyle(std::u16string_view style) {
  constexpr std::string_view kDisplay = "display";
  return fastCaseInsensitiveUnicharsContainChars(style.data(), static_cast<std::uint32_t>(style.size()),
                                                 kDisplay.data(), kDisplay.size()) &&
         findingsOfStyle(style, {}).isBlock;
}

}  // namespace

bool StyledBlocks::begin(const PlainTextTag &startTag) {
  const TagElement element = startTag.rule.element;
  // A script is a tag with all that is in it.
  if (isVoid(element) || element == TagElement::kRawText || !mayHaveStyle(startTag.shape.tag()) ||
      !isBlockStyle(startTag.shape.ownAttribute("style")))
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
