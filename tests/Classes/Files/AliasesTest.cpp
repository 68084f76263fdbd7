// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Aliases.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Classes/Files/AliasRecords.hpp"
#include "Classes/Files/NSString+NSStringNimboLinkExtensions.hpp"
#include "Classes/Files/ResourceFork.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

std::string number(std::uint64_t value, std::size_t size, bool isLittle) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i)
    bytes += static_cast<char>(value >> 8 * (isLittle ? i : size - 1 - i) & 0xff);
  return bytes;
}

std::string little(std::uint64_t value) {
  return number(value, 4, true);
}

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

/// Builds bookmark data as the platform lays it out: records first, the table of contents behind them.
struct BookmarkBuilder {
  std::string records = little(0);
  std::vector<std::pair<std::uint32_t, std::uint32_t>> table;
  /// How many tables without entries lead to the one with them.
  std::uint32_t emptyTables = 0;

  std::uint32_t add(std::uint32_t type, std::string_view bytes) {
    const auto offset = static_cast<std::uint32_t>(records.size());
    records += little(bytes.size()) + little(type);
    records += bytes;
    records.resize((records.size() + 3) / 4 * 4);
    return offset;
  }
  void addPath(const std::vector<std::string> &names) {
    std::string offsets;
    for (const std::string &name : names) offsets += little(add(0x101, name));
    table.emplace_back(0x1004, add(0x601, offsets));
  }
  void addProperties(char flags) { table.emplace_back(0x1010, add(0x201, flags + std::string(23, '\0'))); }
  std::string body() const {
    std::string bytes = records;
    bytes.replace(0, 4, little(records.size()));
    for (std::uint32_t i = 0; i < emptyTables; ++i)
      bytes += little(12) + little(0xfffffffe) + little(1) + little(bytes.size() + 20) + little(0);
    bytes += little(12 * table.size() + 12) + little(0xfffffffe) + little(1) + little(0) + little(table.size());
    for (const auto &[key, offset] : table) bytes += little(key) + little(offset) + little(0);
    return bytes;
  }
  std::string bookmark() const {
    const std::string bytes = body();
    return "book" + little(bytes.size() + 48) + little(0x10040000) + little(48) + std::string(32, '\0') + bytes;
  }
  std::string aliasFile() const {
    const std::string bytes = body();
    return "book\0\0\0\0mark\0\0\0\0"s + little(56) + little(56) + little(bytes.size() + 56) +
           little(0x10040000) + std::string(24, '\0') + bytes;
  }
};

std::string tag(int number_, std::string_view value) {
  return number(static_cast<std::uint64_t>(number_), 2, false) + number(value.size(), 2, false) +
         std::string(value) + std::string(value.size() % 2, '\0');
}

std::string aliasRecord(int version, int kind, const std::string &tags) {
  const std::string head = "\0\0\0\0\0\0"s + number(static_cast<std::uint64_t>(version), 2, false) +
                           number(static_cast<std::uint64_t>(kind), 2, false);
  return head + std::string((version == 2 ? 150 : 58) - head.size(), 'x') + tags + "\xff\xff\0\0"s;
}

TEST(Aliases, NameTheirOriginals) {
  BookmarkBuilder file, folderOnDisk, withRecord;
  file.addPath({"Users", "m\xc3\xa9", "a.txt"});
  file.addProperties(1);
  folderOnDisk.addProperties(2);
  folderOnDisk.addPath({"Volumes", "Disk", "f"});
  withRecord.table.emplace_back(0xfe00, withRecord.add(0x201, aliasRecord(2, 1, tag(18, "/f") + tag(19, "/"))));
  // A text is no path, whatever its bytes are; the record of a file counts then.
  BookmarkBuilder withText, withoutProperties, withEmptyProperties;
  const std::uint32_t name = withText.add(0x101, "wrong");
  withText.table.emplace_back(0x1004, withText.add(0x101, little(name)));
  withText.table.emplace_back(0xfe00, withText.add(0x201, aliasRecord(3, 0, tag(18, "/f"))));
  withoutProperties.addPath({"f"});
  withEmptyProperties.addPath({"f"});
  withEmptyProperties.table.emplace_back(0x1010, withEmptyProperties.add(0x201, ""));
  struct Case {
    NSData data;
    const char *path;
    bool isDirectory;
  };
  const Case cases[] = {
      {dataOf(file.bookmark()), "/Users/m\xc3\xa9/a.txt", false},
      {dataOf(file.aliasFile()), "/Users/m\xc3\xa9/a.txt", false},
      {dataOf(folderOnDisk.aliasFile()), "/Volumes/Disk/f", true},
      {dataOf(withRecord.bookmark()), "/f", true},
      {dataOf(withText.bookmark()), "/f", false},
      {dataOf(withoutProperties.bookmark()), "/f", false},
      {dataOf(withEmptyProperties.bookmark()), "/f", false},
      {dataOf("alis" + file.bookmark().substr(4)), "/Users/m\xc3\xa9/a.txt", false},
      {dataOf(file.bookmark() + "x"), "", false},
  };
  for (const Case &one : cases) {
    const AliasOriginal original = originalOfBookmark(one.data);
    EXPECT_EQ(original.path.UTF8String(), one.path);
    EXPECT_EQ(original.isDirectory, one.isDirectory) << one.path;
  }
  const std::pair<std::string, const char *> records[] = {
      {aliasRecord(2, 0, tag(0, "odd") + tag(18, "/a/b") + tag(19, "/Volumes/D")), "/Volumes/D/a/b"},
      {aliasRecord(3, 0, tag(19, "/") + tag(18, "/a/b")), "/a/b"},
      {aliasRecord(3, 0, tag(19, "/") + tag(18, "a/b")), "/a/b"},
      {aliasRecord(3, 0, tag(18, "/a/b/")), "/a/b"},
      {aliasRecord(3, 0, tag(18, "/")), "/"},
      {aliasRecord(2, 0, tag(2, "Root:a:b")), "/a/b"},
      {aliasRecord(2, 0, tag(2, "Root:a") + tag(18, "/b")), "/b"},
      {aliasRecord(2, 0, tag(2, "Elsewhere:a")), ""},
      {aliasRecord(2, 0, tag(18, "a")), ""},
      {aliasRecord(2, 0, tag(18, "/a\0b"sv)), ""},
      {aliasRecord(4, 0, tag(18, "/a/b")), ""},
      {aliasRecord(1, 0, tag(18, "/a/b")), ""},
      {aliasRecord(2, 0, ""), ""},
      {aliasRecord(2, 0, "\0\x12\xff\xff/a"s), ""},
      // The last value ends with the record, or one byte behind it.
      {aliasRecord(2, 0, "").substr(0, 150) + "\0\x12\0\2/a"s, "/a"},
      {aliasRecord(2, 0, "").substr(0, 150) + "\0\x12\0\3/a"s, ""},
  };
  for (const auto &[bytes, path] : records)
    EXPECT_EQ(originalOfAliasRecord(dataOf(bytes)).path.UTF8String(), path);
}

TEST(Aliases, BelieveNoOffset) {
  BookmarkBuilder good;
  good.addPath({"a", "b"});
  good.addProperties(2);
  const std::string bytes = good.aliasFile();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const ExactBuffer<char> cut(std::string_view(bytes).substr(0, length));
    originalOfBookmark(dataOf({cut.data(), length}));
  }
  // Any word may be any number; what comes of it is a path or none.
  for (std::size_t i = 0; i + 4 <= bytes.size(); ++i) {
    for (const std::uint32_t value : {0u, 1u, 56u, 0x7fffffffu, 0xfffffff0u, 0xffffffffu}) {
      std::string hostile = bytes;
      hostile.replace(i, 4, little(value));
      const NSString path = originalOfBookmark(dataOf(hostile)).path;
      EXPECT_TRUE(!path || path.view().starts_with(u'/')) << i;
    }
  }
  for (const std::string &name : {std::string("a/b"), std::string("a\0b", 3), std::string()}) {
    BookmarkBuilder odd;
    odd.addPath({"x", name});
    EXPECT_FALSE(originalOfBookmark(dataOf(odd.bookmark())).path) << name;
  }
  BookmarkBuilder itself;
  itself.table.emplace_back(0x1004, static_cast<std::uint32_t>(itself.records.size()));
  itself.add(0x601, little(4));
  EXPECT_FALSE(originalOfBookmark(dataOf(itself.bookmark())).path);
  // More components than any path has, and as many as one may have.
  for (const std::size_t count : {4096u, 4097u}) {
    BookmarkBuilder deep;
    deep.addPath(std::vector<std::string>(count, "a"));
    const NSString path = originalOfBookmark(dataOf(deep.bookmark())).path;
    EXPECT_EQ(path.length(), count == 4096 ? 2 * count : 0);
  }
  // More tables than any bookmark has, and as many as one may have.
  for (const std::uint32_t count : {15u, 16u}) {
    BookmarkBuilder many;
    many.addPath({"a"});
    many.emptyTables = count;
    EXPECT_EQ(originalOfBookmark(dataOf(many.bookmark())).path, count == 15 ? u"/a"_ns : NSString());
  }
  // Records that begin within the header.
  const std::string header = "book" + little(80) + little(0x10040000) + little(12) + std::string(8, '\0');
  const std::string records = little(24) + little(0xfffffffe) + little(1) + little(0) + little(1) +
                              little(0x1004) + little(44) + little(0) + little(4) + little(0x601) + little(56) +
                              little(1) + little(0x101) + "a\0\0\0"s;
  EXPECT_FALSE(originalOfBookmark(dataOf(header + records)).path);
  // A table that follows itself.
  std::string circle = BookmarkBuilder().bookmark();
  circle.replace(circle.size() - 8, 4, little(4));
  EXPECT_FALSE(originalOfBookmark(dataOf(circle)).path);
}

TEST(Aliases, AreFilesWhoseOriginalMayBeThere) {
  const TemporaryFolder folder;
  const auto aliasOf = [&](const std::filesystem::path &path, char properties) {
    BookmarkBuilder alias;
    alias.addProperties(properties);
    alias.addPath({std::next(path.begin()), path.end()});
    return folder.write("alias", alias.aliasFile());
  };
  bool isDirectory = false;
  const NSString gone = aliasOf("/no/such/folder", 2);
  EXPECT_TRUE(isAliasFileAtPath(gone, &isDirectory) && isDirectory);
  EXPECT_EQ(resolveAlias(gone, true, &isDirectory), u"/no/such/folder"_ns);
  EXPECT_TRUE(isDirectory);
  folder.write("a/b", "");
  // What is there now counts.
  EXPECT_EQ(resolveAlias(aliasOf(folder.path() / "a", 1), true, &isDirectory), folder.string("a"));
  EXPECT_TRUE(isDirectory);
  EXPECT_EQ(resolveAlias(aliasOf(folder.path() / "a/b", 2), false, &isDirectory), folder.string("a/b"));
  EXPECT_FALSE(isDirectory);

  // Older ones have a record in their fork, and a flag that says so.
  const NSString old = folder.write("old", "");
  const std::string record = aliasRecord(2, 0, tag(18, "/x") + tag(19, "/"));
  auto fork = ResourceFork::resourceForkForWritingAtPath(old);
  ASSERT_TRUE(fork && fork->addData(dataOf(record), OSTypeFromString(u"alis"_ns), 0));
  EXPECT_FALSE(isAliasFileAtPath(old));
  if (setFinderField(old, {FinderField::Entry::finderInfo, 8, 2, 0x8000}, 0x8000)) {
    EXPECT_TRUE(isAliasFileAtPath(old));
    EXPECT_EQ(resolveAlias(old), u"/x"_ns);
  }

  // Paths lead through aliases as through links, as long as their originals are there.
  const NSString alias = aliasOf(folder.path() / "a", 2);
  std::filesystem::create_symlink("alias", folder.path() / "named");
  const std::pair<NSString, NSString> ways[] = {{alias, folder.string("a")},
                                                {folder.string("named"), alias},
                                                {folder.string("alias/b"), folder.string("alias/b")}};
  for (const auto &[path, one] : ways) EXPECT_EQ(stringByResolvingLinkOfPath(path), one);
  const NSString all = stringByResolvingLinksInPath(folder.string("a/b"));
  EXPECT_EQ(stringByResolvingLinksInPath(folder.string("named/../alias/b")), all);
  for (const std::filesystem::path &lost :
       {folder.path() / "alias", std::filesystem::path("/no/such/folder")}) {
    const NSString useless = stringByAppendingPathComponent(aliasOf(lost, 2), u"b"_ns);
    EXPECT_TRUE(stringByResolvingLinksInPath(useless).view().ends_with(u"/alias/b"));
  }

  std::filesystem::create_symlink("a", folder.path() / "link");
  const NSString noAliases[] = {NSString(), folder.string("a"), folder.string("link"), folder.string("none"),
                                folder.write("text", "book and paper, more than a few bytes")};
  for (const NSString &none : noAliases) {
    isDirectory = true;
    EXPECT_FALSE(isAliasFileAtPath(none, &isDirectory) || isDirectory) << none.UTF8String();
    EXPECT_FALSE(resolveAlias(none));
  }
}

}  // namespace
}  // namespace nimbo
