// SPDX-License-Identifier: Apache-2.0
//
// What a URL as a string is by its scheme and name. Letters are compared without regard to case. All are false
// for nil; any thread may ask.
//
//     isHTTPStringURL(u"HTTPS://example.org"_ns);  // true
//     isFeedStringURL(u"http://example.org/index.xml"_ns);  // true
//     isMarkupMIMEType(u"application/xhtml+xml; charset=utf-8"_ns);  // true
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace URLUtilities {

/// Whether the string begins with "http://" or "https://" (`upperCharsTable`).
bool isHTTPStringURL(const NSString &string);
/// Whether the string begins with "ftp://", "ftps://" or "sftp://" (`upperCharsTable`).
bool isFTPStringURL(const NSString &string);
/// Whether the string begins with "news://" or "nntp://" (`upperCharsTable`).
bool isNewsStringURL(const NSString &string);

/// Whether the scheme is "file"; white characters in front are skipped, as links are asked about as they are
/// written.
bool isFileStringURL(const NSString &string);
/// Whether the scheme is "mailto"; white characters in front are skipped.
bool isMailStringURL(const NSString &string);
/// Whether the scheme is "javascript"; white characters in front are skipped.
bool isJavaScriptStringURL(const NSString &string);
/// Whether the scheme is "applescript"; white characters in front are skipped.
bool isAppleScriptStringURL(const NSString &string);

/// Whether the scheme is "feed", or the path's last component looks like a feed: its extension is "rss", "rdf"
/// or "atom", or its name without an extension is "feed", "feeds", "rss", "rss2" or "atom", or it is
/// "index.xml". White characters in front are skipped.
bool isFeedStringURL(const NSString &string);

/// Whether a MIME type is one that the tag scanner can read: "text/html", "text/xml", "text/sgml",
/// "text/x-opml", "text/vnd.wap.wml", "application/xml", "application/sgml", and all types of text and
/// application that end with "+xml", as XHTML and feeds do. Letters are compared without regard to case; what
/// follows a ";" and white characters around the type do not matter.
bool isMarkupMIMEType(const NSString &string);

}  // namespace URLUtilities
}  // namespace nimbo
