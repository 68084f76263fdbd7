// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDateNaturalLanguage.hpp"

#include "platform/Foundation/NSCalendarDate.hpp"

namespace nimbo {

std::optional<NSDate> dateWithNaturalLanguageString(const NSString &string) {
  for (const std::u16string_view form :
       {u"%Y/%m/%d", u"%Y/%m/%dT%H:%M:%S%Z", u"%Y-%m-%dT%H:%M:%S%Z", u"%Y/%m/%dT%H:%M:%S%Z 1 1"})
    if (const auto found = dateWithCalendarFormat(string, form)) return found;
  return std::nullopt;
}

}  // namespace nimbo
