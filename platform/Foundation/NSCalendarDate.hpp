// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The moment that a text names in exactly this form; nothing when it does not fit, or is no date of the
/// calendar. Directives are %a and %A (weekday, abbreviated and whole; which one is not looked at), %d, %b
/// (month, abbreviated), %m, %Y (four digits), %y (two: 69 to 99 are of the last century), %H, %M, %S (with or
/// without a leading zero) and %Z (zone: its name, abbreviation or offset); "%%" and all other characters match
/// themselves. Names are English, in either case. A form without a year fits nothing. Without %Z the process's
/// zone is meant. Any thread may call this.
///
///     dateWithCalendarFormat(u"24.12.2006"_ns, u"%d.%m.%Y");
///     dateWithCalendarFormat(u"Dec 24 2006 18:30 CET"_ns, u"%b %d %Y %H:%M %Z");
std::optional<NSDate> dateWithCalendarFormat(const NSString &string, std::u16string_view format);

/// The moment that a whole text names by ISO 8601: a year, month, day, week or day of the year, then none or a
/// time behind "T" or a blank, perhaps with a fraction, and a zone. A text without a zone means `zone`, by a
/// name as of %Z; the process's when that is nil. Nothing for other texts, and when there is no such zone. Any
/// thread may call this.
///
///     dateWithISO8601String(u"2006-12-24T18:30:00+01:00"_ns);
///     dateWithISO8601String(u"2006-12"_ns, u"UTC"_ns);  // The first second of the month.
std::optional<NSDate> dateWithISO8601String(const NSString &string, const NSString &zone = NSString());

}  // namespace nimbo
