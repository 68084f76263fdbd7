// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/MarkupEncoding.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "tests/support/TemporaryFolder.hpp"

using namespace std::literals;

namespace nimbo {
namespace {

constexpr NSStringEncoding kNone = kCFStringEncodingInvalidId;
constexpr NSStringEncoding kUTF8 = NSUTF8StringEncoding;
constexpr NSStringEncoding kLatin1 = NSISOLatin1StringEncoding;
constexpr NSStringEncoding kGBK = 0x80000000 | kCFStringEncodingGBK_95;
constexpr NSStringEncoding kBig5HKSCS = 0x80000000 | kCFStringEncodingBig5_HKSCS_1999;

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

NSString stringOf(std::string_view text) {
  return NSString::stringWithUTF8String(text);
}

TEST(MarkupEncoding, IsDeclaredInFrontOfTheBody) {
  const struct {
    std::string_view markup;
    std::string_view charset;
  } cases[] = {
      {"<?xml version='1.0' encoding='utf-8'?><a/>", "utf-8"},
      {"<?XML version='1.0' ENCODING=koi8-r ?>", "koi8-r"},
      {"<xml encoding='utf-8'><meta charset=big5>", "big5"},
      {"<?xml version='1.0'?><META CHARSET='big5'>", "big5"},
      {"<meta http-equiv='Content-Type' content='text/html; charset=euc-jp'>", "euc-jp"},
      {"<meta content=\"text/html; charset = 'euc-jp'\" charset=x>", "euc-jp"},
      {"<meta content='<p>; charset=euc-jp' >", "euc-jp"},
      {"<meta content='text/html' charset=gbk>", "gbk"},
      {"<meta name=x><title>y</title><meta charset=a><meta charset=b>", "a"},
      {"<meta charset='iso&#45;8859-2'>", "iso-8859-2"},
      {"</meta charset=gbk><!-- <meta charset=gbk> -->", ""},
      {"<script>'<meta charset=gbk>'</script>", ""},
      {"<head></head><Body><meta charset=gbk>", ""},
      {"</body><meta charset=gbk>", ""},
      {"<meta charset=''>", ""},
      {"<meta", ""},
      {"", ""},
  };
  for (const auto &test : cases) {
    const NSString charset = markupCharset(stringOf(test.markup));
    EXPECT_TRUE(charset) << test.markup;
    EXPECT_EQ(charset.UTF8String(), test.charset) << test.markup;
  }
  EXPECT_EQ(markupEncoding(u"<meta charset=sjis>"_ns), NSShiftJISStringEncoding);
  EXPECT_EQ(headerEncoding(u"text/html; Charset=\"koi8-cs2"_ns), NSKOI8CS2StringEncoding);
  EXPECT_EQ(headerEncoding(u"text/html"_ns), kNone);
}

/// Text in an encoding, as other programs write it.
struct Sample {
  std::string charset;
  std::string_view bytes;
  std::string_view text;
};

const Sample kSamples[] = {
    {"Shift_JIS", "\x93\xfa\x96{\x8c\xea", "日本語"},
    {"iso-2022-jp", "\x1b$BF|K\\8l\x1b(B", "日本語"},
    {"koi8-r", "\xf0\xd2\xc9\xd7\xc5\xd4", "Привет"},
    {"windows-1250", "\x8elu\x9dou\xe8k\xfd", "Žluťoučký"},
    // The page has more characters than bytes.
    {"koi8-cs2", "Du\xc7ov\xd7", "Duchové"},
    {"x-kam-cs", "\x92lu\x9f", "Žluť"},
    {"utf-8", "\xc5\xbdlu\xc5\xa5", "Žluť"},
};

TEST(MarkupDecoding, BelievesWhatThePageOrItsSenderDeclares) {
  for (const Sample &sample : kSamples) {
    SCOPED_TRACE(sample.charset);
    const std::string head = "<meta charset=" + sample.charset + "><title>";
    const NSData page = dataOf(head + std::string(sample.bytes) + "</title>");
    const NSString text = stringOf(head + std::string(sample.text) + "</title>");
    // Whatever the default is, and whatever another says.
    for (const auto other : {kUTF8, kLatin1, NSStringEncoding{NSWindowsCP1252StringEncoding}}) {
      EXPECT_EQ(stringWithMarkupData(page, other), text) << other;
      EXPECT_EQ(decodeMarkup(page, other, kNone).string, text) << other;
    }
    const NSString name = stringOf(sample.charset);
    const NSString header = stringOf("text/html;charset=" + sample.charset);
    const NSData bare = dataOf("<p>" + std::string(sample.bytes));
    for (const NSString &read :
         {stringWithMarkupData(bare, name, kLatin1, u"x:y"_ns), stringWithMarkupData(bare, header, kLatin1),
          stringWithMarkupData(bare, NSEncodingFromName(name))})
      EXPECT_EQ(read.UTF8String(), "<p>" + std::string(sample.text));
  }
}

TEST(MarkupDecoding, WeighsDeclarations) {
  const struct {
    std::string_view why;
    std::string_view declared;
    std::string_view bytes;
    NSStringEncoding supplied, defaultEncoding, used;
    std::string_view text;
  } cases[] = {
      {"no bytes", "", "", kUTF8, kUTF8, kNone, ""},
      {"impossible", "", "caf\xe9", kNone, kUTF8, kNone, ""},
      {"supplied wrongly", "", "caf\xe9", kUTF8, kLatin1, kLatin1, "café"},
      {"supplied as nothing", "", "caf\xe9", 0, kLatin1, kLatin1, "café"},
      {"declared wrongly", "utf-8", "caf\xe9", kNone, kLatin1, kLatin1, "café"},
      {"declared as ASCII", "us-ascii", "caf\xe9", kNone, kLatin1, kLatin1, "café"},
      {"declared as UTF-16 in bytes", "utf-16", "\xc3\xa9!", kNone, kUTF8, kUTF8, "é!"},
      {"good UTF-8, supplied, not Latin 1", "latin1", "\xc3\xa9", kUTF8, kNone, kUTF8, "é"},
      {"nor Windows Cyrillic", "cp1251", "\xc3\xa9", kUTF8, kNone, kUTF8, "é"},
      {"but Windows Greek", "cp1253", "\xc3\xa9", kUTF8, kNone, NSWindowsCP1253StringEncoding, "Γ©"},
      {"and Latin 1 when not supplied", "latin1", "\xc3\xa9", kNone, kUTF8, kLatin1, "Ã©"},
      {"without meaning", "cp1253", "\xd2", kLatin1, kNone, kLatin1, "Ò"},
      {"and not supplied", "cp1253", "\xd2", kNone, kLatin1, NSWindowsCP1253StringEncoding, "\ufffd"},
      {"but in KOI8-CS2", "koi8cs2", "\xd0\x96", kNone, kLatin1, NSWindowsCP1252StringEncoding, "Ð–"},
      {"nothing but KOI8-CS2", "koi8cs2", "\xd0", kNone, kLatin1, NSKOI8CS2StringEncoding, "ô"},
      {"EUC-JP", "sjis", "\xe9\xfd", kNone, kLatin1, NSJapaneseEUCStringEncoding, "蝮"},
      {"not Japanese", "sjis", "\xe9 ", kNone, kLatin1, kLatin1, "é "},
      {"GBK", "gb2312", "\xbc\xf2\xbe\x57\xed\x93", kNone, kUTF8, kGBK, "简網頁"},
      {"Big5-HKSCS", "big5", "\xad\xbb\xb4\xe4\x9d\xef", kNone, kLatin1, kBig5HKSCS, "香港嘅"},
      {"Windows-1252", "latin1", "it\x92s \x85", kNone, kUTF8, NSWindowsCP1252StringEncoding, "it’s …"},
      {"nor there", "latin1", "\x81\xe9", kUTF8, kUTF8, kLatin1, "\xc2\x81é"},
      {"Windows-1254", "latin5", "\x93\xfd", kNone, kUTF8, NSWindowsCP1254StringEncoding, "“ı"},
      {"not Big5", "big5", "\xa4 ", kNone, kLatin1, kLatin1, "¤ "},
      {"damaged UTF-8", "", "\xc5\xbdlu\xc5\xa5\xff", kNone, kUTF8, kUTF8, "Žluť\ufffd"},
      {"declared as damaged", "utf-8", "\xc5\xbdlu\xc5\xa5\xe8", kNone, kLatin1, kUTF8, "Žluť\ufffd"},
      {"marked UTF-8", "", "\xef\xbb\xbf\xc3\xa9", kNone, kUTF8, kUTF8, "é"},
      {"a mark is no declaration", "", "\xef\xbb\xbf\xc3\xa9", kNone, kLatin1, kLatin1, "ï»¿Ã©"},
      {"a mark alone", "", "\xef\xbb\xbf", kNone, kUTF8, kUTF8, ""},
      {"marked UTF-16, cut", "", "\xfe\xff\0<\x20\xac\0"sv, kUTF8, kNone, NSUnicodeStringEncoding, "<€"},
      {"marked UTF-32", "", "\xff\xfe\0\0\x89\xf3\x01\0"sv, kUTF8, kNone, NSUTF32StringEncoding, "\U0001f389"},
      {"a false mark", "", "\xef\xbb\xbf\xe9", kNone, kLatin1, kLatin1, "ï»¿é"},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.why);
    const std::string head = test.declared.empty() ? "" : "<meta charset=" + std::string(test.declared) + ">";
    const NSData page = dataOf(head + std::string(test.bytes));
    const DecodedMarkup decoded = decodeMarkup(page, test.supplied, test.defaultEncoding);
    EXPECT_EQ(decoded.encoding, test.used);
    EXPECT_EQ(static_cast<bool>(decoded.string), test.used != kNone);
    EXPECT_EQ(decoded.string.UTF8String(), test.used == kNone ? "" : head + std::string(test.text));
  }
  // A declaration in UTF-16 is not that of single bytes.
  const NSString page = u"<meta charset=latin1>\u20ac"_ns;
  EXPECT_EQ(decodeMarkup(dataUsingEncoding(page, NSUnicodeStringEncoding), kNone, kUTF8).string, page);
}

TEST(MarkupDecoding, FindsOutWhatIsNotDeclaredWell) {
  constexpr NSStringEncoding kExtended = 0x80000000;
  const struct {
    std::string_view declared;
    std::string_view bytes;
    NSStringEncoding used;
    std::string_view text;
  } cases[] = {
      {"", "a", NSASCIIStringEncoding, "a"},
      {"utf-8", "a", kUTF8, "a"},
      {"utf-8", "\xc3\xa9", kUTF8, "é"},
      {"", "\xc3\xa9", kUTF8, "é"},
      {"", "caf\xe9", NSWindowsCP1252StringEncoding, "café"},
      {"latin2", "\xb9", NSISOLatin2StringEncoding, "š"},
      {"euc-kr", "\xed\x95\x9c\xea\xb5\xad\xec\x96\xb4", kUTF8, "한국어"},
      {"shift_jis",
       "\xc6\xfc\xcb\xdc\xb8\xec\xa4\xce\xca\xb8\xbe\xcf\xa4\xf2\xbd\xf1\xa4\xad\xa4\xde\xa4\xb7\xa4\xbf",
       NSJapaneseEUCStringEncoding, "日本語の文章を書きました"},
      {"big5", "\xad\xbb\xb4\xe4\x9d\xef", kBig5HKSCS, "香港嘅"},
      {"shift_jis", "\x82\xb1\x82\xf1\x82\xc9\x82\xbf\x82\xcd\x90\xa2\x8a\x45\x82 \x82\xcc\x90\x6c\x81\x42<",
       kExtended | kCFStringEncodingDOSJapanese, "こんにちは世界\ufffd の人。<"},
      {"euc-kr", "\xbe\xee\xc1\xa6\xbf\xec\xb8\xae\xb4\xc2\xc7\xd0\xb1\xb3\xbf\xa1 \xb0\xa1\xbc\xad\xc9 !",
       kExtended | kCFStringEncodingEUC_KR, "어제우리는학교에 가서\ufffd !"},
      {"gbk",
       "\xe3\xba\xe4\xc1\xe9\xc3\xe8\xc7\xa7\xc5\xa7\xe3\xb9\xb7\xd5\xe8\xe0\xa1\xe7\xba\xe0\xcd\xa1\xca\xd2",
       kExtended | kCFStringEncodingDOSThai, "ใบไม้ร่วงลงในที่เก็บเอกสา"},
      {"cp1253", "\xd2", NSWindowsCP1253StringEncoding, "\ufffd"},
      {"koi8-cs2", "\xd0\x96\xd1", NSKOI8CS2StringEncoding, "ô\ufffdä"},
      {"tis-620", "\xe4\xb7\xc2", kExtended | kCFStringEncodingDOSThai, "ไทย"},
      {"koi8-u", "\xa7", kExtended | kCFStringEncodingKOI8_U, "ї"},
      {"windows-31j", "\x93\xfa\x87\x40", kExtended | kCFStringEncodingDOSJapanese, "日①"},
      {"iso-2022-kr", "\x1b$)C\x0eGQ\x0f", kExtended | kCFStringEncodingISO_2022_KR, "한"},
      {"utf-8", "\x1b$)C\x0eGQ\x0f", kExtended | kCFStringEncodingISO_2022_KR, "한"},
      {"utf-8", "\x1b$BF|K\\\x1b(B", NSISO2022JPStringEncoding, "日本"},
      {"iso-2022-jp-2", "\x1b$BF|K\\\x1b(B", kExtended | kCFStringEncodingISO_2022_JP_2, "日本"},
      {"utf-8", "\x1b[1ma\xc3\xa9", kUTF8, "\x1b[1maé"},
      {"utf-7", "+AOk-", NSASCIIStringEncoding, "+AOk-"},
      {"ibm037", "\xc3\xa9", kUTF8, "é"},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.declared);
    const std::string head = test.declared.empty() ? "" : "<meta charset=" + std::string(test.declared) + ">";
    const DecodedMarkup decoded = decodeMarkup(dataOf(head + std::string(test.bytes)), kNone);
    EXPECT_EQ(decoded.encoding, test.used);
    EXPECT_EQ(decoded.string.UTF8String(), head + std::string(test.text));
  }
  // A mark is final, and the order of bytes is known when a declaration in UTF-16 is.
  for (const char *const charset : {"latin1", "shift_jis", "utf-16"}) {
    const NSString page = stringOf("<meta charset=" + std::string(charset) + ">\u0416\u20ac");
    const NSData marked = dataOf("\xef\xbb\xbf" + page.UTF8String());
    EXPECT_EQ(decodeMarkup(marked, kNone).string, page);
    EXPECT_EQ(decodeMarkup(marked, kNone, kUTF8).string, page);
    EXPECT_EQ(decodeMarkup(dataUsingEncoding(page, NSUTF16BigEndianStringEncoding), kNone).string, page);
  }
}

TEST(MarkupDecoding, ReadsFilesAndPropertyLists) {
  const TemporaryFolder folder;
  const auto textOf = [&](const NSData &content) {
    return stringWithMarkupContentsOfFile(folder.write("page", content.view()), NSISOLatin1StringEncoding);
  };
  const auto binary = [](const id &list) {
    return NSPropertyListSerialization::dataWithPropertyList(list, NSPropertyListFormat::binary);
  };
  EXPECT_EQ(textOf(dataOf("<meta charset=koi8-r>\xf0")), u"<meta charset=koi8-r>П"_ns);
  EXPECT_EQ(textOf(binary(u"<p>\u20ac"_ns)), u"<p>\u20ac"_ns);
  const NSDictionary page{{u"WebResourceData"_ns, dataOf("<p>\xf0")},
                          {u"WebResourceTextEncodingName"_ns, u"koi8-r"_ns}};
  EXPECT_EQ(textOf(binary(NSDictionary{{u"WebMainResource"_ns, page}})), u"<p>П"_ns);
  EXPECT_FALSE(textOf(binary(NSDictionary{{u"a"_ns, u"b"_ns}})));
  EXPECT_FALSE(textOf(dataOf("bplist00 cut")));
  EXPECT_FALSE(textOf(dataOf("")));
  EXPECT_FALSE(stringWithMarkupContentsOfFile(folder.string("missing"), NSUTF8StringEncoding));
}

TEST(MarkupData, IsInTheDeclaredEncoding) {
  const struct {
    NSString markup;
    std::string_view bytes;
    NSStringEncoding used;
  } cases[] = {
      {u"<meta charset=gbk>网"_ns, "<meta charset=gbk>\xcd\xf8", kGBK},
      {u"<meta charset=gbk>\u0e01"_ns, "<meta charset=gbk>\xe0\xb8\x81", kUTF8},
      {u"<meta charset=latin1>\u2019"_ns, "<meta charset=latin1>\x92", NSWindowsCP1252StringEncoding},
      {u"<meta charset=foo>é"_ns, "<meta charset=foo>\xc3\xa9", kUTF8},
      {u""_ns, "", kUTF8},
      {NSString::stringWithCharacters(u"a\xd800"), "a\xef\xbf\xbd", kUTF8},
      {NSString(), "", kNone},
  };
  for (const auto &test : cases) {
    NSStringEncoding used = 0;
    const NSData data = markupData(test.markup, &used);
    EXPECT_EQ(static_cast<bool>(data), static_cast<bool>(test.markup));
    EXPECT_EQ(data.view(), test.bytes);
    EXPECT_EQ(used, test.used);
  }
}

}  // namespace
}  // namespace nimbo
