// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/CFPlugIn.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "Classes/Collections/NSObject+NSObjectNimboExtensions.hpp"
#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSObject.hpp"
#include "tests/support/ImporterBundle.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

TEST(NSBundle, OfAClassIsItsLibrary) {
  EXPECT_NE(bundle(NSObject::rootClass()).bundlePath(), NSBundle::mainBundle().bundlePath());
}

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

/// The bundle as it was made, or after `tamper` of what is at `path` in it.
bool loads(const fs::path &path = {}, const std::function<void(const fs::path &)> &tamper = {}) {
  const TemporaryFolder folder;
  const NSString bundle =
      ImporterBundle{{}, TEST_PLUGIN, {"makeEveryKindImporter"}}.writeTo(folder, "x.mdimporter");
  if (tamper) tamper(path.empty() ? folder.path() / "x.mdimporter" : folder.path() / "x.mdimporter" / path);
  const bool result = CFPlugInCreate(bundle).has_value();
  EXPECT_EQ(CFPlugInCreate(folder.string("x.mdimporter/")).has_value(), result) << path << ", slash at the end";
  return result;
}

TEST(CFPlugIn, LoadsOnlyWhatNobodyElseCanChange) {
  EXPECT_TRUE(loads());
  for (const char *path :
       {"", "Contents", "Contents/Info.plist", "Contents/Linux", "Contents/Linux/library.so"}) {
    for (const fs::perms who : {fs::perms::group_write, fs::perms::others_write})
      EXPECT_FALSE(loads(path, [who](const fs::path &it) { fs::permissions(it, who, fs::perm_options::add); }))
          << path;
    EXPECT_FALSE(loads(path, [](const fs::path &it) {
      fs::rename(it, it.native() + ".moved");
      fs::create_symlink(it.native() + ".moved", it);
    })) << path;
  }
  EXPECT_FALSE(loads("Contents/Info.plist", [](const fs::path &it) { fs::remove(it); }));
  EXPECT_FALSE(loads("Contents/Linux/library.so", [](const fs::path &it) { fs::resize_file(it, 99); }));
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
