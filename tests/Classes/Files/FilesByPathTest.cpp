// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <mutex>
#include <set>
#include <thread>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "tests/support/EnvironmentSetting.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const NSString &path) {
  return std::string(NSData::dataWithContentsOfFile(path).view());
}

TEST(Archives, Rotate) {
  const TemporaryFolder folder;
  const auto at = [&](const char *name) { return contentOf(folder.string(name)); };
  for (const char *content : {"a", "b", "c", "d"}) ASSERT_TRUE(archivePath(folder.write("p", content), 3));
  EXPECT_EQ(at("p.0") + at("p.1") + at("p.2") + at("p"), "dcb");
  EXPECT_TRUE(archivedPaths(folder.string("p")).empty());
  folder.write("p", "e");
  EXPECT_EQ(archivedPaths(folder.string("p")), (std::vector{folder.string("p"), folder.string("p.0"),
                                                            folder.string("p.1"), folder.string("p.2")}));
  EXPECT_TRUE(archivePath(folder.string("p"), 0) && archivePath(folder.string("missing"), 3));
  EXPECT_EQ(at("p"), "e");
  // Those beyond the number go; how large it is takes no time.
  ASSERT_TRUE(archivePath(folder.string("p"), 1));
  EXPECT_EQ(at("p.0") + at("p.1") + at("p.2"), "e");
  for (const char *name : {"p.7", "p.07", "p.x", "q.3"}) folder.write(name, name);
  folder.write("p", "f");
  ASSERT_TRUE(archivePath(folder.string("p"), 4'000'000'000));
  EXPECT_EQ(at("p.0") + at("p.1") + at("p.8") + at("p.07") + at("p.x") + at("q.3"), "fep.7p.07p.xq.3");

  const std::string longName(254, 'n'), odd = "\xff\xfe";
  const NSString tooLong = folder.write(longName, "1");
  EXPECT_FALSE(archivePath(tooLong, 3));
  EXPECT_EQ(contentOf(tooLong), "1");
  EXPECT_TRUE(archivePath(folder.write(odd, "1"), 3));
  EXPECT_TRUE(fs::exists(folder.path() / (odd + ".0")));
  EXPECT_EQ(archivedPaths(u"//"_ns), std::vector{u"//"_ns});
  EXPECT_FALSE(archivePath(u"/"_ns, 1));
}

TEST(Names, AreFreeAndFit) {
  const TemporaryFolder folder;
  const std::string x251(251, 'x'), x249(249, 'x'), x253(253, 'x'), x255(255, 'x');
  const std::string accents = [] {
    std::string text;
    for (int i = 0; i < 127; ++i) text += "\xc3\xa9";
    return text;
  }();
  const std::pair<std::string, std::string> cases[] = {
      {"a.txt", "a-1.txt"},
      {"a", "a-1"},
      {".hidden", ".hidden-1"},
      {"b.tar.gz", "b.tar-1.gz"},
      {"n\xff.\xfe", "n\xff-1.\xfe"},
      {x251 + ".txt", x249 + "-1.txt"},
      {x255, x253 + "-1"},
      {"a." + x253, "a." + x251 + "-1"},
      {accents, accents.substr(0, 252) + "-1"},
  };
  for (const auto &[name, expected] : cases) {
    EXPECT_EQ(nonExistingFilenameAtPath(folder.string(name)), folder.string(name));
    folder.write(name, "");
    EXPECT_EQ(nonExistingFilenameAtPath(folder.string(name)), folder.string(expected));
    EXPECT_EQ(claimNonExistingFilenameAtPath(folder.string(name), ClaimedItem::file), folder.string(expected));
  }
  EXPECT_EQ(nonExistingFilenameAtPath(folder.string("a.txt")), folder.string("a-2.txt"));
  fs::create_symlink("nowhere", folder.path() / "link");
  EXPECT_EQ(nonExistingFilenameAtPath(folder.string("link")), folder.string("link-1"));
  EXPECT_FALSE(nonExistingFilenameAtPath(NSString()));
  NSError error;
  EXPECT_FALSE(claimNonExistingFilenameAtPath(folder.string("missing/x"), ClaimedItem::folder, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::noSuchFile);
}

TEST(Names, AndLocksGoToOneEach) {
  const TemporaryFolder folder;
  std::mutex mutex;
  std::set<std::string> names;
  int locks = 0, files = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < 25; ++j) {
        const auto item = j % 2 == 0 ? ClaimedItem::file : ClaimedItem::folder;
        const NSString name = claimNonExistingFilenameAtPath(folder.string("n.txt"), item);
        const NSString number = folder.string(std::to_string(j));
        const bool isLocked = static_cast<bool>(lockFileAtPath(number, false));
        const bool isMade = createFile(number);
        const std::scoped_lock lock(mutex);
        names.insert(name.UTF8String());
        locks += isLocked;
        files += isMade;
      }
    });
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(names.size(), 100u);
  EXPECT_EQ(locks, 25);
  EXPECT_EQ(files, 25);
}

TEST(LockFiles, AreRemovedByTheirOwnersOnly) {
  const TemporaryFolder folder;
  const NSString file = folder.string("new/f"), lock = folder.string("new/f.lock");
  EXPECT_FALSE(unlockFileAtPath(file));
  ASSERT_EQ(lockFileAtPath(file, false), lock);
  EXPECT_FALSE(lockFileAtPath(file, false));
  EXPECT_EQ(lockFileAtPath(file, true), lock);
  NSDictionary owner =
      NSPropertyListSerialization::propertyListFromData(NSData::dataWithContentsOfFile(lock)).dictionary();
  EXPECT_EQ(owner, (NSDictionary{{u"userName"_ns, NSUserName()}, {u"processNumber"_ns, ::getpid()}}));
  EXPECT_TRUE(unlockFileAtPath(file));
  EXPECT_FALSE(fs::exists(folder.path() / "new/f.lock"));

  NSDictionary other = owner, shouted = owner, nameless = owner;
  other.setObject(::getpid() + 1, u"processNumber"_ns);
  shouted.setObject(stringByAppendingPathExtension(NSUserName(), u"X"_ns), u"userName"_ns);
  nameless.removeObjectForKey(u"userName"_ns);
  for (const id &content : {id(other), id(shouted), id(nameless), id(u"no list"_ns), id(NSData::data())}) {
    ASSERT_TRUE(createPathAndWriteObject(content, lock, true));
    EXPECT_FALSE(unlockFileAtPath(file));
    EXPECT_TRUE(fs::exists(folder.path() / "new/f.lock"));
  }
  // A link in place of the lock is replaced, not what it leads to.
  fs::remove(folder.path() / "new/f.lock");
  const NSString victim = folder.write("victim", "1");
  fs::create_symlink(folder.path() / "victim", folder.path() / "new/f.lock");
  EXPECT_FALSE(lockFileAtPath(file, false));
  EXPECT_TRUE(lockFileAtPath(file, true));
  EXPECT_EQ(contentOf(victim), "1");
  EXPECT_FALSE(lockFileAtPath(folder.string(std::string(251, 'n')), false));
  EXPECT_FALSE(lockFileAtPath(NSString(), true));
}

TEST(Removal, EndsWhereSomethingIs) {
  const TemporaryFolder folder;
  const auto exists = [&](const char *name) { return fs::exists(folder.path() / name); };
  folder.write("r/a/b/c/.DS_Store", "");
  folder.write("r/a/.DS_Store", "");
  folder.write("r/a/kept", "");
  const NSString root = folder.string("r"), start = folder.string("r/a/b/c");
  EXPECT_FALSE(removeEmptyDirectoriesInside(folder.string("r/a/b/c/d"), start));
  EXPECT_FALSE(removeEmptyDirectoriesInside(root, folder.string("r/a/kept")));
  EXPECT_FALSE(removeEmptyDirectoriesInside(root, root));
  EXPECT_TRUE(removeEmptyDirectoriesInside(root, start));
  EXPECT_TRUE(!exists("r/a/b") && !exists("r/a/.DS_Store") && exists("r/a/kept"));
  EXPECT_TRUE(removePath(folder.string("r/a/kept")) && removePath(folder.string("r/a/kept")));
  EXPECT_TRUE(removeEmptyDirectoriesInside(root, folder.string("r/a")));
  EXPECT_TRUE(exists("r") && !exists("r/a"));
  fs::create_symlink("r", folder.path() / "link");
  folder.write("r/.DS_Store", "");
  EXPECT_FALSE(removeEmptyDirectoryAtPath(folder.string("link")) ||
               removeEmptyDirectoryAtPath(folder.string("link/")));
  EXPECT_TRUE(exists("r/.DS_Store"));
  EXPECT_FALSE(unlinkFileAtPath(root) || _rmdir(root) || removeEmptyDirectoryAtPath(folder.string("missing")));
  EXPECT_TRUE(removeEmptyDirectoryAtPath(root));
  EXPECT_FALSE(removePath(NSString()) || removePath(u""_ns) || removePath(u"/proc/self"_ns));
}

TEST(Moving, AsksWhatToDo) {
  const TemporaryFolder folder;
  const NSString a = folder.write("a", "1"), b = folder.write("sub/b", "2"), c = folder.string("x/y/c");
  EXPECT_FALSE(updatePath(a, b) || renamePath(a, b) || renamePath(a, c) || updatePath(folder.string("no"), c));
  EXPECT_FALSE(fs::exists(folder.path() / "x"));
  EXPECT_TRUE(updatePath(a, folder.string("./a/")));
  EXPECT_TRUE(updatePath(a, c) && renamePath(c, a));
  int questions = 0, told = 0;
  FileManagerHandler handler{.willProcessPath = [&](const NSString &path) { told += path == a; },
                             .shouldProceedAfterError =
                                 [&](const NSError &error, const NSString &path, const NSString &toPath) {
                                   EXPECT_TRUE(error && path == a && toPath == b);
                                   return ++questions == 2;
                                 }};
  EXPECT_FALSE(updatePath(a, b, false, true, handler));
  EXPECT_EQ(contentOf(a) + contentOf(b), "12");
  EXPECT_TRUE(updatePath(a, b, false, true, handler));
  EXPECT_EQ(contentOf(b), "1");
  EXPECT_EQ(std::pair(questions, told), std::pair(2, 2));
  EXPECT_TRUE(fileExtensionHidden(b));
  EXPECT_TRUE(updatePath(b, c) && fileExtensionHidden(c));
  EXPECT_TRUE(updatePath(c, b, false, false, {}) && !fileExtensionHidden(b));

  // The path's "~" is a name, and stands for no other folder.
  const fs::path working = fs::current_path();
  folder.write("~/a", "3");
  fs::current_path(folder.path());
  {
    const EnvironmentSetting home("HOME", folder.path().c_str());
    EXPECT_TRUE(updatePath(u"~/a"_ns, a));
  }
  fs::current_path(working);
  EXPECT_EQ(contentOf(a), "3");

  // Of two names of one file the old one goes, but not a name by which it takes the place of itself.
  fs::create_hard_link(folder.path() / "a", folder.path() / "again");
  fs::create_directory_symlink(".", folder.path() / "here");
  EXPECT_TRUE(updatePath(a, folder.string("here/a"), true));
  EXPECT_EQ(contentOf(a), "3");
  EXPECT_TRUE(updatePath(folder.string("again"), folder.string("here/a"), true));
  EXPECT_EQ(contentOf(a), "3");
  EXPECT_FALSE(fs::exists(folder.path() / "again"));

  // A link is moved as itself, and what it leads to keeps its marks.
  fs::create_symlink("a", folder.path() / "link");
  EXPECT_TRUE(updatePath(folder.string("link"), folder.string("moved"), false, true, {}));
  EXPECT_TRUE(isSymbolicLinkAtPath(folder.string("moved")));
  EXPECT_FALSE(fileExtensionHidden(a));
}

TEST(Creation, WritesWholeOrNotAtAll) {
  const TemporaryFolder folder;
  const NSString file = folder.string("a/b/file"), log = folder.string("c/log");
  EXPECT_TRUE(createPathAndFile(file));
  EXPECT_TRUE(createFile(folder.string("d/e/x")));
  EXPECT_FALSE(createPathAndFile(file) || createFile(folder.string("d/e")) || createFile(u""_ns));
  EXPECT_TRUE(createPathAndWriteObject(id(u"\u00e9"_ns), file, true));
  EXPECT_EQ(contentOf(file), "\xc3\xa9");
  EXPECT_FALSE(createPathAndWriteObject(id(), file, false));
  EXPECT_TRUE(writeString(u"one "_ns, log, true) && writeString(u"two"_ns, log, true));
  EXPECT_EQ(contentOf(log), "one two");
  EXPECT_FALSE(writeData(NSData(), log, false) || writeString(NSString(), log, true));
  EXPECT_TRUE(createPathPreviousPath(folder.string("p"), folder.string("q")));
  EXPECT_TRUE(fs::is_directory(folder.path() / "p"));

  const NSString made = createWritableTemporaryPath(u"/x/name.txt"_ns), bare = createWritableTemporaryPath({});
  EXPECT_EQ(lastPathComponent(made), u"name.txt"_ns);
  EXPECT_TRUE(createFile(made) && removePath(stringByDeletingLastPathComponent(made)) && removePath(bare));
  for (const NSString &none : {u"/"_ns, u"a/.."_ns, u"a\0b"_ns, u"\0"_ns})
    EXPECT_FALSE(createWritableTemporaryPath(none));

  // No file of the child may be longer, as on a disk that gets full.
  const std::string large(10'000, 'x');
  const NSData data = NSData::dataWithBytes(large.data(), large.size());
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit limit = {8192, 8192};
    std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(writeData(data, log, true) || writeData(data, log, false) ||
            writeDataToNewFile(data, folder.string("n")));
  }
  int status = 1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(contentOf(log), "one two");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path() / "c"), fs::directory_iterator()), 1);
}

}  // namespace
}  // namespace nimbo
