// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/CharsetNames.hpp"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace nimbo {
namespace {

std::string narrow(const std::u16string &text) {
  return NSString::stringWithCharacters(text).UTF8String();
}

TEST(CharsetNames, AreReadAsPeopleWriteThem) {
  struct Case {
    CFStringEncoding encoding;
    std::initializer_list<std::u16string> names;
  };
  const Case cases[] = {
      {kCFStringEncodingISOLatin1,
       {u"ISO-8859-1", u"iso_8859-1", u"ISO8859-1", u"ISO 8859 1", u"'iso-8859-1'", u"latin1", u"x-latin-1",
        u"iso-8559-1", u"iso-88591", u"8859", u"885211", u"885101", u"885391", u"ISO-8859-1;x",
        // Digits that are missing, doubled or next to the right ones.
        u"iso-859-1", u"iso-8059-1", u"iso-8819-1", u"iso-8839-1", u"iso-8858-1", u"iso-8861-1", u"iso-8869-1",
        u"iso-8879-1", u"iso-8909-1", u"iso-10059-1", u"iso-81009-1"}},
      {kCFStringEncodingDOSGreek1, {u"cp851"}},
      {kCFStringEncodingISOLatinArabic, {u"ASMO-708", u"iso-8859-6"}},
      {kCFStringEncodingDOSJapanese, {u"cp932"}},
      {kCFStringEncodingDOSChineseSimplif, {u"cp936"}},
      {kCFStringEncodingDOSKorean, {u"cp949"}},
      {kCFStringEncodingDOSChineseTrad, {u"cp950"}},
      {kCFStringEncodingWindowsKoreanJohab, {u"cp1361"}},
      {kCFStringEncodingISOLatin9, {u"iso-8859-15", u"latin-9", u"\"ISO.8859.15\""}},
      {kCFStringEncodingISOLatin10, {u"iso885916", u"latin10"}},
      {kCFStringEncodingISOLatinThai, {u"iso-8859-11"}},
      {kCFStringEncodingISOLatinHebrew, {u"visual", u"iso-8859-8-i"}},
      {kCFStringEncodingWindowsCyrillic, {u"windows-1251", u"CP1251", u"win1251", u"x-mac-1251"}},
      {kCFStringEncodingWindowsLatin1,
       {u"windows", u"Windows-Western", u"cp1252", u"windows-99999999999999999999"}},
      {kCFStringEncodingDOSRussian, {u"IBM866", u"866"}},
      {kCFStringEncodingMacRoman, {u"x-mac-roman", u"macintosh", u"mac", u"X-Mac", u"mac os roman"}},
      {kCFStringEncodingMacCentralEurRoman, {u"x-mac-ce", u"x-mac-centraleurroman"}},
      {kCFStringEncodingMacChineseSimp, {u"x-mac-chinesesimp", u"mac-chinesesimpl"}},
      {kCFStringEncodingMacChineseTrad, {u"x-mac-chinesetrad", u"mac-chinesetrad-chinesesimp"}},
      {kCFStringEncodingUTF8,
       {u"UTF-8", u"utf8", u"uft-8", u"unicode-1-1-utf-8", u"x-utf8-x", u"en-US", u"en--", u"en_GB", u"utf-9",
        u"unicode"}},
      {kCFStringEncodingUnicode, {u"utf-16le", u"UTF-16"}},
      {kCFStringEncodingASCII, {u"utf-7", u"US-ASCII", u"ascii", u"none"}},
      {kCFStringEncodingShiftJIS, {u"Shift_JIS", u"x-sjis", u"shift-jp"}},
      {kCFStringEncodingISO_2022_JP_2, {u"iso-2022-jp-2"}},
      {kCFStringEncodingISO_2022_JP, {u"iso-2022-jp", u"ISO-2022-KR", u"iso-2022-jp-2004"}},
      {kCFStringEncodingEUC_CN, {u"gb2312", u"x-gb2312-80", u"euc-cn", u"hz-gb-2312"}},
      {kCFStringEncodingKOI8_R, {u"koi8-r", u"KOI8-U"}},
      {kCFStringEncodingKOI8CS2, {u"koi8-cs2", u"csn_369103"}},
      {kCFStringEncodingKamenicky, {u"x-kam-cs", u"kamcs", u"kb-kam"}},
      {kCFStringEncodingISOLatin2, {u"latin2", u"iso-8592-2", u"iso-8858-2", u"iso-8859-2"}},
      {kCFStringEncodingISOLatin3, {u"x-latin3"}},
      {kCFStringEncodingISOLatin4, {u"latin-4"}},
      {kCFStringEncodingISOLatin5, {u"latin5", u"iso-8959-9"}},
      {kCFStringEncodingISOLatin6, {u"Latin 6"}},
      {kCFStringEncodingISOLatin7, {u"latin7"}},
      {kCFStringEncodingISOLatin8, {u"latin8"}},
      {kCFStringEncodingEUC_KR, {u"euc-kr"}},
      {kCFStringEncodingEUC_JP, {u"x-euc-jp", u"EUC_JIS", u"iso-646", u"iso-646-1"}},
      {kCFStringEncodingEUC_TW, {u"euc-tw"}},
      {kCFStringEncodingBig5, {u"big5-hkscs"}},
      {kCFStringEncodingKSC_5601_87, {u"KS_C_5601-1987"}},
      {kCFStringEncodingKSC_5601_92_Johab, {u"ksc5601-92"}},
      {kCFStringEncodingInvalidId,
       {u"", u"l1", u"en", u"--", u"foo", u"auto", u"latin", u"shift", u"e", u"x-mac-utf8", u"gb18030",
        u"885112", u"885091", u"885401", u"iso-8859-99999999999", u"x-visual", u"ks_c_5601-1992",
        u"\u0661252"}},
  };
  for (const Case &test : cases) {
    for (const std::u16string &name : test.names) {
      EXPECT_EQ(charset2CFStringEncoding(NSString::stringWithCharacters(name)), test.encoding) << narrow(name);
      // A name that does not fit the small buffer is read in the same way.
      if (name.size() < 3) continue;
      const std::u16string longName = std::u16string(200, u'-') + name + std::u16string(200, u' ');
      EXPECT_EQ(charset2CFStringEncoding(NSString::stringWithCharacters(longName)), test.encoding)
          << narrow(name);
    }
  }
  EXPECT_EQ(charset2CFStringEncoding(NSString()), kCFStringEncodingInvalidId);
}

TEST(CharsetNames, OfEncodingsWithANumberOrAScriptAnswerThese) {
  std::set<std::string> others;
  for (const CFStringEncoding encoding : CFStringGetListOfAvailableEncodings()) {
    if (encoding >= kCFStringEncodingASCII) continue;
    const NSString name = CFStringConvertEncodingToIANACharSetName(encoding);
    if (charset2CFStringEncoding(name) != encoding) others.insert(name.UTF8String());
  }
  EXPECT_EQ(others, (std::set<std::string>{"x-mac-symbol", "x-mac-dingbats", "windows-31j", "johab"}));
}

TEST(CharsetNames, AreThoseOfTheRegistryForWhoAsks) {
  const std::pair<std::u16string, CFStringEncoding> cases[] = {
      {u"koi8-u", kCFStringEncodingKOI8_U},         {u"Windows-31J", kCFStringEncodingDOSJapanese},
      {u"utf-16be", kCFStringEncodingUTF16BE},      {u"ISO-2022-KR", kCFStringEncodingISO_2022_KR},
      {u"gb18030", kCFStringEncodingGB_18030_2000}, {u"TIS-620", kCFStringEncodingDOSThai},
      {u"iso-8859-1", kCFStringEncodingISOLatin1},  {u"iso-8559-1", kCFStringEncodingISOLatin1},
      {u"x-sjis", kCFStringEncodingShiftJIS},       {u"UTF-7", kCFStringEncodingASCII},
      {u"foo", kCFStringEncodingInvalidId},         {u"", kCFStringEncodingInvalidId},
  };
  for (const auto &[name, encoding] : cases)
    EXPECT_EQ(encodingOfCharset(NSString::stringWithCharacters(name)), encoding) << narrow(name);
}

TEST(CharsetNames, GiveEncodingsOfStringsOrALineInTheLog) {
  EXPECT_EQ(charset2NSStringEncoding(u"x-sjis"_ns), NSShiftJISStringEncoding);
  EXPECT_EQ(charset2NSStringEncoding(u"csn_369103"_ns), NSKOI8CS2StringEncoding);
  EXPECT_EQ(charset2NSStringEncoding(u"KAM.CS"_ns), NSKamenickyStringEncoding);
  EXPECT_EQ(charset2NSStringEncoding(u"big5"_ns), 0x80000000 | kCFStringEncodingBig5);
  const auto logOf = [](const std::u16string &name) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(charset2NSStringEncoding(NSString::stringWithCharacters(name)), kCFStringEncodingInvalidId);
    return testing::internal::GetCapturedStderr();
  };
  for (const char16_t *const name : {u"x-mac-tibetan", u"foo", u"x", u"//"})
    EXPECT_EQ(logOf(name), "Unknown/Unsupported encoding: " + narrow(name) + "\n");
  for (const char16_t *const name : {u"", u"/", u"0", u"<", u">", u"Auto"}) EXPECT_EQ(logOf(name), "");
}

}  // namespace
}  // namespace nimbo
