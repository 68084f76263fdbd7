// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringCase.hpp"

#include <unicode/ubrk.h>
#include <unicode/ustring.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

namespace nimbo {
namespace {

/// Calls `map(destination, capacity, source, length, status)`, a mapping of ICU's.
template <class Map>
NSMutableString mapped(std::u16string_view source, Map map) {
  const auto sourceLength = static_cast<std::int32_t>(source.size());
  NSMutableString result;
  std::int32_t length = sourceLength;
  for (int pass = 0; pass < 2; ++pass) {  // The second one only when the result is longer.
    result.setLength(static_cast<std::uint32_t>(length));
    UErrorCode status = U_ZERO_ERROR;
    length = map(result.mutableCharacters(), length, source.data(), sourceLength, &status);
    if (U_SUCCESS(status)) break;
    if (status != U_BUFFER_OVERFLOW_ERROR) throw std::length_error("case mapping");
  }
  result.setLength(static_cast<std::uint32_t>(length));
  return result;
}

NSMutableString lowercased(std::u16string_view source, const char *language) {
  return mapped(source,
                [=](unichar *to, std::int32_t capacity, const unichar *from, std::int32_t length,
                    UErrorCode *status) { return u_strToLower(to, capacity, from, length, language, status); });
}

}  // namespace

NSString lowercaseString(const NSString &string) {
  if (string.length() == 0) return string;
  NSMutableString result = lowercased(string.view(), "");
  return result.view() == string.view() ? string : std::move(result).string();
}

void CFStringLowercase(NSMutableString &string, const char *language) {
  if (string.length() > 0) string = lowercased(string.view(), language);
}

void CFStringUppercase(NSMutableString &string, const char *language) {
  if (string.length() == 0) return;
  string = mapped(string.view(), [=](unichar *to, std::int32_t capacity, const unichar *from,
                                     std::int32_t length, UErrorCode *status) {
    return u_strToUpper(to, capacity, from, length, language, status);
  });
}

void CFStringCapitalize(NSMutableString &string, const char *language) {
  if (string.length() == 0) return;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> words(
      ubrk_open(UBRK_WORD, "", nullptr, 0, &error), ubrk_close);
  if (U_FAILURE(error)) throw std::bad_alloc();
  string = mapped(string.view(), [&](unichar *to, std::int32_t capacity, const unichar *from,
                                     std::int32_t length, UErrorCode *status) {
    return u_strToTitle(to, capacity, from, length, words.get(), language, status);
  });
}

}  // namespace nimbo
