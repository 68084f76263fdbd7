// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

// Answers the string itself when nothing is trimmed; nil for nil.

/// Without the white set, the line breaks, the digit set at both ends.
NSString stringByTrimmingWhiteSpaces(const NSString &string);
NSString stringByTrimmingFeeds(const NSString &string);
NSString stringByTrimmingDigits(const NSString &string);
/// Without all of this unit at both ends, at the beginning, at the end.
NSString stringByTrimmingCharacter(const NSString &string, unichar character);
NSString stringByTrimmingPrefixCharacter(const NSString &string, unichar character);
NSString stringByTrimmingSuffixCharacter(const NSString &string, unichar character);
/// Without the first and the last unit, when both are this one and there are two.
NSString stringByTrimmingEnclosingCharacter(const NSString &string, unichar character);
/// Without "." and U+2026 at the end.
NSString stringByTrimmingEllipsis(const NSString &string);

/// Without the space set (with line breaks: the white set) at both ends or one.
NSString stringByTrimmingSpacesAndFeeds(const NSString &string, Flag andFeeds);
NSString stringByTrimmingSpacesOfLeftSideAndFeeds(const NSString &string, Flag andFeeds);
NSString stringByTrimmingSpacesOfRightSideAndFeeds(const NSString &string, Flag andFeeds);

/// The part of `range`, which is cut to the string's bounds, without the space set (with line breaks, and in
/// the last form: the white set) at both its ends. Where nothing is left, the range is empty and stands at the
/// end of the given one. A range that begins behind the string, or a nil string, gives NSNotFound and length 0;
/// the string form gives the empty string.
NSString stringByTrimmingSpacesInRange(const NSString &string, NSRange range, Flag andFeeds);
NSRange trimSpacesInRange(const NSString &string, NSRange range, Flag andFeeds);
NSRange trimWhiteSpacesInRange(const NSString &string, NSRange range);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
