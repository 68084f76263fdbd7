// SPDX-License-Identifier: Apache-2.0
//
// Copies with texts or units replaced. The answer is the string itself when nothing is replaced; nil for nil.
// Any thread may call these.
//
//     stringByReplacingString(u"a.b.c"_ns, u"."_ns, u" - "_ns);  // "a - b - c"
//     stringByReplacingString(u"Page PAGE"_ns, u"page"_ns, u"p."_ns, false);  // "p. p."
//     stringByReplacingCharacter(u"a/b"_ns, u'/', u':');  // "a:b"
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// As `replaceString` of NSMutableString+NSMutableStringNimboExtensions/Replacing.hpp.
NSString stringByReplacingString(const NSString &string, const NSString &replaced, const NSString &withString,
                                 Flag caseSensitive = true);
/// As `replaceCharacter`: letters are always replaced exactly.
NSString stringByReplacingCharacter(const NSString &string, unichar character, unichar withCharacter,
                                    Flag caseSensitive = true);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
