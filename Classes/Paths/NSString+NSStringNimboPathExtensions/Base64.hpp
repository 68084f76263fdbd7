// SPDX-License-Identifier: Apache-2.0
//
// Text in Base64. Any thread may call these.
//
//     encodebase64(u"café"_ns);  // "Y2Fmw6k="
//     decodebase64(u"Y2Fm w6k="_ns);  // "café"
//     decodebase64UsingEncoding(u"6Q=="_ns, NSISOLatin1StringEncoding);  // "é"
#pragma once

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboPathExtensions {

/// The string's UTF-8 in Base64: the standard alphabet with "=" at the end and no line breaks. A lone surrogate
/// counts as U+FFFD. Nil for nil, and when the result would be too long for a string.
NSString encodebase64(const NSString &string);

/// The text that Base64 stands for, in UTF-8. Characters outside the standard alphabet are skipped, line
/// breaks and blanks among them; the first "=" ends it; bits that make no whole byte are dropped. Nil for nil,
/// and when the bytes are no UTF-8.
NSString decodebase64(const NSString &string);
/// As `decodebase64`, in the encoding given; nil when the bytes are no text in it.
NSString decodebase64UsingEncoding(const NSString &string, NSStringEncoding encoding);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
