// SPDX-License-Identifier: Apache-2.0
//
// Dates out of text, as people, feeds and protocols write them; docs/dates.md lists the forms. Any thread may
// call these.
//
//     const auto written = date(u"Sun, 24 Dez 2006 18:30:00 GMT"_ns);
//     if (written) written->ISO8601String();  // "2006-12-24T18:30:00Z"
//     dateFromHTTPHeaderValue(u"tomorrow"_ns);  // nothing
#pragma once

#include <optional>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace Date {

/// The moment that a text names, of which all from the first bracket or semicolon on is left out. A text
/// without a zone means the process's zone, one without a time of day midnight. Nothing for nil and for white
/// space, and for a text that is no date, which is logged.
std::optional<NSDate> date(const NSString &string);

/// The moment in one of the three forms of HTTP; English names alone are read. Nothing for all else; nothing is
/// logged.
std::optional<NSDate> dateFromHTTPHeaderValue(const NSString &string);

}  // namespace Date
}  // namespace nimbo
