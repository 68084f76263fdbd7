// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSFileManager.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <tuple>

#include "platform/Foundation/NSFileAttributes.hpp"
#include "platform/Foundation/System/ExtendedAttributes.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

const NSString kComment = u"user.xdg.comment"_ns;

struct stat statusOf(const fs::path &path) {
  struct stat info = {};
  EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
  return info;
}

/// A folder with one of everything in it.
NSString makeTree(const TemporaryFolder &folder, const std::string &name) {
  const fs::path tree = folder.path() / name;
  folder.write(name + "/sub/name\xff", "content");
  folder.write(name + "/program", std::string(300'000, 'x'));
  folder.write(name + "/sub/deeper/closed/file", "secret");
  fs::create_symlink("nowhere", tree / "link");
  EXPECT_EQ(::mkfifo((tree / "sub/fifo").c_str(), 0640), 0);
  EXPECT_TRUE(
      setExtendedAttribute(folder.string(name + "/program"), kComment, NSData::dataWithBytes("c", 1), true));
  const timespec times[] = {{1000, 1}, {2000, 2}};
  for (const auto &[path, mode] :
       {std::tuple("program", 0755), {"sub/deeper/closed", 0500}, {"sub", 0711}, {"", 0700}}) {
    ::chmod((tree / path).c_str(), static_cast<mode_t>(mode));
    ::utimensat(AT_FDCWD, (tree / path).c_str(), times, 0);
  }
  ::utimensat(AT_FDCWD, (tree / "link").c_str(), times, AT_SYMLINK_NOFOLLOW);
  return folder.string(name);
}

void expectTree(const fs::path &tree) {
  EXPECT_EQ(fs::read_symlink(tree / "link"), "nowhere");
  EXPECT_EQ(statusOf(tree / "sub/fifo").st_mode, S_IFIFO | 0640u);
  EXPECT_EQ(fs::file_size(tree / "program"), 300'000u);
  EXPECT_EQ(fs::file_size(tree / "sub/name\xff"), 7u);
  EXPECT_EQ(fs::file_size(tree / "sub/deeper/closed/file"), 6u);
  const NSString program = NSString::stringWithFileSystemRepresentation((tree / "program").native());
  EXPECT_EQ(extendedAttribute(program, kComment, true).view(), "c");
  for (const auto &[path, mode] :
       {std::tuple("program", 0755u), {"sub/deeper/closed", 0500u}, {"sub", 0711u}, {"", 0700u}}) {
    const struct stat info = statusOf((tree / path).lexically_normal());
    EXPECT_EQ(info.st_mode & 07777u, mode) << path;
    EXPECT_EQ(std::tuple(info.st_mtim.tv_sec, info.st_mtim.tv_nsec), std::tuple(2000, 2)) << path;
  }
  EXPECT_EQ(statusOf(tree / "link").st_mtim.tv_sec, 2000);
}

/// Runs something as a user who owns nothing. False as well when this is not possible.
bool asNobody(const std::function<bool()> &work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(::setgid(65534) == 0 && ::setuid(65534) == 0 && work() ? 0 : 1);
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::size_t entriesIn(const fs::path &folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(NSFileManager, CopiesAndMovesAllThatATreeHas) {
  const TemporaryFolder folder;
  const NSString tree = makeTree(folder, "tree");
  ASSERT_TRUE(NSFileManager::copyItemAtPath(tree, folder.string("copy/")));
  expectTree(folder.path() / "copy");
  expectTree(folder.path() / "tree");
  ASSERT_TRUE(NSFileManager::moveItemAtPath(tree, folder.string("moved")));
  expectTree(folder.path() / "moved");
  EXPECT_EQ(entriesIn(folder.path()), 2u);

  // Nothing is overwritten, and no folder goes into itself.
  NSError error;
  for (const char *to : {"copy", "moved/inside", "missing/x", ""}) {
    EXPECT_FALSE(NSFileManager::copyItemAtPath(folder.string("moved"), folder.string(to), &error)) << to;
    EXPECT_FALSE(NSFileManager::moveItemAtPath(folder.string("moved"), folder.string(to), &error)) << to;
    expectTree(folder.path() / "copy");
    EXPECT_EQ(entriesIn(folder.path()), 2u);
  }
}

TEST(NSFileManager, MovesToAnotherFileSystem) {
  const TemporaryFolder folder;
  struct stat memory = {};
  if (::stat("/dev/shm", &memory) != 0 || memory.st_dev == statusOf(folder.path()).st_dev)
    GTEST_SKIP() << "There is no second file system.";
  const NSString tree = makeTree(folder, "tree"), file = folder.write("file", "1"),
                 other = folder.write("other", "2");
  const TemporaryFolder away("/dev/shm");
  ASSERT_TRUE(setExtendedAttribute(file, kComment, NSData::data(), true));
  ASSERT_TRUE(NSFileManager::moveItemAtPath(tree, away.string("tree")));
  expectTree(away.path() / "tree");
  ASSERT_TRUE(NSFileManager::moveItemAtPath(file, away.string("file")));
  EXPECT_TRUE(extendedAttribute(away.string("file"), kComment, true));
  EXPECT_FALSE(NSFileManager::moveItemAtPath(other, away.string("file")));
  ASSERT_TRUE(NSFileManager::replaceItemAtPath(away.string("tree"), other));
  EXPECT_EQ(fs::file_size(away.path() / "tree"), 1u);
  EXPECT_EQ(entriesIn(folder.path()), 0u);
  EXPECT_EQ(entriesIn(away.path()), 2u);
}

TEST(NSFileManager, RemovesDeepTreesAndFollowsNoLink) {
  constexpr int kDepth = 3'000;
  const TemporaryFolder folder = TemporaryFolder::inMemory();
  folder.write("kept/file", "");
  fs::create_directory(folder.path() / "deep");
  FileDescriptor current(::open((folder.path() / "deep").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (int i = 0; i < kDepth; ++i) {
    for (const char *name : {"a", "b"}) ASSERT_EQ(::mkdirat(current.get(), name, 0700), 0);
    ASSERT_EQ(::symlinkat((folder.path() / "kept").c_str(), current.get(), "link"), 0);
    current = FileDescriptor(::openat(current.get(), "b", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }
  ASSERT_TRUE(NSFileManager::copyItemAtPath(folder.string("deep"), folder.string("copy")));
  for (const char *name : {"deep", "copy"})
    EXPECT_TRUE(NSFileManager::removeItemAtPath(folder.string(name))) << name;
  fs::create_directory_symlink("kept", folder.path() / "link");
  EXPECT_TRUE(NSFileManager::removeItemAtPath(folder.string("link/")));
  EXPECT_EQ(entriesIn(folder.path()), 1u);
  EXPECT_TRUE(fs::exists(folder.path() / "kept/file"));

  for (const char *path : {"kept/.", "kept/..", "missing", "kept/file/x"}) {
    NSError error;
    EXPECT_FALSE(NSFileManager::removeItemAtPath(folder.string(path), &error)) << path;
    EXPECT_GT(error.localizedFailureReason.length(), 0u);
  }
  for (const NSString &path : {u"/"_ns, u"//"_ns, u"/tmp/.."_ns, NSString(), u"a\0b"_ns})
    EXPECT_FALSE(NSFileManager::removeItemAtPath(path));
  EXPECT_TRUE(fs::exists(folder.path() / "kept/file"));
}

TEST(NSFileManager, MakesFolders) {
  const TemporaryFolder folder;
  folder.write("file", "");
  fs::create_symlink("nowhere", folder.path() / "link");
  const NSDictionary closed = {{NSFilePosixPermissions(), 0700}};
  EXPECT_TRUE(NSFileManager::createDirectoryAtPath(folder.string("a//b\xff/../c/"), true, closed));
  EXPECT_EQ(statusOf(folder.path() / "a/c").st_mode & 07777u, 0700u);
  EXPECT_TRUE(NSFileManager::createDirectoryAtPath(folder.string("a"), true, closed));
  EXPECT_NE(statusOf(folder.path() / "a").st_mode & 07777u, 0700u);
  EXPECT_TRUE(NSFileManager::createDirectoryAtPath(folder.string("single"), false));
  EXPECT_TRUE(NSFileManager::createDirectoryAtPath(u"/"_ns, true));
  const std::string longName(256, 'n');
  for (const auto &[name, isDeep] : {std::tuple("a", false),
                                     {"x/y", false},
                                     {"file", true},
                                     {"file/x", true},
                                     {"link", true},
                                     {"link/x", true},
                                     {longName.c_str(), true}}) {
    NSError error;
    EXPECT_FALSE(NSFileManager::createDirectoryAtPath(folder.string(name), isDeep, {}, &error)) << name;
    EXPECT_GT(error.localizedFailureReason.length(), 0u);
  }
  EXPECT_FALSE(NSFileManager::createDirectoryAtPath(u"\xd800"_ns, true));
}

TEST(NSFileManager, LeavesAllInPlaceWithoutPermission) {
  if (::geteuid() != 0) GTEST_SKIP() << "Only root can become another user.";
  const TemporaryFolder folder;
  const NSString file = folder.write("mine/file", "1"), other = folder.write("theirs/other", "2");
  // Each could go but for a folder of another in it, or for its being one.
  folder.write("theirs/closed/file", "3");
  fs::create_directories(folder.path() / "theirs/empty inside/folder");
  fs::create_directories(folder.path() / "theirs/deep inside/folder/deeper");
  folder.write("theirs/full inside/folder/file", "4");
  folder.write("theirs/secret inside/folder/file", "5");
  fs::permissions(folder.path() / "theirs/secret inside/folder", fs::perms(0700));
  for (const char *path : {"theirs/deep inside/folder", "theirs/full inside", "theirs/secret inside"})
    fs::permissions(folder.path() / path, fs::perms(0777));
  fs::permissions(folder.path(), fs::perms(0755));
  fs::permissions(folder.path() / "theirs", fs::perms(0777));
  ASSERT_TRUE(asNobody([] { return true; }));
  const std::function<bool(NSError *)> operations[] = {
      [&](NSError *error) { return NSFileManager::removeItemAtPath(file, error); },
      [&](NSError *error) { return NSFileManager::removeItemAtPath(folder.string("mine"), error); },
      [&](NSError *error) { return NSFileManager::removeItemAtPath(folder.string("theirs/closed"), error); },
      [&](NSError *error) {
        return NSFileManager::removeItemAtPath(folder.string("theirs/empty inside"), error);
      },
      [&](NSError *error) {
        return NSFileManager::removeItemAtPath(folder.string("theirs/deep inside"), error);
      },
      [&](NSError *error) {
        return NSFileManager::removeItemAtPath(folder.string("theirs/full inside"), error);
      },
      [&](NSError *error) {
        return NSFileManager::removeItemAtPath(folder.string("theirs/secret inside"), error);
      },
      [&](NSError *error) { return NSFileManager::moveItemAtPath(file, folder.string("theirs/file"), error); },
      [&](NSError *error) { return NSFileManager::replaceItemAtPath(file, other, error); },
      [&](NSError *error) { return NSFileManager::copyItemAtPath(other, folder.string("mine/x"), error); },
      [&](NSError *error) {
        return NSFileManager::createDirectoryAtPath(folder.string("mine/x"), true, {}, error);
      },
  };
  for (const auto &operation : operations)
    EXPECT_TRUE(asNobody([&] {
      NSError error;
      return !operation(&error) &&
             error.localizedFailureReason == u"the file cannot be changed: permission denied"_ns;
    }));
  EXPECT_EQ(entriesIn(folder.path() / "mine") + entriesIn(folder.path() / "theirs"), 7u);
  for (const char *path : {"closed/file", "empty inside/folder", "deep inside/folder",
                           "full inside/folder/file", "secret inside/folder/file"})
    EXPECT_TRUE(fs::exists(folder.path() / "theirs" / path)) << path;
  // A folder that is closed to its reader is removed when nothing is in it.
  for (const char *path : {"theirs/unreadable", "theirs/unreadable inside/folder"}) {
    fs::create_directories(folder.path() / path);
    fs::permissions(folder.path() / path, fs::perms(0));
  }
  fs::permissions(folder.path() / "theirs/unreadable inside", fs::perms(0777));
  for (const char *path : {"theirs/unreadable", "theirs/unreadable inside"})
    EXPECT_TRUE(asNobody([&] { return NSFileManager::removeItemAtPath(folder.string(path)); })) << path;
}

}  // namespace
}  // namespace nimbo
