// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "helper/HTMLImportOptions.hpp"
#include "helper/LocalRequestFilter.hpp"
#include "helper/QuiverleafHelper.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/WebKit/NSAttributedStringHTML.hpp"
#include "tests/support/LoopbackServer.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/WebArchiveSamples.hpp"

namespace nimbo {
namespace {

NSString text(std::string_view utf8) {
  return NSString::stringWithUTF8String(utf8);
}

NSData bytes(std::string_view content) {
  return NSData::dataWithBytes(content.data(), content.size());
}

/// The smallest picture that browsers show: one pixel.
constexpr std::string_view kPicture(
    "GIF89a\1\0\1\0\200\0\0\0\0\0\377\377\377!\371\4\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 43);

class RichTextOperationsTest : public testing::Test {
 protected:
  static std::string shown(const NSData &rtfd) {
    return rtfd ? initWithRTFD(rtfd).string().UTF8String() : "nil";
  }
  std::string shownDocument(const NSString &path) {
    return shown(helper.attributedStringWithContentsOfFile(path, &error).objectForKey(u"Rtfd"_ns).data());
  }
  static int attachments(const NSData &rtfd) {
    const NSAttributedString string = initWithRTFD(rtfd);
    int count = 0;
    for (const AttributeRun &run : string.runs()) count += run.attributes->attachment ? 1 : 0;
    return count;
  }
  std::string reason() const {
    return error.localizedFailureReason ? error.localizedFailureReason.UTF8String() : "";
  }

  TemporaryFolder folder;
  QuiverleafHelper helper;
  NSError error;
};

TEST_F(RichTextOperationsTest, OptionsHaveWhatTheWebEngineCanUse) {
  const auto filter = makeShared<LocalRequestFilter>();
  const NSString file = folder.write("page.html", "");
  const auto base = [](std::string_view url) {
    return HTMLImportOptions({}, NSURL::URLWithString(text(url))).objectForKey(NSBaseURLDocumentOption);
  };
  const NSDictionary both = {{u"UseWebKit"_ns, true}, {u"Timeout"_ns, 15.0F}};
  EXPECT_EQ(HTMLImportOptions({}, NSURL()), both);
  EXPECT_EQ(HTMLImportOptions(filter, NSURL()).objectForKey(u"WebResourceLoadDelegate"_ns), id(filter));
  EXPECT_EQ(base("http://a.org/b"), id(u"http://a.org/b"_ns));
  EXPECT_EQ(base("feed://a.org/b"), id(u"http://a.org/b"_ns));
  EXPECT_EQ(base("feed:http://a.org/b"), id(u"http://a.org/b"_ns));
  EXPECT_EQ(base("ftp://a.org/b"), id());
  EXPECT_EQ(base("file:///no/such/file"), id());
  EXPECT_TRUE(base(NSURL::fileURLWithPath(file).absoluteString().UTF8String()));
}

TEST_F(RichTextOperationsTest, PagesLoadWhatIsNear) {
  LoopbackServer server;
  server.answer("/near.gif", "HTTP/1.0 200 OK\r\nContent-Type: image/gif\r\n\r\n" + std::string(kPicture));
  server.answer("/away.gif", "HTTP/1.0 302 Found\r\nLocation: http://198.51.100.1/far.gif\r\n\r\n");
  server.answer("/style.css", "HTTP/1.0 200 OK\r\nContent-Type: text/css\r\n\r\n.no { display: none }");
  const std::string page =
      "<link rel=stylesheet href=style.css><p>One <b>two</b><p class=no>three<p><img src=near.gif>"
      "<img src=away.gif alt=away><img src='http://198.51.100.1/far.gif' alt=far>"
      "<img src='data:image/gif;base64,R0lGODlhAQABAAAAACw='>";
  const NSString base = text(server.url("/"));
  const NSData rtfd = helper.RTFDWithHTML(bytes(page), base, false, &error);
  const std::string content = shown(rtfd);
  EXPECT_TRUE(content.starts_with("One two\n")) << content;
  EXPECT_EQ(content.find("three"), std::string::npos);
  EXPECT_NE(content.find("away"), std::string::npos) << "the text that stands for the picture";
  EXPECT_EQ(attachments(rtfd), 2);
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
  EXPECT_TRUE(reason().starts_with("2 parts of the page were not loaded: ")) << reason();
  EXPECT_NE(reason().find("http://198.51.100.1/far.gif (the request was refused)"), std::string::npos)
      << reason();
  EXPECT_EQ(server.requests("/near.gif"), 1);
}

TEST_F(RichTextOperationsTest, PagesSayBrieflyWhatIsMissing) {
  const std::string far = "http://198.51.100.1/" + std::string(100000, 'a');
  helper.RTFDWithHTML(bytes("<img src=" + far + "><img src='http://[1'>"), NSString(), false, &error);
  EXPECT_EQ(reason(), "2 parts of the page were not loaded: " + far.substr(0, 200) +
                          "... (the request was refused); a reference (it is no URL)");
  std::string pictures;
  for (int i = 1; i <= 11; ++i) pictures += "<img src='none:" + std::to_string(i) + "'>";
  helper.RTFDWithHTML(bytes(pictures), NSString(), false, &error);
  EXPECT_TRUE(reason().starts_with("11 parts of the page were not loaded: none:1 (")) << reason();
  EXPECT_EQ(std::ranges::count(reason(), ';'), 9) << "ten are named";
}

TEST_F(RichTextOperationsTest, BasesMayBeWrittenForPeople) {
  const std::pair<const char *, const char *> cases[] = {
      {"http://a.org/b c/\u00e9/", "http://a.org/b%20c/%C3%A9/x"},
      {"http://b\u00fccher.example/", "http://xn--bcher-kva.example/x"},
      {"b c/", "x"},
      {"www.\u00e9.org", "x"},
  };
  for (const auto &[base, link] : cases) {
    const NSData rtfd = helper.RTFDWithHTML(bytes("<a href=x>y</a>"), text(base), false);
    EXPECT_NE(std::string(rtfd.view()).find("HYPERLINK \"" + std::string(link) + "\""), std::string::npos)
        << base << rtfd.view();
  }
}

TEST(LocalRequestFilter, SilentNamesLeaveTimeForOthers) {
  LocalRequestFilter filter(0.3);
  const WebView view{Deadline::after(6)};
  const auto isAllowed = [&](const std::string &host) {
    const NSURL url = NSURL::URLWithString(NSString::stringWithUTF8String("http://" + host + "/"));
    return static_cast<bool>(filter.webViewWillSendRequest(view, 0, {url}, {}, {}));
  };
  for (int request = 0; request < 100; ++request)
    EXPECT_FALSE(isAllowed(std::to_string(request % 4) + ".silent.invalid"));
  EXPECT_TRUE(isAllowed("localhost"));
}

TEST_F(RichTextOperationsTest, PagesNeedBytes) {
  EXPECT_FALSE(helper.RTFDWithHTML(NSData(), NSString(), false, &error));
  EXPECT_EQ(shown(helper.RTFDWithHTML(NSData::data(), NSString(), false)), "");
  EXPECT_EQ(shown(helper.RTFDWithHTML(bytes("caf\xe9 \x80"), text("ftp://a.org/"), true)),
            "caf\u00e9 \u20ac\n");
  EXPECT_EQ(shown(helper.RTFDWithHTML(bytes("<meta charset=utf-8>caf\xc3\xa9"), NSString(), false)),
            "caf\u00e9\n");
}

TEST_F(RichTextOperationsTest, DocumentsOfEveryKindBecomeRichText) {
  folder.write("a.gif", kPicture);
  const std::pair<NSString, std::string_view> cases[] = {
      {folder.write("plain.txt", "caf\xc3\xa9\n"), "caf\u00e9\n"},
      {folder.write("rich.rtf", "{\\rtf1 one {\\b two}}"), "one two"},
      {folder.write("named.doc", "{\\rtf1 not named so}"), "not named so"},
      {folder.write("marked.rtf", "\xef\xbb\xbf\r\n{\\rtf1 not at the start}"), "not at the start"},
      {folder.write("page.html", "<p>text<img src=a.gif>"), "text\ufffc\n"},
      {folder.write("source.cpp", "int main;"), "int main;"},
      {folder.write("empty.txt", ""), ""},
  };
  for (const auto &[path, content] : cases) EXPECT_EQ(shownDocument(path), content) << path.UTF8String();
  for (const std::string_view start : {"%PDF-1.4\n", "PK\3\4", "\x1f\x8b"})
    for (const char *name : {"all-text.pdf", "all-text.html", "all-text.txt", "all-text"}) {
      EXPECT_EQ(shownDocument(folder.write(name, std::string(start) + "all text")), "nil") << name << start;
      EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType) << name << start;
    }
  for (const auto &[path, code] : {std::pair(folder.write("b.bin", kPicture), ErrorCode::unsupportedType),
                                   std::pair(folder.write("a.tar", "all text"), ErrorCode::unsupportedType),
                                   std::pair(folder.write("no.rtf", "\1\2\3"), ErrorCode::damaged),
                                   std::pair(text("/no/such/file"), ErrorCode::noSuchFile),
                                   std::pair(folder.write("w.webarchive", "no archive"), ErrorCode::damaged)}) {
    EXPECT_EQ(shownDocument(path), "nil") << path.UTF8String();
    EXPECT_EQ(error.errorCode(), code) << reason();
  }
  EXPECT_EQ(shownDocument(NSString()), "nil");
}

TEST_F(RichTextOperationsTest, EachArgumentOfTheContractIsTaken) {
  const NSString file = folder.write("a.txt", "words"), package = folder.string("out.rtfd");
  const id document = helper.perform(u"attributedStringWithContentsOfFile:"_ns,
                                     {{u"attributedStringWithContentsOfFile"_ns, file}});
  const NSData rtfd = document.dictionary().objectForKey(u"Rtfd"_ns).data();
  EXPECT_EQ(shown(rtfd), "words");
  EXPECT_EQ(helper.perform(u"writeRTFDData:toFile:"_ns, {{u"writeRTFDData"_ns, rtfd}, {u"toFile"_ns, package}}),
            id(true));
  EXPECT_EQ(shownDocument(package), "words");
  const NSData page = helper
                          .perform(u"RTFDWithHTML:baseURL:allowRemoteRequest:"_ns,
                                   {{u"RTFDWithHTML"_ns, bytes("<a href=x>y</a>")},
                                    {u"baseURL"_ns, u"http://a.org/"_ns},
                                    {u"allowRemoteRequest"_ns, true}})
                          .data();
  EXPECT_NE(page.view().find("HYPERLINK \"http://a.org/x\""), std::string_view::npos);
}

TEST_F(RichTextOperationsTest, PackagesReplaceOnlyPackages) {
  const NSData rtfd =
      helper.attributedStringWithContentsOfFile(folder.write("a.txt", "new")).objectForKey(u"Rtfd"_ns).data();
  folder.write("photos/2026/a.jpg", "kept");
  folder.write("letter.rtfd", "kept");
  folder.write("package.rtfd/TXT.rtf", "{\\rtf1 old}");
  folder.write("package.rtfd/old.gif", kPicture);
  std::filesystem::create_directory(folder.path() / "empty");
  std::filesystem::create_directory_symlink("photos", folder.path() / "link");
  for (const char *name : {"photos", "photos/2026/", "link", "letter.rtfd"}) {
    error = {};
    EXPECT_EQ(helper.writeRTFDData(rtfd, folder.string(name), &error), id(false)) << name;
    EXPECT_EQ(reason(), "what is there is no RTFD folder, and stays") << name;
  }
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "photos/2026/a.jpg"));
  EXPECT_TRUE(std::filesystem::is_regular_file(folder.path() / "letter.rtfd"));
  for (const char *name : {"package.rtfd", "empty"}) {
    EXPECT_EQ(helper.writeRTFDData(rtfd, folder.string(name)), id(true)) << name;
    EXPECT_TRUE(std::filesystem::exists(folder.path() / name / "TXT.rtf"));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "package.rtfd/old.gif"));
}

TEST_F(RichTextOperationsTest, PackagesAreWrittenWholeOrNotAtAll) {
  folder.write("a.gif", kPicture);
  const NSString page = folder.write("page.html", "<title>T</title>a picture<img src=a.gif>");
  const NSData rtfd = helper.attributedStringWithContentsOfFile(page).objectForKey(u"Rtfd"_ns).data();
  const NSString package = folder.string("out.rtfd");
  EXPECT_EQ(helper.writeRTFDData(rtfd, package), id(true));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "out.rtfd/TXT.rtf"));
  EXPECT_EQ(shownDocument(package), "a picture\ufffc\n");
  EXPECT_EQ(helper.writeRTFDData(rtfd, package), id(true)) << "again";
  EXPECT_EQ(helper.writeRTFDData(rtfd, folder.string("no folder/out.rtfd")), id(false));
  EXPECT_EQ(helper.writeRTFDData(bytes("no RTFD"), folder.string("no.rtfd"), &error), id(false));
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
  EXPECT_EQ(helper.writeRTFDData(NSData(), folder.string("no.rtfd")), id(false));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "no.rtfd"));
  std::size_t entries = 0;
  for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator(folder.path())) ++entries;
  EXPECT_EQ(entries, 3U) << "nothing half written is left";
}

}  // namespace
}  // namespace nimbo
