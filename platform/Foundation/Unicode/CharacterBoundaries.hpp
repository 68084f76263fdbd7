// SPDX-License-Identifier: Apache-2.0
//
// Where characters as people see them begin, by ICU's rules of grapheme clusters. Any thread may ask.
//
//     characterBoundaryAtOrBefore(u"e\u0301a", 1);  // 0
//     characterBoundaryAtOrBefore(u"ab", 1);  // 1
//     const std::u16string_view head = units.substr(0, characterBoundaryAtOrBefore(units, 100));
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The last place at or before `index` where a character as people see it begins: never inside a surrogate
/// pair, between a letter and its combining marks, or inside another grapheme cluster. `index` is cut to the
/// length.
std::size_t characterBoundaryAtOrBefore(std::u16string_view units, std::size_t index);

}  // namespace nimbo
