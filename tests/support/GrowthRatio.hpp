// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <cstddef>
#include <limits>

namespace nimbo {

inline double threadSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Expects that `work(size)` does not take time by the square of the size: that four times as much takes less
/// than nine times as long, where a square is sixteen. It is the thread's time, the best of a few, and measured
/// again when it was too long, so that what else the machine does counts little; `work` makes its text and does
/// with it what is measured.
template <class Work>
void expectLinearTime(std::size_t size, Work work) {
  constexpr int kRounds = 3, kAttempts = 4;
  constexpr double kLeast = 2e-4;
  double small = std::numeric_limits<double>::infinity(), large = small;
  const auto measure = [&](std::size_t n, double &best) {
    const double start = threadSeconds();
    work(n);
    best = std::min(best, threadSeconds() - start);
  };
  for (int attempt = 0; attempt < kAttempts && !(large < 9 * std::max(small, kLeast)); ++attempt) {
    for (int round = 0; round < kRounds; ++round) {
      measure(size, small);
      measure(4 * size, large);
    }
  }
  EXPECT_LT(large, 9 * std::max(small, kLeast));
}

}  // namespace nimbo
