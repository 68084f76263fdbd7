// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "tests/support/Interruptions.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

TEST(NSData, ReadsRegularFilesOnly) {
  const TemporaryFolder folder;
  EXPECT_EQ(NSData::dataWithContentsOfFile(folder.write("name\xff", "content")).view(), "content");
  EXPECT_EQ(NSData::dataWithContentsOfFile(folder.write("empty", "")), NSData::data());
  EXPECT_GT(NSData::dataWithContentsOfFile(u"/proc/self/status"_ns).length(), 100u);

  ASSERT_EQ(::mkfifo((folder.path() / "fifo").c_str(), 0600), 0);
  fs::create_symlink("loop", folder.path() / "loop");
  const NSString large = folder.write("large", "");
  fs::resize_file(folder.path() / "large", std::uintmax_t{NSNotFound} + 1);
  const std::pair<NSString, ErrorCode> cases[] = {
      {folder.string("missing"), ErrorCode::noSuchFile},
      {folder.string("empty/x"), ErrorCode::noSuchFile},
      {folder.string(""), ErrorCode::unreadable},
      {folder.string("fifo"), ErrorCode::unreadable},
      {folder.string("loop"), ErrorCode::unreadable},
      {u"/dev/null"_ns, ErrorCode::unreadable},
      {u"/proc/self/mem"_ns, ErrorCode::unreadable},
      {large, ErrorCode::tooLarge},
      {u"a\0b"_ns, ErrorCode::noSuchFile},
      {NSString(), ErrorCode::noSuchFile},
  };
  for (const auto &[path, code] : cases) {
    NSError error;
    EXPECT_FALSE(NSData::dataWithContentsOfFile(path, &error)) << path.UTF8String();
    EXPECT_EQ(error.errorCode(), code) << path.UTF8String();
    EXPECT_GT(error.localizedFailureReason.length(), 0u) << path.UTF8String();
    EXPECT_FALSE(NSData::dataWithContentsOfFile(path)) << path.UTF8String();
  }
}

TEST(NSData, IsWrittenWhereLinksLead) {
  const TemporaryFolder folder;
  fs::create_directory(folder.path() / "deep");
  fs::create_symlink("deep/new", folder.path() / "link");
  fs::create_symlink("link", folder.path() / "other link");
  fs::create_symlink("loop", folder.path() / "loop");
  fs::create_symlink("missing/new", folder.path() / "astray");
  const NSData data = NSData::dataWithBytes("content", 7);
  // Nothing can be made in the working directory.
  const fs::path before = fs::current_path();
  fs::current_path("/proc");
  EXPECT_TRUE(writeDataToFile(data, folder.string("other link"), true));
  EXPECT_FALSE(writeDataToFile(data, folder.string("loop"), true));
  EXPECT_EQ(errno, ELOOP);
  EXPECT_FALSE(writeDataToFile(data, folder.string("astray"), true));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(writeDataToNewFile(NSData::data(), folder.string("deep/new")));
  EXPECT_EQ(errno, EEXIST);
  for (const NSString &name : {u"a\0b"_ns, u""_ns, NSString()}) {
    EXPECT_FALSE(writeDataToFile(data, name, true));
    EXPECT_EQ(errno, EINVAL);
  }
  EXPECT_FALSE(writeDataToFile(NSData(), folder.string("none"), false));
  EXPECT_EQ(errno, EINVAL);
  fs::current_path(before);
  EXPECT_EQ(NSData::dataWithContentsOfFile(folder.string("deep/new")).view(), "content");
  const auto permissions = [&] { return fs::status(folder.path() / "deep/new").permissions(); };
  EXPECT_EQ(permissions() & fs::perms::owner_all, fs::perms::owner_read | fs::perms::owner_write);
  fs::permissions(folder.path() / "deep/new", fs::perms(0750));
  EXPECT_TRUE(writeDataToFile(data, folder.string("link"), true));
  EXPECT_EQ(permissions(), fs::perms(0750));
  EXPECT_TRUE(fs::is_symlink(folder.path() / "link") && fs::is_symlink(folder.path() / "other link"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 5);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path() / "deep"), {}), 1);
}

TEST(NSFileManager, SaysWhyAFolderCannotBeListed) {
  const TemporaryFolder folder;
  const std::pair<NSString, ErrorCode> cases[] = {
      {folder.string("missing"), ErrorCode::noSuchFile},
      {folder.write("file", ""), ErrorCode::unreadable},
      {folder.string("file/x"), ErrorCode::noSuchFile},
      {NSString(), ErrorCode::noSuchFile},
  };
  for (const auto &[path, code] : cases) {
    NSError error;
    EXPECT_FALSE(NSFileManager::contentsOfDirectoryAtPath(path, &error)) << path.UTF8String();
    EXPECT_EQ(error.errorCode(), code) << path.UTF8String();
  }
}

TEST(NSError, CodesOfOtherDomainsAreOther) {
  EXPECT_EQ(NSError().errorCode(), ErrorCode::none);
  EXPECT_EQ((NSError{NSURLErrorDomain(), 2}.errorCode()), ErrorCode::other);
  EXPECT_EQ(NSError::errorWithFileErrno(EACCES).errorCode(), ErrorCode::unreadable);
  EXPECT_EQ(NSError::errorWithFileErrno(EMFILE).errorCode(), ErrorCode::other);
  EXPECT_EQ(NSError::errorWithFileErrno(EISDIR).errorCode(), ErrorCode::unreadable);
  for (const int number : {EFBIG, EOVERFLOW})
    EXPECT_EQ(NSError::errorWithFileErrno(number).errorCode(), ErrorCode::tooLarge);
  EXPECT_EQ(NSError::errorWithFileErrno(ENOMEM).errorCode(), ErrorCode::memoryLimit);
  EXPECT_EQ(NSError::errorWithFileWritingErrno(EFBIG).errorCode(), ErrorCode::tooLarge);
  for (const int number : {EACCES, EROFS, ENOSPC, EDQUOT, EOPNOTSUPP})
    EXPECT_EQ(NSError::errorWithFileWritingErrno(number).errorCode(), ErrorCode::other) << number;
}

TEST(RegularFile, IsReadUpToALimit) {
  const TemporaryFolder folder;
  const std::string content(100'000, 'x');
  const NSString path = folder.write("file", content);
  for (const std::uint64_t expected : {0u, 1u, 99'999u, 100'000u, 200'000u}) {
    for (const std::uint32_t limit : {0u, 1u, 70'000u, 99'999u, 100'000u, 100'001u, NSNotFound}) {
      std::uint64_t size = 0;
      const FileDescriptor file = openRegularFile(path, &size);
      EXPECT_EQ(size, content.size());
      EXPECT_EQ(readData(file.get(), expected, limit).view(), content.substr(0, limit))
          << expected << " " << limit;
    }
  }
}

TEST(RegularFile, IsWaitedForNoLongerThanPatienceLasts) {
  const Interruptions interruptions;
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
  NSError error;
  EXPECT_FALSE(readData(ends[0], 0, 10, &error, 0.05));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
  ASSERT_EQ(::write(ends[1], "content", 7), 7);
  ::close(ends[1]);
  EXPECT_EQ(readData(ends[0], 0, 10, nullptr, 3600).view(), "content");
  ::close(ends[0]);
}

}  // namespace
}  // namespace nimbo
