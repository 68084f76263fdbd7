// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDate.hpp"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace nimbo {

NSDate NSDate::date() {
  using namespace std::chrono;
  return dateWithTimeIntervalSince1970(duration<double>(system_clock::now().time_since_epoch()).count());
}

NSDate NSDate::dateWithUTC(std::int64_t year, int month, int day, int hour, int minute, double second) {
  using namespace std::chrono;
  // Days carry over by plain arithmetic from the month's first; months do so within the calendar.
  const std::int64_t months = year * 12 + (month - 1);
  const std::int64_t monthOfYear = ((months % 12) + 12) % 12;
  const auto first = sys_days(std::chrono::year(static_cast<int>((months - monthOfYear) / 12)) /
                              std::chrono::month(static_cast<unsigned>(monthOfYear + 1)) / std::chrono::day(1));
  const auto days = static_cast<double>(first.time_since_epoch().count() + day - 1);
  return dateWithTimeIntervalSince1970(days * 86400.0 + hour * 3600.0 + minute * 60.0 + second);
}

std::optional<std::string> NSDate::ISO8601String() const {
  using namespace std::chrono;
  constexpr double kYear0 = -62167219200.0;
  constexpr double kYear10000 = 253402300800.0;
  const double seconds = timeIntervalSince1970();
  // The last moment before the year 10000 is several microseconds before it, and so not rounded up to it.
  if (!(seconds >= kYear0 && seconds < kYear10000)) return std::nullopt;
  const auto microsecondsSince1970 = static_cast<std::int64_t>(std::llround(seconds * 1e6));
  const sys_time<microseconds> moment{microseconds(microsecondsSince1970)};
  const auto midnight = floor<days>(moment);
  const year_month_day date(midnight);
  const hh_mm_ss<microseconds> time(moment - midnight);
  std::array<char, 48> text{};
  int length =
      std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                    static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                    static_cast<int>(time.seconds().count()));
  std::string result(text.data(), static_cast<std::size_t>(length));
  if (const auto fraction = time.subseconds().count(); fraction != 0) {
    length = std::snprintf(text.data(), text.size(), ".%06d", static_cast<int>(fraction));
    result.append(text.data(), static_cast<std::size_t>(length));
    result.erase(result.find_last_not_of('0') + 1);
  }
  return result + "Z";
}

}  // namespace nimbo
