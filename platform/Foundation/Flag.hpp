// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A parameter that is true or false. It is made of a `bool` and of nothing else, so that a number or a pointer
/// in its place, which was meant for another parameter, does not compile. It is a plain value.
///
///     std::uint32_t findCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
///     findCharacter(text, u'x', true);
///     findCharacter(text, u'x', 1);  // An error when it is compiled.
class Flag {
 public:
  /// The truth value.
  template <std::same_as<bool> Bool>
  constexpr Flag(Bool isSet) noexcept : isSet_(isSet) {}

  /// The truth value.
  constexpr operator bool() const noexcept { return isSet_; }

 private:
  bool isSet_;
};

}  // namespace nimbo
