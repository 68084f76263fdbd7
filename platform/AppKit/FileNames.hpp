// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <unordered_map>
#include <unordered_set>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// Gives the files of a folder names that are harmless and differ, in whatever case, for a folder may go where
/// case does not count.
class FileNames {
 public:
  /// The preferred name, or the nearest to it that is a name and not taken yet; it is taken now. A nil name
  /// stands for "file".
  NSString take(const NSString &preferredName);

 private:
  std::unordered_set<NSString, NSStringHash> taken_;
  /// The number that was last put behind a name that was taken.
  std::unordered_map<NSString, std::uint32_t, NSStringHash> numbers_;
};

}  // namespace nimbo
