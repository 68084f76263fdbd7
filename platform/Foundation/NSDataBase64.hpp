// SPDX-License-Identifier: Apache-2.0
//
// Bytes in Base64. Any thread may call these.
//
//     const NSString text = base64EncodedString(NSData::dataWithBytes("abc", 3));  // "YWJj"
//     const NSData bytes = dataWithBase64EncodedString(text);
//     bytes.length();  // 3
#pragma once

#include "platform/Foundation/NSData.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The bytes in Base64's standard alphabet, padded with "=", without line breaks. Nil for nil, and when the
/// text would be longer than `NSNotFound`.
NSString base64EncodedString(const NSData &data);

/// The bytes that Base64 text stands for. Reading ends at the first "="; characters outside the standard
/// alphabet, line breaks among them, are skipped; bits that make no whole byte are dropped. Nil for nil.
NSData dataWithBase64EncodedString(const NSString &string);

}  // namespace nimbo
