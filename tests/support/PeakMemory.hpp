// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace nimbo {

/// The most memory that this process has held so far, or since it was told to forget that; in bytes.
inline std::size_t peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:")) return std::stoul(line.substr(6)) << 10;
  return 0;
}

/// How much memory `work` holds at its worst beyond what there is, its answer included; in bytes. It is done in
/// a child process, where nothing else is done. `work` answers whether it succeeds; that it does not is a
/// failure of the test.
template <class Work>
std::size_t peakMemoryOf(const Work &work) {
  int ends[2];
  if (::pipe(ends) != 0) return std::string::npos;
  std::size_t peak = std::string::npos;
  const pid_t child = ::fork();
  if (child == 0) {
    // Sets the peak back to what is held now.
    std::ofstream("/proc/self/clear_refs") << 5;
    const std::size_t before = peakMemory();
    const bool isDone = work();
    peak = peakMemory() - before;
    ::_exit(isDone && ::write(ends[1], &peak, sizeof peak) == sizeof peak ? 0 : 1);
  }
  ::close(ends[1]);
  if (::read(ends[0], &peak, sizeof peak) != sizeof peak) peak = std::string::npos;
  ::close(ends[0]);
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "the work failed";
  return peak;
}

}  // namespace nimbo
