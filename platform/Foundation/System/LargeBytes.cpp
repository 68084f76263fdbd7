// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/LargeBytes.hpp"

#include <malloc.h>
#include <sys/mman.h>

#include <cstdlib>

namespace nimbo {
namespace {

constexpr std::size_t kLargePageBytes = 2u << 20;

}  // namespace

void *allocateBytes(std::size_t length) {
  if (length < kLargeBytes) return std::malloc(length);
  void *bytes = nullptr;
  if (::posix_memalign(&bytes, kLargePageBytes, length) != 0) return nullptr;
  // A wish: a system without large pages answers an error, and all works as well.
  ::madvise(bytes, length, MADV_HUGEPAGE);
  return bytes;
}

void returnLargeBytesWhenFreed() {
  ::mallopt(M_MMAP_THRESHOLD, static_cast<int>(kLargeBytes));
  ::mallopt(M_TRIM_THRESHOLD, static_cast<int>(kLargeBytes));
}

}  // namespace nimbo
