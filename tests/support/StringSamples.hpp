// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <random>
#include <string_view>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

/// A string whose storage ends with its last unit, so that the address sanitizer sees a read beyond it.
inline NSString exactString(std::u16string_view units) {
  NSMutableString string;
  string.reserve(static_cast<std::uint32_t>(units.size()));
  string.appendCharacters(units.data(), static_cast<std::uint32_t>(units.size()));
  return std::move(string).string();
}

/// Random strings of the units for which the string functions have rules, short enough that each rule applies
/// often; lone surrogates among them.
class RandomStrings {
 public:
  NSString next() {
    constexpr std::u16string_view kUnits =
        u"aaAbBzZ019   \t\t\n\n\r\r\u2028\ufeff\ufffc\u0003\u00a0.,-*>@<\"#\u2026\u00e4\u00c4\u00df\u00e9"
        u"\u0130\u0660\u4e2d\xd800\xdc00";
    std::u16string units(std::uniform_int_distribution<std::size_t>(0, 24)(random_), u'\0');
    std::uniform_int_distribution<std::size_t> index(0, kUnits.size() - 1);
    for (char16_t &unit : units) unit = kUnits[index(random_)];
    return exactString(units);
  }

 private:
  std::mt19937 random_{20260101};
};

}  // namespace nimbo
