// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <stdexcept>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The units of the longest string that there may be, all zero. Only what is written takes memory.
class LongestRun {
 public:
  static constexpr std::uint32_t kLength = NSNotFound;

  LongestRun()
      : memory_(::mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1,
                       0)) {
    if (memory_ == MAP_FAILED) throw std::runtime_error("no room for the longest run");
    // One large page of zeros then stands for all that is read, where the system has them.
    ::madvise(memory_, kBytes, MADV_HUGEPAGE);
  }
  LongestRun(const LongestRun &) = delete;
  LongestRun &operator=(const LongestRun &) = delete;
  ~LongestRun() { ::munmap(memory_, kBytes); }

  unichar *units() const { return static_cast<unichar *>(memory_); }

 private:
  static constexpr std::size_t kBytes = sizeof(unichar) * std::size_t{kLength};

  void *memory_;
};

}  // namespace nimbo
