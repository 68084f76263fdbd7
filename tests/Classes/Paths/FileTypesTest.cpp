// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/FileTypes.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace nimbo {
namespace {

TEST(FileTypes, RiseAndAnswerThemselves) {
  const std::span<const FileType> types = fileTypes();
  EXPECT_EQ(std::ranges::adjacent_find(types, std::ranges::greater_equal(), &FileType::extension), types.end());
  for (const auto &[kinds, extension] : types) {
    const std::string shown(extension.begin(), extension.end());
    EXPECT_NE(kinds, FileKinds::none) << shown;
    EXPECT_EQ(kindsOfExtension(extension), kinds) << shown;
    EXPECT_EQ(kindsOfExtension(extension.substr(0, 1)), FileKinds::none) << shown;
    std::u16string units(extension);
    EXPECT_EQ(kindsOfExtension(units + u"!"), FileKinds::none) << shown;
    std::ranges::transform(units, units.begin(), [](char16_t c) { return c >= u'a' ? c - 0x20 : c; });
    EXPECT_EQ(kindsOfExtension(units), kinds) << shown;
    EXPECT_TRUE(intersects(FileKinds::media, kinds) ||
                !intersects(FileKinds::audio | FileKinds::video | FileKinds::embedded, kinds))
        << shown;
  }
  for (const std::u16string_view unknown : {u"", u"!", u"zzzz", u"\u212ay", u"g\u017f", u"\uff47\uff5a"})
    EXPECT_EQ(kindsOfExtension(unknown), FileKinds::none);
}

TEST(FileTypes, AreListedByTheirKinds) {
  for (std::uint32_t bit = 1; bit != 0; bit <<= 1) {
    const auto kind = static_cast<FileKinds>(bit);
    std::set<std::u16string> listed, expected;
    for (const NSString &extension : extensionsOfKinds(kind)) listed.emplace(extension.view());
    for (const auto &[kinds, extension] : fileTypes())
      if (intersects(kinds, kind)) expected.emplace(extension);
    EXPECT_EQ(listed, expected) << bit;
    EXPECT_EQ(listed.empty(), kind > FileKinds::pdfBundle) << bit;
  }
  const auto both = extensionsOfKinds(FileKinds::pdf | FileKinds::word);
  EXPECT_EQ(both.size(), extensionsOfKinds(FileKinds::pdf).size() + extensionsOfKinds(FileKinds::word).size());
  EXPECT_TRUE(extensionsOfKinds(FileKinds::none).empty());
}

}  // namespace
}  // namespace nimbo
