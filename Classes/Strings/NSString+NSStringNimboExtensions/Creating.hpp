// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

// The "initWith" forms are the same as those named "stringWith".

/// A string of one unit.
NSString stringWithCharacter(unichar character);
inline NSString initWithCharacter(unichar character) {
  return stringWithCharacter(character);
}

// Nil when the bytes are null or not text in the encoding to the last one, and when there is no converter for
// it.

/// Text of `length` bytes.
NSString stringWithCString(const char *bytes, std::uint32_t length, NSStringEncoding encoding);
inline NSString initWithCString(const char *bytes, std::uint32_t length, NSStringEncoding encoding) {
  return stringWithCString(bytes, length, encoding);
}
/// Text that ends before the first zero byte.
NSString stringWithNullTerminatedCString(const char *bytes, NSStringEncoding encoding);
inline NSString initWithNullTerminatedCString(const char *bytes, NSStringEncoding encoding) {
  return stringWithNullTerminatedCString(bytes, encoding);
}
NSString stringWithData(const NSData &data, NSStringEncoding encoding);
/// Text in the two Czech and Slovak encodings of the project's own.
inline NSString initWithKamenickyData(const NSData &data) {
  return stringWithData(data, NSKamenickyStringEncoding);
}
inline NSString initWithKoi8cs2Data(const NSData &data) {
  return stringWithData(data, NSKOI8CS2StringEncoding);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
