// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/UnicharMapping.hpp"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <array>
#include <new>
#include <optional>

namespace nimbo {

namespace {

/// More than any mapping of one unit has; ICU names the length of a longer one without writing it.
constexpr std::int32_t kMappingCapacity = 32;

using CaseMapping = decltype(u_strToUpper);

unichar mapCase(unichar c, CaseMapping *mapping) {
  std::array<UChar, kMappingCapacity> mapped;
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = mapping(mapped.data(), kMappingCapacity, &c, 1, "", &status);
  return U_SUCCESS(status) && length == 1 ? mapped[0] : c;
}

const UNormalizer2 *decomposer() {
  static const UNormalizer2 *const instance = [] {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2 *normalizer = unorm2_getNFDInstance(&status);
    if (U_FAILURE(status)) throw std::bad_alloc();
    return normalizer;
  }();
  return instance;
}

}  // namespace

unichar uppercaseUnichar(unichar c) {
  return mapCase(c, u_strToUpper);
}

unichar lowercaseUnichar(unichar c) {
  return mapCase(c, u_strToLower);
}

bool isTitlecaseUnichar(unichar c) {
  return u_charType(c) == U_TITLECASE_LETTER;
}

unichar unicharByFoldingDiacritics(unichar c) {
  std::array<UChar, kMappingCapacity> decomposed;
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length =
      unorm2_getDecomposition(decomposer(), c, decomposed.data(), kMappingCapacity, &status);
  if (U_FAILURE(status) || length < 0) return c;
  std::optional<unichar> rest;
  for (std::int32_t i = 0; i < length;) {
    const std::int32_t start = i;
    UChar32 character;
    U16_NEXT(decomposed.data(), i, length, character);
    if (U_GET_GC_MASK(character) & U_GC_M_MASK) continue;
    if (rest || i - start != 1) return c;
    rest = decomposed[static_cast<std::size_t>(start)];
  }
  return rest.value_or(c);
}

}  // namespace nimbo
