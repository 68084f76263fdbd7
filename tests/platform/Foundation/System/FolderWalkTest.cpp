// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/FolderWalk.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "platform/Foundation/System/FolderListing.hpp"
#include "tests/support/DeepFolder.hpp"
#include "tests/support/GrowthRatio.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

std::size_t openDescriptors() {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

std::vector<std::string> namesMet(FolderWalk &walk) {
  std::vector<std::string> names;
  while (walk.next()) {
    names.emplace_back(walk.entry().name);
    walk.enter();
  }
  return names;
}

TEST(FolderWalk, GoesThroughDeepFoldersWithFewDescriptors) {
  constexpr std::size_t kDepth = 1'000;
  // Some siblings are met on the way down and some on the way back.
  const DeepFolder deep(kDepth, "way", {"a", "b", "c"});
  const std::size_t before = openDescriptors();
  for (const bool followsLinks : {false, true}) {
    std::size_t most = 0, entries = 0, entered = 0, deepest = 0;
    for (FolderWalk walk(deep.path(), followsLinks); walk.next();) {
      ++entries;
      deepest = std::max(deepest, walk.entry().depth + 1);
      entered += walk.enter() ? 1 : 0;
      if (entries % 97 == 0) most = std::max(most, openDescriptors() - before);
    }
    EXPECT_EQ(entries, 4 * kDepth);
    EXPECT_EQ(entered, entries);
    EXPECT_EQ(deepest, kDepth);
    EXPECT_LE(most, FolderWalk::kOpenFolders + 1);
    EXPECT_EQ(openDescriptors(), before);
  }
}

TEST(FolderWalk, MakesDoWithTheDescriptorsThatAreLeft) {
  const DeepFolder deep(20, "way", {"a", "b"});
  rlimit before = {};
  ::getrlimit(RLIMIT_NOFILE, &before);
  std::size_t entered = 0, entries = 0;
  {
    FolderWalk walk(deep.path(), false);
    const FileDescriptor next(::open("/", O_PATH | O_CLOEXEC));
    const rlimit few = {static_cast<rlim_t>(next.get()) + 3, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    for (; walk.next(); ++entries) entered += walk.enter() ? 1 : 0;
    ::setrlimit(RLIMIT_NOFILE, &before);
  }
  EXPECT_EQ(entries, 60u);
  EXPECT_EQ(entered, entries);
}

TEST(FolderWalk, EntersWhatLinksLeadToOnceOnly) {
  const TemporaryFolder top;
  top.write("folder/file", "12345");
  const auto link = [&](const char *target, const char *name) {
    fs::create_symlink(target, top.path() / name);
  };
  link(".", "itself");
  link("../folder", "folder/up");
  link("..", "folder/top");
  link("folder/file", "to a file");
  link("none", "to nothing");
  link("circle", "circle");

  FolderWalk plain(top.string(""), false);
  std::set<std::string> met;
  while (plain.next()) {
    const FolderWalk::Entry entry = plain.entry();
    met.insert(std::string(entry.name) + (entry.isLink ? " link" : "") + (entry.isFolder ? " folder" : "") +
               " " + std::to_string(entry.depth) + std::to_string(entry.folder) +
               (entry.isFolder ? "" : " " + std::to_string(plain.sizeOfEntry())));
    EXPECT_EQ(plain.enter().has_value(), entry.isFolder);
  }
  EXPECT_EQ(met, (std::set<std::string>{"folder folder 00", "file 11 5", "up link 11 9", "top link 11 2",
                                        "itself link 00 1", "to a file link 00 11", "to nothing link 00 4",
                                        "circle link 00 6"}));

  std::multiset<std::string> numbers;
  for (FolderWalk walk(top.string(""), true); walk.next();) {
    const std::string name(walk.entry().name);
    const bool isFolder = walk.entry().isFolder;
    const auto number = walk.enter();
    EXPECT_EQ(number.has_value(), isFolder);
    numbers.insert(name + (number ? " " + std::to_string(*number) : ""));
  }
  EXPECT_EQ(numbers, (std::multiset<std::string>{"circle", "file", "folder 1", "itself 0", "to a file",
                                                 "to nothing", "top 0", "up 1"}));
}

TEST(FolderWalk, EndsBehindTooManyLinks) {
  const TemporaryFolder top;
  for (int i = 0; i < 60; ++i) {
    const fs::path folder = top.path() / "folders" / std::to_string(i);
    fs::create_directories(folder);
    fs::create_symlink("../" + std::to_string(i + 1), folder / "next");
  }
  FolderWalk walk(top.string("folders/0"), true);
  EXPECT_EQ(namesMet(walk).size(), FolderWalk::kFollowedLinks + 1);
}

TEST(FolderWalk, StaysInsideWhenFoldersAreMoved) {
  const TemporaryFolder top;
  // Where the walk would come out if it trusted "..", folders of the same names stand, so many that some are
  // met after the way down.
  for (int i = 0; i < 40; ++i) {
    const std::string name = std::to_string(i);
    top.write("outside/" + name + "/secret", "");
    fs::create_directories(top.path() / "inside/d/d" / name);
  }
  std::string way = "inside";
  for (std::size_t i = 0; i < 3 * FolderWalk::kOpenFolders; ++i)
    fs::create_directory(top.path() / (way += "/d"));
  FolderWalk walk(top.string("inside"), false);
  bool isMoved = false;
  while (walk.next()) {
    EXPECT_NE(walk.entry().name, "secret");
    const bool isDeep = walk.entry().depth == 2 * FolderWalk::kOpenFolders;
    walk.enter();
    if (!isDeep) continue;
    fs::rename(top.path() / "inside/d/d/d", top.path() / "outside/d");
    isMoved = true;
  }
  EXPECT_TRUE(isMoved);
}

TEST(FolderWalk, GoesUpToTheExpectedFolderAlone) {
  const TemporaryFolder top;
  fs::create_directories(top.path() / "outer/inner");
  const FolderListing outer = openFolderAt(AT_FDCWD, (top.path() / "outer").c_str()),
                      inner = openFolderAt(::dirfd(outer.get()), "inner");
  const auto expected = identityOf(outer.get());
  EXPECT_TRUE(openParent(inner.get(), *expected));
  fs::rename(top.path() / "outer/inner", top.path() / "inner");
  EXPECT_FALSE(openParent(inner.get(), *expected));
  EXPECT_EQ(errno, ESTALE);
}

TEST(FolderWalk, DoesWithoutWhatIsNotThere) {
  const TemporaryFolder top;
  top.write("folder/file", "");
  top.write("file", "1");
  for (const NSString &path : {top.string("none"), top.string("file"), NSString::string(), NSString()})
    EXPECT_FALSE(FolderWalk(path, true).next());

  FolderWalk walk(top.string(""), false);
  fs::remove(top.path() / "file");
  fs::remove_all(top.path() / "folder");
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(walk.next());
    EXPECT_EQ(walk.sizeOfEntry(), 0u);
    EXPECT_FALSE(walk.enter());
  }
  EXPECT_FALSE(walk.next());
  EXPECT_FALSE(walk.next());
}

TEST(FolderWalk, TakesLinearTimeInLargeFolders) {
  const TemporaryFolder top = TemporaryFolder::inMemory();
  const auto fill = [&](std::size_t count) {
    const fs::path folder = top.path() / std::to_string(count);
    fs::create_directory(folder);
    for (std::size_t i = 0; i < count; ++i)
      FileDescriptor(::open((folder / std::to_string(i)).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  };
  for (const std::size_t count : {8'000, 32'000}) fill(count);
  expectLinearTime(8'000, [&](std::size_t count) {
    FolderWalk walk(top.string(std::to_string(count)), true);
    EXPECT_EQ(namesMet(walk).size(), count);
  });
}

}  // namespace
}  // namespace nimbo
