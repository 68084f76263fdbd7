// SPDX-License-Identifier: Apache-2.0
//
// Percent escapes of URLs. Any thread may call these.
//
//     stringByAddingPercentEscapesToURL(u"a b?"_ns, true);  // "a%20b%3f"
//     std::u16string units = u"%41%20b";
//     units.resize(convertPercentEscapesOfURL(units.data(), 7, true));
//     units == u"%41 b";  // true
#pragma once

#include <cstdint>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Decodes the escapes ("%" and two hexadecimal digits) among `length` units, in place, and answers how many
/// units are left. What is not decoded stays as it is; so does a "%" that is one of the last two units.
///
/// - Not `standard`: decodes the values below 128.
/// - `standard`: decodes tab, line feed, carriage return, space, "$", "%", "&", "'", "+", "/", ":", ";", "=",
///   "@" and "~"; "?" too when the run has no "?" of its own, so that no second query begins.
std::uint32_t convertPercentEscapesOfURL(unichar *units, std::uint32_t length, Flag standard);

/// As above, but decodes nothing that would then be read otherwise; the run is a URL.
///
/// - In the path: "$", "&", "'", "+", "@" and "~"; ":" too, but in the first component of a relative path,
/// which
///   would become a scheme.
/// - In the query and the anchor: "$", "'", "/", ":", "@" and "~".
/// - Nothing in front of the path, and nothing where a scheme's URLs have no path.
std::uint32_t convertPercentEscapesPreservingMeaning(unichar *units, std::uint32_t length);

/// Answers the string with units written as escapes, in small digits; always a new string, but for a nil or
/// empty one and for one that is too long to escape or for which there is no memory, which is answered itself.
///
/// - Not `standard`: escapes all units below 128 but letters and digits, so "%" too.
/// - `standard`: escapes space, "#", "$", "%", "&", "+", "/", ":", ";", "=", "?" and "@".
NSString stringByAddingPercentEscapesToURL(const NSString &string, Flag standard);

}  // namespace nimbo
