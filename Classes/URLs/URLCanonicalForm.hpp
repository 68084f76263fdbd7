// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The URL written in the one way that RFC 3986, sections 6.2.2 and 6.2.3, has for all that are equal by its
/// rules. The string itself when it is written so, and nil for nil.
///
/// - Scheme and host are in small ASCII letters, the host in its ASCII form; the scheme's own port goes.
/// - Escapes have capital digits, and what needs none has none. A "%" that begins none is escaped, and so is,
/// as
///   UTF-8, what is not ASCII, but for lone surrogates.
/// - The path has no "." and ".." among its segments, and behind a host it is not empty: in relative URLs and
///   those of the web's schemes, where it begins with "/".
///
/// Of a URL that is text only the scheme changes.
NSString canonicalStringURL(const NSString &string);

}  // namespace nimbo
