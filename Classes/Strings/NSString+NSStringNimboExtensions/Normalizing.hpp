// SPDX-License-Identifier: Apache-2.0
//
// Normal forms. Each function answers the string itself when it is nil or empty, else a copy. Any thread may
// call them.
//
//     normalizedString(u"e\u0301"_ns).length();  // 1
//     normalizedLowercaseString(u"E\u0301COLE"_ns);  // "école"
//     fixedAndNormalizedString(u"a\xf400"_ns);  // "a "
#pragma once

#include "platform/Foundation/NSStringNormalization.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// The string in NFC, or in the form given.
NSString normalizedString(const NSString &string, CFStringNormalizationForm form = kCFStringNormalizationFormC);
/// The string in NFC, then in lower case, the name notwithstanding.
NSString normalizedUppercaseString(const NSString &string);
/// The string in NFC, then in lower case.
NSString normalizedLowercaseString(const NSString &string);
/// The string cleaned as `fixAndNormalizeString` does.
NSString fixedAndNormalizedString(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
