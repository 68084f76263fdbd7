// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/FastSearches.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string_view>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/FoldCandidates.hpp"
#include "Classes/Characters/LinearSearch.hpp"
#include "Classes/Characters/UnicharSearches.hpp"

namespace nimbo {

namespace {

using detail::LinearSearch;
using detail::UnicharAnchors;
using detail::UnicharChoice;

/// What it costs to look closely at a place where both anchors fit, in units compared.
constexpr std::size_t kVerifyingCost = 8;
/// How many units may be compared in vain: so many, and one more for each unit that was passed.
constexpr std::size_t kVainUnits = 512;
/// How many units a linear search then walks before the anchors are tried again: so many, or this multiple of
/// the needle's length, so that what is looked at twice stays a part of the whole.
constexpr std::size_t kLinearUnits = 16384;
constexpr std::size_t kLinearNeedles = 4;

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
  /// Two anchors, and what was compared in vain where they fit.
  struct Attempt {
    const Needle &needle;
    std::size_t firstAnchor;
    const unichar *start;
    std::size_t vainUnits = 0;
    bool isTooDense = false;
  };

  std::size_t find(const unichar *h, std::size_t places) const {
    // The outermost units that one comparison finds; the ends, when there are none.
    std::uint32_t first = 0, second = length_ - 1;
    while (first < length_ && !choiceAt(first).isSimple()) ++first;
    if (first == length_) first = 0;
    while (second > first && !choiceAt(second).isSimple()) --second;
    if (second == first) second = length_ - 1;
    const UnicharAnchors anchors{choiceAt(first), choiceAt(second), second - first};

    return foldTable_ ? find(h, places, first, anchors, [table = foldTable_](unichar c) { return table[c]; })
                      : find(h, places, first, anchors, [](unichar c) { return c; });
  }

  template <class Fold>
  std::size_t find(const unichar *h, std::size_t places, std::uint32_t firstAnchor,
                   const UnicharAnchors &anchors, Fold fold) const {
    const auto wanted = [elements = elements_, fold](std::size_t i) { return fold(unicharOf(elements[i])); };
    std::optional<LinearSearch<decltype(wanted)>> linearSearch;
    for (std::size_t from = 0;;) {
      Attempt attempt{*this, firstAnchor, h + from};
      from += detail::findAnchors(h + from + firstAnchor, places - from, anchors,
                                  {foldTable_ ? stopsFolded : stopsExactly, &attempt});
      if (!attempt.isTooDense) return from;
      // The anchors fit at so many places that a walk over all units is faster.
      if (!linearSearch) linearSearch.emplace(wanted, length_);
      const std::size_t walked = std::max(kLinearUnits, kLinearNeedles * length_);
      const std::u16string_view rest(h + from, places - from + length_ - 1);
      const auto [found, place] = linearSearch->search(rest.substr(0, walked), fold);
      from += place;
      if (found || from >= places) return std::min(from, places);
    }
  }

  UnicharChoice choiceAt(std::uint32_t index) const {
    const unichar c = unicharOf(elements_[index]);
    return foldTable_ ? detail::foldCandidates(foldTable_[c]) : UnicharChoice::only(c);
  }

  /// Whether the search stops at a place where both anchors fit: it is a match, or there were too many others.
  template <class Equals>
  bool stops(Attempt &attempt, const unichar *place, Equals equals) const {
    const unichar *const h = place - attempt.firstAnchor;
    std::uint32_t i = 0;
    while (i < length_ && equals(h[i], unicharOf(elements_[i]))) ++i;
    if (i == length_) return true;
    attempt.vainUnits += kVerifyingCost + i;
    attempt.isTooDense = attempt.vainUnits > kVainUnits + static_cast<std::size_t>(h - attempt.start);
    return attempt.isTooDense;
  }

  static bool stopsExactly(void *context, const unichar *place) {
    auto &attempt = *static_cast<Attempt *>(context);
    return attempt.needle.stops(attempt, place, [](unichar a, unichar b) { return a == b; });
  }

  static bool stopsFolded(void *context, const unichar *place) {
    auto &attempt = *static_cast<Attempt *>(context);
    const unichar *const table = attempt.needle.foldTable_;
    return attempt.needle.stops(attempt, place, [table](unichar a, unichar b) { return table[a] == table[b]; });
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
