// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

/// Whether the string is certainly in Unicode normalization form C (NFC). False also when that takes a closer
/// look.
bool isQuicklyPrecomposed(std::u16string_view units);

/// Brings the string into NFC, in place. Lone surrogates stay.
void precomposeStringWithCanonicalMapping(NSMutableString &string);

/// The string in NFC: the receiver itself when it is nil or already in that form.
NSString precomposedStringWithCanonicalMapping(const NSString &string);

}  // namespace nimbo
