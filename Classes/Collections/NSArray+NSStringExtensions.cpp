// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/NSArray+NSStringExtensions.hpp"

#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
inline namespace NSStringExtensions {

namespace {

bool isEqualToString(const NSString &a, const NSString &b) {
  return a && a == b;
}

NSString stringOf(const id &element) {
  return element.string();
}

const NSString &stringOf(const NSString &element) {
  return element;
}

template <class Array>
std::uint32_t indexOfString(const Array &array, const NSString &string,
                            bool (*isEqual)(const NSString &, const NSString &)) {
  std::uint32_t index = 0;
  for (const auto &element : array) {
    if (isEqual(stringOf(element), string)) return index;
    ++index;
  }
  return NSNotFound;
}

}  // namespace

bool containsString(const NSArray &array, const NSString &string) {
  return indexOfStringEqualTo(array, string) != NSNotFound;
}

bool containsStringNoCase(const NSArray &array, const NSString &string) {
  return indexOfStringEqualToNoCase(array, string) != NSNotFound;
}

std::uint32_t indexOfStringEqualTo(const NSArray &array, const NSString &string) {
  return indexOfString(array, string, isEqualToString);
}

std::uint32_t indexOfStringEqualToNoCase(const NSArray &array, const NSString &string) {
  return indexOfString(array, string, isEqualToStringNoCase);
}

bool containsString(std::span<const NSString> array, const NSString &string) {
  return indexOfStringEqualTo(array, string) != NSNotFound;
}

bool containsStringNoCase(std::span<const NSString> array, const NSString &string) {
  return indexOfStringEqualToNoCase(array, string) != NSNotFound;
}

std::uint32_t indexOfStringEqualTo(std::span<const NSString> array, const NSString &string) {
  return indexOfString(array, string, isEqualToString);
}

std::uint32_t indexOfStringEqualToNoCase(std::span<const NSString> array, const NSString &string) {
  return indexOfString(array, string, isEqualToStringNoCase);
}

}  // namespace NSStringExtensions
}  // namespace nimbo
