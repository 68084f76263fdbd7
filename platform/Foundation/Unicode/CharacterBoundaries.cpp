// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/CharacterBoundaries.hpp"

#include <unicode/ubrk.h>

#include <memory>
#include <new>

namespace nimbo {

std::size_t characterBoundaryAtOrBefore(std::u16string_view units, std::size_t index) {
  if (index >= units.size()) return units.size();
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> characters(
      ubrk_open(UBRK_CHARACTER, "", units.data(), static_cast<std::int32_t>(units.size()), &status),
      ubrk_close);
  if (U_FAILURE(status)) throw std::bad_alloc();
  const auto place = static_cast<std::int32_t>(index);
  if (ubrk_isBoundary(characters.get(), place)) return index;
  return static_cast<std::size_t>(ubrk_preceding(characters.get(), place));
}

}  // namespace nimbo
