// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/CFPlugIn.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "tests/ImporterBundle.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

constexpr fs::perms kGroupWrites = fs::perms::group_write;
constexpr fs::perms kOthersWrite = fs::perms::others_write;

TEST(CFPlugIn, ReadsUUIDs) {
  const auto uuid = CFUUIDCreateFromString(u"8b08C4BF-415B-11D8-B3F9-0003936726FC"_ns);
  ASSERT_TRUE(uuid);
  EXPECT_EQ((*uuid)[0], 0x8b);
  EXPECT_EQ((*uuid)[15], 0xfc);
  for (const NSString &text :
       {u""_ns, u"8B08C4BF-415B-11D8-B3F9-0003936726F"_ns, u"8B08C4BF+415B-11D8-B3F9-0003936726FC"_ns,
        u"8B08C4BG-415B-11D8-B3F9-0003936726FC"_ns, NSString()})
    EXPECT_FALSE(CFUUIDCreateFromString(text)) << text.UTF8String();
}

TEST(CFPlugIn, LoadsOnlyWhatNobodyElseCanChange) {
  const auto makeLink = [](const fs::path &path) {
    fs::rename(path, path.native() + ".moved");
    fs::create_symlink(path.native() + ".moved", path);
  };
  const auto widen = [](fs::perms who) {
    return [who](const fs::path &path) { fs::permissions(path, who, fs::perm_options::add); };
  };
  const struct {
    const char *what;
    const char *path;
    std::function<void(const fs::path &)> tamper;
    bool loads;
  } cases[] = {
      {"nothing", "", [](const fs::path &) {}, true},
      {"bundle, group", "", widen(kGroupWrites), false},
      {"bundle, others", "", widen(kOthersWrite), false},
      {"bundle, link", "", makeLink, false},
      {"contents, others", "Contents", widen(kOthersWrite), false},
      {"contents, link", "Contents", makeLink, false},
      {"information, group", "Contents/Info.plist", widen(kGroupWrites), false},
      {"information, link", "Contents/Info.plist", makeLink, false},
      {"information, missing", "Contents/Info.plist", [](const fs::path &path) { fs::remove(path); }, false},
      {"code folder, group", "Contents/Linux", widen(kGroupWrites), false},
      {"code folder, link", "Contents/Linux", makeLink, false},
      {"library, others", "Contents/Linux/library.so", widen(kOthersWrite), false},
      {"library, link", "Contents/Linux/library.so", makeLink, false},
      {"library, no code", "Contents/Linux/library.so", [](const fs::path &path) { fs::resize_file(path, 99); },
       false},
  };
  for (const auto &[what, path, tamper, loads] : cases) {
    const TemporaryFolder folder;
    const NSString bundle =
        ImporterBundle{{}, TEST_PLUGIN, {"makeEveryKindImporter"}}.writeTo(folder, "x.mdimporter");
    const fs::path whole = folder.path() / "x.mdimporter";
    tamper(*path ? whole / path : whole);
    EXPECT_EQ(CFPlugInCreate(bundle).has_value(), loads) << what;
    EXPECT_EQ(CFPlugInCreate(folder.string("x.mdimporter/")).has_value(), loads)
        << what << ", slash at the end";
  }
  const TemporaryFolder folder;
  ImporterBundle outside = {{}, TEST_PLUGIN, {}, "<false/>", "../../../library.so"};
  EXPECT_FALSE(CFPlugInCreate(outside.writeTo(folder, "x.mdimporter")));
}

TEST(CFPlugIn, LogsARefusalOnce) {
  const TemporaryFolder folder;
  testing::internal::CaptureStderr();
  EXPECT_FALSE(CFPlugInCreate(folder.string("none.mdimporter")));
  EXPECT_NE(testing::internal::GetCapturedStderr().find("is missing"), std::string::npos);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(CFPlugInCreate(folder.string("none.mdimporter")));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace nimbo
