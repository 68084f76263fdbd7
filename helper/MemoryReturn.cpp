// SPDX-License-Identifier: Apache-2.0
#include "helper/MemoryReturn.hpp"

#include <malloc.h>

#include <cstddef>

namespace nimbo {
namespace {

/// Less free memory than this is kept for the next request: giving it back costs more than it is worth.
constexpr std::size_t kKeptFreeBytes = 16u << 20;

}  // namespace

MemoryReturn::~MemoryReturn() {
  if (::mallinfo2().fordblks > kKeptFreeBytes) ::malloc_trim(0);
}

}  // namespace nimbo
