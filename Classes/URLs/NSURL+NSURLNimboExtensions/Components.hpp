// SPDX-License-Identifier: Apache-2.0
//
// Parts of URLs: of the host, of the path as it is written, of the path with its escapes decoded, of the
// query. Parts of the path are nil for nil and for an opaque URL. Any thread may ask.
//
//     const NSURL page = NSURL::URLWithString(u"http://www.example.org/a%20b/c.html?d=1#e"_ns);
//     invertedHost(page);  // "org.example.www"
//     baseDirectory(page);  // "/a%20b/"
//     lastPathComponent(page);  // "c.html"
#pragma once

#include <vector>

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// The labels of the host, empty ones left out; an IP address is one label. Empty without a host.
std::vector<NSString> hostComponents(const NSURL &url);
/// The labels of the host in the reverse order, which is from the general to the special: "org", "example",
/// "www".
std::vector<NSString> invertedHostComponents(const NSURL &url);
/// The labels in that order with full stops between them; nil without a host.
NSString invertedHost(const NSURL &url);

/// The path up to its last "/", that included; "/" when it is empty. Parameters do not count.
NSString baseDirectory(const NSURL &url);
/// The `baseDirectory` of `standardizedURL`.
NSString standardizedBaseDirectory(const NSURL &url);
/// Whether the path is empty or ends with "/" and no parameters, query or anchor follow.
bool isBaseDirectory(const NSURL &url);
/// The path as it is written, with its parameters and the query.
NSString pathWithParamsAndQuery(const NSURL &url);
/// The path as it is written, with its parameters, the query and the anchor.
NSString pathWithParamsAndQueryAndFragment(const NSURL &url);

/// The decoded path (`NSURL::path`) with the parameters.
NSString fullPath(const NSURL &url);
/// The extension of the decoded path.
NSString pathExtension(const NSURL &url);
/// The last component of the decoded path.
NSString lastPathComponent(const NSURL &url);

/// The parameters of the query that have a value (URLQuery.hpp); nil without a query.
NSDictionary queryParams(const NSURL &url);
/// How many parameters the query has; 0 without one.
std::uint32_t numberOfQueryParams(const NSURL &url);
/// The value of the first parameter of this name that has one; nil when there is none.
NSString queryParamNamed(const NSURL &url, const NSString &name);
/// Whether there is a parameter of this name, with a value or without.
bool containsQueryParamNamed(const NSURL &url, const NSString &name);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
