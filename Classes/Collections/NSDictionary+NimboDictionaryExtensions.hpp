// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboDictionaryExtensions {

/// The default when there is no value.
id objectForKey(const NSDictionary &dictionary, const NSString &key, const id &defaultValue);

// The value as text or a number, by the conversions of NSNumber.hpp. The default when there is no value, and
// when it is of a kind that is neither.

NSString stringForKey(const NSDictionary &dictionary, const NSString &key,
                      const NSString &defaultValue = NSString());
/// These two are cut to the bounds of their type.
std::int32_t integerForKey(const NSDictionary &dictionary, const NSString &key, std::int32_t defaultValue = 0);
std::uint32_t unsignedIntForKey(const NSDictionary &dictionary, const NSString &key,
                                std::uint32_t defaultValue = 0);
/// A negative number stands for the unsigned one of the same bits, as `setUnsignedLong` stores it.
std::uint64_t unsignedLongForKey(const NSDictionary &dictionary, const NSString &key,
                                 std::uint64_t defaultValue = 0);
std::int64_t longLongForKey(const NSDictionary &dictionary, const NSString &key, std::int64_t defaultValue = 0);
/// Whether a number is not 0; a string by `boolValue`.
bool boolForKey(const NSDictionary &dictionary, const NSString &key, bool defaultValue = false);
/// Cut to the bounds of its type.
float floatForKey(const NSDictionary &dictionary, const NSString &key, float defaultValue = 0);
double doubleForKey(const NSDictionary &dictionary, const NSString &key, double defaultValue = 0);

/// The key under which a value with an integer code is stored: the number's decimal digits.
NSString keyForCode(std::int64_t code);
id objectForCode(const NSDictionary &dictionary, std::int64_t code, const id &defaultValue = id());

/// A value that is a string, or a dictionary with a string for each language: the first that stands under one
/// of the main bundle's `preferredLocalizations` is taken, else the one under "en". The default when there is
/// none, and for values of other kinds.
NSString localizedStringForKey(const NSDictionary &dictionary, const NSString &key,
                               const NSString &defaultValue = NSString());

}  // namespace NimboDictionaryExtensions
}  // namespace nimbo
