// SPDX-License-Identifier: Apache-2.0
#include "Classes/MarkupEncoding.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Classes/MarkupDecoding.hpp"
#include "Classes/NSString+XmlExtensions+Encoding.hpp"
#include "platform/CoreServices/NSStringEncodings.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "tests/TemporaryFolder.hpp"

using namespace std::literals;

namespace nimbo {
namespace {

constexpr NSStringEncoding kNone = kCFStringEncodingInvalidId;

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
    {"euc-jp", "\xc6\xfc\xcb\xdc\xb8\xec", "日本語"},
    {"iso-2022-jp", "\x1b$BF|K\\8l\x1b(B", "日本語"},
    {"big5",
     "\xc1"
     "c\xc5\xe9\xa4\xa4\xa4\xe5",
     "繁體中文"},
    {"gb2312", "\xbc\xf2\xcc\xe5\xd6\xd0\xce\xc4", "简体中文"},
    {"euc-kr", "\xc7\xd1\xb1\xb9\xbe\xee", "한국어"},
    {"koi8-r", "\xf0\xd2\xc9\xd7\xc5\xd4", "Привет"},
    {"windows-1251", "\xcf\xf0\xe8\xe2\xe5\xf2", "Привет"},
    {"windows-1250", "\x8elu\x9dou\xe8k\xfd", "Žluťoučký"},
    {"iso-8859-2", "\xaelu\xbbou\xe8k\xfd", "Žluťoučký"},
    {"x-kam-cs", "\x92lu\x9f", "Žluť"},
    {"windows-1252", "\x93na\xefve\x94", "“naïve”"},
    {"x-mac-cyrillic", "\x8f\xf0\xe8\xe2\xe5\xf2", "Привет"},
    {"utf-8", "\xc5\xbdlu\xc5\xa5", "Žluť"},
};

TEST(MarkupDecoding, BelievesWhatThePageOrItsSenderDeclares) {
  for (const Sample &sample : kSamples) {
    SCOPED_TRACE(sample.charset);
    const std::string head = "<meta charset=" + sample.charset + "><title>";
    const NSData page = dataOf(head + std::string(sample.bytes) + "</title>");
    const NSString text = stringOf(head + std::string(sample.text) + "</title>");
    // Whatever the default is, and whatever another says.
    for (const auto other : {NSUTF8StringEncoding, NSISOLatin1StringEncoding, NSWindowsCP1252StringEncoding}) {
      EXPECT_EQ(stringWithMarkupData(page, other), text) << other;
      EXPECT_EQ(decodeMarkup(page, other, kNone).string, text) << other;
    }
    const NSString name = stringOf(sample.charset);
    const NSData bare = dataOf("<p>" + std::string(sample.bytes));
    const NSString bareText = stringOf("<p>" + std::string(sample.text));
    EXPECT_EQ(stringWithMarkupData(bare, name, NSASCIIStringEncoding, u"x:y"_ns), bareText);
    EXPECT_EQ(
        stringWithMarkupData(bare, stringOf("text/html;charset=" + sample.charset), NSASCIIStringEncoding),
        bareText);
    EXPECT_EQ(stringWithMarkupData(bare, NSEncodingFromName(name)), bareText);
  }
}

TEST(MarkupDecoding, WeighsDeclarations) {
  constexpr NSStringEncoding kGBK = 0x80000000 | kCFStringEncodingGBK_95;
  constexpr NSStringEncoding kBig5 = 0x80000000 | kCFStringEncodingBig5;
  const struct {
    std::string_view why;
    std::string_view bytes;
    NSStringEncoding supplied, defaultEncoding;
    std::string_view text;  // Nothing: nil.
    NSStringEncoding used;
  } cases[] = {
      {"no bytes", "", NSUTF8StringEncoding, NSUTF8StringEncoding, "", kNone},
      {"impossible", "caf\xe9", kNone, NSUTF8StringEncoding, "", kNone},
      {"supplied wrongly", "caf\xe9", NSUTF8StringEncoding, NSISOLatin1StringEncoding, "café",
       NSISOLatin1StringEncoding},
      {"supplied as nothing", "caf\xe9", 0, NSISOLatin1StringEncoding, "café", NSISOLatin1StringEncoding},
      {"supplied as nothing else", "caf\xe9", kNone - 1, NSISOLatin1StringEncoding, "café",
       NSISOLatin1StringEncoding},
      {"declared wrongly", "<meta charset=utf-8>caf\xe9", kNone, NSISOLatin1StringEncoding,
       "<meta charset=utf-8>café", NSISOLatin1StringEncoding},
      {"declared as unknown", "<meta charset=foo>caf\xe9", kNone, NSISOLatin1StringEncoding,
       "<meta charset=foo>café", NSISOLatin1StringEncoding},
      {"ASCII is no declaration", "<meta charset=us-ascii>caf\xe9", kNone, NSISOLatin1StringEncoding,
       "<meta charset=us-ascii>café", NSISOLatin1StringEncoding},
      {"UTF-16 cannot be declared in bytes", "<meta charset=utf-16>\xc3\xa9!", kNone, NSUTF8StringEncoding,
       "<meta charset=utf-16>é!", NSUTF8StringEncoding},
      {"good UTF-8, supplied, not Latin 1", "<meta charset=latin1>\xc3\xa9", NSUTF8StringEncoding, kNone,
       "<meta charset=latin1>é", NSUTF8StringEncoding},
      {"nor Windows Cyrillic", "<meta charset=cp1251>\xc3\xa9", NSUTF8StringEncoding, kNone,
       "<meta charset=cp1251>é", NSUTF8StringEncoding},
      {"but Windows Latin 1", "<meta charset=cp1252>\xc3\xa9", NSUTF8StringEncoding, kNone,
       "<meta charset=cp1252>Ã©", NSWindowsCP1252StringEncoding},
      {"and Latin 1 when UTF-8 is the default", "<meta charset=latin1>\xc3\xa9", kNone, NSUTF8StringEncoding,
       "<meta charset=latin1>Ã©", NSISOLatin1StringEncoding},
      {"the supplied one has a meaning for all", "<meta charset=cp1253>\xd2", NSWindowsCP1250StringEncoding,
       kNone, "<meta charset=cp1253>Ň", NSWindowsCP1250StringEncoding},
      {"the default one does not matter", "<meta charset=cp1253>\xd2", kNone, NSWindowsCP1250StringEncoding,
       "<meta charset=cp1253>\ufffd", NSWindowsCP1253StringEncoding},
      {"a relative of Shift JIS", "<meta charset=sjis>\xe9\xfd", kNone, NSISOLatin1StringEncoding,
       "<meta charset=sjis>蝮", NSJapaneseEUCStringEncoding},
      {"none of them", "<meta charset=sjis>\xe9 ", kNone, NSISOLatin1StringEncoding, "<meta charset=sjis>é ",
       NSISOLatin1StringEncoding},
      {"a relative of EUC-CN",
       "<meta charset=gb2312>\xbc\xf2\xbe"
       "W\xed"
       "\x93",
       kNone, NSUTF8StringEncoding, "<meta charset=gb2312>简網頁", kGBK},
      {"Big5",
       "<meta charset=big5>\xc1"
       "c",
       NSISOLatin1StringEncoding, kNone, "<meta charset=big5>繁", kBig5},
      {"not even Big5-HKSCS", "<meta charset=big5>\xa4 ", kNone, NSISOLatin1StringEncoding,
       "<meta charset=big5>¤ ", NSISOLatin1StringEncoding},
      {"damaged UTF-8", "\xc5\xbdlu\xc5\xa5ou\xc4\x8dk\xff", kNone, NSUTF8StringEncoding, "Žluťoučk\ufffd",
       NSUTF8StringEncoding},
      {"declared as damaged", "<meta charset=utf-8>\xc5\xbdlu\xc5\xa5\xe8", kNone, NSISOLatin1StringEncoding,
       "<meta charset=utf-8>Žluť\ufffd", NSUTF8StringEncoding},
      {"a mark of UTF-8", "\xef\xbb\xbf<meta charset=latin1>\xc3\xa9", NSISOLatin1StringEncoding, kNone,
       "<meta charset=latin1>é", NSUTF8StringEncoding},
      {"a mark alone", "\xef\xbb\xbf", kNone, NSUTF8StringEncoding, "", NSUTF8StringEncoding},
      {"a mark of UTF-16, cut", "\xfe\xff\0<\x20\xac\0"sv, NSUTF8StringEncoding, kNone, "<€",
       NSUnicodeStringEncoding},
      {"a mark of UTF-32", "\xff\xfe\0\0\x89\xf3\x01\0"sv, NSUTF8StringEncoding, kNone, "\U0001f389",
       NSUTF32StringEncoding},
      {"a false mark",
       "\xef\xbb\xbf"
       "caf\xe9",
       kNone, NSISOLatin1StringEncoding, "ï»¿café", NSISOLatin1StringEncoding},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.why);
    const DecodedMarkup decoded = decodeMarkup(dataOf(test.bytes), test.supplied, test.defaultEncoding);
    EXPECT_EQ(decoded.encoding, test.used);
    EXPECT_EQ(static_cast<bool>(decoded.string), test.used != kNone);
    EXPECT_EQ(decoded.string.UTF8String(), test.text);
  }
  EXPECT_FALSE(decodeMarkup(NSData(), NSUTF8StringEncoding, NSUTF8StringEncoding).string);
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
      {u"<meta charset=koi8-r>П"_ns, "<meta charset=koi8-r>\xf0", 0x80000000 | kCFStringEncodingKOI8_R},
      {u"<meta charset=koi8-r>日"_ns, "<meta charset=koi8-r>\xe6\x97\xa5", NSUTF8StringEncoding},
      {u"<meta charset=foo>é"_ns, "<meta charset=foo>\xc3\xa9", NSUTF8StringEncoding},
      {u"é"_ns, "\xc3\xa9", NSUTF8StringEncoding},
      {u""_ns, "", NSUTF8StringEncoding},
      {NSString::stringWithCharacters(u"a\xd800"), "a\xef\xbf\xbd", NSUTF8StringEncoding},
  };
  for (const auto &test : cases) {
    NSStringEncoding used = 0;
    const NSData data = markupData(test.markup, &used);
    EXPECT_TRUE(data);
    EXPECT_EQ(data.view(), test.bytes);
    EXPECT_EQ(used, test.used);
    EXPECT_EQ(markupData(test.markup), data);
  }
  EXPECT_FALSE(markupData(NSString()));
}

}  // namespace
}  // namespace nimbo
