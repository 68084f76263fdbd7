// SPDX-License-Identifier: Apache-2.0
//
// Numbers and strings put into dictionaries. Nothing happens when the key is nil, nor when a string to be set
// is. One thread changes a dictionary at a time.
//
//     NSDictionary limits = NSDictionary::dictionary();
//     setInteger(limits, 12, u"pages"_ns);
//     setOrRemoveString(limits, u""_ns, u"name"_ns);
//     limits.count();  // 1
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboDictionaryExtensions {

/// Stores a whole number.
void setInteger(NSDictionary &dictionary, std::int32_t value, const NSString &key);
/// Stores a whole number from 0 on.
void setUnsignedInt(NSDictionary &dictionary, std::uint32_t value, const NSString &key);
/// Stores a whole number from 0 on; one from 2^63 on as the negative one of the same bits.
void setUnsignedLong(NSDictionary &dictionary, std::uint64_t value, const NSString &key);
/// Stores a whole number.
void setLongLong(NSDictionary &dictionary, std::int64_t value, const NSString &key);
/// Stores a number; for a fraction the one of the fewest decimal digits that is the same float, so that 0.1F is
/// 0.1 as text, too.
void setFloat(NSDictionary &dictionary, float value, const NSString &key);
/// Stores a number.
void setDouble(NSDictionary &dictionary, double value, const NSString &key);
/// Stores true or false.
void setBool(NSDictionary &dictionary, Flag value, const NSString &key);
/// Stores a string.
void setString(NSDictionary &dictionary, const NSString &value, const NSString &key);

/// Stores the object; removes the key when it is nil.
void setOrRemoveObject(NSDictionary &dictionary, const id &object, const NSString &key);
/// Stores the string; removes the key when it is nil or empty.
void setOrRemoveString(NSDictionary &dictionary, const NSString &string, const NSString &key);

}  // namespace NimboDictionaryExtensions
}  // namespace nimbo
