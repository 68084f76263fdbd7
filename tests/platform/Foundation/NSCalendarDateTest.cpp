// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <string_view>

#include "platform/Foundation/NSCalendarDate.hpp"
#include "platform/Foundation/NSDateFormatter.hpp"
#include "tests/support/EnvironmentSetting.hpp"

namespace nimbo {
namespace {

std::string written(const std::optional<NSDate> &date) {
  return date ? date->ISO8601String().value_or("?") : "";
}

std::string read(std::string_view text, std::u16string_view format) {
  return written(dateWithCalendarFormat(NSString::stringWithUTF8String(text), format));
}

TEST(NSCalendarDate, ReadsWhatTheCLibraryWrites) {
  constexpr std::pair<const char *, std::u16string_view> kForms[] = {
      {"%a, %d %b %Y %H:%M:%S GMT", u"%a, %d %b %Y %H:%M:%S %Z"},
      {"%A, %d-%b-%y %H:%M:%S UTC", u"%A, %d-%b-%y %H:%M:%S %Z"},
      {"%a %b %e %H:%M:%S %Y +0000", u"%a %b %d %H:%M:%S %Y %Z"},
      {"%Y-%m-%dT%H:%M:%SZ", u"%Y-%m-%dT%H:%M:%S%Z"},
      {"100%% %d.%m.%Y %H:%M:%S Etc/UTC", u"100%% %d.%m.%Y %H:%M:%S %Z"},
  };
  std::mt19937 random(3);
  for (int i = 0; i < 2000; ++i) {
    // 1970 to 2068, where two digits name one year.
    const std::time_t seconds = std::uniform_int_distribution<std::time_t>(0, 3124137600)(random);
    const std::tm fields = *std::gmtime(&seconds);
    for (const auto &[form, format] : kForms) {
      std::array<char, 100> text{};
      std::strftime(text.data(), text.size(), form, &fields);
      const auto found = dateWithCalendarFormat(NSString::stringWithUTF8String(text.data()), format);
      ASSERT_TRUE(found) << text.data();
      EXPECT_EQ(found->timeIntervalSince1970(), static_cast<double>(seconds)) << text.data();
    }
  }
}

TEST(NSCalendarDate, TakesNothingThatDoesNotFit) {
  constexpr std::u16string_view kForm = u"%d.%m.%Y %H:%M:%S %Z";
  EXPECT_EQ(read("29.02.2004 23:59:60 GMT", kForm), "2004-03-01T00:00:00Z");
  for (const char *const text :
       {"29.02.2005 00:00:00 GMT", "0.1.2005 00:00:00 GMT", "1.13.2005 00:00:00 GMT", "1.0.2005 00:00:00 GMT",
        "1.1.2005 24:00:00 GMT", "1.1.2005 25:00:00 GMT", "1.1.2005 00:60:00 GMT", "1.1.2005 00:00:61 GMT",
        "1.1.05 00:00:00 GMT", "1.1.2005 00:00:00", "1.1.2005 00:00:00 GMT ", "1.1.2005 00:00:00 XYZ",
        "1.1.2005  00:00:00 GMT", "001.1.2005 00:00:00 GMT", "1.1.2005 00:00:00 +25:00",
        "1.1.2005 00:00:00 Europe/Nowhere", ""})
    EXPECT_EQ(read(text, kForm), "") << text;
  EXPECT_EQ(read("Sonntag, 1 Mai", u"%A, %d %b"), "");
  EXPECT_EQ(read("1.1.2005", u"%d.%m.%Q"), "");
  EXPECT_EQ(read("1.1.5", u"%d.%m.%y"), "");
  EXPECT_EQ(read("", u""), "");
  EXPECT_FALSE(dateWithCalendarFormat(NSString(), u"%Y"));
}

TEST(NSCalendarDate, KnowsZones) {
  const std::string_view cases[][2] = {
      {"GMT", "12:00"},
      {"z", "12:00"},
      {"CET", "11:00"},
      {"mesz", "10:00"},
      {"EST", "17:00"},
      {"PDT", "19:00"},
      {"IST", "06:30"},
      {"NST", "15:30"},
      {"+01:00", "11:00"},
      {"-0530", "17:30"},
      {"+1", "11:00"},
      {"+130", "10:30"},
      {"+14", "22:00"},
      {"-12", "00:00"},
      {"GMT+01:00", "11:00"},
      {"UTC-3", "15:00"},
      {"Europe/Berlin", "10:00"},
      {"America/New_York", "16:00"},
      {"ET", "16:00"},
      {"pt", "19:00"},
      {"Etc/GMT+5", "17:00"},
      {"+1:00", "11:00"},
      {"+15", ""},
      {"-1300", ""},
      {"+", ""},
      {"+12345", ""},
      {"+1:0", ""},
      {"+012:30", ""},
      {"GMTx", ""},
      {"EST5EDT", ""},
      {"europe/berlin", ""},
      {"+01:60", ""},
  };
  for (const auto &[zone, time] : cases) {
    const std::string day = zone == "+14" ? "2005-06-30T" : zone == "-12" ? "2005-07-02T" : "2005-07-01T";
    EXPECT_EQ(read("1.7.2005 12:00 " + std::string(zone), u"%d.%m.%Y %H:%M %Z"),
              time.empty() ? "" : day + std::string(time) + ":00Z")
        << zone;
  }
  // In the hour that is left out the clock is as it was before; of the hour that comes twice the second counts.
  EXPECT_EQ(read("27.3.2005 02:30 Europe/Berlin", u"%d.%m.%Y %H:%M %Z"), "2005-03-27T01:30:00Z");
  EXPECT_EQ(read("30.10.2005 02:30 Europe/Berlin", u"%d.%m.%Y %H:%M %Z"), "2005-10-30T01:30:00Z");
  EXPECT_EQ(read("1.1.0001 12:00 Etc/UTC", u"%d.%m.%Y %H:%M %Z"), "0001-01-01T12:00:00Z");
}

TEST(NSCalendarDate, KnowsZonesByTheClocksOfTheirPlaces) {
  const std::string_view cases[][3] = {
      {"WET", "Europe/Lisbon", "1.1.2005"},
      {"CET", "Europe/Berlin", "1.1.2005"},
      {"MET", "Europe/Berlin", "1.1.2005"},
      {"MEZ", "Europe/Berlin", "1.1.2005"},
      {"EET", "Europe/Athens", "1.1.2005"},
      {"SAST", "Africa/Johannesburg", "1.1.2005"},
      {"CAT", "Africa/Harare", "1.1.2005"},
      {"MSK", "Europe/Moscow", "1.1.2005"},
      {"EAT", "Africa/Nairobi", "1.1.2005"},
      {"GST", "Asia/Dubai", "1.1.2005"},
      {"PKT", "Asia/Karachi", "1.1.2005"},
      {"IST", "Asia/Kolkata", "1.1.2005"},
      {"NPT", "Asia/Kathmandu", "1.1.2005"},
      {"ICT", "Asia/Bangkok", "1.1.2005"},
      {"WIB", "Asia/Jakarta", "1.1.2005"},
      {"SGT", "Asia/Singapore", "1.1.2005"},
      {"HKT", "Asia/Hong_Kong", "1.1.2005"},
      {"PHT", "Asia/Manila", "1.1.2005"},
      {"JST", "Asia/Tokyo", "1.1.2005"},
      {"KST", "Asia/Seoul", "1.1.2005"},
      {"ACST", "Australia/Darwin", "1.1.2005"},
      {"AEST", "Australia/Brisbane", "1.1.2005"},
      {"ACDT", "Australia/Adelaide", "1.1.2005"},
      {"AEDT", "Australia/Sydney", "1.1.2005"},
      {"NZDT", "Pacific/Auckland", "1.1.2005"},
      {"NST", "America/St_Johns", "1.1.2005"},
      {"AST", "America/Halifax", "1.1.2005"},
      {"EST", "America/New_York", "1.1.2005"},
      {"CST", "America/Chicago", "1.1.2005"},
      {"MST", "America/Denver", "1.1.2005"},
      {"PST", "America/Los_Angeles", "1.1.2005"},
      {"AKST", "America/Anchorage", "1.1.2005"},
      {"HST", "Pacific/Honolulu", "1.1.2005"},
      {"AT", "America/Halifax", "1.1.2005"},
      {"CT", "America/Chicago", "1.1.2005"},
      {"MT", "America/Denver", "1.1.2005"},
      {"WEST", "Europe/Lisbon", "1.7.2005"},
      {"BST", "Europe/London", "1.7.2005"},
      {"CEST", "Europe/Berlin", "1.7.2005"},
      {"MEST", "Europe/Berlin", "1.7.2005"},
      {"MESZ", "Europe/Berlin", "1.7.2005"},
      {"EEST", "Europe/Athens", "1.7.2005"},
      {"MSD", "Europe/Moscow", "1.7.2005"},
      {"AWST", "Australia/Perth", "1.7.2005"},
      {"NZST", "Pacific/Auckland", "1.7.2005"},
      {"BRT", "America/Sao_Paulo", "1.7.2005"},
      {"ART", "America/Argentina/Buenos_Aires", "1.7.2005"},
      {"NDT", "America/St_Johns", "1.7.2005"},
      {"ADT", "America/Halifax", "1.7.2005"},
      {"EDT", "America/New_York", "1.7.2005"},
      {"CDT", "America/Chicago", "1.7.2005"},
      {"MDT", "America/Denver", "1.7.2005"},
      {"PDT", "America/Los_Angeles", "1.7.2005"},
      {"AKDT", "America/Anchorage", "1.7.2005"},
      {"AT", "America/Halifax", "1.7.2005"},
      {"CT", "America/Chicago", "1.7.2005"},
      {"MT", "America/Denver", "1.7.2005"},
      {"TRT", "Europe/Istanbul", "1.1.2020"},
      {"UT", "Etc/UTC", "1.1.2005"},
  };
  for (const auto &[name, place, day] : cases) {
    const auto noonIn = [&, day = day](std::string_view zone) {
      return read(std::string(day) + " 12:00 " + std::string(zone), u"%d.%m.%Y %H:%M %Z");
    };
    EXPECT_NE(noonIn(place), "") << place;
    EXPECT_EQ(noonIn(name), noonIn(place)) << name;
  }
}

TEST(NSCalendarDate, ReadsISO8601InTheZoneThatIsMeant) {
  const std::string_view cases[][3] = {
      {"2005-07", "UTC", "2005-07-01T00:00:00Z"},
      {"2005-07-01 12:00:00.5", "Europe/Berlin", "2005-07-01T10:00:00.5Z"},
      {"2005-07-01T12:00+05:30", "Europe/Berlin", "2005-07-01T06:30:00Z"},
      {"2005", "UTC", "2005-01-01T00:00:00Z"},
      {"2005/07", "UTC", "2005-07-01T00:00:00Z"},
      {"2005-07Z", "UTC", ""},
      {"2005-07-01 ", "UTC", ""},
      {"2005-07-01", "Nowhere", ""},
      {"2005-13-01", "UTC", ""},
      {"2005-07-01 and more", "UTC", ""},
      {"2005-7-01", "UTC", ""},
      {"2005-07/01", "UTC", ""},
      {"2005-07-01 12", "UTC", ""},
      {"2005-07-01T12:", "UTC", ""},
      {"2005-07-01T12:00:", "UTC", ""},
      {"2005-07-01T12:00:Z", "UTC", ""},
  };
  for (const auto &[text, zone, moment] : cases)
    EXPECT_EQ(written(dateWithISO8601String(NSString::stringWithUTF8String(text),
                                            NSString::stringWithUTF8String(zone))),
              moment)
        << text;
  EXPECT_EQ(dateWithISO8601String(u"2005-07-01T12:00"_ns),
            dateWithCalendarFormat(u"2005-07-01 12:00"_ns, u"%Y-%m-%d %H:%M"));
}

TEST(NSDateFormatter, WritesByStyleAndLocale) {
  const NSDate eve = *dateWithCalendarFormat(u"24.12.2006 18:30:05"_ns, u"%d.%m.%Y %H:%M:%S");
  const auto text = [&](NSDateFormatterStyle date, NSDateFormatterStyle time, const char *locale) {
    return NSDateFormatter(date, time, locale).stringFromDate(eve).UTF8String();
  };
  EXPECT_EQ(text(NSDateFormatterMediumStyle, NSDateFormatterShortStyle, "de"), "24.12.2006, 18:30");
  EXPECT_EQ(text(NSDateFormatterFullStyle, NSDateFormatterNoStyle, "fr"), "dimanche 24 d\u00e9cembre 2006");
  EXPECT_EQ(text(NSDateFormatterNoStyle, NSDateFormatterMediumStyle, "en_GB"), "18:30:05");
  const NSDateFormatter formatter(NSDateFormatterFullStyle, NSDateFormatterFullStyle);
  EXPECT_FALSE(formatter.stringFromDate(NSDate{std::nan("")}));
}

TEST(NSDateFormatter, WritesAsTheEnvironmentSays) {
  const char *const cases[][4] = {
      {"de_DE.UTF-8", "", "", "de"},
      {"de_DE", "fr_FR.UTF-8", "", "fr"},
      {"de_DE", "fr_FR", "it_IT.UTF-8", "it"},
      {"de_DE.ISO-8859-15@euro", "", "", "de"},
      {"", "", "", "en_US_POSIX"},
      {"de_DE", "", "C.UTF-8", "en_US_POSIX"},
      {"de_DE", "", "POSIX", "en_US_POSIX"},
  };
  const NSDate day = NSDate::dateWithUTC(2006, 12, 24, 12, 0, 0);
  const auto written = [&](std::string_view locale) {
    return NSDateFormatter(NSDateFormatterFullStyle, NSDateFormatterNoStyle, std::string(locale))
        .stringFromDate(day)
        .UTF8String();
  };
  for (const auto &[language, time, all, locale] : cases) {
    const EnvironmentSetting first("LANG", language), second("LC_TIME", time), third("LC_ALL", all);
    EXPECT_EQ(written(""), written(locale)) << language << " " << time << " " << all;
  }
}

TEST(ProcessZone, IsWhatTZSays) {
  // 8:00 in winter and in summer, the hours of the changes, and how noon of UTC in summer is written.
  const char *const cases[][6] = {
      {"EST5EDT4,M3.2.0,M11.1.0", "13:00", "12:00", "2007-03-11T07:30", "2007-11-04T06:30", "08:00"},
      {"<+0330>-3:30", "04:30", "04:30", "2007-03-10T23:00", "2007-11-03T22:00", "15:30"},
      {":America/New_York", "13:00", "12:00", "2007-03-11T07:30", "2007-11-04T06:30", "08:00"},
      {"/usr/share/zoneinfo/America/New_York", "13:00", "12:00", "2007-03-11T07:30", "2007-11-04T06:30",
       "08:00"},
      {"AAA-3BBB,J10/0,J11/0", "04:00", "05:00", "2007-03-10T23:30", "2007-11-03T22:30", "15:00"},
      {"", "08:00", "08:00", "2007-03-11T02:30", "2007-11-04T01:30", "12:00"},
  };
  for (const auto &[zone, winter, summer, forward, back, noon] : cases) {
    SCOPED_TRACE(zone);
    const EnvironmentSetting setting("TZ", zone);
    const auto moment = [](std::string_view text) { return read(text, u"%d.%m.%Y %H:%M"); };
    EXPECT_EQ(moment("10.1.2007 08:00"), "2007-01-10T" + std::string(winter) + ":00Z");
    EXPECT_EQ(moment("10.7.2007 08:00"), "2007-07-10T" + std::string(summer) + ":00Z");
    EXPECT_EQ(moment("11.3.2007 02:30"), std::string(forward) + ":00Z");
    EXPECT_EQ(moment("4.11.2007 01:30"), std::string(back) + ":00Z");
    const NSDateFormatter formatter(NSDateFormatterNoStyle, NSDateFormatterShortStyle, "en_GB");
    EXPECT_EQ(formatter.stringFromDate(NSDate::dateWithUTC(2007, 7, 10, 12, 0, 0)).UTF8String(), noon);
  }
}

}  // namespace
}  // namespace nimbo
