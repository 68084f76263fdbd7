// SPDX-License-Identifier: Apache-2.0
//
// URLs from strings, and from other URLs with a part changed. Nil for nil, and when the result is no URL. What
// is changed is escaped where it needs to be; the changed URL has no base. Any thread may make URLs.
//
//     const NSURL page = URLWithNormalizedStringURL(u"www.example.org/a b"_ns);
//     page.absoluteString();  // "http://www.example.org/a%20b"
//     URLWithAnchor(page, u"top"_ns).absoluteString();  // "http://www.example.org/a%20b#top"
//     URLWithFormat(u"http://example.org/?q=%@"_ns, {u"1"_ns}).query();  // "q=1"
#pragma once

#include <span>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// Reads a path, which begins with "/" or "~", as the URL of a file; anything else as a URL.
NSURL URLWithStringOrPath(const NSString &string);
/// Reads a URL as people type it or `normalizedStringURL` makes it of markup: it is cleaned, repaired and
/// written in ASCII (`cleanURLUnits`, `repairedStringURL`, `ASCIIStringURL`), with
/// "http://" in front of "www." and "ftp://" in front of "ftp.". What is not ASCII in the query is escaped in
/// the encoding. Nil, too, when nothing usable is left.
NSURL URLWithNormalizedStringURL(const NSString &string, NSStringEncoding encoding = NSUTF8StringEncoding);
/// Reads the format as a URL. Each "%@" is replaced by the next argument as it stands, or by nothing when
/// there are too few; "%%" is "%".
NSURL URLWithFormat(const NSString &format, std::span<const NSString> arguments);
/// As above with a list.
NSURL URLWithFormat(const NSString &format, std::initializer_list<NSString> arguments);

/// The URL with another anchor, which may begin with "#"; without any when that is nil or empty.
NSURL URLWithAnchor(const NSURL &url, const NSString &anchor);
/// The URL without its anchor; the URL itself when it has none.
NSURL URLWithoutAnchor(const NSURL &url);
/// The URL with another scheme.
NSURL URLWithScheme(const NSURL &url, const NSString &scheme);
/// The URL with a user and a password; each is left out when it is nil, the password also without a user. Nil
/// when the URL has no host.
NSURL URLForUser(const NSURL &url, const NSString &user, const NSString &password);
/// The URL with a component behind the path; parameters, query and anchor go. Nil when the URL is opaque.
NSURL URLByAppendingPathComponent(const NSURL &url, const NSString &component);
/// The URL without the last component of the path, and all that follows; a folder remains, with a "/". The
/// root stays.
NSURL URLByDeletingLastPathComponent(const NSURL &url);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
