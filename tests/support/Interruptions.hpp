// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <signal.h>
#include <sys/time.h>

namespace nimbo {

/// As long as it lives, signals interrupt what this process waits for, many times a second.
class Interruptions {
 public:
  Interruptions() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, &before_);
    setInterval(200);
  }
  Interruptions(const Interruptions &) = delete;
  Interruptions &operator=(const Interruptions &) = delete;
  ~Interruptions() {
    setInterval(0);
    ::sigaction(SIGALRM, &before_, nullptr);
  }

 private:
  static void setInterval(suseconds_t microseconds) {
    const itimerval timer = {{0, microseconds}, {0, microseconds}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
  }

  struct sigaction before_ = {};
};

}  // namespace nimbo
