// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/CoreServices/TextEncodings/TECConverter.hpp"

using namespace std::literals;

namespace nimbo {
namespace {

constexpr bool kIsLittle = std::endian::native == std::endian::little;

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

std::string nameOf(CFStringEncoding encoding) {
  return CFStringConvertEncodingToIANACharSetName(encoding).UTF8String();
}

NSString decode(std::string_view bytes, CFStringEncoding encoding) {
  return initWithData(dataOf(bytes), CFStringConvertEncodingToNSStringEncoding(encoding));
}

struct Text {
  CFStringEncoding encoding;
  std::string_view bytes;
  std::u16string_view text;
};

/// What other programs write for these texts.
constexpr Text kTexts[] = {
    {kCFStringEncodingASCII, "a~\\\x7f", u"a~\\\x7f"},
    {kCFStringEncodingISOLatin1, "\xe9\xdf", u"éß"},
    {kCFStringEncodingISOLatin10, "\xaa\xba\xde", u"ȘșȚ"},
    {kCFStringEncodingWindowsLatin1, "\x80\x93", u"€“"},
    {kCFStringEncodingWindowsCyrillic, "\xcf\xf0\xe8", u"При"},
    {kCFStringEncodingKOI8_R, "\xf0\xd2\xc9", u"При"},
    {kCFStringEncodingKOI8_U, "\xa6\xa4", u"іє"},
    {kCFStringEncodingMacRoman, "\x8a\xdb", u"ä€"},
    {kCFStringEncodingMacCroatian, "\xa9\xe6\xf0", u"Šćđ"},
    {kCFStringEncodingMacIcelandic, "\xdc\xdd\xde", u"ÐðÞ"},
    {kCFStringEncodingMacRomanian, "\xae\xaf\xbe", u"ĂȘă"},
    {kCFStringEncodingMacArabic, "a \xe5\xd1\xcd", u"a مرح"},
    {kCFStringEncodingMacFarsi, "\xb1\xb2\xe4", u"۱۲ل"},
    {kCFStringEncodingMacHebrew, "\xf9\xec\xe5\xed", u"שלום"},
    {kCFStringEncodingMacThai, "\xe4\xb7\xc2", u"ไทย"},
    {kCFStringEncodingNextStepLatin, "\x85\x96\xfb\xd7", u"ÄÖßâ"},
    {kCFStringEncodingKamenicky, "P\xa9\xa1li\xa8 \x91lu\x9fou\x87k\x98 k\x96\xa4", u"Příliš žluťoučký kůň"},
    {kCFStringEncodingKOI8CS2, "P\xd2\xc9li\xd3 \xdalu\xd4ou\xc3k\xd9 k\xca\xce", u"Příliš žluťoučký kůň"},
    {kCFStringEncodingMacDevanagari, "\xd8\xdb\xc6\xe8\xc4\xdc \xa1\xe9", u"हिन्दी ॐ"},
    {kCFStringEncodingMacSymbol, "a\xa3", u"α≤"},
    {kCFStringEncodingMacJapanese, "\x93\xfa\x5c\x85\x40\x85\x7e\x85\x80\xb1\x80", u"日¥①❸❹ｱ\\"},
    {kCFStringEncodingMacChineseSimp, "\xd6\xd0\xa8\xbb\xfd", u"中ɑ©"},
    {kCFStringEncodingMacChineseTrad, "\xa4\xa4\xa2\x46\xff", u"中¢…"},
    {kCFStringEncodingMacKorean, "\xc7\xd1\x81", u"한₩"},
    {kCFStringEncodingJIS_X0208_83, "F|K\\ ", u"日本 "},
    {kCFStringEncodingJIS_X0212_90, "0!", u"丂"},
    {kCFStringEncodingJIS_C6226_78, "03MZ", u"鰺遙"},
    {kCFStringEncodingCNS_11643_92_P1, "D!", u"一"},
    {kCFStringEncodingVISCII, "Vi\xaet", u"Việt"},
    {kCFStringEncodingDOSLatin2, "\xfe\xa7\xaa\x1a", u"■ž¬\x1a"},
    {kCFStringEncodingJIS_X0201_76, "\x5c\xb1\xde", u"¥ｱﾞ"},
    {kCFStringEncodingShiftJIS, "\x93\xfa\x96\x7b\x5c\x1a", u"日本\\\x1a"},
    {kCFStringEncodingShiftJIS_X0213, "\x93\xfa\x82\xf5", u"日か\u309a"},
    {kCFStringEncodingEUC_JP, "\xc6\xfc\xcb\xdc", u"日本"},
    {kCFStringEncodingISO_2022_JP, "\x1b$BF|K\\\x1b(B!", u"日本!"},
    {kCFStringEncodingISO_2022_JP_3, "\x1b$BF|K\\\x1b(B!", u"日本!"},
    {kCFStringEncodingEUC_CN, "\xd6\xd0\xa3\xa7\xa1\xaa", u"中＇—"},
    {kCFStringEncodingGB_2312_80, "VP9z", u"中国"},
    {kCFStringEncodingGBK_95, "\xd6\xd0\x87\xf8", u"中國"},
    {kCFStringEncodingGB_18030_2000, "\x94\x39\xfc\x36", u"\U0001f600"},
    {kCFStringEncodingHZ_GB_2312, "~{VP9z~}!\n~{VP~}", u"中国!\n中"},
    {kCFStringEncodingDOSLatinUS, "\xe6\x1a", u"µ\x1a"},
    {kCFStringEncodingDOSThai, "\xe4\x80", u"ไ€"},
    {kCFStringEncodingBig5, "\xa4\xa4\xb0\xea", u"中國"},
    {kCFStringEncodingEUC_TW, "\xc4\xe3\xd9\xcf", u"中國"},
    {kCFStringEncodingEUC_KR, "\xc7\xd1\xa2\xe6\x8c\x63", u"한€똠"},
    {kCFStringEncodingKSC_5601_92_Johab, "\xd0\x65\x8b\x69", u"한글"},
    {kCFStringEncodingISO_2022_KR, "\x1b$)C\x0eGQ1[\x0f\\", u"한글\\"},
    {kCFStringEncodingUTF7, "+ZeVnLA-", u"日本"},
    {kCFStringEncodingUTF8, "\xf0\x9f\x98\x80", u"\U0001f600"},
    {kCFStringEncodingUTF16BE, "\xd8\x3d\xde\x00"sv, u"\U0001f600"},
    {kCFStringEncodingUTF32LE, "\x00\xf6\x01\x00"sv, u"\U0001f600"},
};

TEST(StringEncodings, KnownTexts) {
  for (const Text &each : kTexts) {
    SCOPED_TRACE(nameOf(each.encoding));
    const NSString text = NSString::stringWithCharacters(each.text);
    EXPECT_EQ(decode(each.bytes, each.encoding).UTF8String(), text.UTF8String());
    const NSStringEncoding encoding = CFStringConvertEncodingToNSStringEncoding(each.encoding);
    EXPECT_EQ(initWithData(dataUsingEncoding(text, encoding), encoding), text);
    EXPECT_EQ(dataUsingEncoding(text, encoding).view(), each.bytes);
  }
}

TEST(StringEncodings, CodesThatAreOnlyRead) {
  // The virama before a half or a joined form, the nukta behind what it changes, and whole texts.
  const Text cases[] = {
      {kCFStringEncodingMacDevanagari, "\xe8\xe8\xe8\xe9\xe8", u"\u094d\u200c\u094d\u200d\u094d"},
      {kCFStringEncodingMacDevanagari, "\xa1\xe9\xa6\xe9\xa7\xe9\xaa\xe9\xdb\xe9\xdc\xe9\xdf\xe9\xea\xe9",
       u"\u0950\u090c\u0961\u0960\u0962\u0963\u0944\u093d"},
      {kCFStringEncodingMacGujarati, "\xe8\xe8\xe8\xe9\xe8", u"\u0acd\u200c\u0acd\u200d\u0acd"},
      {kCFStringEncodingMacGujarati, "\xa1\xe9\xaa\xe9\xdf\xe9", u"\u0ad0\u0ae0\u0ac4"},
      {kCFStringEncodingMacGurmukhi, "\xe8\xe8\xe8\xe9\xe8", u"\u0a4d\u200c\u0a4d\u200d\u0a4d"},
      {kCFStringEncodingMacGurmukhi, "\x90\x91\x92", u"\u0a71\u0a21\u0a3c\u0a73"},
      {kCFStringEncodingMacHebrew, "\x81\xc0\xde", u"\u05f2\u05b7\u05dc\u05b9\u05b8"},
      {kCFStringEncodingMacSymbol, "\xe2\xe3\xe4", u"\u00ae\u00a9\u2122"},
      {kCFStringEncodingKOI8CS2, "\xc7\xe7", u"chCH"},
      // Forms for vertical lines, and what is one sign there.
      {kCFStringEncodingMacChineseSimp,
       "\xa6\xd9\xa6\xda\xa6\xdb\xa6\xdc\xa6\xdd\xa6\xde\xa6\xdf\xa6\xec\xa6\xed", u"，。、：；！？〖〗"},
      {kCFStringEncodingMacKorean, "\xa2\xe6\xa2\xe7\xa2\xe8", u"1\u20de2\u20de3\u20de"},
      {kCFStringEncodingMacJapanese, "\x85\xab\x85\xac\x85\xad\x85\xbf\x85\xc0\x85\xc1", u"XIIIXIVXVxiiixivxv"},
  };
  for (const Text &each : cases)
    EXPECT_EQ(decode(each.bytes, each.encoding).UTF8String(),
              NSString::stringWithCharacters(each.text).UTF8String())
        << nameOf(each.encoding);
}

/// Goes through the converter in steps of so many bytes into a buffer of so many units.
NSString decodeInSteps(std::string_view bytes, CFStringEncoding encoding, std::size_t step, std::size_t units) {
  std::unique_ptr<TECConverter> converter;
  if (TECCreateConverter(converter, encoding, kCFStringEncodingUnicode) != noErr) return NSString();
  std::u16string text;
  std::vector<char16_t> buffer(units);
  const std::span output(reinterpret_cast<std::uint8_t *>(buffer.data()), units * sizeof(char16_t));
  std::size_t at = 0;
  std::size_t end = 0;
  for (bool flushes = false;;) {
    const std::span input(reinterpret_cast<const std::uint8_t *>(bytes.data()) + at, end - at);
    const TECResult result = flushes ? converter->flushText(output) : converter->convertText(input, output);
    at += result.consumedBytes;
    text.append(buffer.data(), result.writtenBytes / sizeof(char16_t));
    if (result.status == kTECOutputBufferFullStatus) continue;
    if (result.status == noErr && flushes) return NSString::stringWithCharacters(text);
    if (result.status != noErr && (result.status != kTECPartialCharErr || end == bytes.size()))
      return NSString();
    flushes = at == bytes.size();
    end = std::min(bytes.size(), end + step);
  }
}

TEST(StringEncodings, TextComesInPieces) {
  for (const Text &each : kTexts)
    for (const std::size_t step : {1u, 2u, 3u, 5u})
      for (const std::size_t units : {2u, 3u, 64u})
        EXPECT_EQ(decodeInSteps(each.bytes, each.encoding, step, units),
                  NSString::stringWithCharacters(each.text))
            << nameOf(each.encoding) << ' ' << step << ' ' << units;
}

TEST(StringEncodings, WhatIsClearedBeginsAnew) {
  // Behind a character of the set that was announced and shifted to, and one that waits for what follows it.
  const std::tuple<CFStringEncoding, std::u16string_view, std::string_view> cases[] = {
      {kCFStringEncodingISO_2022_JP, u"\u66f8", "a"}, {kCFStringEncodingISO_2022_KR, u"\ud654", "\x1b$)Ca"},
      {kCFStringEncodingUTF8, u"\xd83c", "a"},        {kCFStringEncodingBig5_HKSCS_1999, u"\u00ca", "a"},
      {kCFStringEncodingMacKorean, u"\ud55c", "a"},
  };
  for (const auto &[encoding, before, bytes] : cases) {
    SCOPED_TRACE(nameOf(encoding));
    std::unique_ptr<TECConverter> converter;
    ASSERT_EQ(TECCreateConverter(converter, kCFStringEncodingUnicode, encoding), noErr);
    const auto convert = [&](std::u16string_view text) {
      std::array<std::uint8_t, 64> output;
      const std::span input(reinterpret_cast<const std::uint8_t *>(text.data()), text.size() * sizeof text[0]);
      const std::size_t written = converter->convertText(input, output).writtenBytes;
      return std::string(reinterpret_cast<const char *>(output.data()), written);
    };
    convert(before);
    converter->clearContextInfo();
    EXPECT_EQ(convert(u"a"), bytes);
  }
}

TEST(StringEncodings, FormsForVerticalLinesMeanWhatTheUsualOnesDo) {
  for (const int usual :
       {0x8141, 0x8142, 0x8150, 0x815b, 0x815d, 0x8160, 0x8161, 0x8162, 0x8163, 0x816d, 0x816e, 0x8181,
        0x829f, 0x82a1, 0x82a3, 0x82a5, 0x82a7, 0x82c1, 0x82e1, 0x82e3, 0x82e5, 0x82ec, 0x8340, 0x8342,
        0x8344, 0x8346, 0x8348, 0x8362, 0x8383, 0x8385, 0x8387, 0x838e, 0x8395, 0x8396}) {
    const auto meaning = [](int code) {
      return decode(std::string{static_cast<char>(code >> 8), static_cast<char>(code)},
                    kCFStringEncodingMacJapanese);
    };
    EXPECT_EQ(meaning(usual).length(), 1u) << usual;
    EXPECT_EQ(meaning(usual + 0x6a00).UTF8String(), meaning(usual).UTF8String()) << usual;
  }
}

TEST(StringEncodings, WhatWaitsIsClearedToo) {
  // A byte that another may follow, and a second unit that there was no room for.
  for (const std::string_view before : {"\xe8"sv, "\xe8\xe8"sv}) {
    std::unique_ptr<TECConverter> converter;
    ASSERT_EQ(TECCreateConverter(converter, kCFStringEncodingMacDevanagari, kCFStringEncodingUnicode), noErr);
    const auto convert = [&](std::string_view bytes) {
      unichar unit = 0;
      const std::span output(reinterpret_cast<std::uint8_t *>(&unit), sizeof unit);
      const std::span input(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
      return converter->convertText(input, output).writtenBytes == sizeof unit ? unit : u'\0';
    };
    EXPECT_EQ(convert(before), before.size() == 1 ? u'\0' : u'\u094d');
    converter->clearContextInfo();
    EXPECT_EQ(convert("a"), u'a');
  }
}

TEST(StringEncodings, HalvesOfPairsHaveNoCode) {
  // A character of two units, and another one that would be taken for its second half by its lower bits.
  NSString pair;
  for (int code = 0; pair.length() < 2 && code < 94 * 94; ++code)
    pair = decode(std::string{static_cast<char>(0x21 + code / 94), static_cast<char>(0x21 + code % 94)},
                  kCFStringEncodingCNS_11643_92_P3);
  ASSERT_EQ(pair.length(), 2u);
  const unichar high = pair.view()[0], low = pair.view()[1], other = 0x8800 | (low & 0x3ff);
  const std::pair<std::u16string, OSStatus> cases[] = {{{high, low}, noErr},
                                                       {{high, other}, kTECUnmappableElementErr},
                                                       {{high, high}, kTECUnmappableElementErr},
                                                       {{low}, kTECUnmappableElementErr},
                                                       {{high}, kTECPartialCharErr}};
  for (const auto &[text, status] : cases) {
    std::unique_ptr<TECConverter> converter;
    ASSERT_EQ(TECCreateConverter(converter, kCFStringEncodingUnicode, kCFStringEncodingCNS_11643_92_P3), noErr);
    std::array<std::uint8_t, 8> output;
    const std::span input(reinterpret_cast<const std::uint8_t *>(text.data()), text.size() * sizeof text[0]);
    const TECResult result = converter->convertText(input, output);
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.consumedBytes, status == noErr ? 4u : 0u);
    EXPECT_EQ(result.writtenBytes, status == noErr ? 2u : 0u);
  }
}

/// The meaning of one code; nothing when it has none. `*isCut` gets whether it wants more bytes.
std::u16string meaningOf(TECConverter &converter, std::string_view code, bool *isCut = nullptr) {
  std::array<char16_t, 8> units;
  const std::span output(reinterpret_cast<std::uint8_t *>(units.data()), sizeof units);
  converter.clearContextInfo();
  TECResult result =
      converter.convertText({reinterpret_cast<const std::uint8_t *>(code.data()), code.size()}, output);
  if (isCut) *isCut = result.status == kTECPartialCharErr;
  std::size_t written = result.writtenBytes;
  if (result.status == noErr) {
    result = converter.flushText(output.subspan(written));
    written += result.writtenBytes;
  }
  return result.status == noErr ? std::u16string(units.data(), written / sizeof(char16_t)) : std::u16string();
}

TEST(StringEncodings, EveryAvailableEncodingRoundTripsWhatItsBytesMean) {
  const auto available = CFStringGetListOfAvailableEncodings();
  EXPECT_GT(available.size(), 90u);
  for (const CFStringEncoding encoding : available) {
    SCOPED_TRACE(nameOf(encoding));
    std::unique_ptr<TECConverter> converter;
    ASSERT_EQ(TECCreateConverter(converter, encoding, kCFStringEncodingUnicode), noErr);
    std::set<std::u16string> meanings;
    for (int first = 0; first < 256; ++first) {
      bool isCut = false;
      meanings.insert(meaningOf(*converter, std::string(1, static_cast<char>(first)), &isCut));
      for (int second = 0; isCut && second < 256; ++second)
        meanings.insert(
            meaningOf(*converter, std::string{static_cast<char>(first), static_cast<char>(second)}));
    }
    const NSStringEncoding number = CFStringConvertEncodingToNSStringEncoding(encoding);
    const auto textOf = [&] {
      std::u16string repertoire;
      for (const std::u16string &meaning : meanings) repertoire += meaning;
      return NSString::stringWithCharacters(repertoire);
    };
    if (!canBeConvertedToEncoding(textOf(), number)) {
      // Some codes give a text that never becomes that code.
      const std::size_t oneWay = std::erase_if(meanings, [&](const std::u16string &meaning) {
        return !canBeConvertedToEncoding(NSString::stringWithCharacters(meaning), number);
      });
      EXPECT_LE(oneWay, 20u);
    }
    const NSString text = textOf();
    // UTF-32 has no codes of two bytes.
    EXPECT_TRUE(text.length() > 90 || nameOf(encoding).starts_with("UTF-32"));
    EXPECT_EQ(initWithData(dataUsingEncoding(text, number), number), text);
    EXPECT_EQ(CFStringConvertNSStringEncodingToEncoding(number), encoding);
  }
}

TEST(StringEncodings, NothingIsLostSilently) {
  // A soft hyphen, a joiner and a variation selector, which some converters drop.
  for (const NSString &text : {u"a\u00ad"_ns, u"a\u200d"_ns, u"a\ufe0f"_ns, u"\u4e2d"_ns, u"\xd800"_ns})
    for (const CFStringEncoding encoding : CFStringGetListOfAvailableEncodings()) {
      const NSStringEncoding number = CFStringConvertEncodingToNSStringEncoding(encoding);
      const NSData data = dataUsingEncoding(text, number);
      EXPECT_TRUE(!data || initWithData(data, number) == text) << nameOf(encoding);
    }
  for (const NSStringEncoding encoding :
       {NSASCIIStringEncoding, NSShiftJISStringEncoding, NSMacOSRomanStringEncoding})
    EXPECT_FALSE(canBeConvertedToEncoding(u"a\u200d"_ns, encoding));
  EXPECT_FALSE(dataUsingEncoding(u"\xd800"_ns, NSUTF8StringEncoding));
  EXPECT_FALSE(dataUsingEncoding(u"\u00a1"_ns, NSKamenickyStringEncoding));
}

TEST(StringEncodings, ImpossibleBytesAreNoText) {
  const Text cases[] = {
      {kCFStringEncodingASCII, "a\x80", {}},
      {kCFStringEncodingUTF8, "a\xc3", {}},
      {kCFStringEncodingUTF8, "\xed\xa0\x80", {}},
      {kCFStringEncodingUnicode, "a", {}},
      {kCFStringEncodingUTF32BE, "\x00\x11\x00\x00"sv, {}},
      {kCFStringEncodingUTF32LE, "a\0\0"sv, {}},
      {kCFStringEncodingShiftJIS, "\x93", {}},
      {kCFStringEncodingShiftJIS, "\x93\x20", {}},
      {kCFStringEncodingEUC_JP, "\xc6 ", {}},
      {kCFStringEncodingEUC_CN, "\x87\xf8", {}},
      {kCFStringEncodingEUC_CN, "\x96@", {}},
      {kCFStringEncodingEUC_CN, "\xa2\xa1", {}},
      {kCFStringEncodingISO_2022_JP, "\x1b$BF", {}},
      {kCFStringEncodingGB_18030_2000, "\x94\x39\xfc", {}},
      {kCFStringEncodingKSC_5601_92_Johab, "\xd0", {}},
      {kCFStringEncodingWindowsGreek, "\xd2", {}},
      {kCFStringEncodingNextStepLatin, "\xff", {}},
      {kCFStringEncodingMacThai, "\x90", {}},
      {kCFStringEncodingMacJapanese, "\x85", {}},
      {kCFStringEncodingMacKorean, "\xa4\x20", {}},
      {kCFStringEncodingJIS_X0208_83, "\x93\xfa", {}},
      {kCFStringEncodingKOI8CS2, "\xff", {}},
      {kCFStringEncodingMacTibetan, "a", {}},
      {12345, "a", {}},
  };
  for (const Text &each : cases) EXPECT_FALSE(decode(each.bytes, each.encoding)) << nameOf(each.encoding);
  EXPECT_FALSE(initWithData(NSData(), NSUTF8StringEncoding));
}

TEST(StringEncodings, ByteOrderMarks) {
  const std::tuple<std::string_view, NSStringEncoding, NSString> cases[] = {
      {"\xfe\xff\0a"sv, NSUnicodeStringEncoding, u"a"_ns},
      {"\xff\xfe\x61\0"sv, NSUnicodeStringEncoding, u"a"_ns},
      {"\xff\xfe\0\0a\0\0\0"sv, NSUTF32StringEncoding, u"a"_ns},
      {"a\0\0\0"sv, NSUTF32StringEncoding, u"a"_ns},
      {"\xfe\xff\0a"sv, NSUTF16BigEndianStringEncoding, u"\ufeffa"_ns},
      {"\xef\xbb\xbf\x61", NSUTF8StringEncoding, u"a"_ns},
  };
  for (const auto &[bytes, encoding, text] : cases) EXPECT_EQ(initWithData(dataOf(bytes), encoding), text);
  EXPECT_EQ(dataUsingEncoding(u"a"_ns, NSUnicodeStringEncoding).view(),
            kIsLittle ? "\xff\xfe\x61\0"sv : "\xfe\xff\0a"sv);
  // Lone surrogates survive in UTF-16.
  EXPECT_EQ(
      initWithData(dataUsingEncoding(u"\ufeff\xdc00"_ns, NSUnicodeStringEncoding), NSUnicodeStringEncoding),
      u"\ufeff\xdc00"_ns);
}

TEST(StringEncodings, Numbers) {
  EXPECT_EQ(CFStringConvertNSStringEncodingToEncoding(0x80000000 | kCFStringEncodingUTF8),
            kCFStringEncodingUTF8);
  EXPECT_EQ(CFStringConvertNSStringEncodingToEncoding(0), kCFStringEncodingInvalidId);
  const std::pair<NSString, CFStringEncoding> names[] = {{u"utf-8"_ns, kCFStringEncodingUTF8},
                                                         {u"x-sjis"_ns, kCFStringEncodingShiftJIS},
                                                         {u"windows-31j"_ns, kCFStringEncodingDOSJapanese},
                                                         {u"latin1"_ns, kCFStringEncodingISOLatin1},
                                                         {u"ISO-8859-16"_ns, kCFStringEncodingISOLatin10},
                                                         {u"cp850"_ns, kCFStringEncodingDOSLatin1},
                                                         {u"cp437"_ns, kCFStringEncodingDOSLatinUS},
                                                         {u"no such"_ns, kCFStringEncodingInvalidId},
                                                         {NSString(), kCFStringEncodingInvalidId}};
  for (const auto &[name, encoding] : names)
    EXPECT_EQ(CFStringConvertIANACharSetNameToEncoding(name), encoding) << name.UTF8String();
}

TEST(StringEncodings, OneByteOfSeveralWithTheSameCharacterIsWritten) {
  EXPECT_EQ(decode("\x83\xe8", kCFStringEncodingMacThai), u"\u0e48\u0e48"_ns);
  EXPECT_EQ(dataUsingEncoding(u"\u0e48"_ns, 0x80000000 | kCFStringEncodingMacThai).view(), "\xe8");
  EXPECT_EQ(decode("+\xab", kCFStringEncodingMacArabic), u"++"_ns);
  EXPECT_EQ(dataUsingEncoding(u"+"_ns, 0x80000000 | kCFStringEncodingMacArabic).view(), "+");
}

TEST(StringEncodings, Smallest) {
  const std::pair<NSString, NSStringEncoding> cases[] = {{u"abc"_ns, NSASCIIStringEncoding},
                                                         {u""_ns, NSASCIIStringEncoding},
                                                         {u"é"_ns, NSISOLatin1StringEncoding},
                                                         {u"“é”"_ns, NSWindowsCP1252StringEncoding},
                                                         {u"Привет"_ns, NSWindowsCP1251StringEncoding},
                                                         {u"日本語"_ns, NSUnicodeStringEncoding},
                                                         {u"日本語a"_ns, NSUTF8StringEncoding},
                                                         {u"日本 and much ASCII"_ns, NSUTF8StringEncoding},
                                                         {u"\xd800"_ns, NSUnicodeStringEncoding}};
  for (const auto &[text, encoding] : cases) {
    EXPECT_EQ(smallestEncoding(text), encoding) << text.UTF8String();
    EXPECT_TRUE(canBeConvertedToEncoding(text, encoding));
    EXPECT_TRUE(canBeConvertedToEncoding(text, fastestEncoding(text)));
  }
}

}  // namespace
}  // namespace nimbo
