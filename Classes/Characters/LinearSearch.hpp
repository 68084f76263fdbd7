// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// A search that compares a few times as many units as there are, at the most, however much the text looks like
/// what is searched for: the two-way algorithm of Crochemore and Perrin. On other text those of FastSearches
/// are far faster. It takes no memory.
///
/// `Wanted` gives the units that are searched for by their index, each as it is after folding.
template <class Wanted>
class LinearSearch {
 public:
  /// `length` is at least 1.
  LinearSearch(Wanted wanted, std::size_t length) : wanted_(wanted), length_(length) {
    const Suffix up = lastSuffix(std::less<unichar>()), down = lastSuffix(std::greater<unichar>());
    const auto [start, period] = up.start > down.start ? up : down;
    middle_ = start;
    std::size_t same = 0;
    while (same < start && period + same < length && wanted(same) == wanted(period + same)) ++same;
    const bool repeatsItself = same == start;
    step_ = repeatsItself ? period : std::max(start, length - start) + 1;
    known_ = repeatsItself ? length - period : 0;
  }

  struct Result {
    bool found;
    /// Where the match begins; when there is none, the first place where one may begin that goes on behind the
    /// units searched.
    std::size_t place;
  };

  /// The first match that lies in the units, each taken as `fold(unichar)` has it. By itself its loop has
  /// the registers that it needs.
  template <class Fold>
  [[gnu::noinline]] Result search(std::u16string_view units, Fold fold) const {
    const Wanted wanted = wanted_;
    std::size_t known = 0, place = 0;
    while (place + length_ <= units.size()) {
      const unichar *const at = units.data() + place;
      std::size_t right = std::max(middle_, known);
      while (right < length_ && wanted(right) == fold(at[right])) ++right;
      if (right < length_) {
        place += right - middle_ + 1;
        known = 0;
        continue;
      }
      std::size_t left = middle_;
      while (left > known && wanted(left - 1) == fold(at[left - 1])) --left;
      if (left <= known) return {true, place};
      place += step_;
      known = known_;
    }
    return {false, place};
  }

 private:
  /// The suffix that comes last in an order, and the length after which it repeats itself.
  struct Suffix {
    std::size_t start, period;
  };

  template <class Less>
  Suffix lastSuffix(Less less) const {
    Suffix last{0, 1};
    // The one at `candidate` equals the last one so far in its first `same` units.
    for (std::size_t candidate = 1, same = 0; candidate + same < length_;) {
      const unichar a = wanted_(candidate + same), b = wanted_(last.start + same);
      if (a == b) {
        if (++same == last.period) {
          candidate += last.period;
          same = 0;
        }
      } else if (less(a, b)) {
        candidate += same + 1;
        same = 0;
        last.period = candidate - last.start;
      } else {
        last = {candidate, 1};
        candidate += 1;
        same = 0;
      }
    }
    return last;
  }

  Wanted wanted_;
  std::size_t length_;
  /// The wanted units are compared from here to their end, then from here to their beginning.
  std::size_t middle_;
  /// How far to go when only the units from the middle on have fit.
  std::size_t step_;
  /// How many units at the beginning are then known to fit already; some only when the wanted ones repeat
  /// themselves after `step_`.
  std::size_t known_;
};

}  // namespace nimbo::detail
