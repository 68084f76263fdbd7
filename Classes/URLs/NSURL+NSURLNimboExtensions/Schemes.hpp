// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

// What kind of URL it is. Schemes and hosts are compared as a whole, without regard to case. False for nil and
// for a URL without a scheme.

/// "http" or "https".
bool isHTTPURL(const NSURL &url);
/// "ftp", "ftps" or "sftp".
bool isFTPURL(const NSURL &url);
bool isFeedURL(const NSURL &url);
/// "mailto".
bool isMailURL(const NSURL &url);
/// "news" or "nttp": callers rely on "nntp" being none.
bool isNewsURL(const NSURL &url);
bool isJavaScriptURL(const NSURL &url);
bool isAppleScriptURL(const NSURL &url);
/// One of `isHTTPURL` or `isFTPURL`.
bool isDownloadableURL(const NSURL &url);
/// The same or "feed"; or the URL of a file that is there, on the disk, and no folder.
bool isLoadableURL(const NSURL &url);
/// "http", "https" or "feed" with a host that has a letter or digit and no "...".
bool isRemoteWebKitURL(const NSURL &url);
/// The same, or the URL of a file.
bool isWebKitURL(const NSURL &url);

/// Whether both are files, or neither and both have the same host.
bool isHostEqualTo(const NSURL &url, const NSURL &other);

/// Whether the host is that of a search engine (Classes/URLs/SearchEngines.tsv) and the page none of those with
/// content of its own that engines have on the same host: news, groups, documentation.
bool isSearchEngine(const NSURL &url);

/// What a web engine is given as the base of a page: a file that is there, an HTTP URL, or that of a feed as an
/// HTTP URL. Nil for everything else.
NSURL baseURLForWebKit(const NSURL &url);
/// The same with an anchor.
NSURL baseURLForWebKitUsingAnchor(const NSURL &url, const NSString &anchor);
/// What a web engine is given to show: as above, but a file need not be there. Nil unless `isWebKitURL`.
NSURL WebKitURL(const NSURL &url);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
