// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>

#include "platform/CSS/CSSElements.hpp"
#include "platform/CSS/CSSSelector.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Matches selectors against the elements of a page.
///
/// A selector is tried from right to left. Of the elements that a combinator leaves open, the nearest is taken;
/// a farther one is tried only where that can make a difference, so that the work is bounded by the selector's
/// length and the page's depth, not by their powers. What is left, such as ":has()", takes from a budget for
/// the whole page; when that is used up, nothing matches any more.
///
/// It caches counts of siblings and is used by one thread. The elements must be complete and outlive it.
class CSSSelectorMatcher {
 public:
  /// How many looks at an element a page may cost.
  static constexpr std::uint64_t kBudget = 2'000'000'000;
  /// How many elements one ":has()" looks at.
  static constexpr std::uint32_t kMaximumHasElements = 4096;

  /// A matcher for the page.
  explicit CSSSelectorMatcher(const CSSElements &elements, std::uint64_t budget = kBudget)
      : elements_(&elements), budget_(budget) {}

  /// Whether the selector matches the element, or its pseudo-element.
  bool matches(const CSSSelector &selector, CSSElementIndex element);
  /// The elements.
  const CSSElements &elements() const { return *elements_; }
  /// How many looks at an element have been made.
  std::uint64_t cost() const { return cost_; }
  /// Adds to the cost; false when the budget is used up.
  bool spend(std::uint64_t looks) { return (cost_ += looks) <= budget_; }

 private:
  /// How far a failure reaches.
  enum class Outcome : std::uint8_t { kMatches, kFailsHere, kFailsForSiblings, kFailsForAncestors };
  struct CountKey {
    const void *list;
    CSSName type;
    CSSElementIndex parent;
    bool operator==(const CountKey &) const = default;
  };
  struct CountKeyHash {
    std::size_t operator()(const CountKey &key) const;
  };
  struct Count {
    CSSElementIndex element;
    std::uint32_t count;
  };

  Outcome matchFrom(std::span<const CSSSelectorPart> parts, CSSElementIndex element);
  bool matchesPart(const CSSSelectorPart &part, CSSElementIndex element);
  bool matchesPseudoClass(const CSSSelectorPart &part, CSSElementIndex element);
  bool matchesAttribute(const CSSSelectorPart &part, const CSSElements::Element &element) const;
  bool matchesAny(std::span<const CSSSelector> list, CSSElementIndex element);
  bool matchesHas(std::span<const CSSSelector> list, CSSElementIndex element);
  bool matchesNth(const CSSSelectorPart &part, CSSElementIndex element);
  bool isCounted(const CSSSelectorPart &part, CSSName type, CSSElementIndex element);
  std::uint32_t indexAmongCounted(const CSSSelectorPart &part, CSSElementIndex element, bool fromEnd);

  const CSSElements *elements_;
  std::uint64_t budget_;
  std::uint64_t cost_ = 0;
  CSSElementIndex scope_ = kNoCSSElement;
  std::unordered_map<CountKey, Count, CountKeyHash> counts_, totals_;
};

}  // namespace nimbo
