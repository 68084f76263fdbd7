// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringNormalization.hpp"

#include <unicode/unorm2.h>

#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/Unicode/NormalQuickCheck.hpp"
#include "platform/Foundation/Unicode/OrderedMarks.hpp"

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

const UNormalizer2 *decomposerOfForm(CFStringNormalizationForm form) {
  const bool isCanonical = form == kCFStringNormalizationFormC || form == kCFStringNormalizationFormD;
  return normalizerOfForm(isCanonical ? kCFStringNormalizationFormD : kCFStringNormalizationFormKD);
}

bool isNormal(const UNormalizer2 *normalizer, std::u16string_view units) {
  UErrorCode error = U_ZERO_ERROR;
  const auto length = static_cast<std::int32_t>(units.size());
  return unorm2_spanQuickCheckYes(normalizer, units.data(), length, &error) == length;
}

void appendNormalized(NSMutableString &string, const UNormalizer2 *normalizer, std::u16string_view units) {
  const std::uint32_t before = string.length();
  // When the result is longer, ICU says how much room it needs.
  auto room = static_cast<std::uint32_t>(units.size());
  for (;;) {
    string.setLength(before + room);
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length =
        unorm2_normalize(normalizer, units.data(), static_cast<std::int32_t>(units.size()),
                         string.mutableCharacters() + before, static_cast<std::int32_t>(room), &error);
    if (U_SUCCESS(error)) return string.setLength(before + static_cast<std::uint32_t>(length));
    if (error != U_BUFFER_OVERFLOW_ERROR) throw std::bad_alloc();
    room = static_cast<std::uint32_t>(length);
  }
}

/// The next part of the units that may not be in the form, to be normalised by itself; see `nextDoubtfulPart`.
NSRange nextPart(CFStringNormalizationForm form, std::u16string_view units, std::uint32_t from) {
  if (form == kCFStringNormalizationFormC) return detail::nextDoubtfulPart(units, from);
  return {from, static_cast<std::uint32_t>(units.size()) - from};
}

/// The units in the form, or nothing when they are in it.
std::optional<NSMutableString> normalized(std::u16string_view units, CFStringNormalizationForm form) {
  const UNormalizer2 *const normalizer = normalizerOfForm(form);
  NSMutableString result;
  // Up to here the result stands for the units; it is begun with the first part that is not normal.
  std::uint32_t done = 0;
  const auto appendUpTo = [&](std::size_t end) { result.append(units.substr(done, end - done)); };
  for (NSRange part = nextPart(form, units, 0); part.length > 0;) {
    const std::uint32_t end = part.location + part.length;
    const std::u16string_view doubtful = units.substr(part.location, part.length);
    if (!isNormal(normalizer, doubtful)) {
      if (done == 0) result.reserve(static_cast<std::uint32_t>(units.size()));
      appendUpTo(part.location);
      const std::optional<std::u16string> ordered =
          detail::withLongRunsOfMarksOrdered(doubtful, decomposerOfForm(form));
      appendNormalized(result, normalizer, ordered ? *ordered : doubtful);
      done = end;
    }
    part = nextPart(form, units, end);
  }
  if (done == 0) return std::nullopt;
  appendUpTo(units.size());
  return result.view() == units ? std::nullopt : std::optional(std::move(result));
}

}  // namespace

bool isQuicklyPrecomposed(std::u16string_view units) {
  const UNormalizer2 *const normalizer = normalizerOfForm(kCFStringNormalizationFormC);
  NSRange part = detail::nextDoubtfulPart(units, 0);
  while (part.length > 0 && isNormal(normalizer, units.substr(part.location, part.length)))
    part = detail::nextDoubtfulPart(units, part.location + part.length);
  return part.length == 0;
}

void CFStringNormalize(NSMutableString &string, CFStringNormalizationForm form) {
  if (std::optional<NSMutableString> result = normalized(string.view(), form)) string.swap(*result);
}

void precomposeStringWithCanonicalMapping(NSMutableString &string) {
  CFStringNormalize(string, kCFStringNormalizationFormC);
}

NSString precomposedStringWithCanonicalMapping(const NSString &string) {
  std::optional<NSMutableString> result = normalized(string.view(), kCFStringNormalizationFormC);
  return result ? std::move(*result).string() : string;
}

}  // namespace nimbo
