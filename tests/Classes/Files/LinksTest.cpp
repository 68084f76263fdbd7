// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Links.hpp"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Kinds.hpp"
#include "Classes/Files/NSString+NSStringNimboLinkExtensions.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

class FileLinks : public testing::Test {
 protected:
  FileLinks() {
    folder_.write("real/inner/file", "");
    link("real", "folder");
    link("../folder/inner/file", "real/file");
    link("real/file", "again");
    link("none/below", "broken");
    link("circle", "circle");
    link((folder_.path() / "real").c_str(), "absolute");
    link("name\xff", "bytes");
  }

  void link(const char *target, const char *name) { fs::create_symlink(target, folder_.path() / name); }

  const TemporaryFolder folder_;
};

TEST_F(FileLinks, KindsOfPaths) {
  const struct {
    const char *name;
    bool isDirectory, isLink, exists, existsBehindLinks;
  } cases[] = {{"real", true, false, true, true},    {"real/inner/file", false, false, true, true},
               {"folder", true, true, true, true},   {"again", false, true, true, true},
               {"broken", false, true, true, false}, {"circle", false, true, true, false},
               {"none", false, false, false, false}, {"again/none", false, false, false, false}};
  for (const auto &[name, isDirectory, isLink, exists, existsBehindLinks] : cases) {
    const NSString path = folder_.string(name);
    EXPECT_EQ(isDirectoryAtPath(path), isDirectory) << name;
    EXPECT_EQ(isSymbolicLinkAtPath(path), isLink) << name;
    EXPECT_EQ(fileExistsAtPath(path, false), exists) << name;
    EXPECT_EQ(fileExistsAtPath(path, true), existsBehindLinks) << name;
  }
  EXPECT_FALSE(isDirectoryAtPath(NSString()) || isSymbolicLinkAtPath(NSString()) ||
               fileExistsAtPath(NSString(), false));
}

TEST_F(FileLinks, AreResolvedOneOrAll) {
  const auto path = [&](const char *name) {
    return NSString::stringWithFileSystemRepresentation((fs::canonical(folder_.path()) / name).native());
  };
  const struct {
    const char *name, *one, *all;
  } cases[] = {
      {"folder", "real", "real"},
      {"again", "real/file", "real/inner/file"},
      {"folder/file", "folder/../folder/inner/file", "real/inner/file"},
      {"broken", "none/below", "none/below"},
      {"absolute", "real", "real"},
      {"absolute/../folder/./inner//none/x", nullptr, "real/inner/none/x"},
      {"bytes", "name\xff", "name\xff"},
      {"circle", "circle", nullptr},
      {"circle/x", nullptr, nullptr},
      {"real/inner", nullptr, nullptr},
  };
  for (const auto &[name, one, all] : cases) {
    const NSString given = path(name);
    EXPECT_EQ(resolveLink(given), one ? path(one) : NSString()) << name;
    EXPECT_EQ(stringByResolvingLinkOfPath(given), one ? path(one) : given) << name;
    EXPECT_EQ(stringByResolvingLinksInPath(given), all ? path(all) : given) << name;
    EXPECT_EQ(stringByResolvingLinksInPath(given).identicalTo(given), !all) << name;
  }
  // As many in a row as the system follows, and one more.
  std::string last = "real";
  for (int i = 1; i <= 41; ++i) {
    const std::string next = "row" + std::to_string(i);
    link(last.c_str(), next.c_str());
    last = next;
  }
  EXPECT_TRUE(fs::exists(folder_.path() / "row40"));
  EXPECT_EQ(stringByResolvingLinksInPath(path("row40")), path("real"));
  EXPECT_EQ(stringByResolvingLinksInPath(path("row41")), path("row41"));
  EXPECT_FALSE(resolveLink(NSString()) || stringByResolvingLinkOfPath(NSString()) ||
               stringByResolvingLinksInPath(NSString()));

  const std::pair<NSString, NSString> written[] = {{u"/../none-a//./b/"_ns, u"/none-a/b"_ns},
                                                   {u"../../none-a/../b"_ns, u"../../b"_ns},
                                                   {u"./."_ns, u"."_ns},
                                                   {u"/"_ns, u"/"_ns},
                                                   {u""_ns, u""_ns}};
  for (const auto &[given, expected] : written) EXPECT_EQ(stringByResolvingLinksInPath(given), expected);
}

TEST_F(FileLinks, AreMade) {
  const NSString made = folder_.string("new/below/link");
  EXPECT_TRUE(createLinkWithPath(u"../../real/inner"_ns, made));
  EXPECT_EQ(fs::read_symlink(folder_.path() / "new/below/link"), "../../real/inner");
  EXPECT_TRUE(isDirectoryAtPath(made));
  for (const NSString &taken :
       {made, folder_.string("broken"), folder_.string("real/inner/file/x"), NSString()})
    EXPECT_FALSE(createLinkWithPath(u"x"_ns, taken));
  EXPECT_FALSE(createLinkWithPath(NSString(), folder_.string("other")));
  EXPECT_EQ(fs::read_symlink(folder_.path() / "new/below/link"), "../../real/inner");
}

TEST_F(FileLinks, AreFollowedToFilesAndTheirFolders) {
  FSRef ref;
  FSSpec spec;
  EXPECT_TRUE(getFSRef(&ref, folder_.string("again")));
  EXPECT_TRUE(getFSSpec(&spec, folder_.string("again")));
  EXPECT_EQ(spec.name, u"file"_ns);
  FSRef inner;
  ASSERT_TRUE(FSPathMakeRef(folder_.string("real/inner"), &inner));
  EXPECT_EQ(spec.folder, inner);
  EXPECT_EQ(FSRefMakePath(ref), stringByAppendingPathComponent(FSRefMakePath(spec.folder), spec.name));
  for (const NSString &path : {folder_.string("broken"), NSString(), u"/"_ns})
    EXPECT_FALSE(getFSSpec(&spec, path));
  EXPECT_EQ(spec.folder, inner);
}

TEST_F(FileLinks, VolumesAreThoseBelowTheirFolder) {
  const std::pair<NSString, bool> cases[] = {{u"/Volumes"_ns, true},       {u"/Volumes/"_ns, true},
                                             {u"/Volumes//"_ns, true},     {u"/tmp/none"_ns, true},
                                             {u"Volumes/none"_ns, true},   {NSString(), true},
                                             {u"/Volumes/disk"_ns, true},  {u"/Volumes/disk/none"_ns, true},
                                             {u"/Volumes/none"_ns, false}, {u"/Volumes/none/disk"_ns, false},
                                             {u"/Volumes/dis"_ns, false},  {u"/Volumes/file/"_ns, false},
                                             {u"/Volumes2/none"_ns, true}};
  folder_.write("Volumes/disk/file", "");
  folder_.write("Volumes/file", "");
  // The child has this test's folder for the root; it answers with the number of the first case that is wrong.
  constexpr int kAllRight = 100, kNoRoot = 101;
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const char *root = folder_.path().c_str();
    if (::chroot(root) != 0 && (::unshare(CLONE_NEWUSER) != 0 || ::chroot(root) != 0)) ::_exit(kNoRoot);
    int index = 0;
    for (const auto &[path, expected] : cases) {
      if (isVolumeMountedAtPath(path) != expected) ::_exit(index);
      ++index;
    }
    ::_exit(kAllRight);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kNoRoot) GTEST_SKIP() << "this user can have no other root";
  EXPECT_EQ(WEXITSTATUS(status), kAllRight);
}

}  // namespace
}  // namespace nimbo
