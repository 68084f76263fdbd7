// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace nimbo {

/// How often the test program and the parts of the project that are linked into it have asked for memory so
/// far, by `new`, `malloc` or `realloc`. Only for programs that are linked with AllocationCount.cpp and its
/// options.
std::size_t allocationCount();

/// As long as one lives, this thread's requests for memory fail, as when there is none: `new` raises
/// `std::bad_alloc`, the others give null. Those before the one with the index `first`, counted from 0, are
/// served.
class FailingAllocations {
 public:
  explicit FailingAllocations(std::size_t first);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations &) = delete;
  FailingAllocations &operator=(const FailingAllocations &) = delete;

  /// Whether a request has failed.
  bool haveHappened() const;
};

}  // namespace nimbo
