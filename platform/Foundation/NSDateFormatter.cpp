// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDateFormatter.hpp"

#include <unicode/udat.h>
#include <unicode/uloc.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

namespace nimbo {
namespace {

/// ICU's name of the user's locale, without the character set that POSIX adds.
std::string userLocale() {
  std::string locale = "C";
  for (const char *name : {"LANG", "LC_TIME", "LC_ALL"})
    if (const char *value = std::getenv(name); value && value[0]) locale = value;
  if (const std::size_t dot = locale.find('.'); dot != locale.npos)
    locale.erase(dot, locale.find('@', dot) - dot);
  if (locale == "C" || locale == "POSIX") return "en_US_POSIX";
  std::array<char, ULOC_FULLNAME_CAPACITY> canonical{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_canonicalize(locale.c_str(), canonical.data(), static_cast<std::int32_t>(canonical.size()), &status);
  return U_SUCCESS(status) ? canonical.data() : "en_US_POSIX";
}

UDateFormatStyle styleOfICU(NSDateFormatterStyle style) {
  constexpr std::array kStyles = {UDAT_NONE, UDAT_SHORT, UDAT_MEDIUM, UDAT_LONG, UDAT_FULL};
  return kStyles[style];
}

}  // namespace

NSDateFormatter::NSDateFormatter(NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle,
                                 const std::string &locale) {
  UErrorCode status = U_ZERO_ERROR;
  format_ = udat_open(styleOfICU(timeStyle), styleOfICU(dateStyle),
                      (locale.empty() ? userLocale() : locale).c_str(), nullptr, 0, nullptr, 0, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
}

NSDateFormatter::~NSDateFormatter() {
  udat_close(static_cast<UDateFormat *>(format_));
}

NSString NSDateFormatter::stringFromDate(const NSDate &date) const {
  const double milliseconds = date.timeIntervalSince1970() * 1000;
  if (!std::isfinite(milliseconds)) return {};
  std::vector<unichar> units(128);
  for (;;) {
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length =
        udat_format(static_cast<const UDateFormat *>(format_), milliseconds, units.data(),
                    static_cast<std::int32_t>(units.size()), nullptr, &status);
    if (status == U_BUFFER_OVERFLOW_ERROR) {
      units.resize(static_cast<std::size_t>(length) + 1);
      continue;
    }
    if (U_FAILURE(status)) return {};
    return NSString::stringWithCharacters(units.data(), static_cast<std::uint32_t>(length));
  }
}

}  // namespace nimbo
