// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/FSRef.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

FSRef refOf(const NSString &path) {
  FSRef ref;
  EXPECT_TRUE(FSPathMakeRef(path, &ref)) << path.UTF8String();
  return ref;
}

std::ptrdiff_t openDescriptors() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
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

  unsigned char stored[sizeof(FSRef)];
  std::memcpy(stored, &ref, sizeof stored);
  FSRef copy;
  std::memcpy(&copy, stored, sizeof stored);
  EXPECT_EQ(copy, refOf(named));
  EXPECT_EQ(FSRefMakePath(copy), named);

  fs::create_symlink("a", folder.path() / "link");
  EXPECT_EQ(refOf(folder.string("link")), ref);

  const FSRef before = ref;
  for (const NSString &none :
       {folder.string("none"), folder.string("a/\xe4 b/x"), NSString::string(), NSString()})
    EXPECT_FALSE(FSPathMakeRef(none, &ref, &isDirectory));
  EXPECT_EQ(ref, before);
  EXPECT_TRUE(FSPathMakeRef(file, nullptr));
  EXPECT_FALSE(FSRefMakePath(FSRef()));
  copy.hidden.fill(std::byte{0xff});
  EXPECT_FALSE(FSRefMakePath(copy));
}

TEST(FSRef, FollowsAndLoses) {
  const TemporaryFolder folder;
  const auto move = [&](const char *from, const char *to) {
    fs::rename(folder.path() / from, folder.path() / to);
    return folder.string(to);
  };
  fs::create_directories(folder.path() / "b/c");
  const FSRef file = refOf(folder.write("a/x", "1"));
  EXPECT_EQ(FSRefMakePath(file), move("a/x", "a/y"));
  EXPECT_EQ(FSRefMakePath(file), move("a/y", "b/c/z"));
  move("b", "d");
  EXPECT_EQ(FSRefMakePath(file), folder.string("d/c/z"));
  const FSRef parent = refOf(folder.string("d/c"));
  EXPECT_EQ(FSRefMakePath(parent), move("d/c", "e"));

  // Replaced, as by saving: the name is another file's now.
  folder.write("new", "2");
  move("new", "e/z");
  EXPECT_FALSE(FSRefMakePath(file));
  EXPECT_FALSE(file == refOf(folder.string("e/z")));

  // Deleted, and found by its other name where it has one.
  const FSRef linked = refOf(folder.write("f/one", ""));
  fs::create_hard_link(folder.path() / "f/one", folder.path() / "f/two");
  fs::remove(folder.path() / "f/one");
  EXPECT_EQ(FSRefMakePath(linked), folder.string("f/two"));
  fs::remove_all(folder.path() / "f");
  EXPECT_FALSE(FSRefMakePath(linked));
}

TEST(FSRef, RemembersManyAndFollowsTheNewest) {
  const TemporaryFolder folder;
  const FSRef moved = refOf(folder.write("moved", ""));
  fs::create_directory(folder.path() / "a");
  const NSString inside = folder.string("a/moved");
  fs::rename(folder.path() / "moved", folder.path() / "a/moved");
  std::vector<FSRef> refs;
  const auto name = [](std::size_t i) { return "n" + std::to_string(i); };
  for (std::size_t i = 0; i < kMaxFollowedFiles; ++i) refs.push_back(refOf(folder.write(name(i), "")));
  const std::ptrdiff_t descriptors = openDescriptors();

  // It was still followed when it was moved; now it is found in its folder alone.
  EXPECT_EQ(FSRefMakePath(moved), inside);
  fs::rename(folder.path() / "a/moved", folder.path() / "a/renamed");
  EXPECT_EQ(FSRefMakePath(moved), folder.string("a/renamed"));
  fs::rename(folder.path() / "a/renamed", folder.path() / "moved");
  EXPECT_FALSE(FSRefMakePath(moved));

  for (std::size_t i = refs.size(); i <= kMaxKnownFiles; ++i) refs.push_back(refOf(folder.write(name(i), "")));
  EXPECT_LE(openDescriptors(), descriptors);
  EXPECT_FALSE(FSRefMakePath(refs.front()));
  for (std::size_t i = 1; i < refs.size(); i += 1000) EXPECT_EQ(FSRefMakePath(refs[i]), folder.string(name(i)));
  EXPECT_EQ(FSRefMakePath(refs.back()), folder.string(name(refs.size() - 1)));
}

}  // namespace
}  // namespace nimbo
