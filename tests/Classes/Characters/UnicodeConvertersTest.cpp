// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/UnicodeConverters.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "tests/support/LongestRun.hpp"

using namespace std::literals;

namespace nimbo {
namespace {

TEST(UnicodeConverters, SharedOnes) {
  // No other test makes them.
  EXPECT_EQ(convertUTF8ToUnicode("a", 1, nullptr, 0), kTECCorruptConverterErr);
  EXPECT_EQ(convertUnicodeToUTF8(u"a", 1, nullptr, 0), kTECCorruptConverterErr);
  initUnicodeConverters();
  initUnicodeConverters();
  EXPECT_EQ(ucs2Encoding, kCFStringEncodingUnicode);
  EXPECT_EQ(utf8Encoding, kCFStringEncodingUTF8);
  unichar units[4] = {};
  char bytes[8] = {};
  EXPECT_EQ(convertUTF8ToUnicode("\xc3\xa4z", 3, units, 2), noErr);
  EXPECT_EQ(std::u16string_view(units, 2), u"äz");
  EXPECT_EQ(convertUTF8ToUnicode(nullptr, 0, nullptr, 0), noErr);
  EXPECT_EQ(convertUTF8ToUnicode("abc", 3, units, 2), kTECOutputBufferFullStatus);
  EXPECT_EQ(convertUTF8ToUnicode("\xc3", 1, units, 4), kTECPartialCharErr);
  // What the last text left behind is forgotten.
  EXPECT_EQ(convertUTF8ToUnicode("\xa4", 1, units, 4), kTextMalformedInputErr);
  EXPECT_EQ(convertUnicodeToUTF8(u"\ufeffä", 2, bytes, 5), noErr);
  EXPECT_EQ(std::string_view(bytes, 5), "\xef\xbb\xbf\xc3\xa4");
  EXPECT_EQ(convertUnicodeToUTF8(u"ä", 1, bytes, 1), kTECOutputBufferFullStatus);
  EXPECT_EQ(convertUnicodeToUTF8(u"\xdc00", 1, bytes, 8), kTextMalformedInputErr);
}

TEST(UnicodeConverters, EncodingToUnicode) {
  struct Case {
    CFStringEncoding encoding;
    std::string_view bytes;
    std::uint32_t capacity;
    OSStatus status;
    std::u16string_view units;
  };
  const Case cases[] = {
      {kCFStringEncodingUTF8, "gr\xc3\xbc\xc3\x9f", 4, 1, u"grüß"},
      {kCFStringEncodingUTF8, "", 0, 1, u""},
      {kCFStringEncodingUTF8, "gr\xc3\xbc", 2, 0, u""},
      {kCFStringEncodingUTF8, "gr\xc3", 8, 0, u""},
      {kCFStringEncodingUTF8, "gr\xff", 8, 0, u""},
      {kCFStringEncodingUTF16LE, "\xff\xfe", 1, 1, u"\ufeff"},
      {kCFStringEncodingUnicode, "\xfe\xff\0a"sv, 1, 1, u"a"},
      {kCFStringEncodingUnicode,
       "\xff\xfe"
       "a\0"sv,
       1, 1, u"a"},
      {kCFStringEncodingShiftJIS, "\x93\xfa", 1, 1, u"日"},
      {kCFStringEncodingShiftJIS, "\x93\x20", 2, 0, u""},
      {kCFStringEncodingWindowsGreek, "\xe1\xd2", 2, 1, u"α\ufffd"},
      {kCFStringEncodingMacHebrew, "\x81", 1, 0, u""},
      {kCFStringEncodingMacThai, "\xe4\x90", 2, 1, u"ไ\ufffd"},
      {kCFStringEncodingKamenicky, "\x80", 1, 1, u"Č"},
      // What stands at the end is held back until then.
      {kCFStringEncodingShiftJIS_X0213, "\x82\xa9", 1, 1, u"か"},
      {kCFStringEncodingISO_2022_JP, "\x1b$BF|\x1b(B", 1, 1, u"日"},
      {kCFStringEncodingISO_2022_JP, "\x1b$BF|\x1b(B!", 1, 0, u""},
      {kCFStringEncodingISO_2022_JP, "\x1b$BF|\x1b(", 1, 0, u""},
      {kCFStringEncodingMacTibetan, "a", 1, kTextUnsupportedEncodingErr, u""},
      {kCFStringEncodingInvalidId, "a", 1, kTextUnsupportedEncodingErr, u""},
  };
  for (const Case &each : cases) {
    const auto output = std::make_unique<unichar[]>(each.capacity);
    std::uint32_t count = 99;
    EXPECT_EQ(convertEncodingToUnicode(each.bytes.data(), static_cast<std::uint32_t>(each.bytes.size()),
                                       each.encoding, output.get(), each.capacity, &count),
              each.status)
        << std::hex << each.encoding;
    EXPECT_EQ(std::u16string_view(output.get(), count), each.units) << std::hex << each.encoding;
  }
}

TEST(UnicodeConverters, AnyRoomInEveryEncoding) {
  const LongestRun room;
  // Four bytes are whole characters everywhere.
  const std::string_view bytes = "!!!!";
  for (const CFStringEncoding encoding : CFStringGetListOfAvailableEncodings()) {
    SCOPED_TRACE(encoding);
    EXPECT_EQ(convertEncodingToUnicode(nullptr, 0, encoding, nullptr, 0, nullptr), 1);
    std::uint32_t exact = 99, count = 99;
    const OSStatus status = convertEncodingToUnicode(bytes.data(), 4, encoding, room.units(), 4, &exact);
    EXPECT_EQ(convertEncodingToUnicode(bytes.data(), 4, encoding, room.units(), LongestRun::kLength, &count),
              status);
    EXPECT_EQ(count, exact);
    EXPECT_EQ(convertEncodingToUnicode(bytes.data(), 4, encoding, nullptr, 0, &count), 0);
    EXPECT_EQ(count, 0u);
  }
}

}  // namespace
}  // namespace nimbo
