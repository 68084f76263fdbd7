// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ForeignCall.hpp"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Foundation/System/SignalSource.hpp"

namespace nimbo {
namespace {

int takesOrphans() {
  int takes = -1;
  ::prctl(PR_GET_CHILD_SUBREAPER, &takes, 0, 0, 0);
  return takes;
}

pid_t startChild() {
  const pid_t child = ::fork();
  if (child == 0)
    for (;;) ::pause();
  return child;
}

TEST(ForeignCall, EndsItsOwnChildrenAloneAndLeavesTheProcessAsItWas) {
  const pid_t earlier = startChild();
  ASSERT_GT(earlier, 0);
  for (const int before : {0, 1}) {
    ::prctl(PR_SET_CHILD_SUBREAPER, before, 0, 0, 0);
    pid_t own = 0;
    {
      const ForeignCall call;
      EXPECT_EQ(takesOrphans(), 1);
      own = startChild();
      ASSERT_GT(own, 0);
    }
    EXPECT_EQ(takesOrphans(), before);
    EXPECT_NE(::kill(own, 0), 0);
    EXPECT_EQ(::waitpid(earlier, nullptr, WNOHANG), 0);
  }
  ::prctl(PR_SET_CHILD_SUBREAPER, 0, 0, 0, 0);
  ::kill(earlier, SIGKILL);
  ::waitpid(earlier, nullptr, 0);
}

TEST(SignalSource, InterruptsNoReading) {
  const itimerval often = {{0, 1000}, {0, 1000}};
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  EXPECT_EXIT(
      {
        callOnSignal(SIGALRM, [] {});
        if (::fork() == 0) {
          ::usleep(100'000);
          ::_exit(::write(ends[1], "x", 1) == 1 ? 0 : 1);
        }
        ::setitimer(ITIMER_REAL, &often, nullptr);
        char byte = 0;
        ::_exit(::read(ends[0], &byte, 1) == 1 ? 7 : 2);
      },
      testing::ExitedWithCode(7), "");
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace nimbo
