// SPDX-License-Identifier: Apache-2.0
//
// The time of the processor, so that what else runs on the machine counts less.
#pragma once

#include <time.h>

namespace nimbo::bench {

/// What this process has taken so far.
inline double processorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <class Work>
double processorSecondsOf(Work work) {
  const double start = processorSeconds();
  work();
  return processorSeconds() - start;
}

}  // namespace nimbo::bench
