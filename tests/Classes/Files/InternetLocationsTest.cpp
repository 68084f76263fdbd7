// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/InternetLocations.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Classes/Files/ResourceFork.hpp"
#include "platform/Foundation/NSHFSFileTypes.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

NSString text(std::string_view bytes) {
  return NSString::stringWithUTF8String(bytes);
}

std::string inUTF16(std::string_view ascii, bool isBigEndian) {
  std::string bytes;
  for (const char c : ascii) bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

constexpr std::string_view kXML =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict><key>Name</key><string>n</string>
<key>URL</key><string>
 http://example.org/?a&amp;b </string></dict></plist>)";

constexpr std::string_view kWindowsShortcut =
    "[DEFAULT]\r\nBASEURL=http://base.example/\r\n[{000214A0-0000-0000-C000-000000000046}]\r\nProp3=19,2\r\n"
    "URL=http://wrong.example/\r\n[InternetShortcut]\r\nURL=http://example.org/\r\nIconIndex=1\r\n";

TEST(InternetLocations, AreReadInAllForms) {
  const std::string page = "[InternetShortcut]\r\nURL=http://example.org/\r\n";
  const std::string entry =
      "[Desktop Entry]\nType=Link\nTypes=x\nURL=http://example.org/a\\sb\\\\c\nURL[de]=x\n";
  const std::pair<std::string, const char *> cases[] = {
      {std::string(kXML), "http://example.org/?a&b"},
      {"\xef\xbb\xbf" + std::string(kXML), "http://example.org/?a&b"},
      {"{ URL = \"http://example.org/\"; }", "http://example.org/"},
      {"bplist00\xd1\1\2SURL_\x10\x13http://example.org/\x08\x0b\x0f"
       "\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\3\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x25"s,
       "http://example.org/"},
      {"[InternetShortCut]\nURL=http://example.org/\n", "http://example.org/"},
      {page, "http://example.org/"},
      {"\xef\xbb\xbf" + page, "http://example.org/"},
      {"\xff\xfe" + inUTF16(page, false), "http://example.org/"},
      {"\xfe\xff" + inUTF16(page, true), "http://example.org/"},
      {inUTF16(page, false), "http://example.org/"},
      {std::string(kWindowsShortcut), "http://example.org/"},
      {"; by hand\r[ INTERNETSHORTCUT ]\r url = mailto:a@b?subject=c=d \r", "mailto:a@b?subject=c=d"},
      {"URL=news:a.b", "news:a.b"},
      {"[InternetShortcut]\r\nURL=http://example.org/caf\xe9\r\n", "http://example.org/caf\xc3\xa9"},
      {"[InternetShortcut]\r\nURL=http://example.org/caf\xc3\xa9\r\n", "http://example.org/caf\xc3\xa9"},
      // What the code page lacks stands there a second time.
      {page + "[InternetShortcut.A]\r\nURL=http://example.org/?\r\n[InternetShortcut.W]\r\n"
              "URL=http://example.org/+IKw-\r\n",
       "http://example.org/\xe2\x82\xac"},
      {page + "[InternetShortcut.W]\r\nURL=\r\n", "http://example.org/"},
      {entry, "http://example.org/a b\\c"},
      {"#!/usr/bin/env xdg-open\n\n" + entry + "[Desktop Action x]\nURL=http://wrong.example/\n",
       "http://example.org/a b\\c"},
      // No locations.
      {"", nullptr},
      {"[InternetShortcut]\nBASEURL=http://example.org/\n", nullptr},
      {"[InternetShortcut]\nURL=\n", nullptr},
      {"[InternetShortcut]\nURL=http://example.org/\x01\n", nullptr},
      {"[Desktop Entry]\nType=Application\nURL=http://example.org/\n", nullptr},
      {"[Desktop Entry]\nType=Link\n[Other]\nURL=http://example.org/\n", nullptr},
      {"[Desktop Entry]\nType=Link\nURL=a\\nb\n", nullptr},
      {"<plist><dict><key>URL</key><array/></dict></plist>", nullptr},
      {"<plist><string>http://example.org/</string></plist>", nullptr},
      {"{ URL = \"a\\nb\"; }", nullptr},
      {"bplist00", nullptr},
      {std::string(kXML.substr(0, 250)), nullptr},
      {"\0\1\2\3\4\5\6\7URL=http://example.org/\n"s, nullptr},
  };
  const TemporaryFolder folder;
  for (const auto &[bytes, expected] : cases) {
    NSError error;
    const NSString url = resolveInternetLocation(folder.write("location", bytes), &error);
    EXPECT_EQ(url, expected ? text(expected) : NSString()) << bytes << url.UTF8String();
    EXPECT_EQ(static_cast<bool>(error), !expected) << bytes;
  }
  // What is no property list is told, not that it has no URL.
  const std::string cut(kXML.substr(0, 250));
  NSError error, reason;
  EXPECT_FALSE(NSPropertyListSerialization::propertyListFromData(NSData::dataWithBytes(cut.data(), cut.size()),
                                                                 nullptr, &reason));
  EXPECT_FALSE(resolveInternetLocation(folder.write("location", cut), &error));
  EXPECT_EQ(error, reason);
  // Nor is there one in a fork without a URL.
  const NSString other = folder.write("other", "");
  auto fork = ResourceFork::resourceForkForWritingAtPath(other);
  ASSERT_TRUE(fork && fork->addString(u"http://example.org/"_ns, 0x54455854, 256));
  EXPECT_FALSE(resolveInternetLocation(other));
}

id URLAtPath(const NSString &path, NSError *error) {
  return resolveInternetLocation(path, error);
}

INSTANTIATE_TEST_SUITE_P(InternetLocations, FileReaders,
                         testing::Values(FileReader{"PropertyList", "a.webloc", std::string(kXML), URLAtPath},
                                         FileReader{"Shortcut", "a.url", std::string(kWindowsShortcut),
                                                    URLAtPath}),
                         nameOfFileReader);

TEST(InternetLocations, AreWrittenAsTheyAreRead) {
  const TemporaryFolder folder;
  const NSURL url =
      NSURL::URLWithString(u"../b%20c?d&e=%C3%A9"_ns, NSURL::URLWithString(u"http://example.org/a/"_ns));
  const NSString whole = u"http://example.org/b%20c?d&e=%C3%A9"_ns;
  const auto create = [&](int kind, const NSURL &target, const NSString &path) {
    if (kind == 0) return createURL(target, path);
    if (kind == 1) return createDesktopLink(target, path);
    return createInternetLocation(target, path, static_cast<InternetLocationForm>(kind - 2));
  };
  for (int kind = 0; kind < 5; ++kind) {
    const NSString path = folder.string("new/" + std::to_string(kind) + "/a \\ b.desktop");
    ASSERT_TRUE(create(kind, url, path)) << kind;
    EXPECT_EQ(resolveInternetLocation(path), whole) << kind;
    EXPECT_TRUE(create(kind, NSURL::URLWithString(u"vnc://b"_ns), path));
    EXPECT_EQ(resolveInternetLocation(path), u"vnc://b"_ns);
    EXPECT_FALSE(create(kind, NSURL(), path));
    EXPECT_FALSE(create(kind, url, folder.string("new/0/a \\ b.desktop/c")));
    EXPECT_FALSE(create(kind, url, NSString()));
    EXPECT_EQ(resolveInternetLocation(path), u"vnc://b"_ns);
  }
  const auto contents = [&](const char *name) {
    return contentsOfFile((folder.path() / "new" / name).native());
  };
  EXPECT_EQ(contents("0/a \\ b.desktop"), "[InternetShortCut]\nURL=vnc://b\n");
  EXPECT_EQ(contents("1/a \\ b.desktop"),
            "[Desktop Entry]\nVersion=1.0\nType=Link\nName=a \\\\ b\nURL=vnc://b\n");
  EXPECT_TRUE(contents("2/a \\ b.desktop").starts_with("<?xml"));
  EXPECT_TRUE(contents("3/a \\ b.desktop").starts_with("bplist00"));
  EXPECT_EQ(contents("4/a \\ b.desktop"), "");
  const auto fork = ResourceFork::resourceForkForReadingAtPath(folder.string("new/4/a \\ b.desktop"));
  ASSERT_TRUE(fork);
  EXPECT_EQ(fork->dataForType(0x75726c20, 256).view(), "vnc://b");  // 'url '
  ASSERT_TRUE(createDesktopLink(url, folder.string("a\nb\rc\td")));
  EXPECT_EQ(contentsOfFile((folder.path() / "a\nb\rc\td").native()),
            "[Desktop Entry]\nVersion=1.0\nType=Link\nName=a\\nb\\rc\\td\nURL=" + whole.UTF8String() + "\n");
  // A fork takes the place of what was there.
  const NSString other = folder.string("new/1/a \\ b.desktop");
  ASSERT_TRUE(createInternetLocation(url, other, InternetLocationForm::resourceFork));
  EXPECT_EQ(resolveInternetLocation(other), whole);
}

TEST(InternetLocations, HaveTheExtensionOfTheirScheme) {
  struct Case {
    NSString string, ofURL, ofString;
  };
  const Case cases[] = {
      {u"FILE:///a"_ns, u"fileloc"_ns, u"fileloc"_ns},
      {u"http://a"_ns, u"webloc"_ns, u"webloc"_ns},
      {u"HTTPS://a"_ns, u"webloc"_ns, u"webloc"_ns},
      {u"ftp://a"_ns, u"ftploc"_ns, u"ftploc"_ns},
      {u"sFTP://a"_ns, u"ftploc"_ns, u"ftploc"_ns},
      {u"ftps://a"_ns, u"ftploc"_ns, u"ftploc"_ns},
      {u"mailto:a@b"_ns, u"mailloc"_ns, u"mailloc"_ns},
      {u"nntp://a"_ns, u"newsloc"_ns, u"newsloc"_ns},
      {u"NEWS://a"_ns, u"newsloc"_ns, u"newsloc"_ns},
      // Strings are known by their prefixes alone.
      {u"news:a.b"_ns, u"newsloc"_ns, u"inetloc"_ns},
      {u"http:a"_ns, u"webloc"_ns, u"inetloc"_ns},
      {u"VNC://a"_ns, u"vncloc"_ns, u"vncloc"_ns},
      {u"vnc:a"_ns, u"vncloc"_ns, u"inetloc"_ns},
      {u"ssh://a"_ns, u"inetloc"_ns, u"inetloc"_ns},
      {u"a/b"_ns, u"inetloc"_ns, u"inetloc"_ns},
  };
  for (const Case &one : cases) {
    EXPECT_EQ(pathExtensionForInternetLocation(NSURL::URLWithString(one.string)), one.ofURL);
    EXPECT_EQ(pathExtensionForInternetLocation(one.string), one.ofString) << one.string.UTF8String();
  }
  EXPECT_EQ(pathExtensionForInternetLocation(NSURL()), u"inetloc"_ns);
  EXPECT_EQ(pathExtensionForInternetLocation(NSString()), u"inetloc"_ns);
}

TEST(InternetLocations, AreKnownByExtensionsAndTypes) {
  EXPECT_TRUE(isInternetLocationExtension(u"webloc"_ns, NSString()));
  EXPECT_TRUE(isInternetLocationExtension(u"Url"_ns, u"'TEXT'"_ns));
  EXPECT_TRUE(isInternetLocationExtension(NSString(), u"'LINK'"_ns));
  EXPECT_TRUE(isInternetLocationExtension(u"txt"_ns, u"'ilht'"_ns));
  EXPECT_FALSE(isInternetLocationExtension(u"'ilht'"_ns, u"webloc"_ns));
  EXPECT_FALSE(isInternetLocationExtension(u""_ns, u"'link'"_ns));
  EXPECT_FALSE(isInternetLocationExtension(NSString(), NSString()));

  const TemporaryFolder folder;
  EXPECT_TRUE(isInternetLocationFile(folder.write("a.webloc", "")));
  EXPECT_TRUE(isInternetLocationFile(folder.write("a.desktop", "[Desktop Entry]\nType=Link\nURL=http://a\n")));
  EXPECT_FALSE(
      isInternetLocationFile(folder.write("b.desktop", "[Desktop Entry]\nType=Application\nExec=a\n")));
  const NSString plain = folder.write("a.txt", "URL=http://a");
  EXPECT_FALSE(isInternetLocationFile(plain));
  const std::pair<NSString, NSString> types[] = {
      {u"http://a/"_ns, u"'ilht'"_ns},  {u"ftp://a/"_ns, u"'ilft'"_ns}, {u"file:///a"_ns, u"'ilfi'"_ns},
      {u"mailto:a@b"_ns, u"'ilma'"_ns}, {u"news:a"_ns, u"'ilnw'"_ns},   {u"vnc://a"_ns, u"'ilvn'"_ns},
      {u"ssh://a"_ns, u"'ilge'"_ns}};
  for (const auto &[url, type] : types) {
    ASSERT_TRUE(createInternetLocation(NSURL::URLWithString(url), plain, InternetLocationForm::resourceFork));
    EXPECT_EQ(finderField(plain, kFinderType), NSHFSTypeCodeFromFileType(type)) << url.UTF8String();
    EXPECT_TRUE(isInternetLocationFile(plain)) << url.UTF8String();
  }
  EXPECT_FALSE(isInternetLocationFile(folder.string("none.webloc")));
  std::filesystem::create_directory(folder.path() / "folder.webloc");
  EXPECT_FALSE(isInternetLocationFile(folder.string("folder.webloc")));
  EXPECT_FALSE(resolveInternetLocation(folder.string("folder.webloc")));
  std::filesystem::resize_file(folder.path() / "a.webloc", 16u << 20);
  NSError error;
  EXPECT_FALSE(resolveInternetLocation(folder.string("a.webloc"), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
  std::filesystem::resize_file(folder.path() / "a.webloc", (16u << 20) + 1);
  EXPECT_FALSE(resolveInternetLocation(folder.string("a.webloc"), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
}

}  // namespace
}  // namespace nimbo
