// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/DirectorySize.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <utility>
#include <vector>

#include "Classes/Files/FolderSizes.hpp"
#include "tests/support/GrowthRatio.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

TEST(DirectorySize, CountsFilesAndFollowsLinksToFolders) {
  const TemporaryFolder top;
  const auto makeFolder = [&](const char *name) { fs::create_directories(top.path() / name); };
  const auto link = [&](const char *target, const char *name) {
    makeFolder(fs::path(name).parent_path().c_str());
    fs::create_symlink(target, top.path() / name);
  };
  makeFolder("empty");
  top.write("plain/.hidden", "12345");
  top.write("plain/below/name\xff", "1234567");
  link("../plain", "twice/first");
  link("../plain", "twice/second");
  link("../plain/.hidden", "files/to a file");
  link("no", "files/to nothing");
  top.write("circle/file", "123");
  link("..", "circle/below/up");
  link("below", "circle/beside");
  // Two folders that lead to each other, and from the outside to both of them.
  top.write("pair/a/file", "12");
  top.write("pair/b/file", "1234");
  link("../b", "pair/a/other");
  link("../a", "pair/b/other");
  fs::create_hard_link(top.path() / "plain/.hidden", top.path() / "empty/../files/hard");

  const std::pair<const char *, std::uint64_t> cases[] = {
      {"empty", 0},    {"plain", 12},       {"plain/.hidden", 0}, {"none", 0},
      {"twice", 24},   {"twice/first", 12}, {"circle", 3},        {"circle/below", 3},
      {"pair", 6 + 6}, {"pair/a", 6},       {"files", 16 + 2 + 5}};
  for (const auto &[name, bytes] : cases) EXPECT_EQ(directorySize(top.string(name)), bytes) << name;
  EXPECT_EQ(directorySize(NSString()), 0u);
}

/// Sizes by the plain definition: two folders are in a circle when each can be reached from the other.
class PlainSizes {
 public:
  explicit PlainSizes(std::vector<std::uint64_t> files) : files_(std::move(files)) {
    reaches_.assign(files_.size(), std::vector<bool>(files_.size()));
    for (std::size_t i = 0; i < files_.size(); ++i) reaches_[i][i] = true;
  }
  void addFolder(std::size_t outer, std::size_t inner) {
    places_.emplace_back(outer, inner);
    for (auto &from : reaches_)
      for (std::size_t to = 0; from[outer] && to < files_.size(); ++to)
        if (reaches_[inner][to]) from[to] = true;
  }
  std::uint64_t size(std::size_t folder) const {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < files_.size(); ++i)
      if (areTogether(i, folder)) sum += files_[i];
    for (const auto &[outer, inner] : places_)
      if (areTogether(outer, folder) && !areTogether(inner, folder)) sum += size(inner);
    return sum;
  }

 private:
  bool areTogether(std::size_t a, std::size_t b) const { return reaches_[a][b] && reaches_[b][a]; }

  std::vector<std::uint64_t> files_;
  std::vector<std::vector<bool>> reaches_;
  std::vector<std::pair<std::size_t, std::size_t>> places_;
};

TEST(FolderSizes, AreThoseOfThePlainDefinition) {
  std::mt19937 random(1);
  for (int round = 0; round < 3'000; ++round) {
    const std::uint32_t count = 1 + random() % 9;
    std::vector<std::uint64_t> files(count);
    for (std::uint64_t &bytes : files) bytes = random() % 100;
    FolderSizes sizes;
    PlainSizes plain(files);
    const auto add = [&](std::uint32_t outer, std::uint32_t inner) {
      sizes.addFolder(outer, inner);
      plain.addFolder(outer, inner);
    };
    for (std::uint32_t inner = 1; inner < count; ++inner) add(random() % inner, inner);
    for (std::size_t more = random() % 6; more > 0; --more) add(random() % count, random() % count);
    for (std::uint32_t folder = 0; folder < count; ++folder) sizes.addFile(folder, files[folder]);
    EXPECT_EQ(sizes.total(), plain.size(0));
  }
}

TEST(FolderSizes, GrowLinearlyAndDoNotWrap) {
  FolderSizes doubled;
  for (std::uint32_t i = 0; i < 100; ++i) {
    doubled.addFolder(i, i + 1);
    doubled.addFolder(i, i + 1);
  }
  EXPECT_EQ(doubled.total(), 0u);
  doubled.addFile(100, 1);
  EXPECT_EQ(doubled.total(), UINT64_MAX);

  // One circle of circles.
  expectLinearTime(50'000, [](std::size_t count) {
    FolderSizes sizes;
    for (std::uint32_t i = 0; i < count; ++i) {
      sizes.addFolder(i, i + 1);
      sizes.addFolder(i + 1, i / 2);
      sizes.addFile(i, 1);
    }
    EXPECT_EQ(sizes.total(), count);
  });
}

}  // namespace
}  // namespace nimbo
