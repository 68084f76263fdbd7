// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/WebKit/WebArchive+SearchableText.hpp"
#include "Classes/WebKit/WebArchive+WebKitAdditions.hpp"
#include "Classes/WebKit/WebResource+WebKitAdditions.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/WebArchiveSamples.hpp"

namespace nimbo {
namespace {

NSURL url(std::string_view name) {
  return NSURL::URLWithString(NSString::stringWithUTF8String("http://example.org/" + std::string(name)));
}

NSDictionary frame(std::string_view bytes, std::string_view name, const id &frames = {}) {
  return listOfArchive(listOfResource(bytes, url(name).absoluteString()), {}, frames);
}

/// A page with an image and two frames, of which the first holds a third one.
NSDictionary pageWithFrames() {
  const id image = listOfResource("image", url("i.png").absoluteString(), u"image/png"_ns);
  return listOfArchive(
      listOfResource("<title>T</title><body>P\xc3\xa4ge<br>&amp;", url("page").absoluteString(),
                     u"text/html"_ns, u"UTF-8"_ns),
      NSArray{image, listOfResource("second", url("i.png").absoluteString(), u"image/png"_ns)},
      NSArray{frame("<body>one", "one", NSArray{frame("<body>three", "three")}), frame("<body>two", "two")});
}

TEST(WebKitAdditions, FindsWhatHasAURL) {
  const WebArchive archive = archiveOfList(pageWithFrames());
  EXPECT_TRUE(subArchiveForURL(archive, url("page")).identicalTo(archive));
  EXPECT_EQ(subArchiveForURL(archive, url("three")).mainResource().data().view(), "<body>three");
  EXPECT_FALSE(subArchiveForURL(archive, url("i.png")));
  EXPECT_EQ(subresourceForURL(archive, url("i.png")).data().view(), "image");
  EXPECT_EQ(subresourceForURL(archive, url("page")), archive.mainResource());
  EXPECT_EQ(subresourceForURL(archive, url("two")).data().view(), "<body>two");
  EXPECT_FALSE(subresourceForURL(archive, url("missing")));
  const WebArchive nameless = archiveOfList(listOfArchive(listOfResource("x", NSString())));
  EXPECT_FALSE(subArchiveForURL(nameless, NSURL()));
  EXPECT_FALSE(subresourceForURL(nameless, NSURL()));
}

TEST(WebKitAdditions, DecodesMarkupAlone) {
  const auto source = [](std::string_view bytes, const NSString &type, const NSString &encoding = {}) {
    return documentSource(WebResource::resourceWithData(NSData::dataWithBytes(bytes.data(), bytes.size()),
                                                        url("x"), type, encoding));
  };
  EXPECT_EQ(source("\xe4", u"text/html"_ns), u"\u00e4"_ns);
  EXPECT_EQ(source("\xe1", u"application/xhtml+xml"_ns, u"windows-1251"_ns), u"\u0431"_ns);
  EXPECT_EQ(source("<meta charset=koi8-r>\xc2", u"TEXT/HTML; charset=x"_ns), u"<meta charset=koi8-r>\u0431"_ns);
  for (const NSString &type : {u"text/plain"_ns, u"image/png"_ns, NSString()}) EXPECT_FALSE(source("a", type));
  EXPECT_FALSE(source("", u"text/html"_ns));
  EXPECT_FALSE(documentSource(WebResource()));
}

TEST(SearchableText, HasTheTextOfEveryFrame) {
  EXPECT_EQ(searchableText(archiveOfList(pageWithFrames())), u"\n\nP\u00e4ge\n&\n\none\n\nthree\n\ntwo"_ns);
  const NSDictionary framesOnly = listOfArchive({}, {}, NSArray{frame("<body>a", "a"), frame("<body>b", "b")});
  EXPECT_EQ(searchableText(archiveOfList(framesOnly)), u"\n\na\n\nb"_ns);
  EXPECT_EQ(searchableText(WebArchive()), NSString::string());
  NSMutableString text(u"before"_ns);
  appendSearchableTextTo(archiveOfList(framesOnly), text);
  EXPECT_EQ(std::move(text).string(), u"before\n\na\n\nb"_ns);
  NSString source = u"before"_ns;
  EXPECT_EQ(searchableTextAndSource(archiveOfList(framesOnly), &source), u"\n\na\n\nb"_ns);
  EXPECT_FALSE(source);
}

TEST(SearchableText, FramesHaveALimit) {
  const std::string large = "<body>large<!--" + std::string(kMaximumSearchableMarkupLength / 2, ' ') + "-->";
  const id list = listOfArchive(listOfResource("<body>page", NSString()), {},
                                NSArray{frame(large, "a"), frame(large, "b"), frame("<body>last", "c")});
  NSError error;
  EXPECT_EQ(searchableText(archiveOfList(list), &error), u"\n\npage\n\nlarge\n\nlarge"_ns);
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
}

TEST(SearchableText, OutParametersAreSetAlways) {
  const TemporaryFolder folder;
  const auto path = folder.write("a.webarchive", bytesOfList(pageWithFrames()).view());
  const NSString markup = u"<title>T</title><body>P\u00e4ge<br>&amp;"_ns;
  NSURL base = url("before");
  NSString source = u"before"_ns;
  EXPECT_TRUE(searchableTextOfFile(path, &base, &source));
  EXPECT_EQ(base, url("page"));
  EXPECT_EQ(source, markup);
  EXPECT_EQ(documentSourceOfFile(path), markup);
  EXPECT_FALSE(searchableTextOfFile(folder.string("missing"), &base, &source));
  EXPECT_FALSE(base || source);
  base = url("before");
  EXPECT_FALSE(documentSourceOfFile(folder.write("empty", ""), &base));
  EXPECT_FALSE(base);
}

INSTANTIATE_TEST_SUITE_P(WebKit, FileReaders,
                         testing::Values(FileReader{"SearchableText", "leaf.webarchive",
                                                    std::string(bytesOfList(pageWithFrames()).view()),
                                                    [](const NSString &path, NSError *error) -> id {
                                                      return searchableTextOfFile(path, nullptr, nullptr,
                                                                                  error);
                                                    },
                                                    true, true}),
                         nameOfFileReader);

}  // namespace
}  // namespace nimbo
