// SPDX-License-Identifier: Apache-2.0
#include "Classes/Dates/NSDateFormatter+NimboDateFormatterExtensions.hpp"

namespace nimbo {
inline namespace NimboDateFormatterExtensions {

const NSDateFormatter &dateTimeFormatter() {
  static const NSDateFormatter formatter(NSDateFormatterMediumStyle, NSDateFormatterShortStyle);
  return formatter;
}

}  // namespace NimboDateFormatterExtensions
}  // namespace nimbo
