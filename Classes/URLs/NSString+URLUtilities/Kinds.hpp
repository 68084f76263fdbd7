// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace URLUtilities {

/// Whether the string begins with "http://" or "https://"; "ftp://", "ftps://" or "sftp://"; "news://" or
/// "nntp://"; without regard to case (`upperCharsTable`).
bool isHTTPStringURL(const NSString &string);
bool isFTPStringURL(const NSString &string);
bool isNewsStringURL(const NSString &string);

/// Whether the scheme is "file", "mailto", "javascript" or "applescript", without regard to case. As these are
/// asked of links as they are written, white characters in front are skipped.
bool isFileStringURL(const NSString &string);
bool isMailStringURL(const NSString &string);
bool isJavaScriptStringURL(const NSString &string);
bool isAppleScriptStringURL(const NSString &string);

/// Whether the scheme is "feed", or the path's last component looks like a feed: its extension is "rss", "rdf"
/// or "atom", or its name without an extension is "feed", "feeds", "rss", "rss2" or "atom", or it is
/// "index.xml". White characters in front are skipped, letters compared without regard to case.
bool isFeedStringURL(const NSString &string);

/// Whether a MIME type is one that the tag scanner can read: "text/html", "text/xml", "text/sgml",
/// "text/x-opml", "text/vnd.wap.wml", "application/xml", "application/sgml", and all types of text and
/// application that end with "+xml", as XHTML and feeds do. Letters are compared without regard to case; what
/// follows a ";" and white characters around the type do not matter.
bool isMarkupMIMEType(const NSString &string);

}  // namespace URLUtilities
}  // namespace nimbo
