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
/// than nine times as long, where a square is sixteen. It is the thread's time, the best of three, so that what
/// else the machine does counts little; `work` makes its text and does with it what is measured.
template <class Work>
void expectLinearTime(std::size_t size, Work work) {
  constexpr int kRounds = 3;
  constexpr double kLeast = 2e-4;
  const auto best = [&](std::size_t n) {
    double seconds = std::numeric_limits<double>::infinity();
    for (int round = 0; round < kRounds; ++round) {
      const double start = threadSeconds();
      work(n);
      seconds = std::min(seconds, threadSeconds() - start);
    }
    return seconds;
  };
  EXPECT_LT(best(4 * size), 9 * std::max(best(size), kLeast));
}

}  // namespace nimbo
