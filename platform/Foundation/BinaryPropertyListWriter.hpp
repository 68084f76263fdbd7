// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Bytes from `malloc`, for `NSData::dataWithMallocedBytes`.
struct BinaryPropertyListBytes {
  struct Free {
    void operator()(std::uint8_t *bytes) const noexcept { std::free(bytes); }
  };
  std::unique_ptr<std::uint8_t, Free> bytes;
  std::uint32_t length = 0;

  NSData data() && { return NSData::dataWithMallocedBytes(bytes.release(), length); }
};

/// Writes a property list in the binary form. Raises `PropertyListError`, also when there would be more than
/// `NSNotFound` bytes.
///
/// In front of the list stand `headerLength` bytes, which are counted in the length and left for the caller to
/// fill, so that a message needs no second copy. Each byte of the list is written once, into memory of the
/// final size. Equal dictionary keys are written once.
BinaryPropertyListBytes binaryDataWithPropertyList(const id &propertyList, std::uint32_t headerLength = 0);

}  // namespace nimbo
