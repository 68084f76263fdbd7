// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextJunk.hpp"

#include "Classes/Characters/CharacterSetRep.hpp"

namespace nimbo::detail {

namespace {

constexpr std::size_t kOverlongText = 10000;
constexpr std::size_t kOverlongLinkOrHeading = 3500;
constexpr std::size_t kShortestSplitText = 100;
constexpr std::size_t kMostGroups = 4;
constexpr std::size_t kLongestAverageGroup = 5;

bool isSplit(std::u16string_view text) {
  const CharacterSetRep &alphaNums = *alphaNumCharacterSetRep();
  std::size_t groups = 0, units = 0;
  bool isInGroup = false;
  for (const unichar c : text) {
    const bool isPart = !alphaNums.contains(c);
    groups += isPart && !isInGroup;
    units += isPart;
    isInGroup = isPart;
  }
  return groups > kMostGroups && units > groups * kLongestAverageGroup;
}

}  // namespace

bool isJunkText(std::u16string_view text, bool isInLinkOrHeading) {
  return text.size() > (isInLinkOrHeading ? kOverlongLinkOrHeading : kOverlongText) ||
         (text.size() >= kShortestSplitText && isSplit(text));
}

}  // namespace nimbo::detail
