// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/Deadline.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace nimbo {
namespace {

TEST(Deadline, IsOverAtItsMoment) {
  for (const double seconds : {0.0, -1.0, -HUGE_VAL}) {
    const Deadline deadline = Deadline::after(seconds);
    EXPECT_TRUE(deadline.isOver()) << seconds;
    EXPECT_EQ(deadline.remaining(), 0) << seconds;
    EXPECT_EQ(deadline.remainingMilliseconds(), 0) << seconds;
  }
  const Deadline later = Deadline::after(3600);
  EXPECT_FALSE(later.isOver());
  EXPECT_TRUE(later.remaining() <= 3600 && later.remaining() > 3000);
  EXPECT_TRUE(later.remainingMilliseconds() <= 3'600'000 && later.remainingMilliseconds() > 3'000'000);
  // poll(2) must not return before it.
  EXPECT_EQ(Deadline::after(1e-6).remainingMilliseconds() | 1, 1);
  EXPECT_EQ(Deadline::after(1e8).remainingMilliseconds(), std::numeric_limits<int>::max());
}

TEST(Deadline, NeverIsBehindAllOthers) {
  for (const double seconds : {1e30, HUGE_VAL, std::nan("")}) {
    const Deadline deadline = Deadline::after(seconds);
    EXPECT_TRUE(deadline.isNever() && !deadline.isOver()) << seconds;
    EXPECT_EQ(deadline.remaining(), HUGE_VAL) << seconds;
    EXPECT_EQ(deadline.remainingMilliseconds(), -1) << seconds;
  }
  const Deadline soon = Deadline::after(1), late = Deadline::after(2);
  EXPECT_EQ(earliest(soon, late), soon);
  EXPECT_EQ(earliest(late, soon), soon);
  EXPECT_EQ(earliest(Deadline::never(), late), late);
  EXPECT_TRUE(earliest(Deadline(), Deadline::never()).isNever());
}

}  // namespace
}  // namespace nimbo
