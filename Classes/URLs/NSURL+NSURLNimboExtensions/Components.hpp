// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// The labels of the host, empty ones left out; an IP address is one label. Empty without a host.
std::vector<NSString> hostComponents(const NSURL &url);
/// The same in the reverse order, which is from the general to the special: "org", "example", "www".
std::vector<NSString> invertedHostComponents(const NSURL &url);
/// These with full stops between them; nil without a host.
NSString invertedHost(const NSURL &url);

// Parts of the path, as they are written. Nil for nil and for an opaque URL.

/// The path up to its last "/", that included; "/" when it is empty. Parameters do not count.
NSString baseDirectory(const NSURL &url);
/// That of `standardizedURL`.
NSString standardizedBaseDirectory(const NSURL &url);
/// Whether the path is empty or ends with "/" and no parameters, query or anchor follow.
bool isBaseDirectory(const NSURL &url);
NSString pathWithParamsAndQuery(const NSURL &url);
NSString pathWithParamsAndQueryAndFragment(const NSURL &url);

// The path with its escapes decoded, as `NSURL::path`. Nil when that is.

/// With the parameters.
NSString fullPath(const NSURL &url);
NSString pathExtension(const NSURL &url);
NSString lastPathComponent(const NSURL &url);

// The parameters of the query, as the functions of Classes/URLs/URLQuery.hpp. Nil, 0 and false without a query.

NSDictionary queryParams(const NSURL &url);
std::uint32_t numberOfQueryParams(const NSURL &url);
NSString queryParamNamed(const NSURL &url, const NSString &name);
bool containsQueryParamNamed(const NSURL &url, const NSString &name);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
