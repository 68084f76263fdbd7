// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <unordered_set>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// The names of families of a page: equal names are the same string.
class FontFamilies {
 public:
  /// The string of the name.
  NSString named(std::u16string_view name) {
    return *names_.emplace(NSString::stringWithCharacters(name)).first;
  }

 private:
  std::unordered_set<NSString, NSStringHash> names_;
};

}  // namespace nimbo::detail
