// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/WebArchive.hpp"

#include <gtest/gtest.h>

#include "tests/support/ExactBuffer.hpp"
#include "tests/support/WebArchiveSamples.hpp"

namespace nimbo {
namespace {

const NSString kPage = u"http://example.org/a?b=c"_ns;

NSDictionary fullList() {
  const NSDictionary image = listOfResource({"\0\xff", 2}, u"http://example.org/i.png"_ns, u"image/png"_ns);
  NSDictionary named = listOfResource("<p>frame", u"http://example.org/f"_ns);
  named.setObject(u"left"_ns, u"WebResourceFrameName"_ns);
  return listOfArchive(listOfResource("<p>page", kPage, u"text/html"_ns, u"UTF-8"_ns), NSArray{image},
                       NSArray{listOfArchive(named), listOfArchive({}, NSArray{image})});
}

TEST(WebArchive, ReadsBinaryAndXML) {
  for (const auto format : {NSPropertyListFormat::binary, NSPropertyListFormat::xml}) {
    NSError error;
    const WebArchive archive = WebArchive::archiveWithData(bytesOfList(fullList(), format), &error);
    ASSERT_TRUE(archive);
    EXPECT_FALSE(error);
    const WebResource page = archive.mainResource();
    EXPECT_EQ(page.data().view(), "<p>page");
    EXPECT_EQ(page.URL().absoluteString(), kPage);
    EXPECT_EQ(page.MIMEType(), u"text/html"_ns);
    EXPECT_EQ(page.textEncodingName(), u"UTF-8"_ns);
    EXPECT_FALSE(page.frameName());
    ASSERT_EQ(archive.subresources().size(), 1u);
    EXPECT_EQ(archive.subresources()[0].data().view(), std::string_view("\0\xff", 2));
    ASSERT_EQ(archive.subframeArchives().size(), 2u);
    EXPECT_EQ(archive.subframeArchives()[0].mainResource().frameName(), u"left"_ns);
    EXPECT_FALSE(archive.subframeArchives()[1].mainResource());
  }
}

TEST(WebArchive, ReadsWhatItWrites) {
  const WebArchive archive = archiveOfList(fullList());
  const NSData data = archive.data();
  EXPECT_TRUE(data.view().starts_with("bplist00"));
  EXPECT_EQ(WebArchive::archiveWithData(data), archive);
  EXPECT_FALSE(WebArchive::archiveWithData(archive.subframeArchives()[0].data()) == archive);
  EXPECT_TRUE(WebArchive(archive).identicalTo(archive));
  EXPECT_FALSE(WebArchive::archiveWithData(data).identicalTo(archive));
  EXPECT_FALSE(WebArchive().data());
}

TEST(WebArchive, IsEqualInAllItsParts) {
  const WebArchive archive = archiveOfList(fullList());
  const WebResource page = archive.mainResource();
  const NSData data = page.data();
  const NSURL url = page.URL();
  const NSString type = page.MIMEType(), encoding = page.textEncodingName(), x = u"x"_ns;
  const auto make = WebResource::resourceWithData;
  EXPECT_EQ(make(data, url, type, encoding, NSString()), page);
  for (const WebResource &other :
       {make(NSData::dataWithBytes("x", 1), url, type, encoding, NSString()),
        make(data, NSURL(), type, encoding, NSString()), make(data, url, x, encoding, NSString()),
        make(data, url, type, x, NSString()), make(data, url, type, encoding, x)})
    EXPECT_FALSE(other == page);
  const std::vector<WebResource> parts(archive.subresources().begin(), archive.subresources().end());
  const std::vector<WebArchive> frames(archive.subframeArchives().begin(), archive.subframeArchives().end());
  EXPECT_EQ(WebArchive::archiveWithMainResource(page, parts, frames), archive);
  for (const WebArchive &other : {WebArchive::archiveWithMainResource(parts[0], parts, frames),
                                  WebArchive::archiveWithMainResource(page, {}, frames),
                                  WebArchive::archiveWithMainResource(page, parts)})
    EXPECT_FALSE(other == archive);
}

TEST(WebArchive, PassesOverWhatIsNone) {
  const NSDictionary page = listOfResource("x", kPage);
  NSDictionary withoutData = page, textAsData = page, oddParts = page;
  withoutData.removeObjectForKey(u"WebResourceData"_ns);
  textAsData.setObject(u"x"_ns, u"WebResourceData"_ns);
  oddParts.setObject(7, u"WebResourceURL"_ns);
  oddParts.setObject(NSArray{page}, u"WebResourceMIMEType"_ns);
  const WebArchive odd = archiveOfList(
      listOfArchive(oddParts, NSArray{1, withoutData, textAsData, page, u"x"_ns},
                    NSArray{page, NSDictionary::dictionary(), true, listOfArchive(page), NSArray::array()}));
  EXPECT_EQ(odd.mainResource().data().view(), "x");
  EXPECT_FALSE(odd.mainResource().URL());
  EXPECT_FALSE(odd.mainResource().MIMEType());
  EXPECT_EQ(odd.subresources().size(), 1u);
  EXPECT_EQ(odd.subframeArchives().size(), 1u);
  EXPECT_FALSE(archiveOfList(listOfArchive(NSArray{page}, page, NSArray{listOfArchive(page)})).mainResource());

  for (const id &none : {id(NSDictionary{{u"a"_ns, 1}}), id(NSArray{fullList()}), id(u"text"_ns),
                         id(listOfArchive(withoutData, NSArray::array(), page))}) {
    NSError error;
    EXPECT_FALSE(archiveOfList(none, &error));
    EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
  }
}

TEST(WebArchive, HasLimits) {
  const auto innermost = [](WebArchive archive) {
    while (!archive.subframeArchives().empty()) archive = WebArchive(archive.subframeArchives()[0]);
    return archive;
  };
  const NSDictionary page = listOfArchive(listOfResource("x", kPage));
  NSError error;
  EXPECT_TRUE(
      innermost(archiveOfList(listOfFrames(WebArchive::kMaximumDepth - 1, page), &error)).mainResource());
  EXPECT_FALSE(error);
  const auto tooDeep = listOfFrames(WebArchive::kMaximumDepth, listOfArchive(listOfResource("x", kPage)));
  EXPECT_FALSE(archiveOfList(tooDeep, &error)) << "nothing but frames is left";
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
  const WebArchive cut =
      archiveOfList(listOfArchive(listOfResource("x", kPage), {},
                                  NSArray{tooDeep, listOfArchive(listOfResource("y", kPage))}),
                    &error);
  EXPECT_TRUE(cut.mainResource());
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);

  NSArray many;
  for (std::uint32_t i = 0; i < WebArchive::kMaximumParts; ++i) many.addObject(listOfResource("x", kPage));
  error = {};
  const WebArchive large = archiveOfList(listOfArchive({}, many), &error);
  EXPECT_EQ(large.subresources().size(), WebArchive::kMaximumParts - 1);
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);

  WebArchive nested = WebArchive::archiveWithMainResource(large.subresources()[0]);
  for (std::uint32_t i = 1; i < WebArchive::kMaximumDepth; ++i)
    nested = WebArchive::archiveWithMainResource(WebResource(), {}, {nested});
  EXPECT_TRUE(WebArchive::archiveWithData(nested.data()) == nested);
  EXPECT_FALSE(WebArchive::archiveWithMainResource(WebResource(), {}, {nested}));
  EXPECT_FALSE(WebArchive::archiveWithMainResource(WebResource(), {WebResource()}, {WebArchive()}));
}

/// Two frames with the same content in each of 40 levels, which a binary list holds in a few bytes.
TEST(WebArchive, DoesNotUnfoldWhatNestsItself) {
  NSDictionary list = listOfArchive(listOfResource("x", kPage));
  for (int i = 0; i < 40; ++i) list = listOfArchive({}, {}, NSArray{list, list});
  // By hand: one array of two references to the dictionary, whose only value is the array.
  const std::string_view circle(
      "bplist00\xd1\x01\x02\x5f\x10\x13WebSubframeArchives\xa2\x00\x00"
      "\x08\x0b\x21\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x24",
      8 + 3 + 22 + 3 + 3 + 32);
  NSError error;
  EXPECT_FALSE(WebArchive::archiveWithData(NSData::dataWithBytes(circle.data(), circle.size()), &error));
  EXPECT_TRUE(error);
  EXPECT_FALSE(bytesOfList(list)) << "the writer unfolds, and finds too many values";
}

TEST(WebArchive, CutListsAreNone) {
  const NSData data = bytesOfList(fullList());
  for (std::uint32_t length = 0; length < data.length(); ++length) {
    NSError error;
    EXPECT_FALSE(WebArchive::archiveWithData(data.subdataWithRange({0, length}), &error));
    EXPECT_TRUE(error);
  }
}

}  // namespace
}  // namespace nimbo
