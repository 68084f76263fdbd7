// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/LinearSearch.hpp"

#include <algorithm>
#include <functional>
#include <utility>

namespace nimbo::detail {

namespace {

struct Suffix {
  std::size_t start, period;
};

/// The suffix that comes last in an order, and the length after which it repeats itself.
template <class Less>
Suffix lastSuffix(std::u16string_view units, Less less) {
  Suffix last{0, 1};
  // The one at `candidate` equals the last one so far in its first `same` units.
  for (std::size_t candidate = 1, same = 0; candidate + same < units.size();) {
    const unichar a = units[candidate + same], b = units[last.start + same];
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

}  // namespace

LinearSearch::LinearSearch(std::vector<unichar> wanted) : wanted_(std::move(wanted)) {
  const std::u16string_view units(wanted_.data(), wanted_.size());
  const Suffix up = lastSuffix(units, std::less<unichar>()), down = lastSuffix(units, std::greater<unichar>());
  const auto [start, period] = up.start > down.start ? up : down;
  middle_ = start;
  const bool repeatsItself = units.substr(0, start) == units.substr(period, start);
  step_ = repeatsItself ? period : std::max(start, units.size() - start) + 1;
  known_ = repeatsItself ? units.size() - period : 0;
}

LinearSearch::Result LinearSearch::search(std::u16string_view units, const unichar *foldTable) const {
  if (!foldTable) return searchFolded(units, [](unichar c) { return c; });
  return searchFolded(units, [foldTable](unichar c) { return foldTable[c]; });
}

template <class Fold>
LinearSearch::Result LinearSearch::searchFolded(std::u16string_view units, Fold fold) const {
  const unichar *const wanted = wanted_.data();
  const std::size_t length = wanted_.size(), middle = middle_;
  std::size_t known = 0, place = 0;
  while (place + length <= units.size()) {
    const unichar *const at = units.data() + place;
    std::size_t right = std::max(middle, known);
    while (right < length && wanted[right] == fold(at[right])) ++right;
    if (right < length) {
      place += right - middle + 1;
      known = 0;
      continue;
    }
    std::size_t left = middle;
    while (left > known && wanted[left - 1] == fold(at[left - 1])) --left;
    if (left <= known) return {true, place};
    place += step_;
    known = known_;
  }
  return {false, place};
}

}  // namespace nimbo::detail
