// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/NSDictionary+NimboDictionaryExtensions.hpp"

#include <algorithm>
#include <limits>

#include "Classes/Strings/NSString+NSStringNimboExtensions/Values.hpp"
#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSNumber.hpp"

namespace nimbo {
namespace {

template <class T, class Number>
T cutToBounds(Number number) {
  using Limits = std::numeric_limits<T>;
  return static_cast<T>(
      std::clamp(number, static_cast<Number>(Limits::lowest()), static_cast<Number>(Limits::max())));
}

}  // namespace

inline namespace NimboDictionaryExtensions {

id objectForKey(const NSDictionary &dictionary, const NSString &key, const id &defaultValue) {
  const id &value = dictionary.objectForKey(key);
  return value ? value : defaultValue;
}

NSString stringForKey(const NSDictionary &dictionary, const NSString &key, const NSString &defaultValue) {
  const NSString value = stringValue(dictionary.objectForKey(key));
  return value ? value : defaultValue;
}

std::int32_t integerForKey(const NSDictionary &dictionary, const NSString &key, std::int32_t defaultValue) {
  return cutToBounds<std::int32_t>(longLongForKey(dictionary, key, defaultValue));
}

std::uint32_t unsignedIntForKey(const NSDictionary &dictionary, const NSString &key,
                                std::uint32_t defaultValue) {
  return cutToBounds<std::uint32_t>(longLongForKey(dictionary, key, defaultValue));
}

std::uint64_t unsignedLongForKey(const NSDictionary &dictionary, const NSString &key,
                                 std::uint64_t defaultValue) {
  return unsignedLongLongValue(dictionary.objectForKey(key)).value_or(defaultValue);
}

std::int64_t longLongForKey(const NSDictionary &dictionary, const NSString &key, std::int64_t defaultValue) {
  return longLongValue(dictionary.objectForKey(key)).value_or(defaultValue);
}

bool boolForKey(const NSDictionary &dictionary, const NSString &key, Flag defaultValue) {
  const id &value = dictionary.objectForKey(key);
  if (const NSString string = value.string()) return boolValue(string);
  const std::optional<double> number = doubleValue(value);
  return number ? *number != 0 : bool(defaultValue);
}

float floatForKey(const NSDictionary &dictionary, const NSString &key, float defaultValue) {
  return cutToBounds<float>(doubleForKey(dictionary, key, defaultValue));
}

double doubleForKey(const NSDictionary &dictionary, const NSString &key, double defaultValue) {
  return doubleValue(dictionary.objectForKey(key)).value_or(defaultValue);
}

NSString keyForCode(std::int64_t code) {
  return stringValue(code);
}

id objectForCode(const NSDictionary &dictionary, std::int64_t code, const id &defaultValue) {
  return objectForKey(dictionary, keyForCode(code), defaultValue);
}

NSString localizedStringForKey(const NSDictionary &dictionary, const NSString &key,
                               const NSString &defaultValue) {
  const id &value = dictionary.objectForKey(key);
  if (NSString string = value.string()) return string;
  const NSDictionary localized = value.dictionary();
  if (!localized) return defaultValue;
  for (const NSString &language : NSBundle::mainBundle().preferredLocalizations())
    if (NSString string = localized.objectForKey(language).string()) return string;
  const NSString fallback = localized.objectForKey(u"en"_ns).string();
  return fallback ? fallback : defaultValue;
}

}  // namespace NimboDictionaryExtensions
}  // namespace nimbo
