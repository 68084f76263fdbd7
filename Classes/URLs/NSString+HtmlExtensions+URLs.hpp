// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

/// A URL as it is written in markup, cleaned by `normalizeURLUnits` (Classes/URLs/URLNormalizing.hpp); with
/// `trimAnchor` without its anchor. The string itself when it is clean; up to 256 units nothing but a new
/// result takes memory. Nil when nothing usable is left, for nil, and above `kMaxNormalizedURLLength` units
/// that are not clean.
NSString normalizedStringURL(const NSString &string, Flag trimAnchor);
/// The same with the anchor.
NSString normalizedStringURL(const NSString &string);

/// The normalised URL with "/" in front, unless it begins with "." or "/" or contains "://". Nil as above.
NSString normalizedRelLink(const NSString &string);

}  // namespace HtmlExtensions
}  // namespace nimbo
