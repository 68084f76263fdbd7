// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// A search that compares a few times as many units as there are, at the most, however much the text looks like
/// what is searched for: the two-way algorithm of Crochemore and Perrin. On other text those of FastSearches
/// are far faster.
class LinearSearch {
 public:
  /// `wanted` has at least one unit, each as it is after folding.
  explicit LinearSearch(std::vector<unichar> wanted);

  struct Result {
    bool found;
    /// Where the match begins; when there is none, the first place where one may begin that goes on behind the
    /// units searched.
    std::size_t place;
  };

  /// The first match that lies in the units, which are compared after `foldTable`, or as they are when it is
  /// null.
  Result search(std::u16string_view units, const unichar *foldTable) const;

 private:
  template <class Fold>
  Result searchFolded(std::u16string_view units, Fold fold) const;

  std::vector<unichar> wanted_;
  /// The wanted units are compared from here to their end, then from here to their beginning.
  std::size_t middle_;
  /// How far to go when only the units from the middle on have fit.
  std::size_t step_;
  /// How many units at the beginning are then known to fit already; some only when the wanted ones repeat
  /// themselves after `step_`.
  std::size_t known_;
};

}  // namespace nimbo::detail
