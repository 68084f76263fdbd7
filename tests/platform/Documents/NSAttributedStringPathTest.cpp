// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/NSAttributedStringPath.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/WebKit/WebArchive.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

TEST(NSAttributedStringPath, ReadsEachKindOfDocument) {
  const TemporaryFolder folder;
  const NSURL address = NSURL::URLWithString(u"http://example.org/page"_ns);
  const WebResource page =
      WebResource::resourceWithData(dataOf("<p>saved"), address, u"text/html"_ns, u"koi8-r"_ns);
  const WebResource empty = WebResource::resourceWithData(dataOf(""), address, u"text/html"_ns);
  const auto archive = [](const WebResource &main, const WebResource &other) {
    return std::string(WebArchive::archiveWithMainResource(main, {other}).data().view());
  };
  const struct {
    const char *name;
    std::string content;
    const char *text;
    NSString type;
    ErrorCode code = ErrorCode::none;
  } cases[] = {
      {"a.txt", "plain", "plain", u"NSPlainText"_ns},
      {"a.html", "<p>on disk", "on disk\n", u"NSHTML"_ns},
      {"short.html", "x", "x\n", u"NSHTML"_ns},
      {"empty.html", "", "", u"NSHTML"_ns},
      {"named.txt", "{\\rtf1 rich}", "rich", u"NSRTF"_ns},
      {"named.rtf", "plain", "", NSString(), ErrorCode::damaged},
      {"a.webarchive", archive(page, empty), "saved\n", u"NSWebArchive"_ns},
      {"frames.webarchive", archive(WebResource(), page), "", NSString(), ErrorCode::damaged},
      {"none.webarchive", "plain", "", NSString(), ErrorCode::damaged},
      {"a.dat", std::string("\1\2\0\3\4\0\5\6\0", 9), "", NSString(), ErrorCode::unsupportedType},
      {"a.zip", "PK\3\4", "", NSString(), ErrorCode::unsupportedType},
  };
  for (const auto &test : cases) {
    DocumentAttributes facts;
    NSError error;
    const NSAttributedString text = initWithPath(folder.write(test.name, test.content), {}, &facts, &error);
    EXPECT_EQ(text ? text.string().UTF8String() : "", test.text) << test.name;
    EXPECT_EQ(static_cast<bool>(text), test.code == ErrorCode::none) << test.name;
    EXPECT_EQ(error.errorCode(), test.code) << test.name;
    EXPECT_EQ(facts.documentType, test.type) << test.name;
  }
}

TEST(NSAttributedStringPath, DecodesPagesAsItIsAsked) {
  const TemporaryFolder folder;
  const NSURL address = NSURL::URLWithString(u"http://example.org/page"_ns);
  const NSData archive =
      WebArchive::archiveWithMainResource(
          WebResource::resourceWithData(dataOf("<a href=x>raw"), address, u"text/html"_ns, u"koi8-r"_ns))
          .data();
  DocumentReading reading;
  reading.decodeMarkup = [&](const NSData &data, const NSString &encoding, const NSURL &url) {
    EXPECT_EQ(data.view(), "<a href=x>raw");
    EXPECT_EQ(encoding, u"koi8-r"_ns);
    EXPECT_EQ(url, address);
    return u"<p><a href=y>decoded"_ns;
  };
  const NSString path = folder.write("a.webarchive", archive.view());
  const NSAttributedString text = initWithPath(path, reading);
  EXPECT_EQ(text.string().UTF8String(), "decoded\n");
  EXPECT_EQ(text.attributesAtIndex(0)->link, u"http://example.org/y"_ns);
  reading.decodeMarkup = [](const NSData &, const NSString &, const NSURL &) { return NSString(); };
  NSError error;
  EXPECT_FALSE(initWithPath(path, reading, nullptr, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
  const NSData empty =
      WebArchive::archiveWithMainResource(WebResource::resourceWithData(dataOf(""), address, u"text/html"_ns))
          .data();
  error = {};
  EXPECT_TRUE(initWithPath(folder.write("empty.webarchive", empty.view()), reading, nullptr, &error))
      << "a page without bytes is not decoded";
  EXPECT_FALSE(error);
}

TEST(NSAttributedStringPath, RefusesWhatIsTooLargeOrNotThere) {
  const TemporaryFolder folder;
  NSError error;
  EXPECT_FALSE(initWithPath(folder.string("none.txt"), {}, nullptr, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::noSuchFile);
  error = {};
  EXPECT_FALSE(initWithPath(folder.string(""), {}, nullptr, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unreadable);
  EXPECT_EQ(error.localizedFailureReason, u"the file is a folder"_ns);
  const NSString path = folder.write("a.txt", "x");
  std::filesystem::resize_file(folder.path() / "a.txt", kMaximumDocumentBytes + 1);
  error = {};
  EXPECT_FALSE(initWithPath(path, {}, nullptr, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
}

}  // namespace
}  // namespace nimbo
