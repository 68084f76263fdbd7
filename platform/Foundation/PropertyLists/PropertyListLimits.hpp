// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {

/// What the readers and writers of the single forms raise; it never leaves `NSPropertyListSerialization`.
struct PropertyListError {
  /// One line.
  std::string reason;
  ErrorCode code = ErrorCode::damaged;
};

/// What a walk through a property list has met, against the limits that hold in every form, both ways: what is
/// written can be read again. Dictionary keys count as values.
class PropertyListLimits {
 public:
  /// Call it before anything is allocated for these values.
  void countValues(std::uint64_t values) {
    if (values > remaining_) throw PropertyListError{"too many values", ErrorCode::tooLarge};
    remaining_ -= values;
  }

  /// The depth inside a container that stands `depth` containers deep; 0 is outside of all.
  static std::uint32_t enterContainer(std::uint32_t depth) {
    if (depth >= NSPropertyListSerialization::kMaximumDepth)
      throw PropertyListError{"nested too deeply", ErrorCode::tooLarge};
    return depth + 1;
  }

 private:
  std::uint64_t remaining_ = NSPropertyListSerialization::kMaximumObjects;
};

}  // namespace nimbo
