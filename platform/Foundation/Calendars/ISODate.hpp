// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/Calendars/CalendarZone.hpp"
#include "platform/Foundation/NSDate.hpp"

namespace nimbo::detail {

/// The moment that a whole text names by ISO 8601: a year, month, day, week or day of the year, in the basic
/// form or the extended one, whose hyphens may be solidi, then none or a time behind "T" or a blank, with a
/// fraction of its last part, and a zone; one without means the zone that is given. Nothing for another text.
std::optional<NSDate> momentOfISODate(std::u16string_view text, const CalendarZone &zone = {});

}  // namespace nimbo::detail
