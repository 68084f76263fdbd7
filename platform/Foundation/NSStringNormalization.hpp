// SPDX-License-Identifier: Apache-2.0
//
// Normal forms of Unicode. Any thread may call these with its own strings.
//
//     precomposedStringWithCanonicalMapping(u"e\u0301"_ns);  // "é"
//     isQuicklyPrecomposed(u"plain");  // true
//     NSMutableString text(u"é"_ns);
//     CFStringNormalize(text, kCFStringNormalizationFormD);
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The forms of Unicode: D and C of canonical, KD and KC of compatible equivalents; C and KC composed.
enum CFStringNormalizationForm {
  kCFStringNormalizationFormD,
  kCFStringNormalizationFormKD,
  kCFStringNormalizationFormC,
  kCFStringNormalizationFormKC,
};

/// Brings the string into the form, in place. Lone surrogates stay.
void CFStringNormalize(NSMutableString &string, CFStringNormalizationForm form);

/// Whether the string is certainly in Unicode normalization form C (NFC). False also when that takes a closer
/// look.
bool isQuicklyPrecomposed(std::u16string_view units);

/// Brings the string into NFC, in place. Lone surrogates stay.
void precomposeStringWithCanonicalMapping(NSMutableString &string);

/// The string in NFC: the receiver itself when it is nil or already in that form.
NSString precomposedStringWithCanonicalMapping(const NSString &string);

}  // namespace nimbo
