// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/AttributeChanges.hpp"
#include "Classes/Movies/QTMovie+NimboQTMovieExtensions.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

TEST(QuickTimeFileTypes, ExtensionsIgnoreCaseAndTypeCodesDoNot) {
  const struct {
    NSString extension, type;
    bool isMovie;
  } cases[] = {
      {u"mp3"_ns, {}, true},           {u"MP3"_ns, {}, true},
      {u"qtz"_ns, {}, true},           {u"webm"_ns, {}, true},
      {u"txt"_ns, {}, false},          {u""_ns, {}, false},
      {{}, u"'MP3 '"_ns, true},        {{}, u"'mp3 '"_ns, false},
      {{}, u"'MooV'"_ns, true},        {{}, u"'moov'"_ns, false},
      {u"txt"_ns, u"'Midi'"_ns, true}, {{}, u"''"_ns, false},
      {{}, u"MP3 "_ns, false},         {{}, {}, false},
      {u"'mp3 '"_ns, {}, true},
  };
  for (const auto &[extension, type, isMovie] : cases)
    EXPECT_EQ(isQuickTimeExtension(extension, type), isMovie) << extension.UTF8String() << type.UTF8String();
}

TEST(QuickTimeFileTypes, EachStandsThereOnce) {
  const NSArray &types = QuickTimeFileTypes();
  for (std::uint32_t i = 0; i < types.count(); ++i)
    for (std::uint32_t j = 0; j < i; ++j) EXPECT_NE(types[i], types[j]) << types[i].string().UTF8String();
  for (const NSString &type : QTMovie::movieFileTypes()) EXPECT_TRUE(isQuickTimeExtension(type, type));
}

TEST(QuickTimeFileTypes, FilesGoByNameOrCode) {
  const TemporaryFolder folder;
  const NSString plain = folder.write("plain", "x");
  EXPECT_FALSE(isQuickTimeFile(plain));
  EXPECT_TRUE(isQuickTimeFile(folder.write("Clip.MOV", "x")));
  EXPECT_TRUE(isQuickTimeFile(folder.string("absent.mpeg")));
  ASSERT_TRUE(setFileHFSTypeCode(OSTypeFromString(u"MooV"_ns), plain));
  EXPECT_TRUE(isQuickTimeFile(plain));
}

}  // namespace
}  // namespace nimbo
