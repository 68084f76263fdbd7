// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/FSRef.hpp"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

FSRef refOf(const NSString &path) {
  FSRef ref;
  EXPECT_TRUE(FSPathMakeRef(path, &ref)) << path.UTF8String();
  return ref;
}

TEST(FSRef, NamesWhatIsThere) {
  const TemporaryFolder folder;
  const NSString file = folder.write("a/\xe4 b", "x"), named = folder.string("a");
  bool isDirectory = true;
  FSRef ref;
  ASSERT_TRUE(FSPathMakeRef(file, &ref, &isDirectory));
  EXPECT_FALSE(isDirectory);
  EXPECT_EQ(FSRefMakePath(ref), file);
  EXPECT_TRUE(FSPathMakeRef(folder.string("a/../a/"), &ref, &isDirectory) && isDirectory);
  EXPECT_EQ(FSRefMakePath(ref), named);

  fs::create_symlink("a", folder.path() / "link");
  EXPECT_EQ(refOf(folder.string("link")), ref);

  const FSRef before = ref;
  for (const NSString &none :
       {folder.string("none"), folder.string("a/\xe4 b/x"), NSString::string(), NSString()})
    EXPECT_FALSE(FSPathMakeRef(none, &ref, &isDirectory));
  EXPECT_EQ(ref, before);
  EXPECT_TRUE(FSPathMakeRef(file, nullptr));
  EXPECT_FALSE(FSRefMakePath(FSRef()));
}

TEST(FSRef, FindsWhatIsRenamedInItsFolder) {
  const TemporaryFolder folder;
  const auto move = [&](const char *from, const char *to) {
    fs::rename(folder.path() / from, folder.path() / to);
    return folder.string(to);
  };
  const FSRef file = refOf(folder.write("a/x", "1"));
  for (const char *other : {"a/0", "a/b", "a/z"}) folder.write(other, "1");
  EXPECT_EQ(FSRefMakePath(file), move("a/x", "a/y"));
  // The name that it had is another file's now.
  const FSRef second = refOf(folder.write("a/x", "1"));
  EXPECT_NE(second, file);
  EXPECT_EQ(FSRefMakePath(file), folder.string("a/y"));
  EXPECT_EQ(refOf(folder.string("a/y")), file);

  const FSRef parent = refOf(folder.string("a"));
  const NSString moved = move("a", "b");
  EXPECT_EQ(FSRefMakePath(parent), moved);
  EXPECT_FALSE(FSRefMakePath(file));
  move("b", "a");
  EXPECT_EQ(FSRefMakePath(file), folder.string("a/y"));

  // Replaced, as by saving.
  move("a/x", "a/y");
  EXPECT_FALSE(FSRefMakePath(file));
  EXPECT_EQ(FSRefMakePath(second), folder.string("a/y"));
  move("a/y", "y");
  EXPECT_FALSE(FSRefMakePath(second));

  // Deleted, and found by its other name where it has one.
  const FSRef linked = refOf(folder.write("f/one", ""));
  fs::create_hard_link(folder.path() / "f/one", folder.path() / "f/two");
  fs::remove(folder.path() / "f/one");
  EXPECT_EQ(FSRefMakePath(linked), folder.string("f/two"));
  fs::remove_all(folder.path() / "f");
  EXPECT_FALSE(FSRefMakePath(linked));
}

}  // namespace
}  // namespace nimbo
