// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboDictionaryExtensions {

// Nothing happens when the key is nil, nor when a string to be set is.

void setInteger(NSDictionary &dictionary, std::int32_t value, const NSString &key);
void setUnsignedInt(NSDictionary &dictionary, std::uint32_t value, const NSString &key);
/// A number from 2^63 on is stored as the negative one of the same bits.
void setUnsignedLong(NSDictionary &dictionary, std::uint64_t value, const NSString &key);
void setLongLong(NSDictionary &dictionary, std::int64_t value, const NSString &key);
void setFloat(NSDictionary &dictionary, float value, const NSString &key);
void setDouble(NSDictionary &dictionary, double value, const NSString &key);
void setBool(NSDictionary &dictionary, bool value, const NSString &key);
void setString(NSDictionary &dictionary, const NSString &value, const NSString &key);

/// Removes the key when the object is nil.
void setOrRemoveObject(NSDictionary &dictionary, const id &object, const NSString &key);
/// Removes the key when the string is nil or empty.
void setOrRemoveString(NSDictionary &dictionary, const NSString &string, const NSString &key);

}  // namespace NimboDictionaryExtensions
}  // namespace nimbo
