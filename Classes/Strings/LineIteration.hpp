// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Characters/UnitPredicates.hpp"

namespace nimbo {

/// Calls `visit(std::u16string_view line)` with the text between line breaks, in order. A break at the end
/// begins no further line; an empty run has none.
template <class Visitor>
void visitLines(std::u16string_view units, Visitor visit) {
  for (std::size_t start = 0; start < units.size();) {
    std::size_t end = start;
    while (end < units.size() && !isLineBreak(units[end])) ++end;
    visit(units.substr(start, end - start));
    start = end + lengthOfLineBreak(units, end);
  }
}

}  // namespace nimbo
