// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// Tells whether the other side of a long transfer keeps up. It does at first, and for as long as it moves
/// `kSteadyBytes` in every `kWindowSeconds`; one that has fallen behind does again once it has moved as much.
class TransferPace {
 public:
  static constexpr double kWindowSeconds = 0.5;
  static constexpr std::uint64_t kSteadyBytes = 1u << 20;

  /// Takes note of how many bytes were moved in all, and whether there are more to come.
  void update(std::uint64_t movedBytes, bool isUnderWay) {
    const bool hasMoved = movedBytes - windowStart_ >= kSteadyBytes;
    if (isUnderWay && (!isUnderWay_ || hasMoved)) {
      windowStart_ = movedBytes;
      windowEnd_ = Deadline::after(kWindowSeconds);
    } else if (!isUnderWay || windowEnd_.isOver()) {
      windowEnd_ = Deadline::never();
    }
    isUnderWay_ = isUnderWay;
  }
  /// Whether something is under way, and moves.
  bool isSteady() const noexcept { return !windowEnd_.isNever(); }
  /// When to look again; never when nothing is awaited.
  Deadline deadline() const noexcept { return windowEnd_; }

 private:
  bool isUnderWay_ = false;
  std::uint64_t windowStart_ = 0;
  Deadline windowEnd_;
};

}  // namespace nimbo
