// SPDX-License-Identifier: Apache-2.0
//
// Copies without some units at their ends. The answer is the string itself when nothing is trimmed; nil for
// nil. Any thread may call these.
//
//     stringByTrimmingWhiteSpaces(u" a b\n"_ns);  // "a b"
//     stringByTrimmingEnclosingCharacter(u"'quoted'"_ns, u'\'');  // "quoted"
//     trimSpacesInRange(u"a  b  c"_ns, {1, 5}, false);  // {3, 1}
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Trims the units of the white set at both ends.
NSString stringByTrimmingWhiteSpaces(const NSString &string);
/// Trims the line breaks at both ends.
NSString stringByTrimmingFeeds(const NSString &string);
/// Trims the units of the digit set at both ends.
NSString stringByTrimmingDigits(const NSString &string);
/// Trims all units `character` at both ends.
NSString stringByTrimmingCharacter(const NSString &string, unichar character);
/// Trims all units `character` at the beginning.
NSString stringByTrimmingPrefixCharacter(const NSString &string, unichar character);
/// Trims all units `character` at the end.
NSString stringByTrimmingSuffixCharacter(const NSString &string, unichar character);
/// Takes the first and the last unit away, when both are `character` and there are two.
NSString stringByTrimmingEnclosingCharacter(const NSString &string, unichar character);
/// Trims all "." and U+2026 at the end.
NSString stringByTrimmingEllipsis(const NSString &string);

/// Trims the units of the space set (`andFeeds`: of the white set) at both ends.
NSString stringByTrimmingSpacesAndFeeds(const NSString &string, Flag andFeeds);
/// As `stringByTrimmingSpacesAndFeeds`, at the beginning only.
NSString stringByTrimmingSpacesOfLeftSideAndFeeds(const NSString &string, Flag andFeeds);
/// As `stringByTrimmingSpacesAndFeeds`, at the end only.
NSString stringByTrimmingSpacesOfRightSideAndFeeds(const NSString &string, Flag andFeeds);

/// The text at `trimSpacesInRange`, empty where that is.
NSString stringByTrimmingSpacesInRange(const NSString &string, NSRange range, Flag andFeeds);
/// The part of `range`, which is cut to the string's bounds, without the units of the space set (`andFeeds`:
/// of the white set) at both its ends. Where nothing is left, the range is empty and stands at the end of the
/// given one. A range that begins behind the string, or a nil string, gives NSNotFound and length 0.
NSRange trimSpacesInRange(const NSString &string, NSRange range, Flag andFeeds);
/// As `trimSpacesInRange` with `andFeeds`.
NSRange trimWhiteSpacesInRange(const NSString &string, NSRange range);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
