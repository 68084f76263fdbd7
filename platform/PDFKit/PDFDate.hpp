// SPDX-License-Identifier: Apache-2.0
//
// Dates as PDF writes them. Any thread may read them.
//
//     const auto date = dateWithPDFDateString(u"D:20010203040506+01'00'"_ns);
//     date->ISO8601String().value();  // "2001-02-03T03:05:06Z"
//     dateWithPDFDateString(u"yesterday"_ns).has_value();  // false
#pragma once

#include <optional>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The moment that a PDF date string names: "D:YYYYMMDDHHmmSS+HH'mm'", where everything after the year may be
/// missing. Without a zone it is UTC. Also read: no "D:", separators as in "2001-02-03T04:05:06" or "2001/2/3
/// 4:05", fractions of seconds (dropped). Nothing for anything else and for dates and times that do not exist.
std::optional<NSDate> dateWithPDFDateString(const NSString &string);

}  // namespace nimbo
