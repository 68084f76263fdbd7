// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ForeignCall.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>

#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {
namespace {

/// How long to go after processes that start others faster than they are killed.
constexpr double kPursuitSeconds = 2;
constexpr std::chrono::microseconds kReapInterval{50};

bool hasChildren() {
  siginfo_t information = {};
  return ::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT | __WALL) == 0;
}

/// The children of all threads.
std::vector<pid_t> children() {
  std::vector<pid_t> found;
  if (!hasChildren()) return found;
  std::error_code error;
  for (std::filesystem::directory_iterator thread("/proc/self/task", error), end; !error && thread != end;
       thread.increment(error)) {
    std::ifstream list(thread->path() / "children");
    for (pid_t child = 0; list >> child;) found.push_back(child);
  }
  return found;
}

/// One that may not be killed, as it runs under another user, is left alone.
bool killAndReap(pid_t child, const Deadline &deadline) {
  if (::kill(child, SIGKILL) != 0) return false;
  while (::waitpid(child, nullptr, WNOHANG | __WALL) == 0 && !deadline.isOver())
    std::this_thread::sleep_for(kReapInterval);
  return true;
}

}  // namespace

/// Processes whose parents die become children of this one as long as the call lasts, so none gets out of
/// sight.
ForeignCall::ForeignCall() : process_(::getpid()), earlierChildren_(children()) {
  for (FileDescriptor &spare : spares_) spare = FileDescriptor(::open("/", O_PATH | O_CLOEXEC));
  ::prctl(PR_GET_CHILD_SUBREAPER, &wasSubreaper_, 0, 0, 0);
  ::prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
}

ForeignCall::~ForeignCall() {
  if (::getpid() != process_) ::_exit(EXIT_SUCCESS);
  // The list of children needs two.
  for (FileDescriptor &spare : spares_) spare.close();
  const Deadline deadline = Deadline::after(kPursuitSeconds);
  for (bool isAnyLeft = true; isAnyLeft && !deadline.isOver();) {
    isAnyLeft = false;
    for (const pid_t child : children()) {
      if (child <= 1 || std::ranges::find(earlierChildren_, child) != earlierChildren_.end()) continue;
      isAnyLeft |= killAndReap(child, deadline);
    }
  }
  ::prctl(PR_SET_CHILD_SUBREAPER, wasSubreaper_, 0, 0, 0);
}

}  // namespace nimbo
