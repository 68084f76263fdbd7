// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/NSMutableDictionary+NimboDictionaryExtensions.hpp"

#include <array>
#include <charconv>
#include <cmath>

namespace nimbo {
namespace {

/// The number that people mean by the fraction, as 0.1 by 0.1F; whole numbers are exact.
double decimalOf(float value) {
  if (!std::isfinite(value) || std::trunc(value) == value) return value;
  std::array<char, 32> digits{};
  double decimal = value;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  std::from_chars(digits.data(), end, decimal);
  return static_cast<float>(decimal) == value ? decimal : value;
}

}  // namespace

inline namespace NimboDictionaryExtensions {

void setInteger(NSDictionary &dictionary, std::int32_t value, const NSString &key) {
  dictionary.setObject(value, key);
}

void setUnsignedInt(NSDictionary &dictionary, std::uint32_t value, const NSString &key) {
  dictionary.setObject(value, key);
}

void setUnsignedLong(NSDictionary &dictionary, std::uint64_t value, const NSString &key) {
  dictionary.setObject(value, key);
}

void setLongLong(NSDictionary &dictionary, std::int64_t value, const NSString &key) {
  dictionary.setObject(value, key);
}

void setFloat(NSDictionary &dictionary, float value, const NSString &key) {
  dictionary.setObject(decimalOf(value), key);
}

void setDouble(NSDictionary &dictionary, double value, const NSString &key) {
  dictionary.setObject(value, key);
}

void setBool(NSDictionary &dictionary, Flag value, const NSString &key) {
  dictionary.setObject(bool(value), key);
}

void setString(NSDictionary &dictionary, const NSString &value, const NSString &key) {
  dictionary.setObject(value, key);
}

void setOrRemoveObject(NSDictionary &dictionary, const id &object, const NSString &key) {
  if (object)
    dictionary.setObject(object, key);
  else
    dictionary.removeObjectForKey(key);
}

void setOrRemoveString(NSDictionary &dictionary, const NSString &string, const NSString &key) {
  setOrRemoveObject(dictionary, string.length() > 0 ? id(string) : id(), key);
}

}  // namespace NimboDictionaryExtensions
}  // namespace nimbo
