// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/ResourceFork.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <tuple>

#include "Classes/Files/ResourceMap.hpp"
#include "platform/Foundation/System/AppleDouble.hpp"
#include "platform/Foundation/System/ExtendedAttributes.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"
#include "platform/Foundation/System/ForkStorage.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr OSType kText = 0x54455854, kURL = 0x75726c20;
const NSString kForkAttribute = u"user.org.netatalk.ResourceFork"_ns;
const NSString kForkStream = u"user.DosStream.AFP_Resource:$DATA"_ns;

NSData bytes(std::string_view text) {
  return NSData::dataWithBytes(text.data(), text.size());
}

/// Two types, of which the first has two resources; the second one of these has the same content as that of the
/// other type.
constexpr std::string_view kFork =
    "\0\0\0\x10\0\0\0\x20\0\0\0\x10\0\0\0\x57"  // Data at 16, map at 32, their lengths 16 and 87.
    "\0\0\0\5hello\0\0\0\3url"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"  // At 32: what means something in memory only.
    "\0\x80\0\x1c\0\x52"                            // Attributes; types at 28 of the map, names at 82.
    "\0\1"                                          // At 60: one type less than there are.
    "TEXT\0\1\0\x12"                                // Resources at 18 of the type list.
    "url \0\0\0\x2a"
    "\0\x80\0\0\x20\0\0\0\0\0\0\0"  // At 78: number 128, name at 0, purgeable, content at 0.
    "\xff\xff\xff\xff\0\0\0\x09\0\0\0\0"
    "\1\0\xff\xff\0\0\0\x09\0\0\0\0"
    "\4n\x8ame"sv;  // At 114.

TEST(ResourceMap, IsReadByteByByte) {
  const auto map = ResourceMap::resourceMapWithData(bytes(kFork));
  ASSERT_TRUE(map);
  EXPECT_EQ(map->attributes, 0x80);
  ASSERT_EQ(map->resources.size(), 3u);
  const auto &[type, ID, attributes, name, data] = map->resources[0];
  EXPECT_EQ(type, kText);
  EXPECT_EQ(ID, 128);
  EXPECT_EQ(attributes, 0x20);
  EXPECT_EQ(name, u"n\u00e4me"_ns);
  EXPECT_EQ(data, bytes("hello"));
  EXPECT_EQ(map->resources[1].ID, -1);
  EXPECT_FALSE(map->resources[1].name);
  EXPECT_EQ(map->resources[1].data, bytes("url"));
  EXPECT_EQ(map->resources[2].type, kURL);
  EXPECT_EQ(map->resources[2].ID, 256);
  EXPECT_EQ(map->resources[2].data, bytes("url"));
}

TEST(ResourceMap, IsNilWhenItLeadsOutOfItsAreas) {
  struct Change {
    std::size_t offset;
    std::string_view bytes;
  };
  const Change hostile[] = {
      {3, "\x0f"},              // Contents in the header.
      {3, "\x11"},              // Contents that overlap the map.
      {7, "\x1f"},              // A map that overlaps the contents.
      {4, "\xff\xff\xff\xff"},  // A map behind the end.
      {8, "\xff\xff\xff\xff"},  // Lengths that overflow.
      {12, "\xff\xff\xff\xff"},
      {11, "\x0f"},          // An area of contents that cuts the last one.
      {15, "\x56"},          // A map that cuts the last name.
      {15, "\x1b"},          // One that cuts its own header.
      {16, "\xff"},          // A content that is longer than its area.
      {56, "\xff\xff"},      // A list of types behind the map.
      {58, "\xff\xff"},      // A list of names behind the map.
      {60, "\0\7"sv},        // More types than bytes.
      {66, "\xff\xfe"},      // 65535 resources.
      {66, "\0\4"sv},        // More resources of all types than bytes.
      {68, "\xff\xff"},      // Resources behind the map.
      {80, "\x7f\xff"},      // A name behind the map.
      {83, "\xff\xff\xff"},  // A content behind its area.
      {114, "\5"},           // A name that is longer than the map.
  };
  for (const Change &change : hostile) {
    std::string changed(kFork);
    changed.replace(change.offset, change.bytes.size(), change.bytes);
    EXPECT_FALSE(ResourceMap::resourceMapWithData(bytes(changed))) << change.offset;
  }
  for (std::size_t length = 0; length < kFork.size(); ++length)
    EXPECT_FALSE(ResourceMap::resourceMapWithData(bytes(kFork.substr(0, length)))) << length;
  EXPECT_FALSE(ResourceMap::resourceMapWithData(NSData()));

  // Whatever else a byte becomes, it is read, and what is read is written.
  for (std::size_t i = 0; i < kFork.size(); ++i) {
    for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
      std::string changed(kFork);
      changed[i] = static_cast<char>(value);
      if (const auto map = ResourceMap::resourceMapWithData(bytes(changed))) {
        const auto again = ResourceMap::resourceMapWithData(map->data());
        ASSERT_TRUE(again) << i;
        EXPECT_EQ(again->resources.size(), map->resources.size()) << i;
      }
    }
  }
}

TEST(ResourceMap, IsWrittenByteByByte) {
  ResourceMap map = {.attributes = 0x80, .reserved = {}, .resources = {}};
  map.resources = {
      {.type = kText, .ID = 128, .attributes = 0x20, .name = u"n\u00e4me"_ns, .data = bytes("hello")},
      {.type = kURL, .ID = 256, .data = bytes("url")},
      {.type = kText, .ID = -1, .data = NSData::data()}};
  const std::string header = "\0\0\1\0\0\0\1\x14\0\0\0\x14\0\0\0\x57"s;
  const std::string expected = header + std::string(240, '\0') +
                               std::string("\0\0\0\5hello\0\0\0\3url\0\0\0\0"sv) + header +
                               std::string(
                                   "\0\0\0\0\0\0\0\x80\0\x1c\0\x52"
                                   "\0\1TEXT\0\1\0\x12url \0\0\0\x2a"
                                   "\0\x80\0\0\x20\0\0\0\0\0\0\0"
                                   "\xff\xff\xff\xff\0\0\0\x10\0\0\0\0"
                                   "\1\0\xff\xff\0\0\0\x09\0\0\0\0"
                                   "\4n\x8ame"sv);
  EXPECT_EQ(map.data(), bytes(expected));
  const auto again = ResourceMap::resourceMapWithData(map.data()).value();
  EXPECT_EQ(again.reserved, bytes(std::string(240, '\0')));
  EXPECT_EQ(ResourceMap::resourceMapWithData(again.data())->data(), again.data());
  // What the system reserves stays as it is.
  std::string used(again.data().view());
  used.replace(16, 240, 240, 'r');
  EXPECT_EQ(ResourceMap::resourceMapWithData(bytes(used)).value().data(), bytes(used));
}

TEST(ResourceMap, HasLimits) {
  const auto fits = [](std::vector<Resource> resources) {
    return static_cast<bool>(
        ResourceMap{.attributes = 0, .reserved = {}, .resources = std::move(resources)}.data());
  };
  const NSData half = bytes(std::string((8u << 20) - 4, 'x'));
  EXPECT_TRUE(fits({{.type = kText, .ID = 1, .data = half}, {.type = kText, .ID = 2, .data = half}}));
  EXPECT_FALSE(fits({{.type = kText, .ID = 1, .data = half},
                     {.type = kText, .ID = 2, .data = half},
                     {.type = kText, .ID = 3, .data = bytes("")}}));
  EXPECT_TRUE(
      fits({{.type = kText, .name = NSString::stringWithUTF8String(std::string(255, 'x')), .data = half}}));
  EXPECT_FALSE(
      fits({{.type = kText, .name = NSString::stringWithUTF8String(std::string(256, 'x')), .data = half}}));
  EXPECT_FALSE(fits({{.type = kText, .name = u"\u4e00"_ns, .data = half}}));
  std::vector<Resource> many(5457, {.type = kText, .data = bytes("")});
  EXPECT_TRUE(fits(many));
  many.resize(many.size() + 3, many.front());
  EXPECT_FALSE(fits(many));
}

TEST(ResourceFork, IsWrittenToTheAttributeOrBesideTheFile) {
  const TemporaryFolder folder;
  const NSString file = folder.write("page\xff", "content"), companion = folder.string("._page\xff");
  EXPECT_FALSE(ResourceFork::resourceForkForReadingAtPath(file));
  auto fork = ResourceFork::resourceForkForWritingAtPath(file).value();
  ASSERT_TRUE(fork.addString(u"http://example.org/\u00e4"_ns, kURL, 256));
  ASSERT_TRUE(fork.addData(bytes("text"), kText, -5));
  EXPECT_TRUE(extendedAttribute(file, kForkAttribute, true));
  EXPECT_FALSE(fs::exists(folder.path() / "._page\xff"));

  // Every place holds what the last change made of the fork, and the other place nothing.
  const NSData large = bytes(std::string(200'000, 'x'));
  for (const NSData &data : {large, bytes("small"), large}) {
    ASSERT_TRUE(fork.addData(data, kText, 7));
    const bool isBeside = data == large;
    EXPECT_EQ(static_cast<bool>(extendedAttribute(file, kForkAttribute, true)), !isBeside);
    EXPECT_EQ(fs::exists(folder.path() / "._page\xff"), isBeside);
    const auto read = ResourceFork::resourceForkForReadingAtPath(file).value();
    EXPECT_EQ(read.resources().size(), 3u);
    EXPECT_EQ(read.dataForType(kURL, 256), bytes("http://example.org/\xc3\xa4"));
    EXPECT_EQ(read.dataForType(kText, -5), bytes("text"));
    EXPECT_EQ(read.dataForType(kText, 7), data);
    EXPECT_FALSE(read.dataForType(kText, 8));
  }
  EXPECT_EQ(NSData::dataWithContentsOfFile(file).view(), "content");

  EXPECT_FALSE(fork.removeType(kText, 8));
  for (const auto &[type, ID] : {std::pair(kText, 7), {kURL, 256}, {kText, -5}})
    EXPECT_TRUE(fork.removeType(type, static_cast<std::int16_t>(ID)));
  EXPECT_FALSE(fs::exists(folder.path() / "._page\xff"));
  EXPECT_EQ(extendedAttributeNames(file, true)->size(), 0u);
  EXPECT_FALSE(ResourceFork::resourceForkForReadingAtPath(file));
}

TEST(ResourceFork, KeepsNamesAttributesAndTheCompanionsOtherEntries) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "");
  AppleDouble companion = AppleDouble::companion();
  companion.setEntry(AppleDouble::kComment, bytes("comment"));
  // The first two resources are marked as compressed, as the first one is no longer with other data.
  std::string compressed(kFork);
  compressed[82] = 0x21;
  compressed[94] = 1;
  companion.setEntry(AppleDouble::kResourceFork, bytes(compressed));
  folder.write("._file", companion.data().view());
  fs::create_symlink("file", folder.path() / "link");
  auto fork = ResourceFork::resourceForkForWritingAtPath(folder.string("link")).value();
  ASSERT_TRUE(fork.addData(bytes(std::string(100'000, 'x')), kText, 128));
  const auto beside =
      AppleDouble::appleDoubleWithData(NSData::dataWithContentsOfFile(folder.string("._file"))).value();
  EXPECT_EQ(beside.entry(AppleDouble::kComment), bytes("comment"));
  const auto map = ResourceMap::resourceMapWithData(beside.entry(AppleDouble::kResourceFork)).value();
  EXPECT_EQ(map.attributes, 0x80);
  EXPECT_EQ(map.resources[0].name, u"n\u00e4me"_ns);
  EXPECT_EQ(map.resources[0].attributes, 0x20);
  EXPECT_EQ(map.resources[0].data.length(), 100'000u);
  EXPECT_EQ(map.resources[1].attributes, 1);
}

TEST(ResourceFork, IsReadFromAllPlacesInTheirOrder) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "");
  const auto forkWith = [](std::string_view text) {
    return ResourceMap{.attributes = 0, .reserved = {}, .resources = {{.type = kText, .data = bytes(text)}}}
        .data();
  };
  const auto found = [&] {
    return ResourceFork::resourceForkForReadingAtPath(file).value().dataForType(kText, 0);
  };
  ASSERT_TRUE(
      setExtendedAttribute(file, kForkStream, bytes(std::string(forkWith("stream").view()) + '\0'), true));
  EXPECT_EQ(found(), bytes("stream"));
  EXPECT_EQ(resourceForkData(file), forkWith("stream"));
  ASSERT_TRUE(setExtendedAttribute(file, kForkStream, bytes("without an end"), true));
  EXPECT_EQ(resourceForkData(file), bytes("without an end"));
  AppleDouble companion = AppleDouble::companion();
  companion.setEntry(AppleDouble::kResourceFork, forkWith("beside"));
  folder.write("._file", companion.data().view());
  EXPECT_EQ(found(), bytes("beside"));
  ASSERT_TRUE(setExtendedAttribute(file, kForkAttribute, forkWith("attribute"), true));
  EXPECT_EQ(found(), bytes("attribute"));
}

TEST(ResourceFork, SaysWhyThereIsNone) {
  const TemporaryFolder folder;
  const NSString damaged = folder.write("damaged", ""), foreign = folder.write("foreign", "");
  ASSERT_TRUE(setExtendedAttribute(damaged, kForkAttribute, bytes("no fork"), true));
  const NSString note = folder.write("._foreign", "a user's own note");
  const std::pair<NSString, ErrorCode> cases[] = {
      {folder.string("missing"), ErrorCode::noSuchFile},
      {NSString(), ErrorCode::noSuchFile},
      {damaged, ErrorCode::damaged},
      {foreign, ErrorCode::damaged},
  };
  for (const auto &[path, code] : cases) {
    for (const auto open :
         {ResourceFork::resourceForkForReadingAtPath, ResourceFork::resourceForkForWritingAtPath}) {
      NSError error;
      EXPECT_FALSE(open(path, &error)) << path.UTF8String();
      EXPECT_EQ(error.errorCode(), code) << path.UTF8String();
    }
  }
  EXPECT_EQ(NSData::dataWithContentsOfFile(note).view(), "a user's own note");
  NSError none;
  EXPECT_FALSE(ResourceFork::resourceForkForReadingAtPath(folder.write("plain", ""), &none));
  EXPECT_EQ(none.errorCode(), ErrorCode::noSuchFile);

  // Who may write but not read a file does not lose what it has.
  const NSString closed = folder.write("closed", "");
  ASSERT_TRUE(setExtendedAttribute(closed, kForkAttribute, bytes(kFork), true));
  fs::permissions(folder.path(), fs::perms(0755));
  fs::permissions(folder.path() / "closed", fs::perms(0222));
  const bool isRoot = ::geteuid() == 0;
  ASSERT_TRUE(!isRoot || ::seteuid(65534) == 0);
  NSError reason;
  const bool isOpen = ResourceFork::resourceForkForWritingAtPath(closed, &reason).has_value();
  const bool isLabelled = setFinderField(closed, kFinderLabel, 2);
  ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
  EXPECT_FALSE(isOpen || isLabelled);
  EXPECT_EQ(reason.errorCode(), ErrorCode::unreadable);

  const NSString file = folder.write("file", "");
  auto fork = ResourceFork::resourceForkForWritingAtPath(file).value();
  EXPECT_FALSE(fork.addData(NSData(), kText, 1, &reason));
  EXPECT_EQ(reason.errorCode(), ErrorCode::incomplete);
  EXPECT_FALSE(fork.addString(NSString(), kText, 1));
  EXPECT_FALSE(fork.addData(bytes(std::string(17u << 20, 'x')), kText, 1, &reason));
  EXPECT_EQ(reason.errorCode(), ErrorCode::tooLarge);
  ASSERT_TRUE(fork.addData(NSData::data(), kText, 1));
  EXPECT_FALSE(fork.removeType(kText, 2, &reason));
  EXPECT_EQ(reason.errorCode(), ErrorCode::noSuchFile);
  auto read = ResourceFork::resourceForkForReadingAtPath(file).value();
  EXPECT_FALSE(read.addData(bytes("x"), kText, 1, &reason));
  EXPECT_EQ(reason.errorCode(), ErrorCode::unreadable);
  // What could not be written is not there either.
  fs::remove(folder.path() / "file");
  reason = {};
  EXPECT_FALSE(fork.addData(bytes("x"), kText, 2, &reason));
  EXPECT_TRUE(reason);
  EXPECT_FALSE(fork.dataForType(kText, 2));
}

TEST(ResourceFork, HasFinderInformationBesideItInAWholeStreamAlone) {
  const TemporaryFolder folder;
  const std::string info(32, 'i'), stream = "AFP\0\0\1\0\0\0\0\0\0\x80\0\0\0"s + info + std::string(12, '\0');
  const std::pair<std::string, NSData> cases[] = {
      {stream, bytes(info)},
      {stream.substr(0, 59), NSData()},
      {"AFQ" + stream.substr(3), NSData()},
  };
  for (const auto &[content, finderInfo] : cases) {
    const NSString file = folder.write("file", "");
    ASSERT_TRUE(setExtendedAttribute(file, u"user.DosStream.AFP_AfpInfo:$DATA"_ns, bytes(content), true));
    EXPECT_EQ(metadataEntry(file, AppleDouble::kFinderInfo), finderInfo);
    EXPECT_FALSE(metadataEntry(file, AppleDouble::kAFPFileInfo));
  }
}

TEST(ResourceFork, OfNoBytesInTheCompanionIsNone) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "");
  folder.write("._file", AppleDouble::companion().data().view());
  NSError error;
  EXPECT_FALSE(resourceForkData(file, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::noSuchFile);
  ASSERT_TRUE(setExtendedAttribute(file, kForkStream, bytes("stream"), true));
  EXPECT_EQ(resourceForkData(file), bytes("stream"));
}

TEST(ResourceFork, IsReadFromCompanionsUpToALength) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "");
  AppleDouble companion = AppleDouble::companion();
  companion.setEntry(AppleDouble::kResourceFork, bytes("fork"));
  folder.write("._file", companion.data().view());
  fs::resize_file(folder.path() / "._file", kMaximumForkLength);
  EXPECT_EQ(resourceForkData(file), bytes("fork"));
  fs::resize_file(folder.path() / "._file", std::uintmax_t{kMaximumForkLength} + 1);
  NSError error;
  EXPECT_FALSE(resourceForkData(file, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
}

TEST(ResourceFork, LeavesAForeignCompanionAlone) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", ""), note = folder.write("._file", "a user's own note");
  ASSERT_TRUE(setResourceForkData(file, bytes("small")));
  EXPECT_EQ(resourceForkData(file), bytes("small"));
  NSError error;
  EXPECT_FALSE(setResourceForkData(file, bytes(std::string(200'000, 'x')), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
  EXPECT_EQ(resourceForkData(file), bytes("small"));
  error = {};
  EXPECT_FALSE(setResourceForkData(file, NSData(), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
  EXPECT_EQ(resourceForkData(file), bytes("small"));
  EXPECT_EQ(NSData::dataWithContentsOfFile(note).view(), "a user's own note");
}

TEST(ResourceFork, SaysWhyItCannotBeSet) {
  if (::geteuid() != 0) GTEST_SKIP() << "Only root can become another user.";
  const TemporaryFolder folder;
  const NSString file = folder.write("file", ""), kept = folder.write("kept", "");
  AppleDouble companion = AppleDouble::companion();
  companion.setEntry(AppleDouble::kResourceFork, bytes("old"));
  folder.write("._kept", companion.data().view());
  fs::permissions(folder.path(), fs::perms(0755));
  fs::permissions(folder.path() / "file", fs::perms(0644));
  fs::permissions(folder.path() / "kept", fs::perms(0666));
  const NSData large = bytes(std::string(200'000, 'x'));
  const std::tuple<NSString, NSData> cases[] = {{file, bytes("x")}, {kept, large}, {kept, NSData()}};
  for (const auto &[path, data] : cases) {
    NSError error;
    ASSERT_EQ(::seteuid(65534), 0);
    const bool isSet = setResourceForkData(path, data, &error);
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_FALSE(isSet) << path.UTF8String() << data.length();
    EXPECT_EQ(error.errorCode(), ErrorCode::unreadable) << path.UTF8String() << data.length();
  }
  EXPECT_FALSE(resourceForkData(file));
  EXPECT_EQ(resourceForkData(kept), bytes("old"));
}

TEST(HFSFileTypes, AreFourCharactersInQuotes) {
  const std::pair<OSType, NSString> cases[] = {{0, u"''"_ns},
                                               {kText, u"'TEXT'"_ns},
                                               {0x8a20ff27, u"'\u00e4 \u02c7''"_ns},
                                               {0x00000001, u"'\0\0\0\1'"_ns}};
  for (const auto &[code, text] : cases) {
    EXPECT_EQ(NSFileTypeForHFSTypeCode(code), text);
    EXPECT_EQ(NSHFSTypeCodeFromFileType(text), code);
  }
  for (const NSString &text :
       {NSString(), u"TEXT"_ns, u"'TEX'"_ns, u"'TEXTS'"_ns, u"'TEXT"_ns, u"'\u4e00bcd'"_ns})
    EXPECT_EQ(NSHFSTypeCodeFromFileType(text), 0u);
}

}  // namespace
}  // namespace nimbo
