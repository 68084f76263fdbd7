// SPDX-License-Identifier: Apache-2.0
//
// What kind of URL it is. Schemes and hosts are compared as a whole, without regard to case. False for nil and
// for a URL without a scheme. Any thread may ask.
//
//     isHTTPURL(NSURL::URLWithString(u"HTTPS://example.org"_ns));  // true
//     isSearchEngine(NSURL::URLWithString(u"http://example.org/"_ns));  // false
//     const NSURL base = baseURLForWebKit(url);
#pragma once

#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// Whether the scheme is "http" or "https".
bool isHTTPURL(const NSURL &url);
/// Whether the scheme is "ftp", "ftps" or "sftp".
bool isFTPURL(const NSURL &url);
/// Whether the scheme is "feed".
bool isFeedURL(const NSURL &url);
/// Whether the scheme is "mailto".
bool isMailURL(const NSURL &url);
/// Whether the scheme is "news" or "nttp": callers rely on "nntp" being none.
bool isNewsURL(const NSURL &url);
/// Whether the scheme is "javascript".
bool isJavaScriptURL(const NSURL &url);
/// Whether the scheme is "applescript".
bool isAppleScriptURL(const NSURL &url);
/// Whether it `isHTTPURL` or `isFTPURL`.
bool isDownloadableURL(const NSURL &url);
/// Whether it `isDownloadableURL` or `isFeedURL`, or the URL of a file that is there, on the disk, and no
/// folder.
bool isLoadableURL(const NSURL &url);
/// Whether the scheme is "http", "https" or "feed", with a host that has a letter or digit and no "...".
bool isRemoteWebKitURL(const NSURL &url);
/// Whether it `isRemoteWebKitURL` or the URL of a file.
bool isWebKitURL(const NSURL &url);

/// Whether both are files, or neither and both have the same host.
bool isHostEqualTo(const NSURL &url, const NSURL &other);

/// Whether the host is that of a search engine (Classes/URLs/SearchEngines.tsv) and the page none of those with
/// content of its own that engines have on the same host: news, groups, documentation.
bool isSearchEngine(const NSURL &url);

/// What a web engine is given as the base of a page: a file that is there, an HTTP URL, or that of a feed as an
/// HTTP URL. Nil for everything else.
NSURL baseURLForWebKit(const NSURL &url);
/// What `baseURLForWebKit` answers, with an anchor.
NSURL baseURLForWebKitUsingAnchor(const NSURL &url, const NSString &anchor);
/// What a web engine is given to show: as `baseURLForWebKit`, but a file need not be there. Nil unless
/// `isWebKitURL`.
NSURL WebKitURL(const NSURL &url);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
