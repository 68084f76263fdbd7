// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <tuple>

#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "tests/importers/ShippedImporters.hpp"
#include "tests/support/WebArchiveSamples.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

TEST_F(Importers, Text) {
  const std::tuple<const char *, std::u16string_view, std::u16string_view> cases[] = {
      {"letter-latin1.txt", u"Sehr geehrte Frau Köhler,\n\ndie losen Blätter", u" Blätter\n"},
      {"labels-utf16.txt", u"Quiver\tFirst words", u"銀杏の葉\t紅葉、秋の終わり\n"},
      {"quiver.c", u"/* How many quivers", u"  return 0;\n}\n"},
  };
  for (const auto &[name, begin, end] : cases) {
    const NSString text = metaDataOfExample(name).objectForKey(u"kMDItemTextContent"_ns).string();
    EXPECT_TRUE(text.view().starts_with(begin) && text.view().ends_with(end)) << text.UTF8String();
  }
}

TEST_F(Importers, LongTextIsCut) {
  constexpr std::size_t kMaximumLength = std::size_t{16} << 20;
  // The limit divides the "ö".
  const std::string bytes = std::string(kMaximumLength - 2, 'x') + "\n\xc3\xb6 beyond";
  EXPECT_EQ(textOf("long.txt", bytes).length(), kMaximumLength - 1);
}

TEST_F(Importers, SourcesListsAndFeeds) {
  EXPECT_EQ(textOf("a.dart", "void main() {}\n"), u"void main() {}\n"_ns);
  const NSData list = NSPropertyListSerialization::dataWithPropertyList(
      NSDictionary{{u"Name"_ns, u"B\u00e4r"_ns}, {u"Of"_ns, NSArray{1, u"x"_ns, true}}},
      NSPropertyListFormat::binary);
  for (const char *name : {"a.plist", "a.bplist", "nameless"})
    EXPECT_EQ(textOf(name, list.view()), u"Name\nB\u00e4r\nOf\nx\n"_ns);
  // A string that stands once in the file, and comes up so often in a dictionary's array that its text would be
  // too long.
  const std::string array = "\xd1\2\1\xaf\x11\x01\x2c"s + std::string(300, '\2');
  const std::string string = "\x5f\x12\0\1\0\0"s + std::string(1 << 16, 'x');
  const std::string many = "bplist00" + array + string + "\0\0\0\x08\0\0\0\x0b\0\0\x01\x3b"s +
                           "\0\0\0\0\0\0\4\1"s + "\0\0\0\0\0\0\0\3\0\0\0\0\0\0\0\0\0\0\0\0\0\1\1\x41"s;
  for (const std::string &content : {many, "bplist00" + std::string(17u << 20, 'x')}) {
    NSError error;
    EXPECT_EQ(metaData(folder.write("many.plist", content), &error).count(), 0u);
    EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
  }

  const NSDictionary feed =
      metaDataOf("feed.rss",
                 "<?xml version=\"1.0\"?><!-- made --><rss><channel><title>News</title><item>"
                 "<title>First</title><description>&lt;p&gt;Words&lt;/p&gt;</description>"
                 "</item></channel></rss>");
  expectAttributes(feed, {{u"kMDItemTitle"_ns, u"News"_ns}});
  const NSString text = feed.objectForKey(u"kMDItemTextContent"_ns).string();
  EXPECT_TRUE(contains(text, u"First") && contains(text, u"Words") && !contains(text, u"<"))
      << text.UTF8String();
}

constexpr std::string_view kPage =
    "<!DOCTYPE html><html lang=de><head><title>\n A \r\f\v <page> &amp; more </title><meta name=Author "
    "content='Rowan F.'>"
    "<meta name=GENERATOR content='Quill &amp; Co'><meta name=robots content=index>"
    "<meta content='leaf, quiver;oak' name=keywords><meta name=description content='a &amp; b'>"
    "<title>Other</title>"
    "</head><body><svg><title>Drawing</title></svg><meta name=description content=gone><p>Gr\xc3\xbc\xc3\x9f"
    "e<script>code</script>";

TEST_F(Importers, Pages) {
  const NSDictionary wanted = {{u"kMDItemTitle"_ns, u"A <page> & more"_ns},
                               {u"kMDItemAuthors"_ns, NSArray{u"Rowan F."_ns}},
                               {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"quiver"_ns, u"oak"_ns}},
                               {u"kMDItemDescription"_ns, u"a & b"_ns},
                               {u"kMDItemCreator"_ns, u"Quill & Co"_ns},
                               {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}}};
  const id archive =
      listOfArchive(listOfResource(kPage, u"http://example.org/"_ns, u"text/html"_ns, u"UTF-8"_ns), {},
                    NSArray{listOfArchive(listOfResource("<p>frame", NSString()))});
  const NSDictionary archived = metaDataOf("a.webarchive", bytesOfList(archive).view());
  const NSDictionary page = metaDataOf("a.html", kPage);
  for (const NSDictionary &found : {page, archived}) {
    expectAttributes(found, wanted);
    EXPECT_TRUE(contains(found.objectForKey(u"kMDItemTextContent"_ns).string(), u"Gr\u00fc\u00dfe"));
    EXPECT_FALSE(contains(found.objectForKey(u"kMDItemTextContent"_ns).string(), u"code"));
  }
  EXPECT_TRUE(contains(archived.objectForKey(u"kMDItemTextContent"_ns).string(), u"\n\nframe"));
  EXPECT_EQ(archived.objectForKey(u"kMDItemWhereFroms"_ns), id(NSArray{u"http://example.org/"_ns}));
  // All words of the body are its text, whether readers and search engines are meant to see them or not.
  const std::string markup = "<title>T</title><body>a\nb<b hidden> c</b><!--googleoff: all--> d";
  EXPECT_EQ(textOf("hidden.html", markup), u"a b c d"_ns);
  EXPECT_EQ(textOf("hidden.webarchive",
                   bytesOfList(listOfArchive(listOfResource(markup, u"http://example.org/"_ns))).view()),
            u"\n\na b c d"_ns);
  for (const std::string name : {"author", "DC.creator", "dcterms.creator"})
    expectAttributes(metaDataOf("author.html", "<html><meta name=author content=' '><meta name=" + name +
                                                   " content=A><meta name=author content=B><p>text"),
                     {{u"kMDItemAuthors"_ns, NSArray{u"A"_ns}}});
  NSError error;
  metaData(folder.write("long.html", std::string(kPage) + std::string(16 << 20, ' ')), &error);
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
  const NSString silent = folder.write("silent.html", "<html><body><img src=a></body></html>");
  EXPECT_FALSE(metaData(silent, &error).objectForKey(u"kMDItemTextContent"_ns));
  EXPECT_EQ(error.localizedFailureReason, u"the page has no text"_ns);
}

}  // namespace
}  // namespace nimbo
