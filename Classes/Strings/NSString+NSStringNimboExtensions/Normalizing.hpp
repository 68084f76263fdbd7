// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSStringNormalization.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

// These answer the string itself when it is nil or empty, else a copy.

/// In NFC, or in the form given.
NSString normalizedString(const NSString &string, CFStringNormalizationForm form = kCFStringNormalizationFormC);
/// In NFC, then in lower case: both, the name notwithstanding.
NSString normalizedUppercaseString(const NSString &string);
NSString normalizedLowercaseString(const NSString &string);
/// Cleaned as `fixAndNormalizeString` does.
NSString fixedAndNormalizedString(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
