// SPDX-License-Identifier: Apache-2.0
#include "Classes/FastSearches.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "Classes/CharacterTables.hpp"
#include "Classes/FoldCandidates.hpp"
#include "Classes/UnicharSearches.hpp"

namespace nimbo {

namespace {

using detail::UnicharChoice;

/// Folded copies of strings up to this length need no heap.
constexpr std::uint32_t kStackUnits = 256;

constexpr unichar unicharOf(unichar c) {
  return c;
}

constexpr unichar unicharOf(char c) {
  return unicharOfChar(c);
}

/// What is searched for: units or bytes, which a null fold table leaves as they are.
template <typename Element>
class Needle {
 public:
  Needle(const Element *elements, std::uint32_t length, const unichar *foldTable)
      : elements_(elements), length_(length), foldTable_(foldTable) {}

  const unichar *firstMatch(const unichar *h, std::uint32_t lenH) const {
    if (length_ == 0 || length_ > lenH) return nullptr;
    const std::uint32_t places = lenH - length_ + 1;
    const std::size_t place = length_ == 1 ? detail::findOneOfChoice(h, places, choiceAt(0)) : find(h, places);
    return place < places ? h + place : nullptr;
  }

 private:
  /// Where a needle begins, as seen from its first anchor.
  struct Candidate {
    const Needle &needle;
    std::uint32_t firstAnchor;
  };

  std::size_t find(const unichar *h, std::uint32_t places) const {
    // The outermost units that one comparison finds; the ends, when there are none.
    std::uint32_t first = 0, second = length_ - 1;
    while (first < length_ && !choiceAt(first).isSimple()) ++first;
    if (first == length_) first = 0;
    while (second > first && !choiceAt(second).isSimple()) --second;
    if (second == first) second = length_ - 1;
    const Candidate candidate{*this, first};
    return detail::findAnchors(h + first, places, {choiceAt(first), choiceAt(second), second - first},
                               {foldTable_ ? matchesFolded : matchesExactly, &candidate});
  }

  UnicharChoice choiceAt(std::uint32_t index) const {
    const unichar c = unicharOf(elements_[index]);
    return foldTable_ ? detail::foldCandidates(foldTable_[c]) : UnicharChoice::only(c);
  }

  static bool matchesExactly(const void *context, const unichar *place) {
    const auto &[needle, firstAnchor] = *static_cast<const Candidate *>(context);
    const unichar *const h = place - firstAnchor;
    for (std::uint32_t i = 0; i < needle.length_; ++i) {
      if (h[i] != unicharOf(needle.elements_[i])) return false;
    }
    return true;
  }

  static bool matchesFolded(const void *context, const unichar *place) {
    const auto &[needle, firstAnchor] = *static_cast<const Candidate *>(context);
    const unichar *const h = place - firstAnchor;
    const unichar *const table = needle.foldTable_;
    for (std::uint32_t i = 0; i < needle.length_; ++i) {
      if (table[h[i]] != table[unicharOf(needle.elements_[i])]) return false;
    }
    return true;
  }

  const Element *elements_;
  std::uint32_t length_;
  const unichar *foldTable_;
};

bool containsOneOf(const unichar *units, std::uint32_t length, std::span<const char *const> patterns) {
  for (const char *const pattern : patterns) {
    if (!pattern) return false;
    const std::size_t patternLength = std::strlen(pattern);
    if (patternLength > length) continue;
    // The byte that ends an empty pattern is looked for like the first of any other.
    const auto lengthToFind = std::max(static_cast<std::uint32_t>(patternLength), 1u);
    if (fastUnicharsContainChars(units, length, pattern, lengthToFind)) return true;
  }
  return false;
}

}  // namespace

const unichar *fastContainsUnichars(const unichar *h, std::uint32_t lenH, const unichar *n,
                                    std::uint32_t lenN) {
  return Needle(n, lenN, nullptr).firstMatch(h, lenH);
}

const unichar *fastUnicharsContainChars(const unichar *h, std::uint32_t lenH, const char *n,
                                        std::uint32_t lenN) {
  return Needle(n, lenN, nullptr).firstMatch(h, lenH);
}

const unichar *fastCaseInsensitiveContainsUnichars(const unichar *h, std::uint32_t lenH, const unichar *n,
                                                   std::uint32_t lenN) {
  return Needle(n, lenN, initUpperCharsTable()).firstMatch(h, lenH);
}

const unichar *fastCaseInsensitiveUnicharsContainChars(const unichar *h, std::uint32_t lenH, const char *n,
                                                       std::uint32_t lenN) {
  return Needle(n, lenN, initUpperCharsTable()).firstMatch(h, lenH);
}

bool fastContainsSubCStrings(const NSString &string, std::uint32_t length,
                             std::span<const char *const> patterns, const unichar *foldTable) {
  const unichar *const units = string.characters();
  length = std::min(length, string.length());
  if (length == 0) return false;
  if (!foldTable) return containsOneOf(units, length, patterns);

  std::array<unichar, kStackUnits> stackUnits;
  std::unique_ptr<unichar[]> heapUnits;
  unichar *folded = stackUnits.data();
  if (length > kStackUnits) {
    heapUnits.reset(new (std::nothrow) unichar[length]);
    if (!heapUnits) return false;
    folded = heapUnits.get();
  }
  std::transform(units, units + length, folded, [foldTable](unichar c) { return foldTable[c]; });
  return containsOneOf(folded, length, patterns);
}

}  // namespace nimbo
