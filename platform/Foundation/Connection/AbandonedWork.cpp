// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/AbandonedWork.hpp"

#include <poll.h>
#include <signal.h>
#include <time.h>

#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace nimbo {
namespace {

constexpr timespec kLookAgain{1, 0};

volatile sig_atomic_t watchedSocket = -1;

/// Nothing that the process holds needs an orderly end: what it writes for others is written in one step.
void endIfAbandoned(int) {
  const int error = errno;
  pollfd state = {watchedSocket, 0, 0};
  if (::poll(&state, 1, 0) == 1 && (state.revents & POLLHUP)) ::_exit(EXIT_FAILURE);
  errno = error;
}

timer_t makeTimer() {
  struct sigaction action = {};
  action.sa_handler = endIfAbandoned;
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGRTMIN, &action, nullptr);
  sigevent event = {};
  event.sigev_notify = SIGEV_SIGNAL;
  event.sigev_signo = SIGRTMIN;
  timer_t timer = nullptr;
  ::timer_create(CLOCK_MONOTONIC, &event, &timer);
  return timer;
}

void setTimer(const itimerspec &times) {
  static const timer_t timer = makeTimer();
  ::timer_settime(timer, 0, &times, nullptr);
}

}  // namespace

AbandonedWork::AbandonedWork(const FileDescriptor &socket, double seconds) : isWatching_(seconds > 0) {
  if (!isWatching_) return;
  watchedSocket = socket.get();
  const double whole = std::floor(seconds);
  setTimer({kLookAgain, {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)}});
}

AbandonedWork::~AbandonedWork() {
  if (!isWatching_) return;
  setTimer({});
  watchedSocket = -1;
}

}  // namespace nimbo
