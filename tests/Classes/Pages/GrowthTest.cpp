// SPDX-License-Identifier: Apache-2.0
//
// Eight times the input must not be much more than eight times the work: no document may hang who reads it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <ostream>
#include <string>
#include <string_view>

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "Classes/Pages/NSString+HtmlLinkThumbsAndTitles.hpp"
#include "Classes/Pages/PageContents.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/PlainText/PlainTextHandler.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+Sorting.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kUnits = 8'000;
constexpr std::uint32_t kTimes = 8;
/// Between what linear work takes when its input leaves the caches, and the 64 of quadratic work.
constexpr double kMostWork = 24;
constexpr int kRounds = 5;
/// What the first touch of new memory may take, which small inputs do not need.
constexpr double kSecondsOfMemory = 20e-6;

/// What an input repeats, behind what stands in front of "|".
constexpr std::u16string_view kInputs[] = {
    // clang-format off
    u"| ", u"|a", u"|a ", u"x| \n", u"|\r\n", u"|\u00e4", u"e|\u0301", u"|\xd800", u"|<", u"|<a ",
    u"|<a href=\"", u"|<a href='x' ", u"<a |b=c ", u"|<!--", u"|<!-- -->", u"|<![CDATA[", u"|<?xml ", u"|</",
    u"|</a>", u"|<p>", u"|<div>a ", u"|<table><tr><td>", u"|<li>a</li>", u"|<b>a</b>\n", u"|<script>",
    u"|<script><!--", u"|<script></script>", u"|<style>a</style>", u"|<title>", u"|<textarea>", u"|<pre>\n",
    u"|<select><option>", u"|<object>", u"|<object></object>a", u"|<img alt=a>",
    u"|<div style=\"display:none\">", u"|<span hidden>a</span>", u"|<meta charset=a>", u"|<meta name=a content=b>", u"|<a href=a>", u"<a href=b>|<a href=a>ab</a>",
    u"|<style>@import</style>", u"|<link rel='shortcut icon'>",
    u"|<!--googleoff: all-->", u"|&", u"|&amp;", u"|&#", u"|&#x41;", u"|&euml", u"|/", u"/|a/", u"/|../",
    u"/|a/../", u"http://a/|../", u"http://a/|a;b/", u"http://a/?|a=b&", u"http://a/?|&",
    u"http://a/?|utm_source=a&", u"http://a/?|sid=a&", u"http://a/?|a=&", u"http://|a.", u"http://a/#|#",
    u"|%41", u"http://a/|%zz", u"|http://", u"a|:", u"|a@", u"|1", u"|1 ", u"|\"", u"\"|a\\", u"|...", u"|> ",
    u"|\t", u"|a=b\n", u"|(", u"(|a,", u"{|a=b;", u"<|00 ", u"/*|/*", u"<plist><array>|<true/>",
    u"<plist>|<dict><key>a</key>", u"<plist><string>|&amp;<![CDATA[a]]>",
    // clang-format on
};

struct Work {
  const char *name;
  void (*run)(const NSString &input);
};

void PrintTo(const Work &work, std::ostream *stream) {
  *stream << work.name;
}

NSString copyOf(const NSString &string) {
  return NSString::stringWithCharacters(string.view());
}

NSData dataOf(const NSString &string) {
  const std::string bytes = string.UTF8String();
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

template <auto kEdit>
void edit(const NSString &input) {
  NSMutableString string(input);
  kEdit(string);
}

constexpr Work kWorks[] = {
    {"ScanTags", [](const NSString &s) { scanTags(s, [](const TagShape &tag) { tag.isNamed("body"); }); }},
    {"PlainText", [](const NSString &s) { stringByConvertingHtml2PlainText(s); }},
    {"ReformattedText", [](const NSString &s) { stringByConvertingHtml2ReformattedPlainText(s); }},
    {"SimplifiedText", [](const NSString &s) { stringByConvertingHtml2SimplifiedPlainText(s); }},
    {"IndexedText",
     [](const NSString &s) {
       const PlainTextOptions options{
           .nonUmlauted = true, .onlyBody = true, .removeJunk = true, .googleTags = true};
       _convertHtml2PlainTextUsingHandler(s, PlainTextHandler, options, nullptr);
     }},
    {"PageContents",
     [](const NSString &s) { contentsOfPage(s, {.preservingMeaning = true, .withDetails = true}); }},
    {"PageFacts", [](const NSString &s) { htmlMetaAttributes(s), htmlFavIcon(s), htmlMetaDescription(s); }},
    {"PageLinks",
     [](const NSString &s) { htmlLinksContaining(s, u"ab"_ns, true, nullptr), htmlStylesheetsAndScripts(s); }},
    {"LinkThumbs",
     [](const NSString &s) {
       NSDictionary thumbs, titles;
       getLinkThumbs(s, &thumbs, &titles, NSURL(), true);
     }},
    {"StripTags", [](const NSString &s) { stripTags(s); }},
    {"StripTag", [](const NSString &s) { stripTag(s, "A"); }},
    {"StripAttributes", [](const NSString &s) { stripAttributesOfTag(s, "A"); }},
    {"StripBodies",
     [](const NSString &s) {
       stripTagBodies(s, {u"<div"_ns, u"<table"_ns, u"<script"_ns});
     }},
    {"StripAllButBodies",
     [](const NSString &s) {
       stripTagBodiesExcept(s, {u"<div"_ns, u"<script"_ns});
     }},
    {"StripObjects", [](const NSString &s) { stripObjects(s); }},
    {"DecodeEntities", [](const NSString &s) { stringByConvertingEntitiesToCharactersNonUmlauted(s, true); }},
    {"EncodeEntities", [](const NSString &s) { stringByConvertingCharactersToEntities(s); }},
    {"DecodeMarkup", [](const NSString &s) { decodeMarkup(dataOf(s), 0, NSWindowsCP1252StringEncoding); }},
    {"DetectEncoding", [](const NSString &s) { stringWithDetectedEncoding(s.UTF8String()); }},
    {"PropertyList",
     [](const NSString &s) {
       const id list = NSPropertyListSerialization::propertyListFromData(dataOf(s));
       NSPropertyListSerialization::dataWithPropertyList(list, NSPropertyListFormat::xml);
     }},
    {"PropertyListOfKeys",
     [](const NSString &s) {
       NSDictionary list;
       for (std::uint32_t i = 0; i < s.length(); i += 50)
         list.setObject(i, NSString::stringWithUTF8String(std::to_string(i)));
       for (const auto format : {NSPropertyListFormat::xml, NSPropertyListFormat::binary})
         NSPropertyListSerialization::propertyListFromData(
             NSPropertyListSerialization::dataWithPropertyList(list, format));
     }},
    {"NormalizeURL", [](const NSString &s) { normalizedStringURL(s); }},
    {"SimplifyURL", [](const NSString &s) { simplifiedStringURL(s); }},
    {"QueryParams", [](const NSString &s) { queryParams(s), queryParamNamed(s, u"z"_ns); }},
    {"EscapeURL", [](const NSString &s) { stringByAddingStandardPercentEscapesToURL(s); }},
    {"UnescapeURL", [](const NSString &s) { stringByReplacingStandardPercentEscapesOfURL(s); }},
    {"URL", [](const NSString &s) { invertedHost(NSURL::URLWithString(s).standardizedURL()); }},
    {"URLOfText", [](const NSString &s) { simplifiedStringURL(URLWithStringOrPath(s)); }},
    {"RelativeURL",
     [](const NSString &s) { URLRelativeTo(s, NSURL::URLWithString(u"http://a.example/b/c"_ns)); }},
    {"Paths",
     [](const NSString &s) { standardizedPath(s), relativePathToDirectory(s, u"/a/b"_ns), HFSPath(s); }},
    {"FileNames",
     [](const NSString &s) { stringByCreatingFileSystemRepresentation(s), validPathExtension(s); }},
    {"Base64", [](const NSString &s) { decodebase64(s), decodebase64(encodebase64(s)); }},
    {"NaturalOrder", [](const NSString &s) { compareWithLastPathComponent(s, copyOf(s)); }},
    {"OrderOfPaths", [](const NSString &s) { comparePaths(s, copyOf(s)); }},
    {"LocalizedOrder", [](const NSString &s) { sortLocalizedCaseInsensitiveAscending(s, copyOf(s)); }},
    {"Lines", [](const NSString &s) { lines(s), configLines(s), configValueForKey(s, u"z"_ns); }},
    {"Words", [](const NSString &s) { lastWord(s), getWordAtIndex(s, 4000), getLinkAtIndex(s, 4000); }},
    {"Numbers",
     [](const NSString &s) { countNumbers(s), containsNumberWithNDigits(s, 3), isMashedWordString(s); }},
    {"Mailing", [](const NSString &s) { reformattedMailing(s); }},
    {"Normalize", [](const NSString &s) { fixedAndNormalizedString(s), nonUmlautedNormalizedString(s); }},
    {"Trim", [](const NSString &s) { stringByTrimmingEllipsis(s), stringByTrimmingSpacesAndFeeds(s, true); }},
    {"Remove", [](const NSString &s) { stringByRemovingMultipleSpacesAndFeeds(s, true); }},
    {"Reformat", [](const NSString &s) { reformattedStringByRemovingCharactersOfString(s, u"a/"_ns); }},
    {"Replace", [](const NSString &s) { stringByReplacingString(s, u"a"_ns, u"bcd"_ns); }},
    {"EncodeTabs", edit<[](NSMutableString &s) { encodeTabs(s, 4); }>},
    {"DecodeTabs", edit<[](NSMutableString &s) { decodeTabs(s, 4); }>},
    {"RemoveLinks", edit<removeLinks>},
    {"RemoveAttachments", edit<removeAttachments>},
    {"RemoveAttribute", edit<[](NSMutableString &s) { removeAttribute(s, u"b"_ns); }>},
};

NSString inputOf(std::u16string_view input, std::uint32_t units) {
  const std::size_t bar = input.find(u'|');
  NSMutableString string;
  string.append(input.substr(0, bar));
  while (string.length() < units) string.append(input.substr(bar + 1));
  return std::move(string).string();
}

/// Of this thread, so that others do not count.
double secondsOf(const Work &work, const NSString &input) {
  const auto now = [] {
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work.run(input);
  return now() - start;
}

class Growth : public testing::TestWithParam<Work> {};

TEST_P(Growth, IsThatOfTheInput) {
  for (const std::u16string_view each : kInputs) {
    const NSString small = inputOf(each, kUnits), large = inputOf(each, kTimes * kUnits);
    double limit = HUGE_VAL, seconds = HUGE_VAL;
    // The best of several rounds on either side; linear work ends in the first.
    for (int round = 0; round < kRounds && (round == 0 || seconds > limit); ++round) {
      for (int i = 0; i < 3; ++i)
        limit = std::min(limit, kMostWork * (secondsOf(GetParam(), small) + kSecondsOfMemory));
      seconds = std::min(seconds, secondsOf(GetParam(), large));
    }
    EXPECT_LE(seconds, limit) << NSString::stringWithCharacters(each).UTF8String();
  }
}

INSTANTIATE_TEST_SUITE_P(Text, Growth, testing::ValuesIn(kWorks),
                         [](const auto &work) { return std::string(work.param.name); });

}  // namespace
}  // namespace nimbo
