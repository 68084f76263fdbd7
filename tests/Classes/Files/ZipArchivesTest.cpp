// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ZipArchives.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSTask.hpp"
#include "platform/Foundation/System/AppleDouble.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using Names = std::vector<std::string>;

/// What a tool writes about an archive.
std::string outputOf(const char *program, std::vector<NSString> arguments) {
  const NSTask task{.launchPath = NSString::stringWithUTF8String(program),
                    .arguments = std::move(arguments),
                    .standardOutput = NSTask::Output::collected};
  const auto result = task.run();
  EXPECT_TRUE(result && result->terminationStatus == 0) << program;
  return result ? std::string(result->standardOutput.view()) : std::string();
}

/// The names in the archive, sorted; the archive is whole.
Names namesIn(const NSString &archive) {
  outputOf("/usr/bin/unzip", {u"-tqq"_ns, archive});
  const std::string text = outputOf("/usr/bin/unzip", {u"-Z1"_ns, archive});
  Names names;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    names.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  std::ranges::sort(names);
  return names;
}

/// What the Python reader says of an entry: whether its name is UTF-8, its mode and its content.
std::string described(const NSString &archive, const NSString &name) {
  return outputOf("/usr/bin/env", {u"python3"_ns, u"-c"_ns,
                                   u"import sys, zipfile\n"
                                   u"a = zipfile.ZipFile(sys.argv[1]); i = a.getinfo(sys.argv[2])\n"
                                   u"print(i.flag_bits >> 11 & 1, oct(i.external_attr >> 16), a.read(i))"_ns,
                                   archive, name});
}

Names namesInFolder(const fs::path &folder) {
  Names names;
  for (const auto &entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

class ZipArchives : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const NSString archive = folder.string("out/a.zip");

  void SetUp() override {
    fs::create_directory(folder.path() / "out");
    folder.write("tree/a.txt", "text");
    folder.write("tree/sub/gr\xc3\xbcn", "green");
    folder.write("tree/sub/\xe9", "e");
    fs::create_directory(folder.path() / "tree/empty");
    fs::create_symlink("../a.txt", folder.path() / "tree/sub/link");
    fs::create_directory_symlink("..", folder.path() / "tree/sub/up");
    ::mkfifo((folder.path() / "tree/pipe").c_str(), 0600);
    ::chmod((folder.path() / "tree/a.txt").c_str(), 0751);
  }
};

TEST_F(ZipArchives, HoldATree) {
  const Names names = {"a.txt", "empty/", "sub/", "sub/gr\xc3\xbcn", "sub/link", "sub/up", "sub/\xe9"};
  ASSERT_TRUE(compressFileAtPath(folder.string("tree/"), archive, false));
  EXPECT_EQ(namesIn(archive), names);
  EXPECT_EQ(described(archive, u"a.txt"_ns), "0 0o100751 b'text'\n");
  EXPECT_EQ(described(archive, u"sub/grün"_ns), "1 0o100644 b'green'\n");
  EXPECT_EQ(described(archive, u"sub/up"_ns), "0 0o120777 b'..'\n");

  Names below = {"tree/"};
  for (const std::string &name : names) below.push_back("tree/" + name);
  // An archive in the folder itself is no part of it, the old one neither.
  const NSString inside = folder.string("tree/a.zip");
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(compressFileAtPath(folder.string("tree/sub/.."), inside, true));
    EXPECT_EQ(namesIn(inside), below);
  }
  // A link stands for what it leads to when it is named itself.
  fs::create_symlink("a.txt", folder.path() / "tree/named");
  for (const bool keepsParent : {false, true}) {
    ASSERT_TRUE(compressFileAtPath(folder.string("tree/named"), archive, keepsParent));
    EXPECT_EQ(namesIn(archive), Names{"named"});
  }
  EXPECT_EQ(namesInFolder(folder.path() / "out"), Names{"a.zip"});
}

TEST_F(ZipArchives, SetForksApart) {
  auto companion = AppleDouble::companion();
  companion.setEntry(AppleDouble::kResourceFork, NSData::dataWithBytes("fork", 4));
  const std::string bytes(companion.data().view());
  folder.write("tree/sub/._gr\xc3\xbcn", bytes);
  folder.write("tree/._sub", bytes);
  folder.write("tree/._orphan", bytes);
  folder.write("tree/._a.txt", "no companion");
  ASSERT_TRUE(compressFileAtPath(folder.string("tree"), archive, true));
  EXPECT_EQ(namesIn(archive), (Names{"__MACOSX/tree/._sub", "__MACOSX/tree/sub/._gr\xc3\xbcn", "tree/",
                                     "tree/._a.txt", "tree/._orphan", "tree/a.txt", "tree/empty/", "tree/sub/",
                                     "tree/sub/gr\xc3\xbcn", "tree/sub/link", "tree/sub/up", "tree/sub/\xe9"}));
  EXPECT_EQ(outputOf("/usr/bin/unzip", {u"-p"_ns, archive, u"__MACOSX/tree/._sub"_ns}), bytes);

  const std::string file = (folder.path() / "tree/sub/gr\xc3\xbcn").native();
  if (::setxattr(file.c_str(), "user.org.netatalk.ResourceFork", "attribute", 9, 0) != 0)
    GTEST_SKIP() << "the file system has no attributes";
  ASSERT_TRUE(compressFileAtPath(folder.string("tree/sub"), archive, false));
  const std::string merged = outputOf("/usr/bin/unzip", {u"-p"_ns, archive, u"__MACOSX/*"_ns});
  const auto read = AppleDouble::appleDoubleWithData(NSData::dataWithBytes(merged.data(), merged.size()));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->entry(AppleDouble::kResourceFork).view(), "attribute");
}

TEST_F(ZipArchives, AreWholeOrNotThere) {
  ASSERT_TRUE(compressFileAtPath(folder.string("tree/a.txt"), archive, false));
  const auto isUntouched = [&] {
    return namesIn(archive) == Names{"a.txt"} && namesInFolder(folder.path() / "out") == Names{"a.zip"};
  };
  EXPECT_FALSE(compressFileAtPath(folder.string("none"), archive, false));
  EXPECT_FALSE(compressFileAtPath(NSString(), archive, false));
  EXPECT_FALSE(compressFileAtPath(folder.string("tree/pipe"), archive, false));
  EXPECT_FALSE(compressFileAtPath(archive, archive, true));
  EXPECT_FALSE(compressFileAtPath(folder.string("tree"), folder.string("out/none/b.zip"), false));
  EXPECT_FALSE(compressFileAtPath(folder.string("tree"), folder.string("out"), false));
  EXPECT_FALSE(compressFileAtPath(folder.string("tree"), NSString::string(), false));
  EXPECT_TRUE(isUntouched());

  // Something goes wrong in the midst: folders are deeper in each other than a path can tell.
  FileDescriptor deepest(::open((folder.path() / "tree/sub").c_str(), O_PATH));
  for (int depth = 0; depth < 2100; ++depth) {
    ASSERT_EQ(::mkdirat(deepest.get(), "d", 0700), 0);
    deepest = FileDescriptor(::openat(deepest.get(), "d", O_PATH));
  }
  EXPECT_FALSE(compressFileAtPath(folder.string("tree"), archive, true));
  EXPECT_TRUE(isUntouched());
}

TEST_F(ZipArchives, AddNamedFiles) {
  const NSString tree = folder.string("tree");
  for (const char *name : {"tree/-rf", "tree/@", "tree/-", "tree/a*", "tree/b[1]", "tree/--", "tree/-x@"})
    folder.write(name, name);
  const auto compress = [&](std::initializer_list<NSString> names, bool append) {
    return compressFiles(names, tree, archive, append);
  };
  ASSERT_TRUE(compress({u"-rf"_ns, u"@"_ns, u"-"_ns, u"a*"_ns, u"b[1]"_ns, u"--"_ns, u"-x@"_ns}, false));
  EXPECT_EQ(namesIn(archive), (Names{"-", "--", "-rf", "-x@", "@", "a*", "b[1]"}));
  ASSERT_TRUE(compress({u"sub/grün"_ns, u"empty"_ns, u"@"_ns}, true));
  EXPECT_EQ(namesIn(archive), (Names{"-", "--", "-rf", "-x@", "@", "a*", "b[1]", "empty/", "sub/gr\xc3\xbcn"}));
  ASSERT_TRUE(compress({u"a.txt"_ns}, false));
  EXPECT_EQ(namesIn(archive), Names{"a.txt"});

  // The program appends an extension.
  const NSString plain = folder.write("plain", "");
  for (const NSString &name : {u"@"_ns, u"a.txt"_ns}) ASSERT_TRUE(compressFiles({name}, tree, plain, false));
  EXPECT_EQ(namesIn(folder.string("plain.zip")), Names{"a.txt"});
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "plain"));

  EXPECT_FALSE(compress({}, false));
  EXPECT_FALSE(compress({u""_ns}, false));
  EXPECT_FALSE(compressFiles({u"a.txt"_ns}, folder.string("none"), archive, false));
  EXPECT_FALSE(compressFiles({u"a.txt"_ns}, folder.string("tree/a.txt"), archive, false));
  EXPECT_FALSE(compressFiles({u"a.txt"_ns}, tree, NSString::string(), false));
  EXPECT_EQ(namesIn(archive), Names{"a.txt"});
  NSError error;
  EXPECT_FALSE(compressFiles({u"none"_ns}, tree, archive, true, &error));
  const std::string reason = error.localizedFailureReason.UTF8String();
  EXPECT_NE(reason.find("/usr/bin/zip: zip error: Nothing to do!"), std::string::npos) << reason;
  EXPECT_EQ(namesIn(archive), Names{"a.txt"});
  std::filesystem::create_directory(folder.path() / "out.zip");
  EXPECT_FALSE(compressFiles({u"a.txt"_ns}, tree, folder.string("out"), false));
  EXPECT_EQ(namesInFolder(folder.path() / "out"), Names{"a.zip"});
}

}  // namespace
}  // namespace nimbo
