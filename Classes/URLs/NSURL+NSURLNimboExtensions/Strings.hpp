// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

// Strings of a URL. Nil for nil.

// What the function of the same name for strings makes of the absolute string; for a file its standardised
// path.

NSString simplifiedStringURL(const NSURL &url);
NSString simplifiedStringURLByRemovingSessionIDs(const NSURL &url, Flag sessionIDs, Flag analytics,
                                                 Flag indexPages, Flag emptyParams, Flag anchors);
NSString stringURLByRemovingSessionIDs(const NSURL &url);
NSString stringURLByRemovingAnalytics(const NSURL &url);
NSString stringURLByRemovingEmptyParams(const NSURL &url);
NSString stringURLByRemovingIndexPages(const NSURL &url);
/// For a file, too, of the absolute string.
NSString stringURLWithoutAnchor(const NSURL &url);

/// The absolute string of `standardizedURL`.
NSString standardizedStringURL(const NSURL &url);
/// For a file its path.
NSString absoluteStringOrPath(const NSURL &url);
NSString absoluteStringWithoutUserAndPassword(const NSURL &url);
/// Scheme, host, port and path: without user, password, parameters, query and anchor.
NSString absoluteStringWithHostAndPath(const NSURL &url);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
