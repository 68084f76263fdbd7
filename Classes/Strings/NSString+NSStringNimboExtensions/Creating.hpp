// SPDX-License-Identifier: Apache-2.0
//
// Strings made of bytes. Text is nil when the bytes are null or not text in the encoding to the last one, and
// when there is no converter for it. An "initWith" form is the same as the one named "stringWith". Any thread
// may make strings.
//
//     stringWithCString("caf\xe9", 4, NSISOLatin1StringEncoding);  // "café"
//     stringWithNullTerminatedCString("\xe9", NSUTF8StringEncoding);  // nil
//     const NSString letter = stringWithData(data, NSUTF8StringEncoding);
#pragma once

#include <cstdint>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// A string of one unit.
NSString stringWithCharacter(unichar character);
/// As `stringWithCharacter`.
inline NSString initWithCharacter(unichar character) {
  return stringWithCharacter(character);
}

/// Text of `length` bytes.
NSString stringWithCString(const char *bytes, std::uint32_t length, NSStringEncoding encoding);
/// As `stringWithCString`.
inline NSString initWithCString(const char *bytes, std::uint32_t length, NSStringEncoding encoding) {
  return stringWithCString(bytes, length, encoding);
}
/// Text that ends before the first zero byte.
NSString stringWithNullTerminatedCString(const char *bytes, NSStringEncoding encoding);
/// As `stringWithNullTerminatedCString`.
inline NSString initWithNullTerminatedCString(const char *bytes, NSStringEncoding encoding) {
  return stringWithNullTerminatedCString(bytes, encoding);
}
/// Text of the data.
NSString stringWithData(const NSData &data, NSStringEncoding encoding);
/// Text in `NSKamenickyStringEncoding`, which is for Czech and Slovak.
inline NSString initWithKamenickyData(const NSData &data) {
  return stringWithData(data, NSKamenickyStringEncoding);
}
/// Text in `NSKOI8CS2StringEncoding`, which is for Czech and Slovak.
inline NSString initWithKoi8cs2Data(const NSData &data) {
  return stringWithData(data, NSKOI8CS2StringEncoding);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
