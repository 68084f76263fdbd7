// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/AppleDouble.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace nimbo {
namespace {

using namespace std::string_view_literals;

NSData bytes(std::string_view text) {
  return NSData::dataWithBytes(text.data(), text.size());
}

/// A header with the filler that one of the makers writes, and an entry of four bytes behind another of three.
constexpr std::string_view kTwoEntries =
    "\0\x05\x16\x07\0\x02\0\0Mac OS X        \0\x02"
    "\0\0\0\x09\0\0\0\x36\0\0\0\x04"
    "\0\0\0\x02\0\0\0\x32\0\0\0\x03"
    "forkinfo"sv;

TEST(AppleDouble, IsReadByteByByte) {
  const auto file = AppleDouble::appleDoubleWithData(bytes(kTwoEntries));
  ASSERT_TRUE(file);
  EXPECT_EQ(file->entry(AppleDouble::kFinderInfo), bytes("info"));
  EXPECT_EQ(file->entry(AppleDouble::kResourceFork), bytes("for"));
  EXPECT_FALSE(file->entry(AppleDouble::kComment));

  struct Change {
    std::size_t offset;
    std::string_view bytes;
  };
  const Change hostile[] = {
      {0, "x"},                                  // Another magic number.
      {5, "\1"},                                 // Another version.
      {25, "\3"},                                // More entries than bytes.
      {24, "\xff\xff"},                          // Many more.
      {31, "\x31"},                              // An entry inside the header.
      {31, "\x34"},                              // Overlapping entries.
      {34, "\xff"},                              // An entry that ends behind the file.
      {30, "\xff\xff\xff\xff\xff\xff\xff\xff"},  // Offset and length that overflow.
      {29, "\x02"},                              // Two entries of one number.
  };
  for (const Change &change : hostile) {
    std::string changed(kTwoEntries);
    changed.replace(change.offset, change.bytes.size(), change.bytes);
    EXPECT_FALSE(AppleDouble::appleDoubleWithData(bytes(changed))) << change.offset;
  }
  for (std::size_t length = 0; length < kTwoEntries.size(); ++length)
    EXPECT_FALSE(AppleDouble::appleDoubleWithData(bytes(kTwoEntries.substr(0, length)))) << length;
  EXPECT_FALSE(AppleDouble::appleDoubleWithData(NSData()));
}

TEST(AppleDouble, KeepsThePlacesUnlessAnEntryChangesItsLength) {
  auto file = AppleDouble::appleDoubleWithData(bytes(kTwoEntries)).value();
  file.setEntry(AppleDouble::kFinderInfo, bytes("INFO"));
  std::string same(kTwoEntries);
  same.replace(same.find("info"), 4, "INFO").replace(same.find("kINFO"), 1, 1, '\0');
  EXPECT_EQ(file.data(), bytes(same));

  file.setEntry(AppleDouble::kFinderInfo, bytes("longer"));
  file.setEntry(AppleDouble::kComment, bytes("text"));
  EXPECT_EQ(file.data().view().substr(24),
            "\0\x03"
            "\0\0\0\x09\0\0\0\x3e\0\0\0\x06"
            "\0\0\0\x04\0\0\0\x44\0\0\0\x04"
            "\0\0\0\x02\0\0\0\x48\0\0\0\x03"
            "longertextfor"sv);
  file.setEntry(AppleDouble::kFinderInfo, NSData());
  file.setEntry(AppleDouble::kFinderInfo, NSData());
  const auto again = AppleDouble::appleDoubleWithData(file.data()).value();
  EXPECT_FALSE(again.entry(AppleDouble::kFinderInfo));
  EXPECT_EQ(again.entry(AppleDouble::kComment), bytes("text"));
  EXPECT_EQ(again.data().view().substr(8, 16), "Mac OS X        ");
}

TEST(AppleDouble, EmptyOnesHaveTheLayoutThatServersAskFor) {
  AppleDouble metadata = AppleDouble::metadata();
  metadata.setEntry(AppleDouble::kFinderInfo, bytes(std::string(32, 'f')));
  metadata.setEntry(AppleDouble::kAFPFileInfo, bytes("\0\0\1\xa0"sv));
  const NSData data = metadata.data();
  ASSERT_EQ(data.length(), 402u);
  EXPECT_EQ(data.view().substr(122, 32), std::string(32, 'f'));
  EXPECT_EQ(data.view().substr(370, 4), "\0\0\1\xa0"sv);
  EXPECT_TRUE(AppleDouble::appleDoubleWithData(data));
  // Finder information, comment, dates, the server's attributes, and its cache in four entries of its own.
  EXPECT_EQ(data.view().substr(0, 122),
            "\0\x05\x16\x07\0\x02\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x08"
            "\0\0\0\x09\0\0\0\x7a\0\0\0\x20"
            "\0\0\0\x04\0\0\0\x9a\0\0\0\0"
            "\0\0\0\x08\0\0\1\x62\0\0\0\x10"
            "\0\0\0\x0e\0\0\1\x72\0\0\0\x04"
            "\x80"
            "DEV\0\0\1\x76\0\0\0\0"
            "\x80INO\0\0\1\x7e\0\0\0\0"
            "\x80SYN\0\0\1\x86\0\0\0\0"
            "\x80SV~\0\0\1\x8e\0\0\0\0"sv);
  EXPECT_EQ(data.view().substr(354, 16), "\x80\0\0\0\x80\0\0\0\x80\0\0\0\x80\0\0\0"sv);

  const NSData companion = AppleDouble::companion().data();
  EXPECT_EQ(companion.length(), 82u);
  EXPECT_EQ(AppleDouble::appleDoubleWithData(companion)->entry(AppleDouble::kResourceFork), NSData::data());
}

}  // namespace
}  // namespace nimbo
