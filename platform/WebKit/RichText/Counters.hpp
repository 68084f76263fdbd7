// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/CSS/CSSValue.hpp"

namespace nimbo::detail {

/// The name of the counter that numbers the items of lists.
inline constexpr std::u16string_view kListItemCounter = u"list-item";

/// The counters of a page's elements, while they are walked in the order of the page. A counter is there for
/// the siblings behind the element that resets it, and for what is in them.
///
///     counters.enter(depth);
///     counters.reset(u"section", 0, depth);
///     counters.increment(u"section", 1, depth);
///     counters.value(u"section");  // 1
class Counters {
 public:
  /// How many changes that style sheets ask for a page may cost; then counters stand still.
  static constexpr std::uint32_t kMaximumChanges = 1U << 22;

  /// Makes a counter for an element at `depth`.
  void reset(std::u16string_view name, std::int32_t value, std::uint32_t depth);
  /// Adds to the innermost counter, which is made when there is none.
  void increment(std::u16string_view name, std::int32_t step, std::uint32_t depth);
  /// Sets the innermost counter, which is made when there is none.
  void set(std::u16string_view name, std::int32_t value, std::uint32_t depth);
  /// Does what the values of "counter-reset", "counter-increment" and "counter-set" say.
  void apply(const CSSValue &resets, const CSSValue &increments, const CSSValue &sets, std::uint32_t depth);
  /// Forgets the counters that were made in the element at `depth`, which ends.
  void leave(std::uint32_t depth);

  /// The value of the innermost counter; 0 when there is none.
  std::int32_t value(std::u16string_view name) const;
  /// The values of all counters of the name, from the outermost on; 0 alone when there is none.
  std::vector<std::int32_t> values(std::u16string_view name) const;

 private:
  static constexpr std::uint32_t kNone = 0xffffffff;
  struct Instance {
    std::uint32_t name;
    std::uint32_t depth;
    /// The next one further outside, in `instances_`.
    std::uint32_t outer;
    std::int32_t value;
  };

  std::uint32_t innermost(std::u16string_view name) const;
  Instance &instance(std::u16string_view name, std::uint32_t depth);

  std::unordered_map<std::u16string, std::uint32_t> names_;
  /// The innermost counter of each name.
  std::vector<std::uint32_t> innermost_;
  std::vector<Instance> instances_;
  std::uint32_t changesLeft_ = kMaximumChanges;
};

}  // namespace nimbo::detail
