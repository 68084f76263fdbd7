// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "tests/support/EnvironmentSetting.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

NSString text(std::string_view utf8) {
  return NSString::stringWithUTF8String(utf8);
}

TEST(NSPathUtilities, TakesPathsApartAndJoinsThem) {
  const std::pair<std::string_view, std::string_view> extensions[] = {
      {"/a/b.txt", "txt"},     {"b.tar.gz", "gz"}, {"/a.b/c", ""}, {".hidden", ""},
      {"/x/.hidden.Md", "Md"}, {"name.", ""},      {"", ""},       {"a.rtfd/", "rtfd"},
  };
  for (const auto &[path, extension] : extensions)
    EXPECT_EQ(pathExtension(text(path)).UTF8String(), extension) << path;
  const std::string_view joined[][3] = {
      {"/a", "b", "/a/b"}, {"/a/", "/b", "/a/b"}, {"/", "b", "/b"}, {"", "b", "b"}, {"/a//", "", "/a"},
  };
  for (const auto &[path, component, whole] : joined)
    EXPECT_EQ(stringByAppendingPathComponent(text(path), text(component)).UTF8String(), whole);
}

TEST(NSPathUtilities, KnowsNamesAndFolders) {
  // The path, its last component, folder, form without and with one more extension, and components.
  const std::string_view cases[][6] = {
      {"/tmp/scratch.tiff", "scratch.tiff", "/tmp", "/tmp/scratch", "/tmp/scratch.tiff.x",
       "/|tmp|scratch.tiff|"},
      {"/tmp//a/", "a", "/tmp", "/tmp//a", "/tmp//a.x", "/|tmp|a|/|"},
      {"//", "/", "/", "/", "//", "/|"},
      {"a/", "a", "", "a", "a.x", "a|/|"},
      {"a..b", "a..b", "", "a.", "a..b.x", "a..b|"},
      {"x/.b", ".b", "x", "x/.b", "x/.b.x", "x|.b|"},
      {"", "", "", "", "", ""},
  };
  for (const auto &[given, last, folder, withoutExtension, extended, components] : cases) {
    const NSString path = text(given);
    EXPECT_EQ(lastPathComponent(path).UTF8String(), last) << given;
    EXPECT_EQ(stringByDeletingLastPathComponent(path).UTF8String(), folder) << given;
    EXPECT_EQ(stringByDeletingPathExtension(path).UTF8String(), withoutExtension) << given;
    EXPECT_EQ(stringByAppendingPathExtension(path, u"x"_ns).UTF8String(), extended) << given;
    std::string joined;
    for (const NSString &name : pathComponents(path)) joined += name.UTF8String() + "|";
    EXPECT_EQ(joined, components) << given;
  }
}

TEST(NSPathUtilities, StandardizesAlongRealFolders) {
  const TemporaryFolder folder;
  const std::filesystem::path real = std::filesystem::canonical(folder.path());
  std::filesystem::create_directories(real / "deep/down");
  std::filesystem::create_symlink("deep/down", real / "link");
  const std::string base = real.native();
  const std::string home = NSHomeDirectory().UTF8String();
  const std::pair<std::string, std::string> cases[] = {
      {base + "/link/../x", base + "/deep/x"},  // Not what the names say.
      {base + "/link/none/../x/", base + "/link/x"},
      {base + "//deep/./none/../..", base},
      {"/../..", "/"},
      {"a/.././b//", "a/../b"},
      {"~/./x", home + "/x"},
  };
  for (const auto &[path, standard] : cases)
    EXPECT_EQ(stringByStandardizingPath(text(path)).UTF8String(), standard) << path;
  EXPECT_EQ(stringByAbbreviatingWithTildeInPath(text(home + "/x")), u"~/x"_ns);
  EXPECT_EQ(stringByAbbreviatingWithTildeInPath(text(home + "x")).UTF8String(), home + "x");
}

TEST(NSPathUtilities, ExpandsOnlyTheUsersOwnTilde) {
  const std::string home = NSHomeDirectory().UTF8String();
  EXPECT_EQ(stringByExpandingTildeInPath(u"~/x"_ns).UTF8String(), home + "/x");
  EXPECT_EQ(stringByExpandingTildeInPath(u"~"_ns).UTF8String(), home);
  for (const NSString &path : {u"~somebody/x"_ns, u"~x"_ns, u"/a/~/b"_ns, NSString::string()})
    EXPECT_TRUE(stringByExpandingTildeInPath(path).identicalTo(path));
}

TEST(NSPathUtilities, AbbreviatesTheHomeThatTheEnvironmentNames) {
  const struct {
    const char *home, *path, *abbreviated;
  } cases[] = {
      {"/h", "/h/x", "~/x"}, {"/h", "/h", "~"},  {"/h/", "/h/", "~/"},
      {"/h", "/hx", "/hx"},  {"/h", "/x", "/x"}, {"/", "/x", "/x"},
  };
  for (const auto &[home, path, abbreviated] : cases) {
    const EnvironmentSetting setting("HOME", home);
    EXPECT_EQ(stringByAbbreviatingWithTildeInPath(text(path)).UTF8String(), abbreviated) << home << " " << path;
  }
  // A relative one is none: the user database says.
  const EnvironmentSetting none("HOME", nullptr);
  const NSString known = NSHomeDirectory();
  const EnvironmentSetting relative("HOME", "h");
  EXPECT_EQ(NSHomeDirectory(), known);
}

TEST(NSStringCase, LowersByUnicode) {
  EXPECT_EQ(lowercaseString(u"COM.\u0130\u0130"_ns), u"com.i\u0307i\u0307"_ns);  // Lower case is longer.
  const NSString lower = u"public.\u00e4"_ns;
  EXPECT_TRUE(lowercaseString(lower).identicalTo(lower));
}

TEST(NSBundle, ReadsItsInformationAndRefusesExecutablesElsewhere) {
  const TemporaryFolder folder;
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"code.so", "/Contents/Linux/code.so"}, {"../../code.so", ""}, {"/bin/sh", ""}, {"..", ""}, {"", ""},
  };
  for (const auto &[executable, path] : cases) {
    folder.write("x.bundle/Contents/Info.plist",
                 "{ CFBundleExecutable = \"" + std::string(executable) + "\"; Other = (a); }");
    const NSBundle bundle(folder.string("x.bundle"));
    EXPECT_EQ(bundle.objectForInfoDictionaryKey(u"Other"_ns), id(NSArray{u"a"_ns}));
    const std::string expected = path.empty() ? "" : folder.string("x.bundle").UTF8String() + std::string(path);
    EXPECT_EQ(bundle.executablePath().UTF8String(), expected);
  }
  folder.write("x.bundle/Contents/Info.plist",
               "{ Other = \"" + std::string(NSBundle::kMaximumInfoBytes, 'x') + "\"; }");
  NSError error;
  EXPECT_FALSE(NSBundle(folder.string("x.bundle")).infoDictionary(&error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
  // The largest one, to the byte.
  std::string largest = "{ Other = \"\"; }";
  largest.insert(largest.size() - 4, NSBundle::kMaximumInfoBytes - largest.size(), 'x');
  folder.write("x.bundle/Contents/Info.plist", largest);
  EXPECT_TRUE(NSBundle(folder.string("x.bundle")).infoDictionary());
  largest.insert(largest.size() - 4, 1, 'x');
  folder.write("x.bundle/Contents/Info.plist", largest);
  EXPECT_FALSE(NSBundle(folder.string("x.bundle")).infoDictionary());
  EXPECT_FALSE(NSBundle(folder.string("none")).infoDictionary());
}

}  // namespace
}  // namespace nimbo
