// SPDX-License-Identifier: Apache-2.0
//
// Views without the units at their ends. Any thread may trim.
//
//     trimmed(std::u16string_view(u" a b\t"), isASCIIWhiteSpace<unichar>);  // u"a b"
#pragma once

#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The text without the units at both ends for which `isTrimmed` holds; a part of the text itself.
template <class Unit, class Predicate>
constexpr std::basic_string_view<Unit> trimmed(std::basic_string_view<Unit> text NIMBO_LIFETIMEBOUND,
                                               Predicate isTrimmed) {
  while (!text.empty() && isTrimmed(text.front())) text.remove_prefix(1);
  while (!text.empty() && isTrimmed(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace nimbo
