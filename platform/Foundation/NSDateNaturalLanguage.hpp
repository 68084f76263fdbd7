// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A longer text is no date.
inline constexpr std::uint32_t kLongestNaturalDate = 256;

/// The moment that a text names, by ISO 8601 or in numbers, names and phrases of several languages;
/// docs/dates.md lists them. The day stands in front of the month ("24/12/2006") where both orders are
/// possible. What is left out is that of the present moment: the year of "3 March", the day of "14:30"; a date
/// without a time means midnight, one without a zone the process's. " 1 1" at the end, a day and a month to
/// fill up with, means nothing. Nothing for a text that is no date or that has a part that is none. Any thread
/// may call this.
///
///     dateWithNaturalLanguageString(u"Mar 3rd, 2005 2:30 pm EST"_ns);
///     dateWithNaturalLanguageString(u"yesterday 14:00"_ns);
///     dateWithNaturalLanguageString(u"vor 3 Tagen"_ns);
std::optional<NSDate> dateWithNaturalLanguageString(const NSString &string, const NSDate &now = NSDate::date());

}  // namespace nimbo
