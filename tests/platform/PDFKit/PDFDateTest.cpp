// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFDate.hpp"

#include <gtest/gtest.h>

namespace nimbo {
namespace {

TEST(PDFDate, ReadsWhatWritersWrite) {
  const struct {
    NSString text;
    const char *expected;
  } cases[] = {
      {u"D:20010203040506Z"_ns, "2001-02-03T04:05:06Z"},
      {u"D:20010203040506Z00'00'"_ns, "2001-02-03T04:05:06Z"},
      {u"D:20010203040506+01'30'"_ns, "2001-02-03T02:35:06Z"},
      {u"D:20010203040506-05'00"_ns, "2001-02-03T09:05:06Z"},
      {u"D:20010203040506+0100"_ns, "2001-02-03T03:05:06Z"},
      {u"D:20010203040506+01"_ns, "2001-02-03T03:05:06Z"},
      {u"D:20010203040506+"_ns, "2001-02-03T04:05:06Z"},
      {u"D:20010101003000+01'00'"_ns, "2000-12-31T23:30:00Z"},
      {u"D:20010203040506"_ns, "2001-02-03T04:05:06Z"},
      {u"D:200102030405"_ns, "2001-02-03T04:05:00Z"},
      {u"D:200102030405-01'00'"_ns, "2001-02-03T05:05:00Z"},
      {u"D:20010203"_ns, "2001-02-03T00:00:00Z"},
      {u"D:200102-01'00'"_ns, "2001-02-01T01:00:00Z"},
      {u"D:2001"_ns, "2001-01-01T00:00:00Z"},
      {u"20000229"_ns, "2000-02-29T00:00:00Z"},
      {u" D: 20010203040506\r\n"_ns, "2001-02-03T04:05:06Z"},
      {u"2001-02-03T04:05:06+01:00"_ns, "2001-02-03T03:05:06Z"},
      {u"2001-02-03 04:05:06.789Z"_ns, "2001-02-03T04:05:06Z"},
      {u"2001/2/3 4:05"_ns, "2001-02-03T04:05:00Z"},
      {u"D:20010203 04:05:06"_ns, "2001-02-03T04:05:06Z"},
  };
  for (const auto &c : cases) {
    const std::optional<NSDate> date = dateWithPDFDateString(c.text);
    ASSERT_TRUE(date) << c.text.UTF8String();
    EXPECT_EQ(date->ISO8601String(), c.expected) << c.text.UTF8String();
  }
}

TEST(PDFDate, GivesNothingRatherThanAWrongDate) {
  for (const NSString &text : {NSString(),
                               u""_ns,
                               u"D:"_ns,
                               u"D"_ns,
                               u"D:200"_ns,
                               u"D:00000101"_ns,
                               u"D:20010230"_ns,
                               u"D:19000229"_ns,
                               u"D:20011301"_ns,
                               u"D:20010003"_ns,
                               u"D:20010203240000"_ns,
                               u"D:20010203046000"_ns,
                               u"D:20010203040560"_ns,
                               u"D:2001020304050"_ns,
                               u"D:191000101"_ns,
                               u"D:20010203040506+24'00'"_ns,
                               u"D:20010203040506+01'60'"_ns,
                               u"D:20010203040506Z01'00'"_ns,
                               u"D:20010203040506+1"_ns,
                               u"2001/02/03 04:05 PM"_ns,
                               u"Mon Feb  3 04:05:06 2001"_ns,
                               u"D:20010203040506+01'00'x"_ns,
                               u"D:２００１"_ns})
    EXPECT_FALSE(dateWithPDFDateString(text)) << text.UTF8String();
}

}  // namespace
}  // namespace nimbo
