// SPDX-License-Identifier: Apache-2.0
//
// Conversions between UTF-16 and bytes:
//
//     unichar units[16];
//     std::uint32_t count = 0;
//     convertEncodingToUnicode("caf\xe9", 4, kCFStringEncodingISOLatin1, units, 16, &count);  // 1, and 4 units
#pragma once

#include <cstdint>

#include "platform/CoreServices/TextEncodings/TECConverter.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// UTF-16 in the order of this machine; set by `initUnicodeConverters`.
extern CFStringEncoding ucs2Encoding;
/// UTF-8; set by `initUnicodeConverters`.
extern CFStringEncoding utf8Encoding;

/// Makes the two shared converters, once. They live as long as the process.
void initUnicodeConverters();

/// Converts with the shared converter; not from two threads at once. The answer is the converter's status, 0
/// when everything is converted, `kTECCorruptConverterErr` when `initUnicodeConverters` has not run; the length
/// of the output is not told. A run of length 0 may be null.
OSStatus convertUnicodeToUTF8(const unichar *units, std::uint32_t count, char *out,
                              std::uint32_t outCapacityBytes);
/// Converts the other way, as `convertUnicodeToUTF8` does.
OSStatus convertUTF8ToUnicode(const char *bytes, std::uint32_t byteCount, unichar *out,
                              std::uint32_t outCapacityUnits);

/// Converts bytes of any encoding with a converter of their own; safe from any thread. When no converter can be
/// made, the answer is that status, which is neither 0 nor 1; else 1 for success and 0 for failure, which is
/// bytes that are impossible in the encoding, a divided character at the end, or too little room. Codes that
/// have no meaning become U+FFFD. A byte order mark that decides the order of bytes is not part of the output.
/// `*outCount` gets the units of output, 0 unless the conversion succeeded; the pointer may be null, and so may
/// a run of length 0.
OSStatus convertEncodingToUnicode(const char *bytes, std::uint32_t byteCount, CFStringEncoding encoding,
                                  unichar *out, std::uint32_t outCapacityUnits, std::uint32_t *outCount);

}  // namespace nimbo
