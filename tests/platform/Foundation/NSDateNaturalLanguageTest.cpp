// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/NSDateFormatter.hpp"
#include "platform/Foundation/NSDateNaturalLanguage.hpp"

namespace nimbo {
namespace {

/// A Thursday.
const NSDate kNow = NSDate::dateWithUTC(2005, 3, 31, 16, 20, 0);

std::string read(std::string_view text) {
  const auto found = dateWithNaturalLanguageString(NSString::stringWithUTF8String(text), kNow);
  return found ? found->ISO8601String().value_or("?") : "";
}

template <std::size_t Count>
void expectEach(const std::pair<std::string_view, std::string_view> (&cases)[Count]) {
  for (const auto &[text, expected] : cases) EXPECT_EQ(read(text), expected) << text;
}

TEST(NaturalDates, ReadISO8601) {
  expectEach({
      {"2005-03-04T18:30:00Z", "2005-03-04T18:30:00Z"},
      {"2005/03/04t18:30:00z", "2005-03-04T18:30:00Z"},
      {"2005-03-04 18:30:00.123456 +0100", "2005-03-04T17:30:00.123456Z"},
      {"2005-03-04T18:30,5Z", "2005-03-04T18:30:30Z"},
      {"2005-03-04T18.75-05", "2005-03-04T23:45:00Z"},
      {"2005-03-04T23:59:59.9999999999Z", "2005-03-05T00:00:00Z"},
      {"2005-03-04T24:00Z", "2005-03-05T00:00:00Z"},
      {"2005-03-04Z", "2005-03-04T00:00:00Z"},
      {"2005-03-04-05:00", "2005-03-04T05:00:00Z"},
      {"20050304T1830Z", "2005-03-04T18:30:00Z"},
      {"20050304T183000,5+0100", "2005-03-04T17:30:00.5Z"},
      {"20050304183000Z", "2005-03-04T18:30:00Z"},
      {"2005-063Z", "2005-03-04T00:00:00Z"},
      {"2004366T12Z", "2004-12-31T12:00:00Z"},
      {"2005-W09-5T18:30Z", "2005-03-04T18:30:00Z"},
      {"2004W537Z", "2005-01-02T00:00:00Z"},
      {"2009-W01-1Z", "2008-12-29T00:00:00Z"},
      {"2005-W09Z", "2005-02-28T00:00:00Z"},
      {"2005W09Z", "2005-02-28T00:00:00Z"},
      {"2009-W53-4Z", "2009-12-31T00:00:00Z"},
      {"2005-03-04T23:59:60Z", "2005-03-05T00:00:00Z"},
      {"2005-366Z", ""},
      {"-0044-03-15Z", ""},
      {"2005-000Z", ""},
      {"2005-W53-1Z", ""},
      {"2002-W53-1Z", ""},
      {"2008-W53-1Z", ""},
      {"2005-W00-1Z", ""},
      {"2009-W54-1Z", ""},
      {"2005-W09-0Z", ""},
      {"2005-W09-8Z", ""},
      {"2005-W9-5Z", ""},
      {"2005-02-29T00:00Z", ""},
      {"2005-03-04T25:00Z", ""},
      {"2005-03-04T24:00:01Z", ""},
      {"2005-03-04TZ", ""},
      {"2005-03-0", ""},
      {"2005-03T18", ""},
      {"2005-03-04 1830", ""},
      {"200503", ""},
      {"200503041830Z", ""},
      {"2005-03-041830Z", ""},
      {"20050304Tx", ""},
      {"20050304T1Z", ""},
      {"20050304T18300Z", ""},
      {"20050304T1830.Z", ""},
  });
}

TEST(NaturalDates, ReadNumbersAndNames) {
  expectEach({
      {"Thu, 3 Mar 05 14:30 EST", "2005-03-03T19:30:00Z"},
      {"Thu, 3 Mar 99 14:30:15 -0500", "1999-03-03T19:30:15Z"},
      {"Thu Mar  3 18:30:00 CET 2005", "2005-03-03T17:30:00Z"},
      {"Thu Mar 03 18:30:00 +0100 2005", "2005-03-03T17:30:00Z"},
      {"Thu Mar 03 2005 18:30:00 GMT+0100", "2005-03-03T17:30:00Z"},
      {"Thu Mar 03 2005 18:30:00 GMT -03:30", "2005-03-03T22:00:00Z"},
      {"03 Mar 2005 18:30:00 QQQ", "2005-03-03T18:30:00Z"},
      {"03 Mar 2005 18:30 Europe/Berlin", "2005-03-03T17:30:00Z"},
      {"Mar 3rd, 2005 2:30 p.m. GMT", "2005-03-03T14:30:00Z"},
      {"March 3, 2005, 12:05 am GMT", "2005-03-03T00:05:00Z"},
      {"March 3 2005 @ 12 PM GMT", "2005-03-03T12:00:00Z"},
      {"3 March '05 14:30 PM GMT", "2005-03-03T14:30:00Z"},
      {"2005 March 3 00:00Z", "2005-03-03T00:00:00Z"},
      {"03Mar2005 0:00:00.5 UTC", "2005-03-03T00:00:00.5Z"},
      {"Sept. 3, 2005 noon GMT", "2005-09-03T12:00:00Z"},
      {"24/12/2005 18:30 GMT", "2005-12-24T18:30:00Z"},
      {"3/4/2005 18:30 GMT", "2005-04-03T18:30:00Z"},
      {"12/24/2005 6:30 PM GMT", "2005-12-24T18:30:00Z"},
      {"2005/3/4 18:30 GMT", "2005-03-04T18:30:00Z"},
      {"3.4.05 18:30 GMT", "2005-04-03T18:30:00Z"},
      {"18. 5. 2006 18:30 GMT", "2006-05-18T18:30:00Z"},
      {"3/12/2005 18:30 GMT", "2005-12-03T18:30:00Z"},
      {"12/13/2005 18:30 GMT", "2005-12-13T18:30:00Z"},
      {"31-12-24 18:30 GMT", "2024-12-31T18:30:00Z"},
      {"32-12-24 18:30 GMT", "2032-12-24T18:30:00Z"},
      {"2006/12 0:00 GMT", "2006-12-01T00:00:00Z"},
      {"Mar 2005 0:00 GMT", "2005-03-01T00:00:00Z"},
      {"1 May 2005 18:30:00,25 GMT", "2005-05-01T18:30:00.25Z"},
      {"1 May 2005 0:00:00.500000000 GMT", "2005-05-01T00:00:00.5Z"},
      {"1 May 2005 2:30 p.m GMT", "2005-05-01T14:30:00Z"},
      {"4 o\u2019clock UTC 1 May 2005", "2005-05-01T04:00:00Z"},
      {"1 May 2005 14:00 QQQQQ", "2005-05-01T14:00:00Z"},
      {"GMT 1 May 2005 14:00", "2005-05-01T14:00:00Z"},
      {"24-Dec-05 0:00 GMT", "2005-12-24T00:00:00Z"},
      {"18:30 GMT 24/12", "2005-12-24T18:30:00Z"},
      {"18:30 UTC, 24.12.", "2005-12-24T18:30:00Z"},
      {"0:00 GMT 12/2006", "2006-12-01T00:00:00Z"},
      {"December 0:00 GMT 1 1", "2005-12-01T00:00:00Z"},
      {"18:30 GMT", "2005-03-31T18:30:00Z"},
      {"Donnerstag, den 3. M\u00e4rz 2005 um 14.30 Uhr MEZ", "2005-03-03T13:30:00Z"},
      {"am 3. Ma\u0308rz 2005, 12 Uhr 30 UTC", "2005-03-03T12:30:00Z"},
      {"18 Uhr 3 Mrz 2005 UTC", "2005-03-03T18:00:00Z"},
      {"12 Uhr GMT am 3. J\u00e4nner 2005", "2005-01-03T12:00:00Z"},
      {"12:00 am 3. Mai 2005 GMT", "2005-05-03T12:00:00Z"},
      {"le 1er f\u00e9vrier 2005 \u00e0 14h30 CET", "2005-02-01T13:30:00Z"},
      {"mai 2005 14h 3 UTC", "2005-05-03T14:00:00Z"},
      {"14:00 et 3 mai 2005 UTC", "2005-05-03T14:00:00Z"},
      {"1\u00b0 maggio 2005 0:00 GMT", "2005-05-01T00:00:00Z"},
      {"mar., 03 mai 2005 14:30:00 +0200", "2005-05-03T12:30:00Z"},
      {"3 de setembro de 2005 0:00 UTC", "2005-09-03T00:00:00Z"},
      {"15 \u0441\u0435\u043d\u0442\u044f\u0431\u0440\u044f 2005 \u0433. 0:00 UTC", "2005-09-15T00:00:00Z"},
      {"2004-j\u00falius-13T9:15-05:00", "2004-07-13T14:15:00Z"},
      {"2005\u5e743\u67083\u65e5 14\u65f630\u5206 GMT", "2005-03-03T14:30:00Z"},
      {"2005\u5e743\u67083\u65e5 14\u65f630\u520615\u79d2 GMT", "2005-03-03T14:30:15Z"},
      {"2005\ub144 3\uc6d4 3\uc77c 14\uc2dc 30\ubd84 15\ucd08 GMT", "2005-03-03T14:30:15Z"},
      {"2004-05-25 \uc624\ud6c4 11:23:17 KST", "2004-05-25T14:23:17Z"},
  });
}

TEST(NaturalDates, ReadDistances) {
  expectEach({
      {"now", "2005-03-31T16:20:00Z"},
      {"yesterday 14:00 GMT", "2005-03-30T14:00:00Z"},
      {"14:00 UTC heute", "2005-03-31T14:00:00Z"},
      {"hier \u00e0 14h UTC", "2005-03-30T14:00:00Z"},
      {"\u00fcbermorgen 0:00 GMT", "2005-04-02T00:00:00Z"},
      {"tomorrow 1:00 NZST", "2005-04-01T13:00:00Z"},
      {"vorgestern 0:00 GMT", "2005-03-29T00:00:00Z"},
      {"morgen 0:00 GMT", "2005-04-01T00:00:00Z"},
      {"midnight GMT", "2005-03-31T00:00:00Z"},
      {"2 seconds ago", "2005-03-31T16:19:58Z"},
      {"in 90 minutes", "2005-03-31T17:50:00Z"},
      {"3 hours ago", "2005-03-31T13:20:00Z"},
      {"9999 hours ago", "2004-02-09T01:20:00Z"},
      {"2 days ago 0:00 GMT", "2005-03-29T00:00:00Z"},
      {"in 2 Wochen 0:00 GMT", "2005-04-14T00:00:00Z"},
      {"2 years ago 0:00 GMT", "2003-03-31T00:00:00Z"},
      {"2005 years ago 0:00 GMT", "0000-03-31T00:00:00Z"},
      {"vor 20 Minuten", "2005-03-31T16:00:00Z"},
      {"il y a un an 0:00 GMT", "2004-03-31T00:00:00Z"},
      {"a week ago 0:00 GMT", "2005-03-24T00:00:00Z"},
      {"a week ago Europe/Berlin", "2005-03-24T17:20:00Z"},  // The clocks were set forward since.
      {"in 1 month 0:00 GMT", "2005-04-30T00:00:00Z"},
      {"last month 0:00 GMT", "2005-02-28T00:00:00Z"},
      {"this month 0:00 GMT", "2005-03-31T00:00:00Z"},
      {"next year 0:00 GMT", "2006-03-31T00:00:00Z"},
      {"la semaine prochaine 0:00 UTC", "2005-04-07T00:00:00Z"},
      {"Thursday 0:00 GMT", "2005-03-31T00:00:00Z"},
      {"Wednesday 0:00 GMT", "2005-04-06T00:00:00Z"},
      {"this Thursday 0:00 GMT", "2005-03-31T00:00:00Z"},
      {"next Thu 0:00 GMT", "2005-04-07T00:00:00Z"},
      {"next Thursday 0:00 GMT", "2005-04-07T00:00:00Z"},
      {"letzten Donnerstag 0:00 GMT", "2005-03-24T00:00:00Z"},
      {"vendredi dernier 0:00 GMT", "2005-03-25T00:00:00Z"},
      {"in March 2006 0:00 GMT", "2006-03-01T00:00:00Z"},
  });
}

TEST(NaturalDates, ReadWhatIsWrittenForPeople) {
  for (const char *const language :
       {"en", "de", "fr", "es", "it", "pt", "nl", "da", "sv", "nb", "fi", "pl", "cs", "hu", "el", "ru"}) {
    for (const auto style : {NSDateFormatterMediumStyle, NSDateFormatterLongStyle, NSDateFormatterFullStyle}) {
      const NSDateFormatter formatter(style, NSDateFormatterNoStyle, language);
      for (int month = 1; month <= 12; ++month) {
        const NSString text = formatter.stringFromDate(NSDate::dateWithUTC(2005, month, 13 + month, 12, 0, 0));
        const auto found = dateWithNaturalLanguageString(text, kNow);
        ASSERT_TRUE(found) << language << ": " << text.UTF8String();
        EXPECT_EQ(formatter.stringFromDate(*found), text);
      }
    }
  }
}

TEST(NaturalDates, TakeNothingElse) {
  for (const char *const text : {"",
                                 " 1 1",
                                 "Christmas 1 1",
                                 "the",
                                 "die 1 1",
                                 "So 1 1",
                                 "mar 1 1",
                                 "12",
                                 "Mar 0:00 GMT",
                                 "Thu 0:00 GMT",
                                 "1.5",
                                 "1-2",
                                 "555-1234",
                                 "3 days",
                                 "vor Mai",
                                 "last March",
                                 "3-5 March 2005",
                                 "3 March 3 April",
                                 "14:00-16:00",
                                 "14:00 15:00",
                                 "31.2.2005 1:00",
                                 "32 March 2005",
                                 "March 3 2005 2006",
                                 "3 March 2005 by",
                                 "14:00 3 pm",
                                 "14:00 noon",
                                 "today tomorrow",
                                 "today 3 March",
                                 "today 3 days ago",
                                 "now 14:00",
                                 "3 hours ago 14:00",
                                 "Thursday 3 hours ago",
                                 "3 March 3 days ago",
                                 "next Thursday 3 March",
                                 "next vendredi dernier",
                                 "Thu mar 3 mai 2005 0:00 GMT",
                                 "14:00 3 March ' 05",
                                 "2:00 p.x",
                                 "2:00 p/m",
                                 "\uc624\ud6c4 2:00 PM",
                                 "5\u5206",
                                 "1 May 2005 0:00:00.5000000000 GMT",
                                 "1 May 2005 14:00 qqq",
                                 "1 May 2005 14:00 QQQQQQ",
                                 "1 May 2005 14:00 QQQ QQQ",
                                 "QQQ 1 May 2005 14:00",
                                 "gmt 1 May 2005 14:00",
                                 "1 May 2005 14:00 GMT UTC",
                                 "1 May 2005 14:00 CET+0100",
                                 "1:2:3:4",
                                 "1:60",
                                 "18:30:",
                                 "18:30:GMT",
                                 "24:01",
                                 "13/13/2005",
                                 "2005-13-03",
                                 "2005/13/3 18:30",
                                 "18:30 +",
                                 "1234567890123456",
                                 "ago",
                                 "next",
                                 "3 March 105",
                                 "3 jui 2005 0:00 GMT",  // June or July
                                 "'05",
                                 "10000 hours ago",
                                 "2006 years ago 0:00 GMT",
                                 "9999 years ago",
                                 "9999999 years ago",
                                 "\u4e00\u65e5",
                                 "3 March 2005 \u2603"})
    EXPECT_EQ(read(text), "") << text;
  const unichar lone[] = {u'3', u' ', u'M', u'a', u'y', u' ', 0xd800};
  EXPECT_FALSE(dateWithNaturalLanguageString(NSString::stringWithCharacters(lone, 7), kNow));
  EXPECT_FALSE(dateWithNaturalLanguageString(NSString(), kNow));
  std::string longText(kLongestNaturalDate - 12, ' ');
  EXPECT_NE(read(longText + "3 March 2005"), "");
  EXPECT_EQ(read(longText + " 3 March 2005"), "");
}

}  // namespace
}  // namespace nimbo
