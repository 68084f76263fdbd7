// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboPathExtensions {

/// The string's UTF-8 in Base64: the standard alphabet with "=" at the end and no line breaks. A lone surrogate
/// counts as U+FFFD. Nil for nil, and when the result would be too long for a string.
NSString encodebase64(const NSString &string);

/// The text that Base64 stands for, in UTF-8 or the encoding given. Characters outside the standard alphabet
/// are skipped, line breaks and blanks among them; the first "=" ends it; bits that make no whole byte are
/// dropped. Nil for nil, and when the bytes are no text in that encoding.
NSString decodebase64(const NSString &string);
NSString decodebase64UsingEncoding(const NSString &string, NSStringEncoding encoding);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
