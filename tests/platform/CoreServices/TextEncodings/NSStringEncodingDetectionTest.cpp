// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <tuple>

#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

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
      // Zeros fill up an end.
      {"Köcher\0\0"s, "UTF-8", u"Köcher\0\0"sv},
      {"K\xf6"
       "cher\0"s,
       "ISO-8859-1", u"Köcher\0"sv},
      {"hello\0"s, "US-ASCII", u"hello\0"sv},
      // Marks.
      {"\xef\xbb\xbfK\xc3\xb6\xff.", "UTF-8", u"Kö�.", false, true},
      {"\xfe\xff" + wide(line, 2, true) + "x", "UTF-16", u"Köcher, 2 Stück\r\n", false, true},
      {"\xff\xfe\0\0"s + wide(line, 4, false), "UTF-32", u"Köcher, 2 Stück\r\n"},
      // What is no character, behind a mark.
      {"\xff\xfe\0\0"s + wide(std::u32string(40, U'x') + U'\x110000' + std::u32string(40, U'y'), 4, false),
       "UTF-32", u"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\ufffdyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy",
       false, true},
      {"\0\0\xfe\xff"s + wide(U"\U0001f343", 4, true), "UTF-32", u"🍃"},
      // Zero patterns, without a mark.
      {wide(line, 2, false), "UTF-16LE", u"Köcher, 2 Stück\r\n"},
      {wide(U"Лист, 2 листа\n", 2, true), "UTF-16BE", u"Лист, 2 листа\n"},
      {wide(U"화살은 화살통에 대가리까지", 2, true), "UTF-16BE", u"화살은 화살통에 대가리까지"},
      {wide(U"一葉落ちて天下の秋を知る。\n", 2, false), "UTF-16LE", u"一葉落ちて天下の秋を知る。\n"},
      // A script beyond the first 65536 characters, once in each order.
      {wide(U"\xd801\xdc00\xd801\xdc28\xd801\xdc01\xd801\xdc29\xd801\xdc02\xd801\xdc2a\xd801\xdc03\xd801\xdc2b"
            U"\xd801\xdc04\xd801\xdc2c\xd801\xdc05\xd801\xdc2d.",
            2, false),
       "UTF-16LE", u"𐐀𐐨𐐁𐐩𐐂𐐪𐐃𐐫𐐄𐐬𐐅𐐭."},
      {wide(U"\xd801\xdc00\xd801\xdc28\xd801\xdc01\xd801\xdc29\xd801\xdc02\xd801\xdc2a\xd801\xdc03\xd801\xdc2b"
            U"\xd801\xdc04\xd801\xdc2c\xd801\xdc05\xd801\xdc2d.",
            2, true),
       "UTF-16BE", u"𐐀𐐨𐐁𐐩𐐂𐐪𐐃𐐫𐐄𐐬𐐅𐐭."},
      {wide(line, 4, false), "UTF-32LE", u"Köcher, 2 Stück\r\n"},
      {wide(U"leaf \ud7ff\ue000\U0010ffff", 4, true), "UTF-32BE", u"leaf \ud7ff\ue000\U0010ffff"},
      // UTF-8: short, cut, with a little damage.
      {"caf\xc3\xa9 \xe2\x82", "UTF-8", u"café ", false, true},
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
      {"\x8b\xa8\xe1\xe2\xec\xef \xaf\xa0\xa4\xa0\xee\xe2 \xa2 \xa0\xe0\xe5\xa8\xa2, \xa0 "
       "\xe1\xe2\xe0\xa5\xab\xeb \xab\xa5\xa6\xa0\xe2 \xa2 \xaa\xae\xab\xe7\xa0\xad\xa5",
       "IBM866", u"Листья падают в архив, а стрелы лежат в колчане"},
      {"\x8b\xe8\xf1\xf2\xfc\xdf \xef\xe0\xe4\xe0\xfe\xf2 \xe2 \xe0\xf0\xf5\xe8\xe2, \xe0 "
       "\xf1\xf2\xf0\xe5\xeb\xfb \xeb\xe5\xe6\xe0\xf2 \xe2 \xea\xee\xeb\xf7\xe0\xed\xe5",
       "x-mac-cyrillic", u"Листья падают в архив, а стрелы лежат в колчане"},
      {"\xd1\xb7\xe3\xe5\xed\xde \xd8\xa0\xa6\xa0\x9c\xe5 \xeb \xa0\xe1\xb5\xb7\xeb, \xa0 "
       "\xe3\xe5\xe1\xa8\xd0\xf1 \xd0\xa8\xe9\xa0\xe5 \xeb \xc6\xd6\xd0\xfb\xa0\xd4\xa8",
       "IBM855", u"Листья падают в архив, а стрелы лежат в колчане"},
      {"\xb7\xa7 \xcc\xc9\xd3\xd4\xd1 \xd0\xc1\xc4\xc1\xa4 \xd7 \xc1\xd2\xc8\xa6\xd7, \xc1 "
       "\xd3\xd4\xd2\xa6\xcc\xc9 \xcc\xc5\xd6\xc1\xd4\xd8",
       "KOI8-U", u"Її листя падає в архів, а стріли лежать"},
      // Capitals are no quotation marks beside words.
      {"\xd3\xea\xf0\xe0\xbf\xed\xf1\xfc\xea\xe0 \xec\xee\xe2\xe0 \xba \xe4\xe5\xf0\xe6\xe0\xe2\xed\xee\xfe "
       "\xec\xee\xe2\xee\xfe \xe2 \xd3\xea\xf0\xe0\xbf\xed\xb3. \xaf\xbf \xe2\xe8\xe2\xf7\xe0\xfe\xf2\xfc \xf3 "
       "\xf8\xea\xee\xeb\xe0\xf5.",
       "windows-1251", u"Українська мова є державною мовою в Україні. Її вивчають у школах."},
      {"\xe3\xba\xe4\xc1\xe9\xc3\xe8\xc7\xa7\xc5\xa7\xe3\xb9\xb7\xd5\xe8\xe0\xa1\xe7\xba\xe0\xcd\xa1\xca\xd2"
       "\xc3 \xe1\xc5\xd0\xc5\xd9\xa1\xb8\xb9\xd9\xcd\xc2\xd9\xe8\xe3\xb9\xab\xcd\xa7\xb8\xb9\xd9",
       "windows-874", u"ใบไม้ร่วงลงในที่เก็บเอกสาร และลูกธนูอยู่ในซองธนู"},
      {"\xac\x51\xa4\xe9\xa7\xda\x92\x5d\xa5\x68\x9d\xf7\xbe\xc7\xae\xd5\xa1\x41\xbc\xb2\xa8\xec\xa6\xd1\x9d"
       "\xef\xbc\xc6\xbe\xc7"
       "\xa6\xd1\xae\x76\xa1\x43\xca\x5c\xa6\x50\xa7\xda\x92\x5d\xc1\xbf\x9d\xf7\xa6\x6e\xa6\x68\xa6\xb3\xbd"
       "\xec\x9d\xef\x9d\xcf",
       "Big5-HKSCS", u"昨日我哋去咗學校，撞到老嘅數學老師。佢同我哋講咗好多有趣嘅嘢"},
      {"\x1b$)C\x0eH-;l@:\x0f \x0eH-;lEk?!\x0f, \x0e@Y@:\x0f \x0e<-7yGT?!\x0f", "ISO-2022-KR",
       u"화살은 화살통에, 잎은 서류함에"},
      {"\x1b$B=qN`$NMU\x1b(B, \x1b$BLpE{\x1b(B\n", "ISO-2022-JP", u"書類の葉, 矢筒\n"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    const DetectedString found = detect(c.bytes, c.isCut);
    EXPECT_EQ(found.encodingName.UTF8String(), c.encoding);
    EXPECT_EQ(found.string.view(), c.text);
    EXPECT_EQ(found.usedLossyConversion, c.lossy);
    if (c.lossy || c.isCut) continue;
    const NSStringEncoding encoding =
        CFStringConvertEncodingToNSStringEncoding(CFStringConvertIANACharSetNameToEncoding(found.encodingName));
    EXPECT_EQ(initWithData(NSData::dataWithBytes(c.bytes.data(), c.bytes.size()), encoding), found.string);
  }
}

TEST(NSStringEncodingDetection, BinaryDataIsNoText) {
  std::mt19937 random(1);
  std::string noise(4096, '\0');
  for (char &byte : noise) byte = static_cast<char>(random());
  for (const std::string &bytes :
       {std::string(1, '\0'), std::string(100, '\0'), "hell\0o"s, noise, "\xff\xfe" + noise,
        "\0\0\xfe\xff"s + noise,
        "\x7f"
        "ELF\2\1\1\0\0\0\0\0"s,
        "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0\x8\x6"s,
        // Without a mark no half of a pair stands alone, and each number is one of a character.
        wide(U"a" + std::u32string(200, U'x') + U'\xd83c' + std::u32string(200, U'y'), 2, false),
        wide(U"a" + std::u32string(200, U'x') + U'\xdf43' + std::u32string(200, U'y'), 2, true),
        wide(std::u32string(200, U'x') + U'\xd800' + std::u32string(200, U'y'), 4, false),
        wide(std::u32string(200, U'x') + U'\xdfff' + std::u32string(200, U'y'), 4, false),
        wide(std::u32string(200, U'x') + U'\x110000' + std::u32string(200, U'y'), 4, true)}) {
    SCOPED_TRACE(testing::PrintToString(bytes.substr(0, 20)));
    const DetectedString found = detect(bytes);
    EXPECT_FALSE(found.string);
    EXPECT_FALSE(found.encodingName);
  }
  EXPECT_TRUE(detect(std::string(200, 'x') + '\0').string);
  // What is no character counts as a control, one in fifty.
  for (const char32_t character : {U'\xfffd', U'\xfffe', U'\xffff'}) {
    const auto nameOf = [=](std::size_t length) {
      return detect("\xff\xfe" + wide(character + std::u32string(length - 1, U'\u00e4'), 2, false))
          .encodingName;
    };
    EXPECT_EQ(nameOf(49) == u"UTF-16"_ns, character == 0xfffd);
    EXPECT_EQ(nameOf(50), u"UTF-16"_ns);
  }
  for (std::size_t i = 0; i < 59; ++i) {
    std::string text(60, 'x');
    text[i] = '\x7f';
    EXPECT_TRUE(detect(text).string) << i;
    text[59] = '\x06';
    EXPECT_FALSE(detect(text).string) << i;
  }
}

TEST(NSStringEncodingDetection, CountsWhatSpeaksForUnicode) {
  const std::string text = "\xc3\xa4\xc3\xb6\xc3\xbc\xc3\x9f\xc3\xa4\xc3\xb6\xc3\xbc\xc3\x9f\xc3\xa4 ";
  const std::tuple<std::string, NSString, bool> cases[] = {
      // Of the high bytes one in ten is zero, and of the low ones none.
      {wide(U"葉落ちて 天下の秋を", 2, false), u"UTF-16LE"_ns, true},
      {wide(U"葉落ちて 天下の秋を知", 2, false), u"UTF-16LE"_ns, false},
      // All bytes are plain text: every second one.
      {wide(U"a\x6261", 2, true), u"UTF-16BE"_ns, true},
      {wide(U"a\x6261\x6261", 2, true), u"UTF-16BE"_ns, false},
      // One in a hundred low bytes may be zero.
      {wide(std::u32string(99, U'a') + U'\x100', 2, false), u"UTF-16LE"_ns, true},
      {wide(std::u32string(98, U'a') + U'\x100', 2, false), u"UTF-16LE"_ns, false},
      // Of one script there are twelve letters, and of others one in twenty.
      {wide(U"一葉落ちて天下の秋を知", 2, false), u"UTF-16LE"_ns, false},
      {wide(U"一ж" + std::u32string(18, U'葉'), 2, false), u"UTF-16LE"_ns, true},
      {wide(U"一ж" + std::u32string(17, U'葉'), 2, false), u"UTF-16LE"_ns, false},
      // For each bad byte there are ten sequences.
      {text + "\xc3\xb6 \xe9.", u"UTF-8"_ns, true},
      {text + "\xe9.", u"UTF-8"_ns, false},
  };
  for (const auto &[bytes, encoding, isSo] : cases)
    EXPECT_EQ(detect(bytes).encodingName == encoding, isSo) << testing::PrintToString(bytes);
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
