// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

#include <cstddef>

namespace nimbo {

/// The size of a page of memory, in bytes.
inline std::size_t NSPageSize() {
  static const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  return size;
}

inline std::size_t NSRoundUpToMultipleOfPageSize(std::size_t bytes) {
  return (bytes + NSPageSize() - 1) / NSPageSize() * NSPageSize();
}

}  // namespace nimbo
