// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

namespace nimbo {
namespace {

using namespace std::literals;

/// Decodes from a heap buffer of exactly that size.
DetectedString detect(std::string_view bytes, bool isCut = false) {
  const std::unique_ptr<char[]> copy(new char[bytes.size()]);
  bytes.copy(copy.get(), bytes.size());
  return stringWithDetectedEncoding({copy.get(), bytes.size()}, isCut);
}

std::string wide(std::u32string_view text, std::size_t width, bool bigEndian) {
  std::string bytes;
  for (const char32_t character : text)
    for (std::size_t i = 0; i < width; ++i)
      bytes.push_back(static_cast<char>(character >> 8 * (bigEndian ? width - 1 - i : i)));
  return bytes;
}

TEST(NSStringEncodingDetection, NamesAndDecodes) {
  struct Case {
    std::string bytes;
    std::string_view encoding;
    std::u16string_view text;
    bool isCut = false;
    bool lossy = false;
  };
  const std::u32string_view line = U"Köcher, 2 Stück\r\n";
  const Case cases[] = {
      {"", "US-ASCII", u""},
      {"plain\r\ntext\f\x1b[1mbold\x1a", "US-ASCII", u"plain\r\ntext\f\x1b[1mbold\x1a"},
      // Marks.
      {"\xef\xbb\xbfK\xc3\xb6\xff.", "UTF-8", u"Kö�.", false, true},
      {"\xfe\xff" + wide(line, 2, true) + "x", "UTF-16BE", u"Köcher, 2 Stück\r\n"},
      {"\xff\xfe\0\0"s + wide(line, 4, false), "UTF-32LE", u"Köcher, 2 Stück\r\n"},
      {"\0\0\xfe\xff"s + wide(U"\U0001f343", 4, true), "UTF-32BE", u"🍃"},
      // Zero patterns, without a mark.
      {wide(line, 2, false), "UTF-16LE", u"Köcher, 2 Stück\r\n"},
      {wide(U"Лист, 2 листа\n", 2, true), "UTF-16BE", u"Лист, 2 листа\n"},
      {wide(line, 4, false), "UTF-32LE", u"Köcher, 2 Stück\r\n"},
      // UTF-8: short, cut, with a little damage.
      {"caf\xc3\xa9 \xe2\x82", "UTF-8", u"café "},
      {"cafe \xe2\x82", "UTF-8", u"cafe ", true},
      {"\xc3\xa4\xc3\xb6\xc3\xbc\xc3\x9f\xc3\xa4\xc3\xb6\xc3\xbc\xc3\x9f\xc3\xa4\xc3\xb6 \xe9!", "UTF-8",
       u"äöüßäöüßäö �!", false, true},
      // One byte more than ASCII is no UTF-8, even where it could begin some.
      {"caf\xe9", "windows-1252", u"café"},
      {"\xa9 2024, a \x93quoted\x94 word \x96 or two", "windows-1252", u"© 2024, a “quoted” word – or two"},
      // Impossible in windows-1252.
      {"L'\x8et\x8e, les \x8el\x8fves r\x8ep\x8ftent \x88 l'\x8e\x63ole.", "macintosh",
       u"L'été, les élèves répètent à l'école."},
      {"f\x81r die gro\xe1\x65n K\x94\x63her", "IBM850", u"für die großen Köcher"},
      // Statistics.
      {"\xcc\xc9\xd3\xd4\xd8\xd1 \xd0\xc1\xc4\xc1\xc0\xd4 \xd7 \xc1\xd2\xc8\xc9\xd7, \xc1 "
       "\xd3\xd4\xd2\xc5\xcc\xd9"
       " \xcc\xc5\xd6\xc1\xd4 \xd7 \xcb\xcf\xcc\xde\xc1\xce\xc5",
       "KOI8-R", u"листья падают в архив, а стрелы лежат в колчане"},
      {"\x8f\x91\x97\xde\x82\xcc\x97t\x82\xf0\x8fW\x82\xdf\x82\xc4\x81\x41\x96\xee\x93\x9b\x82\xc9\x93\xfc\x82"
       "\xea"
       "\x82\xdc\x82\xb7\x81\x42",
       "Shift_JIS", u"書類の葉を集めて、矢筒に入れます。"},
      {"\x1b$B=qN`$NMU\x1b(B, \x1b$BLpE{\x1b(B\n", "ISO-2022-JP", u"書類の葉, 矢筒\n"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    const DetectedString found = detect(c.bytes, c.isCut);
    EXPECT_EQ(found.encodingName.UTF8String(), c.encoding);
    EXPECT_EQ(found.string.view(), c.text);
    EXPECT_EQ(found.usedLossyConversion, c.lossy);
  }
}

TEST(NSStringEncodingDetection, BinaryDataIsNoText) {
  std::mt19937 random(1);
  std::string noise(4096, '\0');
  for (char &byte : noise) byte = static_cast<char>(random());
  for (const std::string &bytes :
       {std::string(1, '\0'), std::string(100, '\0'), "hello\0"s, noise, "\xff\xfe" + noise,
        "\x7f"
        "ELF\2\1\1\0\0\0\0\0"s,
        "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0\x8\x6"s}) {
    SCOPED_TRACE(testing::PrintToString(bytes.substr(0, 20)));
    const DetectedString found = detect(bytes);
    EXPECT_FALSE(found.string);
    EXPECT_FALSE(found.encodingName);
  }
  EXPECT_TRUE(detect(std::string(200, 'x') + '\0').string);
}

TEST(NSStringEncodingDetection, EveryCutOfTextKeepsItsEncoding) {
  const std::string utf8 = "Blätter, Köcher, 葉 and 🍃: für später.";
  for (std::size_t length = 4; length <= utf8.size(); ++length) {
    const DetectedString found = detect(utf8.substr(0, length), true);
    EXPECT_EQ(found.encodingName.view(), u"UTF-8") << length;
    EXPECT_FALSE(found.usedLossyConversion) << length;
  }
}

TEST(NSStringEncodingDetection, AnOddByteBeyondWhatTheStatisticsReadIsDecodedToo) {
  std::string bytes(300'000, 'x');
  for (std::size_t i = 79; i < bytes.size(); i += 80) bytes[i] = '\n';
  bytes += "caf\xe9\n";
  EXPECT_TRUE(detect(bytes).string.view().ends_with(u"\ncafé\n"));
}

}  // namespace
}  // namespace nimbo
