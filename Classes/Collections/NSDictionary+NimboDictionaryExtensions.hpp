// SPDX-License-Identifier: Apache-2.0
//
// Values of dictionaries as text and numbers, by the conversions of NSNumber.hpp. The answer is the default
// when there is no value, and when it is of a kind that is neither text nor a number. Any thread may ask a
// dictionary that no thread changes.
//
//     const NSDictionary limits = {{u"pages"_ns, u"12"_ns}, {u"codes"_ns, true}};
//     integerForKey(limits, u"pages"_ns);  // 12
//     boolForKey(limits, u"codes"_ns);  // true
//     stringForKey(limits, u"name"_ns, u"none"_ns);  // "none"
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboDictionaryExtensions {

/// The value as it is; the default when there is none.
id objectForKey(const NSDictionary &dictionary, const NSString &key, const id &defaultValue);

/// The value as text.
NSString stringForKey(const NSDictionary &dictionary, const NSString &key,
                      const NSString &defaultValue = NSString());
/// The value as a whole number, cut to the bounds of its type.
std::int32_t integerForKey(const NSDictionary &dictionary, const NSString &key, std::int32_t defaultValue = 0);
/// The value as a whole number from 0 on, cut to the bounds of its type.
std::uint32_t unsignedIntForKey(const NSDictionary &dictionary, const NSString &key,
                                std::uint32_t defaultValue = 0);
/// The value as a whole number from 0 on, cut to the bounds of its type. A negative number stands for the
/// unsigned one of the same bits, as `setUnsignedLong` stores it.
std::uint64_t unsignedLongForKey(const NSDictionary &dictionary, const NSString &key,
                                 std::uint64_t defaultValue = 0);
/// The value as a whole number.
std::int64_t longLongForKey(const NSDictionary &dictionary, const NSString &key, std::int64_t defaultValue = 0);
/// Whether a number is not 0; a string by `boolValue`.
bool boolForKey(const NSDictionary &dictionary, const NSString &key, Flag defaultValue = false);
/// The value as a number, cut to the bounds of its type.
float floatForKey(const NSDictionary &dictionary, const NSString &key, float defaultValue = 0);
/// The value as a number.
double doubleForKey(const NSDictionary &dictionary, const NSString &key, double defaultValue = 0);

/// The key under which a value with an integer code is stored: the number's decimal digits.
NSString keyForCode(std::int64_t code);
/// The value under the key of the code; the default when there is none.
id objectForCode(const NSDictionary &dictionary, std::int64_t code, const id &defaultValue = id());

/// A value that is a string, or a dictionary with a string for each language: the first that stands under one
/// of the main bundle's `preferredLocalizations` is taken, else the one under "en". The default when there is
/// none, and for values of other kinds.
NSString localizedStringForKey(const NSDictionary &dictionary, const NSString &key,
                               const NSString &defaultValue = NSString());

}  // namespace NimboDictionaryExtensions
}  // namespace nimbo
