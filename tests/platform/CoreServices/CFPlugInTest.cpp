// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/CFPlugIn.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <thread>

#include "Classes/Collections/NSObject+NSObjectNimboExtensions.hpp"
#include "platform/CoreServices/MDImporter.h"
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

/// Why the bundle is not loaded after `tamper` of what is at `path` in it; `none` when it is.
ErrorCode refusal(const fs::path &path = {}, const std::function<void(const fs::path &)> &tamper = {}) {
  const TemporaryFolder folder;
  const NSString bundle =
      ImporterBundle{{}, TEST_PLUGIN, {"makeEveryKindImporter"}}.writeTo(folder, "x.mdimporter");
  if (tamper) tamper(path.empty() ? folder.path() / "x.mdimporter" : folder.path() / "x.mdimporter" / path);
  NSError error, errorWithSlash;
  const bool loads = CFPlugInCreate(bundle, &error).has_value();
  EXPECT_EQ(loads, !error) << path;
  EXPECT_EQ(CFPlugInCreate(folder.string("x.mdimporter/"), &errorWithSlash).has_value(), loads) << path;
  EXPECT_EQ(errorWithSlash.code, error.code) << path;
  EXPECT_EQ(error.localizedFailureReason.length() > 0, static_cast<bool>(error)) << path;
  return error.errorCode();
}

TEST(CFPlugIn, LoadsOnlyWhatNobodyElseCanChange) {
  EXPECT_EQ(refusal(), ErrorCode::none);
  for (const char *path :
       {"", "Contents", "Contents/Info.plist", "Contents/Linux", "Contents/Linux/library.so"}) {
    for (const fs::perms who :
         {fs::perms::group_write, fs::perms::others_write, fs::perms::others_write | fs::perms::sticky_bit})
      EXPECT_EQ(refusal(path, [who](const fs::path &it) { fs::permissions(it, who, fs::perm_options::add); }),
                ErrorCode::unreadable)
          << path;
    const auto link = [](const fs::path &it) {
      fs::rename(it, it.native() + ".moved");
      fs::create_symlink(it.native() + ".moved", it);
    };
    EXPECT_EQ(refusal(path, link), ErrorCode::unreadable) << path;
    EXPECT_EQ(refusal(path, [](const fs::path &it) { fs::remove_all(it); }), ErrorCode::noSuchFile) << path;
  }
  const auto write = [](std::string_view content) {
    return [content](const fs::path &it) { std::ofstream(it) << content; };
  };
  const struct {
    const char *path;
    std::function<void(const fs::path &)> tamper;
    ErrorCode code;
  } cases[] = {
      {"Contents/Info.plist", write(""), ErrorCode::incomplete},
      {"Contents/Info.plist", write("{ CFBundleExecutable = "), ErrorCode::damaged},
      {"Contents/Info.plist", write("(library.so)"), ErrorCode::damaged},
      {"Contents/Info.plist", write("{ CFBundleExecutable = \"../../../library.so\"; }"), ErrorCode::damaged},
      {"Contents/Info.plist", [](const fs::path &it) { fs::resize_file(it, NSBundle::kMaximumInfoBytes + 1); },
       ErrorCode::tooLarge},
      {"Contents/Linux/library.so", [](const fs::path &it) { fs::resize_file(it, 99); }, ErrorCode::damaged},
  };
  for (const auto &[path, tamper, code] : cases) EXPECT_EQ(refusal(path, tamper), code) << path;
}

TEST(CFPlugIn, LoadsOnlyFromFoldersInWhichNobodyElseCanExchangeIt) {
  const struct {
    mode_t mode;
    ErrorCode code;
  } cases[] = {{0755, ErrorCode::none},
               {0775, ErrorCode::unreadable},
               {0757, ErrorCode::unreadable},
               {0777, ErrorCode::unreadable},
               {01777, ErrorCode::none}};
  for (const auto &[mode, code] : cases)
    EXPECT_EQ(refusal("..", [mode = mode](const fs::path &it) { ::chmod(it.c_str(), mode); }), code) << mode;

  const TemporaryFolder folder;
  ImporterBundle{{}, TEST_PLUGIN, {}}.writeTo(folder, "real/x.mdimporter");
  fs::create_symlink("real", folder.path() / "link");
  EXPECT_TRUE(CFPlugInCreate(folder.string("link/x.mdimporter")));
}

TEST(CFPlugIn, LoadsNothingOfOtherUsers) {
  if (::geteuid() != 0) GTEST_SKIP() << "Only root can give files away.";
  for (const char *path :
       {"..", "", "Contents", "Contents/Info.plist", "Contents/Linux", "Contents/Linux/library.so"})
    EXPECT_EQ(refusal(path, [](const fs::path &it) { ASSERT_EQ(::chown(it.c_str(), 65534, 65534), 0); }),
              ErrorCode::unreadable)
        << path;
}

TEST(CFPlugIn, LoadsNothingThatIsExchangedUnderItsHands) {
  const ImporterBundle content{{}, TEST_PLUGIN, {}};
  for (int round = 0; round < 40; ++round) {
    const TemporaryFolder folder;
    const NSString bundle = content.writeTo(folder, "good.mdimporter");
    content.writeTo(folder, "bad.mdimporter");
    const fs::path good = folder.path() / "good.mdimporter", bad = folder.path() / "bad.mdimporter";
    fs::permissions(bad, fs::perms::others_write, fs::perm_options::add);
    std::jthread exchanges([&](const std::stop_token &stop) {
      bool areExchanged = false;
      while (!stop.stop_requested() || areExchanged)
        if (::renameat2(AT_FDCWD, good.c_str(), AT_FDCWD, bad.c_str(), RENAME_EXCHANGE) == 0)
          areExchanged = !areExchanged;
    });
    for (int i = 0; i < 20 && !CFPlugInCreate(bundle); ++i) std::this_thread::yield();
    exchanges.request_stop();
    exchanges.join();
    ASSERT_EQ(::dlopen((bad / "Contents/Linux/library.so").c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << round;
  }
}

TEST(CFPlugIn, FindsLibrariesRelativeToItsOwn) {
  const TemporaryFolder folder;
  const ImporterBundle split{{}, SPLIT_TEST_PLUGIN, {"makeSplitImporter"}};
  // What the linker learns from a bundle that lacks a library does not hold for the next bundle.
  EXPECT_FALSE(CFPlugInCreate(split.writeTo(folder, "x.mdimporter")));
  const NSString whole = split.writeTo(folder, "y.mdimporter");
  fs::create_directory(folder.path() / "y.mdimporter/Contents/Parts");
  fs::copy(SPLIT_TEST_PLUGIN_PART, folder.path() / "y.mdimporter/Contents/Parts");
  NSError error;
  const auto plugIn = CFPlugInCreate(whole, &error);
  ASSERT_TRUE(plugIn) << error.localizedFailureReason.UTF8String();
  const CFUUIDBytes type = std::to_array(kMDImporterTypeID);
  const auto factories = CFPlugInFindFactoriesForPlugInTypeInPlugIn(type, *plugIn);
  ASSERT_EQ(factories.size(), 1u);
  EXPECT_TRUE(CFPlugInInstanceCreate(*plugIn, factories[0], type));
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
