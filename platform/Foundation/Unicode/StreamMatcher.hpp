// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// Finds a run of units in a stream of them, looking at each less than three times however much the stream
/// looks like the run: the algorithm of Knuth, Morris and Pratt.
class StreamMatcher {
 public:
  /// `wanted` has at least one unit.
  explicit StreamMatcher(std::u16string wanted) : wanted_(std::move(wanted)), borders_(wanted_.size()) {
    for (std::size_t i = 1, border = 0; i < wanted_.size(); ++i) {
      border = matchedWith(wanted_[i], border);
      borders_[i] = static_cast<std::uint32_t>(border);
    }
  }

  /// Takes the next unit of the stream; whether a match ends with it. Matches may overlap.
  bool advance(unichar unit) {
    if (matched_ == wanted_.size()) matched_ = borders_[matched_ - 1];
    matched_ = matchedWith(unit, matched_);
    return matched_ == wanted_.size();
  }

 private:
  /// How many wanted units end with `unit`, where `matched`, which are not all, ended before it.
  std::size_t matchedWith(unichar unit, std::size_t matched) const {
    while (matched > 0 && wanted_[matched] != unit) matched = borders_[matched - 1];
    return wanted_[matched] == unit ? matched + 1 : 0;
  }

  std::u16string wanted_;
  /// Of the wanted units up to each: how many of their last ones, but not all, are also the first.
  std::vector<std::uint32_t> borders_;
  std::size_t matched_ = 0;
};

}  // namespace nimbo::detail
