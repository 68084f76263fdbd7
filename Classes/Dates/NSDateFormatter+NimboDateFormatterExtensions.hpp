// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSDateFormatter.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboDateFormatterExtensions {

/// The formatter that all dates beside a text are written with: a date of medium length and a time without
/// seconds, as the user's language has them ("24 Dec 2006, 18:30"), in the process's zone. Any thread may call
/// this; the formatter lives as long as the process.
///
///     const NSString line = dateTimeFormatter().stringFromDate(NSDate::date());
const NSDateFormatter &dateTimeFormatter();

}  // namespace NimboDateFormatterExtensions
}  // namespace nimbo
