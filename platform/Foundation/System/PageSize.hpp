// SPDX-License-Identifier: Apache-2.0
//
// The system's pages of memory. Any thread may ask.
//
//     const std::size_t length = roundUpToMultipleOfPageSize(1);
//     length == pageSize();  // true
//     roundUpToMultipleOfPageSize(0);  // 0
#pragma once

#include <unistd.h>

#include <cstddef>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The size of a page of memory, in bytes.
inline std::size_t pageSize() {
  static const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  return size;
}

/// The smallest number of whole pages that hold so many bytes, in bytes.
inline std::size_t roundUpToMultipleOfPageSize(std::size_t bytes) {
  return (bytes + pageSize() - 1) / pageSize() * pageSize();
}

}  // namespace nimbo
