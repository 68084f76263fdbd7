// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <random>
#include <string>
#include <string_view>

#include "Classes/Dates/NSDateFormatter+NimboDateFormatterExtensions.hpp"
#include "Classes/Dates/NSString+Date.hpp"
#include "platform/Foundation/NSCalendarDate.hpp"
#include "platform/Foundation/NSDateNaturalLanguage.hpp"

namespace nimbo {
namespace {

NSString string(std::string_view utf8) {
  return NSString::stringWithUTF8String(utf8);
}

/// The moment as text, and "" for none.
std::string written(const std::optional<NSDate> &date) {
  return date ? date->ISO8601String().value_or("?") : "";
}

/// What the C library makes of a time in the process's zone.
std::string local(int year, int month, int day, int hour = 0, int minute = 0) {
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_isdst = -1;
  return written(NSDate::dateWithTimeIntervalSince1970(static_cast<double>(std::mktime(&fields))));
}

TEST(Date, ReadsEachForm) {
  const std::string eve = local(2006, 12, 24), evening = local(2006, 12, 24, 18, 30);
  const std::pair<std::string_view, std::string> cases[] = {
      {"24.12.2006", eve},
      {"24.12.06", eve},
      {"24.12.2006 18:30:00", evening},
      {"24.12.2006 18:30", evening},
      {"24.12.2006 18.30.00", ""},
      {" 24.12.2006\n", eve},
      {"24.12.2006 (approx.)", eve},
      {"24.12.2006;scheme=x", eve},
      // A dotted date of one of the three lengths has no second chance.
      {"1.2.2006", ""},
      {"31.02.2006", ""},
      {"2006.12.24", ""},
      {"1.12.2006", local(2006, 12, 1)},
      {"Sun, 24 Dez 2006 18:30:00 GMT", "2006-12-24T18:30:00Z"},
      {"Wed, 24 Mai 2006 18:30:00 MESZ", "2006-05-24T16:30:00Z"},
      {"Fri, 24 Mrz 2006 18:30:00 +0100", "2006-03-24T17:30:00Z"},
      {"Tue, 24 Okt 06 18:30:00 EST", "2006-10-24T23:30:00Z"},
      {"Sunday, 24-Dec-06 18:30:00 GMT", "2006-12-24T18:30:00Z"},
      {"24/12/2006 18:30:00 GMT", "2006-12-24T18:30:00Z"},
      {"Sun Dec 24 18:30:00 2006", evening},
      {"2006-12-24T18:30:00+01:00", "2006-12-24T17:30:00Z"},
      {"2006-12-24T18:30:00-05:00", "2006-12-24T23:30:00Z"},
      {"2006-12-24T18:30:00.25Z", "2006-12-24T18:30:00.25Z"},
      {"2006-12-24T18:30:00", evening},
      {"2006-12-24", eve},
      {"24 December 2006", eve},
      {"December 2006 {draft}", local(2006, 12, 1)},
      {"Christmas", ""},
      {"24.12.2006 24:00:00", ""},
      {"1. 12.2006", ""},
      {"1 1", ""},
  };
  for (const auto &[text, expected] : cases) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(written(date(string(text))), expected) << text;
    const std::string line = expected.empty() ? "Unknown date: " + std::string(text) + "\n" : "";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
  }
}

TEST(Date, SaysNothingOfTextsWithoutContent) {
  testing::internal::CaptureStderr();
  for (const NSString &text : {NSString(), u""_ns, u" \t\n\u00a0"_ns, u"(24.12.2006)"_ns, u"  ;"_ns})
    EXPECT_FALSE(date(text)) << text.UTF8String();
  for (const NSString &text : {NSString(), u""_ns, u"24.12.2006"_ns, u"Sun, 06 Nov 1994 08:49:37"_ns,
                               u"So, 06 Nov 1994 08:49:37 GMT"_ns, u"Sun, 06 Nov 1994 24:00:00 GMT"_ns,
                               u"Sun,  06 Nov 1994 08:49:37 GMT"_ns, u"Sun, 06 Dez 1994 08:49:37 GMT"_ns})
    EXPECT_FALSE(dateFromHTTPHeaderValue(text)) << text.UTF8String();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Date, ReadsTheFormsOfHTTP) {
  for (const NSString &text : {u"Sun, 06 Nov 1994 08:49:37 GMT"_ns, u"Sunday, 06-Nov-94 08:49:37 GMT"_ns})
    EXPECT_EQ(written(dateFromHTTPHeaderValue(text)), "1994-11-06T08:49:37Z");
  const auto stamp = dateFromHTTPHeaderValue(u"Sun Nov  6 08:49:00 1994"_ns);
  EXPECT_EQ(written(stamp), local(1994, 11, 6, 8, 49));
}

/// The order of the forms, written down a second time.
std::optional<NSDate> plainDate(std::string text) {
  const auto count = [&](char c) { return std::ranges::count(text, c); };
  const auto read = [&](std::u16string_view form) { return dateWithCalendarFormat(string(text), form); };
  text = text.substr(0, text.find_first_of(";[]{}()"));
  text.erase(0, text.find_first_not_of(' '));
  text.erase(text.find_last_not_of(' ') + 1);
  if (text.empty()) return std::nullopt;
  const auto size = text.size();
  const bool isDotted = count('.') == 2;
  if (isDotted && size == 10) return read(u"%d.%m.%Y");
  if (isDotted && size == 8) return read(u"%d.%m.%y");
  if (isDotted && size == 19 && count(':') == 2) return read(u"%d.%m.%Y %H:%M:%S");
  std::optional<NSDate> found;
  if (!(isDotted && size == 19)) {
    if (count(':') == 2) {
      for (const auto &[german, english] :
           {std::pair("Mrz", "Mar"), {"Mai", "May"}, {"Okt", "Oct"}, {"Dez", "Dec"}})
        for (std::size_t at; (at = text.find(german)) != text.npos;) text.replace(at, 3, english);
      found = read(u"%a, %d %b %Y %H:%M:%S %Z");
      if (!found) {
        found = read(count('-') == 2   ? u"%A, %d-%b-%y %H:%M:%S %Z"
                     : count('/') == 2 ? u"%d/%m/%Y %H:%M:%S %Z"
                                       : u"%a %b %d %H:%M:%S %Y");
      }
    } else if (count('.') < 2 && count(':') > 2 && count('-') == 2) {
      found = read(u"%Y-%m-%dT%H:%M:%S");
    }
  }
  if (found) return found;
  if (count('-') == 2) std::ranges::replace(text, '-', '/');
  if (text.back() < '0' || text.back() > '9') text += " 1 1";
  return dateWithNaturalLanguageString(string(text));
}

TEST(Date, TriesTheFormsInTheirOrder) {
  constexpr std::string_view kPieces[] = {
      "24", "12",  "2006",       "06",     "18:30:00", "18:30",      ".",   "-",        "/", " ",
      ",",  "Sun", "Dec",        "Dez",    "Mai",      "GMT",        "+01", "T",        ":", "(",
      "5",  "3",   "24.12.2006", "24.12.", "Sunday",   "2006-12-24", " ",   " 18:30:00"};
  std::mt19937 random(7);
  int dates = 0;
  testing::internal::CaptureStderr();
  for (int i = 0; i < 4000; ++i) {
    std::string text;
    for (auto pieces = 1 + random() % 7; pieces > 0; --pieces) text += kPieces[random() % std::size(kPieces)];
    const auto found = date(string(text));
    EXPECT_EQ(written(found), written(plainDate(text))) << text;
    dates += found.has_value();
  }
  testing::internal::GetCapturedStderr();
  EXPECT_GT(dates, 100);
}

TEST(DateTimeFormatter, WritesDateAndTime) {
  const auto moment = date(u"2006-12-24 18:37"_ns);
  ASSERT_TRUE(moment);
  const std::string text = dateTimeFormatter().stringFromDate(*moment).UTF8String();
  for (const char *const part : {"24", "2006", "37"}) EXPECT_NE(text.find(part), text.npos) << text;
  EXPECT_EQ(text.find("00"), text.find("2006") + 1) << "no seconds: " << text;
  EXPECT_EQ(&dateTimeFormatter(), &dateTimeFormatter());
}

}  // namespace
}  // namespace nimbo
