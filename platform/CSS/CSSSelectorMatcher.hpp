// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/CSS/CSSElements.hpp"
#include "platform/CSS/CSSSelector.hpp"

namespace NIMBO_PUBLIC nimbo {

enum class CSSSelectorPartKind : std::uint8_t;

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
  static constexpr std::uint64_t kBudget = 500'000'000;
  /// How many compounds of selectors in each other are matched at a time; deeper ones fail.
  static constexpr std::uint32_t kMaximumDepth = 1024;
  /// How many elements one ":has()" looks at.
  static constexpr std::uint32_t kMaximumHasElements = 4096;

  /// A matcher for the page.
  explicit CSSSelectorMatcher(const CSSElements &elements, std::uint64_t budget = kBudget);

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
  enum class Outcome : std::uint8_t {
    kMatches,
    kFailsHere,         ///< A farther sibling or ancestor may match.
    kFailsForSiblings,  ///< No farther sibling matches; an ancestor may.
    kFails,
  };
  /// The siblings that a place is counted among.
  struct Counted {
    /// Null for all of a type.
    const CSSSelector *list;
    /// The type, or the length of the list.
    std::uint32_t typeOrLength;
    CSSElementIndex parent;
    bool operator==(const Counted &) const = default;
  };
  struct CountedHash {
    std::size_t operator()(const Counted &counted) const;
  };
  /// How many of them there are up to an element and with it.
  struct Count {
    CSSElementIndex element;
    std::uint32_t count;
  };

  Outcome matchFrom(std::span<const CSSSelectorPart> parts, CSSElementIndex index);
  Outcome matchAlong(std::span<const CSSSelectorPart> rest, CSSCombinator combinator, CSSElementIndex index);
  bool matchesPart(const CSSSelectorPart &part, CSSElementIndex index);
  bool matchesState(CSSSelectorPartKind state, const CSSElements::Element &element);
  bool matchesAttribute(const CSSSelectorPart &part, const CSSElements::Element &element);
  bool matchesLanguage(const CSSSelectorPart &part, CSSElementIndex index);
  bool isRightToLeft(CSSElementIndex index);
  bool isDisabled(const CSSElements::Element &element);
  bool matchesAny(std::span<const CSSSelector> list, CSSElementIndex index);
  bool matchesHas(std::span<const CSSSelector> list, CSSElementIndex index);
  bool matchesNth(const CSSSelectorPart &part, CSSElementIndex index);
  bool isCounted(const Counted &counted, CSSElementIndex index);
  std::uint32_t countUpTo(const Counted &counted, CSSElementIndex index);
  std::uint32_t countOfAll(const Counted &counted, CSSElementIndex index);
  CSSName known(std::size_t name) const { return known_[name]; }
  bool hasAttribute(const CSSElements::Element &element, std::size_t known) const;

  const CSSElements *elements_;
  std::uint64_t budget_;
  std::uint64_t cost_ = 0;
  CSSElementIndex scope_ = kNoCSSElement;
  std::uint32_t depth_ = 0;
  std::unordered_map<Counted, Count, CountedHash> counts_;
  std::unordered_map<Counted, std::uint32_t, CountedHash> totals_;
  std::vector<CSSName> known_;
};

}  // namespace nimbo
