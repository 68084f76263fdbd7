// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/PasteboardConversion.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/AppKit/Pasteboard/PasteboardTypes.hpp"

namespace nimbo::detail {
namespace {

using namespace std::string_view_literals;
using enum TargetForm;

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

TEST(PasteboardConversion, ReadsWhateverComes) {
  constexpr struct {
    TargetForm form;
    std::string_view bytes, read;
  } kCases[] = {
      {text, "a\xc3\xa4"sv, "a\xc3\xa4"sv},
      {text, "a\xe4\x80"sv, "a\xc3\xa4\xc2\x80"sv},
      {text, "\xef\xbb\xbf<b>"sv, "<b>"sv},
      {text, "\xef\xbb\xbf\xef\xbb\xbf-"sv, "\xef\xbb\xbf-"sv},
      {text, "\xfe\xff\0a\xd8\x3d\xde\0"sv, "a\xf0\x9f\x98\x80"sv},
      {text, "\xff\xfe"sv, ""sv},
      {text, "\xff\xfe\x3d\xd8\x61"sv, "\xef\xbf\xbd"sv},
      {data, "\xff\xfe\0"sv, "\xff\xfe\0"sv},
      {URIList, "#a\n\r\n \tb:c \rd:e"sv, "b:c"sv},
      {URIList, "b:c\0d"sv, "b:c"sv},
      {URIList, "#a\r\n"sv, "nil"sv},
      {URIList, ""sv, "nil"sv},
      {URLLine, "a\0:\0\n\0t\0"sv, "a:"sv},
      {titleLine, "a\0:\0\n\0t\0\0\0"sv, "t"sv},
      {titleLine, "\xfe\xff\0a\0\n\0\xfc"sv, "\xc3\xbc"sv},
      {titleLine, "a\0\r\0\n\0t\0"sv, "t"sv},
      {titleLine, "a\0:\0\n\0"sv, ""sv},
      {titleLine, "a\0:\0"sv, "nil"sv},
      {titleLine, "a\0:\0\0\0"sv, "nil"sv},
      {titleLine, "\n"sv, "nil"sv},
  };
  for (const auto &one : kCases) {
    NSError error;
    const NSData read = dataFromTarget({NSStringPboardType, u"t"_ns, one.form}, dataOf(one.bytes), &error);
    EXPECT_EQ(read ? read.view() : "nil"sv, one.read) << one.bytes;
    EXPECT_EQ(static_cast<bool>(read), !error);
  }
}

TEST(PasteboardConversion, WritesWhatOthersExpect) {
  const auto written = [](TargetForm form, std::string_view bytes) {
    return std::string(dataForTarget({NSStringPboardType, u"t"_ns, form}, dataOf(bytes)).view());
  };
  EXPECT_EQ(written(latin1, "\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80z"), "\xfc??z");
  EXPECT_EQ(written(URIList, "a:b"), "a:b\r\n");
  EXPECT_EQ(URLLines(dataOf("a:b"), NSData()), URLLines(dataOf("a:b"), dataOf("a:b")));
  const NSAttributedString bold = initWithRTF(dataOf("{\\rtf1 plain {\\b bold}}"));
  const NSData rtf =
      dataForTarget({NSRTFDPboardType, u"text/rtf"_ns, plainRTF}, RTFDFromRange(bold, {0, bold.length()}));
  EXPECT_EQ(initWithRTF(rtf), bold);
  EXPECT_FALSE(dataForTarget({NSRTFDPboardType, u"text/rtf"_ns, plainRTF}, dataOf("none")));
}

TEST(PasteboardTargets, AreOfferedOnceAndMadeOfTheBestType) {
  const NSString png = u"Apple PNG pasteboard type"_ns, apple = u"Apple URL pasteboard type"_ns;
  const struct {
    std::vector<NSString> types;
    NSString target;
    std::vector<NSString> sources;
  } kCases[] = {
      {{NSTIFFPboardType}, u"image/png"_ns, {NSTIFFPboardType}},
      {{NSTIFFPboardType, png}, u"image/png"_ns, {png}},
      {{png, NSTIFFPboardType}, u"image/png"_ns, {png}},
      {{NSRTFDPboardType, NSRTFPboardType}, u"text/rtf"_ns, {NSRTFPboardType}},
      {{u"x/y"_ns, u"x/y"_ns}, u"x/y"_ns, {u"x/y"_ns, u"x/y"_ns}},
      {{NSTabularTextPboardType}, u"text/csv"_ns, {}},
      {{apple, u"public.url"_ns, NSURLPboardType},
       u"text/uri-list"_ns,
       {NSURLPboardType, apple, u"public.url"_ns}},
  };
  for (const auto &[types, target, sources] : kCases) {
    std::vector<NSString> found;
    for (const PasteboardOffer &offer : offersOfTypes(types))
      if (offer.target == target)
        for (const PasteboardTarget &source : offer.sources) found.push_back(source.type);
    EXPECT_EQ(found, sources) << target.UTF8String();
  }
}

TEST(PasteboardTargets, AreReadAsTypesInTheirOrder) {
  const NSString targets[] = {u"TEXT/HTML; charset=\"utf-8\""_ns, u"text/Plain; charset=UTF-8"_ns, u"STRING"_ns,
                              u"string"_ns, u"text/rtf"_ns};
  EXPECT_EQ(typesOfTargets(targets),
            (std::vector{targets[0], NSStringPboardType, u"string"_ns, NSRTFPboardType}));
}

}  // namespace
}  // namespace nimbo::detail
