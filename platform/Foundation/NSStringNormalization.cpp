// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringNormalization.hpp"

#include <unicode/unorm2.h>

#include <new>
#include <string>
#include <utility>

namespace nimbo {

namespace {

using NormalizerMaker = const UNormalizer2 *(UErrorCode *);

const UNormalizer2 *normalizer(NormalizerMaker *make) {
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2 *instance = make(&error);
  if (U_FAILURE(error)) throw std::bad_alloc();
  return instance;
}

const UNormalizer2 *normalizerOfForm(CFStringNormalizationForm form) {
  switch (form) {
    case kCFStringNormalizationFormD:
      return normalizer(unorm2_getNFDInstance);
    case kCFStringNormalizationFormKD:
      return normalizer(unorm2_getNFKDInstance);
    case kCFStringNormalizationFormKC:
      return normalizer(unorm2_getNFKCInstance);
    case kCFStringNormalizationFormC:
      break;
  }
  static const UNormalizer2 *const composer = normalizer(unorm2_getNFCInstance);
  return composer;
}

/// The length of the part at the beginning that is in the form whatever follows it.
std::uint32_t lengthOfNormalPart(const UNormalizer2 *form, std::u16string_view units) {
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t length =
      unorm2_spanQuickCheckYes(form, units.data(), static_cast<std::int32_t>(units.size()), &error);
  return U_SUCCESS(error) ? static_cast<std::uint32_t>(length) : 0;
}

}  // namespace

bool isQuicklyPrecomposed(std::u16string_view units) {
  return lengthOfNormalPart(normalizerOfForm(kCFStringNormalizationFormC), units) == units.size();
}

void CFStringNormalize(NSMutableString &string, CFStringNormalizationForm form) {
  const UNormalizer2 *const instance = normalizerOfForm(form);
  const std::uint32_t normal = lengthOfNormalPart(instance, string.view());
  if (normal == string.length()) return;
  const std::u16string rest(string.view().substr(normal));
  // When the result is longer, ICU leaves the beginning as it was and says how much room it needs.
  std::uint32_t capacity = string.length();
  for (;;) {
    string.setLength(capacity);
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length = unorm2_normalizeSecondAndAppend(
        instance, string.mutableCharacters(), static_cast<std::int32_t>(normal),
        static_cast<std::int32_t>(capacity), rest.data(), static_cast<std::int32_t>(rest.size()), &error);
    if (U_SUCCESS(error)) return string.setLength(static_cast<std::uint32_t>(length));
    if (error != U_BUFFER_OVERFLOW_ERROR) throw std::bad_alloc();
    capacity = static_cast<std::uint32_t>(length);
  }
}

void precomposeStringWithCanonicalMapping(NSMutableString &string) {
  CFStringNormalize(string, kCFStringNormalizationFormC);
}

NSString precomposedStringWithCanonicalMapping(const NSString &string) {
  if (isQuicklyPrecomposed(string.view())) return string;
  NSMutableString copy(string);
  precomposeStringWithCanonicalMapping(copy);
  return copy.view() == string.view() ? string : std::move(copy).string();
}

}  // namespace nimbo
