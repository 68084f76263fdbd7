// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/DirectorySize.hpp"
#include "tests/support/DeepFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

Names sorted(const std::vector<NSString> &paths) {
  Names names;
  for (const NSString &path : paths) names.push_back(path.fileSystemRepresentation().value_or("(none)"));
  std::sort(names.begin(), names.end());
  return names;
}

class FolderListing : public testing::Test {
 protected:
  FolderListing() {
    folder_.write("work/Page-1.HTML", "");
    folder_.write("work/name\xff.html", "");
    folder_.write("work/.hidden/file", "");
    folder_.write("other/inner/file", "");
    folder_.write("other/\xc3\xa9", "");
    link("../other", "folder link");
    link("../other/inner/file", "file link");
    link("nothing", "broken");
    link("../..", ".hidden/up");
  }

  void link(const char *target, const char *name) {
    fs::create_symlink(target, folder_.path() / "work" / name);
  }
  NSString path() const { return folder_.string("work"); }

  const TemporaryFolder folder_;
};

TEST_F(FolderListing, OfOneLevel) {
  const NSString path = this->path();
  const Names files = {"Page-1.HTML", "broken", "file link", "name\xff.html"};
  const Names folders = {".hidden"};
  const auto with = [](Names names, const char *more) {
    names.emplace_back(more);
    std::sort(names.begin(), names.end());
    return names;
  };
  EXPECT_EQ(sorted(directoryFilesAtPath(path, false, false)), with(files, "folder link"));
  EXPECT_EQ(sorted(directoryFilesAtPath(path, false, true)), files);
  EXPECT_EQ(sorted(directoryFoldersAtPath(path, false, false)), folders);
  EXPECT_EQ(sorted(directoryFoldersAtPath(path, false, true)), with(folders, "folder link"));
  for (const bool resolveLinks : {false, true})
    EXPECT_EQ(sorted(directoryContentsAtPath(path, false, resolveLinks)),
              with(with(files, ".hidden"), "folder link"));

  const auto full = [&](const char *name) { return (fs::canonical(folder_.path()) / name).native(); };
  const NSString canonical = NSString::stringWithFileSystemRepresentation(full("work/"));
  EXPECT_EQ(sorted(directoryContentsAtPath(canonical, true, true)),
            (Names{full("other"), full("other/inner/file"), full("work/.hidden"), full("work/Page-1.HTML"),
                   full("work/broken"), full("work/name\xff.html")}));
  EXPECT_EQ(sorted(directoryFoldersAtPath(canonical, true, false)), Names{full("work/.hidden")});
}

TEST_F(FolderListing, OfTheWholeTree) {
  EXPECT_EQ(sorted(deepDirectoryContentsAtPath(path(), false)),
            (Names{".hidden", ".hidden/file", ".hidden/up", "Page-1.HTML", "broken", "file link", "folder link",
                   "name\xff.html"}));
  EXPECT_EQ(sorted(deepDirectoryFoldersAtPath(path(), false)), (Names{".hidden"}));
  EXPECT_EQ(sorted(deepDirectoryFilesAtPath(folder_.string("other"), true)), (Names{"inner/file", "\xc3\xa9"}));

  // Which of two ways leads to a folder is the file system's choice; it is listed by one of them.
  const Names all = sorted(deepDirectoryContentsAtPath(path(), true));
  const auto has = [&](const char *end) {
    return std::count_if(all.begin(), all.end(), [&](const std::string &name) { return name.ends_with(end); });
  };
  EXPECT_EQ(has("inner"), 1);
  EXPECT_EQ(has("inner/file"), 1);
  EXPECT_EQ(has("\xc3\xa9"), 1);
  EXPECT_EQ(has("Page-1.HTML"), 1);
  EXPECT_EQ(has("/up"), 1);
  EXPECT_EQ(has("/up/work"), 1);
}

TEST_F(FolderListing, PutsWhatIsInAFolderBehindIt) {
  for (int i = 0; i < 300; ++i)
    folder_.write("large/" + std::to_string(i % 7) + "/" + std::to_string(i % 11) + "/" + std::to_string(i),
                  "");
  const std::vector<NSString> found = deepDirectoryContentsAtPath(folder_.string("large"), false);
  Names expected;
  for (const auto &entry : fs::recursive_directory_iterator(folder_.path() / "large"))
    expected.push_back(fs::relative(entry.path(), folder_.path() / "large").native());
  Names names;
  for (const NSString &path : found) names.push_back(path.UTF8String());
  EXPECT_EQ(names, expected);
}

TEST_F(FolderListing, OfMatchingNames) {
  const NSString path = this->path();
  EXPECT_EQ(sorted(directoryContentsAtPath(path, u"Html"_ns)), (Names{"Page-1.HTML", "name\xff.html"}));
  EXPECT_EQ(sorted(directoryContentsAtPath(path, u""_ns)),
            (Names{".hidden", "broken", "file link", "folder link"}));
  EXPECT_EQ(sorted(directoryContentsAtPathMatchingWildcard(path, u"page-?.*"_ns)), Names{"Page-1.HTML"});
  const Names one = {folder_.string("work/Page-1.HTML").UTF8String()};
  EXPECT_EQ(sorted(directoryContentsAtPathMatchingWildcard(path, u"p*"_ns, true)), one);
  EXPECT_EQ(sorted(directoryContentsAtPathMatchingWildcard(path, u"name?.html"_ns)), Names{"name\xff.html"});
  EXPECT_EQ(sorted(directoryContentsAtPath(folder_.string("work/"), u"html"_ns, true))[0], one[0]);
}

TEST_F(FolderListing, SaysWhetherThereAreFiles) {
  const struct {
    const char *folder;
    bool all, visible, resolved, visibleResolved;
  } cases[] = {{"work", true, true, true, true},        {"empty", false, false, false, false},
               {"folders", false, false, false, false}, {"hidden", true, false, true, false},
               {"icon", true, false, true, false},      {"link", true, true, false, false},
               {"none", false, false, false, false}};
  fs::create_directories(folder_.path() / "empty");
  fs::create_directories(folder_.path() / "folders/folder");
  folder_.write("hidden/.file", "");
  folder_.write("icon/Icon\r", "");
  fs::create_directories(folder_.path() / "link");
  fs::create_symlink("/", folder_.path() / "link/root");
  for (const auto &[name, all, visible, resolved, visibleResolved] : cases) {
    const NSString path = folder_.string(name);
    EXPECT_EQ(directoryContainsFilesAtPath(path, false, false), all) << name;
    EXPECT_EQ(directoryContainsFilesAtPath(path, false, true), visible) << name;
    EXPECT_EQ(directoryContainsFilesAtPath(path, true, false), resolved) << name;
    EXPECT_EQ(directoryContainsFilesAtPath(path, true, true), visibleResolved) << name;
  }
}

TEST_F(FolderListing, LeavesOutWhatCannotBeRead) {
  fs::permissions(folder_.path(), fs::perms(0755));
  fs::permissions(folder_.path() / "other", fs::perms::none);
  // Root may read everything.
  const bool isRoot = ::geteuid() == 0;
  ASSERT_TRUE(!isRoot || ::seteuid(65534) == 0);
  const Names names = sorted(deepDirectoryContentsAtPath(folder_.string(""), false));
  const Names none = sorted(directoryContentsAtPath(folder_.string("other"), false, false));
  ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
  fs::permissions(folder_.path() / "other", fs::perms::owner_all);
  const auto has = [&](const char *name) { return std::count(names.begin(), names.end(), name); };
  EXPECT_EQ(has("work") + has("other"), 2);
  EXPECT_EQ(has("other/inner"), 0);
  EXPECT_EQ(none, Names());
}

TEST_F(FolderListing, IsBoundedForPathsThatNothingOpens) {
  constexpr std::size_t kDepth = 1'100, kListed = std::size_t{1} << 27;
  const DeepFolder deep(kDepth, std::string(255, 'n'));
  testing::internal::CaptureStderr();
  const auto paths = deepDirectoryContentsAtPath(deep.path(), false);
  EXPECT_EQ(
      testing::internal::GetCapturedStderr(),
      "Longer paths than the system opens are left out of the listing of " + deep.path().UTF8String() + "\n");
  std::size_t units = 0;
  for (const NSString &path : paths) units += path.length();
  EXPECT_LE(units, kListed + kListed / 100);
  EXPECT_GE(units, kListed - kListed / 100);
  EXPECT_LT(paths.size(), kDepth);
}

TEST_F(FolderListing, GoesAsDeepAsFoldersGo) {
  const DeepFolder deep(10'000, "d");
  EXPECT_EQ(deepDirectoryFoldersAtPath(deep.path(), false).size(), 10'000u);
  EXPECT_EQ(directorySize(deep.path()), 0u);
}

}  // namespace
}  // namespace nimbo
