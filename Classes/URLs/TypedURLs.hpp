// SPDX-License-Identifier: Apache-2.0
//
// URLs as people type them. Any thread may call this.
//
//     URLWithTypedString(u"example.org:8080/a b"_ns).absoluteString();  // "http://example.org:8080/a%20b"
//     URLWithTypedString(u"page.html"_ns).absoluteString();  // "page.html"
#pragma once

#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The URL that somebody has typed, as `URLWithNormalizedStringURL` reads it; what begins with the name or IPv4
/// address of a host, with a port or not ("example.org/a", "localhost:8080"), gets "http://" in front, or
/// "ftp://" when its name begins with "ftp.". One that ends in the extension of a usual file is none
/// ("page.tar.gz"). Nil for nil, and when nothing usable was typed.
NSURL URLWithTypedString(const NSString &string);

}  // namespace nimbo
