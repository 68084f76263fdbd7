// SPDX-License-Identifier: Apache-2.0
//
// URLs as people type them. Any thread may call this.
//
//     const NSURL page = URLWithUserTypedString(u" www.bücher.example/a b"_ns);
//     page.absoluteString();  // "http://www.xn--bcher-kva.example/a%20b"
//     URLWithUserTypedString(NSString());  // nil
#pragma once

#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboWebKitAdditions {

/// The URL that somebody has typed, as `URLWithTypedString` reads it (Classes/URLs/TypedURLs.hpp):
/// "example.org" is a host. Nil for nil, and when nothing usable was typed.
NSURL URLWithUserTypedString(const NSString &string);

}  // namespace NimboWebKitAdditions
}  // namespace nimbo
