// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringNormalization.hpp"

#include <unicode/unorm2.h>

#include <new>
#include <string>
#include <utility>

namespace nimbo {

namespace {

const UNormalizer2 *composer() {
  static const UNormalizer2 *const instance = [] {
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2 *normalizer = unorm2_getNFCInstance(&error);
    if (U_FAILURE(error)) throw std::bad_alloc();
    return normalizer;
  }();
  return instance;
}

/// The length of the part at the beginning that is in NFC whatever follows it.
std::uint32_t lengthOfComposedPart(std::u16string_view units) {
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t length =
      unorm2_spanQuickCheckYes(composer(), units.data(), static_cast<std::int32_t>(units.size()), &error);
  return U_SUCCESS(error) ? static_cast<std::uint32_t>(length) : 0;
}

}  // namespace

bool isQuicklyPrecomposed(std::u16string_view units) {
  return lengthOfComposedPart(units) == units.size();
}

void precomposeStringWithCanonicalMapping(NSMutableString &string) {
  const std::uint32_t composed = lengthOfComposedPart(string.view());
  if (composed == string.length()) return;
  const std::u16string rest(string.view().substr(composed));
  // Composing rarely lengthens; when it does, ICU leaves the beginning as it was and says how much room it
  // needs.
  std::uint32_t capacity = string.length();
  for (;;) {
    string.setLength(capacity);
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length = unorm2_normalizeSecondAndAppend(
        composer(), string.mutableCharacters(), static_cast<std::int32_t>(composed),
        static_cast<std::int32_t>(capacity), rest.data(), static_cast<std::int32_t>(rest.size()), &error);
    if (U_SUCCESS(error)) return string.setLength(static_cast<std::uint32_t>(length));
    if (error != U_BUFFER_OVERFLOW_ERROR) throw std::bad_alloc();
    capacity = static_cast<std::uint32_t>(length);
  }
}

NSString precomposedStringWithCanonicalMapping(const NSString &string) {
  if (isQuicklyPrecomposed(string.view())) return string;
  NSMutableString copy(string);
  precomposeStringWithCanonicalMapping(copy);
  return copy.view() == string.view() ? string : std::move(copy).string();
}

}  // namespace nimbo
