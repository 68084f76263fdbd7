// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Classes/Dates/NSString+Date.hpp"
#include "fuzz/FuzzedText.hpp"
#include "platform/Foundation/NSCalendarDate.hpp"
#include "platform/Foundation/NSDateNaturalLanguage.hpp"
#include "tests/support/StringSamples.hpp"

namespace {

using namespace nimbo;

void require(bool good) {
  if (!good) std::abort();
}

/// A moment is written as text that is read as the same moment.
void requireThatItReturns(const NSDate &date, const NSDate &now) {
  const auto written = date.ISO8601String();
  if (!written) return;
  const auto again = dateWithNaturalLanguageString(NSString::stringWithUTF8String(*written), now);
  require(again &&
          std::abs(again->timeIntervalSinceReferenceDate - date.timeIntervalSinceReferenceDate) < 1e-4);
}

}  // namespace

/// The text, at one moment of the past, and as a header of HTTP; each of its forms is one of `date`, too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const NSDate now = NSDate::dateWithUTC(2005, 3, 31, 16, 20, 0);
  const NSString string = exactString(fuzzedText(data, size));
  const auto found = dateWithNaturalLanguageString(string, now);
  if (found) requireThatItReturns(*found, now);
  if (const auto header = dateFromHTTPHeaderValue(string)) {
    requireThatItReturns(*header, now);
    // A place could have the name of a month in it.
    if (string.view().find(u'/') == std::u16string_view::npos) require(date(string) == header);
  }
  for (const std::u16string_view form : {u"%d/%m/%Y %H:%M:%S %Z", u"%d.%m.%Y", u"%Y-%m-%dT%H:%M:%S"})
    if (const auto fitting = dateWithCalendarFormat(string, form)) requireThatItReturns(*fitting, now);
  return 0;
}
