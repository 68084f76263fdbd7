// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFDate.hpp"

#include <gtest/gtest.h>

namespace nimbo {
namespace {

TEST(PDFDate, ReadsWhatWritersWrite) {
  const std::pair<const char *, const char *> cases[] = {
      {"D:20010203040506Z00'00'", "2001-02-03T04:05:06Z"},
      {"D:20010203040506+01'30'", "2001-02-03T02:35:06Z"},
      {"D:20010203040506-05'00", "2001-02-03T09:05:06Z"},
      {"D:20010203040506+0100", "2001-02-03T03:05:06Z"},
      {"D:20010203040506+01", "2001-02-03T03:05:06Z"},
      {"D:20010203040506+", "2001-02-03T04:05:06Z"},
      {"D:20010101003000+01'00'", "2000-12-31T23:30:00Z"},
      {"D:200102030405-01'00'", "2001-02-03T05:05:00Z"},
      {"D:200102-01'00'", "2001-02-01T01:00:00Z"},
      {"D:2001", "2001-01-01T00:00:00Z"},
      {"20000229", "2000-02-29T00:00:00Z"},
      {" D: 20010203040506\r\n", "2001-02-03T04:05:06Z"},
      {"2001-02-03T04:05:06+01:00", "2001-02-03T03:05:06Z"},
      {"2001-02-03 04:05:06.789Z", "2001-02-03T04:05:06Z"},
      {"2001/2/3 4:05", "2001-02-03T04:05:00Z"},
      {"2001.2.3 4.5.6", "2001-02-03T04:05:06Z"},
      {"2001:02:03 04:05:06", "2001-02-03T04:05:06Z"},
      {"d:20010203040506z", "2001-02-03T04:05:06Z"},
      {"D:20010203040506Z+00'00'", "2001-02-03T04:05:06Z"},
      {"D:20010203040506Z-00", "2001-02-03T04:05:06Z"},
      {"D:20010203235959+23'59'", "2001-02-03T00:00:59Z"},
      {"D:00010101", "0001-01-01T00:00:00Z"},
  };
  for (const auto &[text, expected] : cases) {
    const std::optional<NSDate> date = dateWithPDFDateString(NSString::stringWithUTF8String(text));
    ASSERT_TRUE(date) << text;
    EXPECT_EQ(date->ISO8601String(), expected) << text;
  }
}

TEST(PDFDate, GivesNothingRatherThanAWrongDate) {
  for (const char *text : {"",
                           "D:200",
                           "D:00000101",
                           "D:20010230",
                           "D:19000229",
                           "D:20011301",
                           "D:20010203240000",
                           "D:20010203046000",
                           "D:20010203040560",
                           "D:2001020304050",
                           "D:191000101",
                           "D:20010203040506+24'00'",
                           "D:20010203040506+01'60'",
                           "D:20010203040506+1'00'",
                           "2001-2/3",
                           "D:20010203040506+01'0'",
                           "D:20010203040506Z01'00'",
                           "D:20010203040506+1",
                           "Mon Feb  3 04:05:06 2001",
                           "D:20010203040506+01'00'x",
                           "D:２００１"})
    EXPECT_FALSE(dateWithPDFDateString(NSString::stringWithUTF8String(text))) << text;
  EXPECT_FALSE(dateWithPDFDateString(NSString()));
}

}  // namespace
}  // namespace nimbo
