// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <string_view>

#include "Classes/Strings/NSString+NSStringNimboExtensions/Creating.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Files.hpp"
#include "tests/support/TemporaryFolder.hpp"

using namespace std::literals;

namespace nimbo {
namespace {

constexpr auto kDetected = static_cast<NSStringEncoding>(-1);

std::size_t entriesOf(const std::filesystem::path &folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

TEST(NSStringFiles, Creation) {
  EXPECT_EQ(stringWithCString("a\xe4"
                              "b",
                              2, NSISOLatin1StringEncoding),
            u"aä"_ns);
  EXPECT_EQ(stringWithNullTerminatedCString("\xe4", NSISOLatin1StringEncoding), u"ä"_ns);
  EXPECT_FALSE(initWithCString("\xe4", 1, NSUTF8StringEncoding));
  EXPECT_EQ(initWithKamenickyData(NSData::dataWithBytes("\x80\xa9", 2)), u"Čř"_ns);
  EXPECT_EQ(initWithKoi8cs2Data(NSData::dataWithBytes("\xe3\xc7\xd2", 3)), u"Čchř"_ns);
  EXPECT_FALSE(initWithNullTerminatedCString(nullptr, NSUTF8StringEncoding));
}

TEST(NSStringFiles, ReadingWithDetection) {
  const TemporaryFolder folder;
  struct Case {
    std::string_view bytes;
    NSString text;
    std::int32_t encoding;
    NSStringEncoding used;
  };
  const Case cases[] = {
      {"plain", u"plain"_ns, 0, NSASCIIStringEncoding},
      {"gr\xc3\xbc\xc3\x9f", u"grüß"_ns, -16, NSUTF8StringEncoding},
      {"\xff\xfe"
       "a\0"sv,
       u"a"_ns, -1, NSUnicodeStringEncoding},
      {"\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xff",
       u"üüüüüüüüüü\ufffd"_ns, 0, kDetected},
      {"gr\xc3\xbc\xc3\x9f", u"grÃ¼Ã\x9f"_ns, NSISOLatin1StringEncoding, NSISOLatin1StringEncoding},
      {"\xff", NSString(), NSUTF8StringEncoding, NSUTF8StringEncoding},
      // No text: read by force.
      {"\0\1\2\3\x8a"sv, u"\0\1\2\3ä"_ns, -16, kDetected},
      {"\xff\xfe\1\0\2\0\3\0\4\0"sv, u"\1\2\3\4"_ns, 0, kDetected},
      {"\xfe\xff\0\1\0\2\0\3\0\4"sv, u"\1\2\3\4"_ns, 0, kDetected},
      {"a", NSString(), -17, static_cast<NSStringEncoding>(-17)},
  };
  for (const Case &each : cases) {
    NSStringEncoding used = 99;
    const NSString path = folder.write("file", each.bytes);
    EXPECT_EQ(stringWithContentsOfFile(path, static_cast<NSStringEncoding>(each.encoding), &used), each.text);
    EXPECT_EQ(used, each.used) << each.encoding;
    EXPECT_EQ(stringWithContentsOfFile(path, used), each.text) << each.encoding;
  }
  NSStringEncoding used = 99;
  EXPECT_FALSE(initWithContentsOfFile(folder.string("missing"), 0, &used));
  EXPECT_EQ(used, kDetected);
}

TEST(NSStringFiles, WritingInEveryForm) {
  const TemporaryFolder folder;
  const NSString path = folder.string("file");
  for (const bool atomically : {true, false}) {
    NSStringEncoding used = 0;
    EXPECT_TRUE(writeToFileUsingSmallestEncoding(u"ä"_ns, path, atomically, &used));
    EXPECT_EQ(used, NSISOLatin1StringEncoding);
    EXPECT_EQ(NSData::dataWithContentsOfFile(path).view(), "\xe4");
    EXPECT_TRUE(writeToFileUsingDefaultEncoding(u"ä"_ns, path, atomically, &used));
    EXPECT_EQ(used, NSUTF8StringEncoding);
    EXPECT_EQ(NSData::dataWithContentsOfFile(path).view(), "\xc3\xa4");
    EXPECT_TRUE(writeToFileUsingFastestEncoding(u"ä\xd800"_ns, path, atomically, &used));
    EXPECT_EQ(stringWithContentsOfFile(path, used), u"ä\xd800"_ns);
    // What cannot be encoded leaves the file alone.
    EXPECT_TRUE(writeToFile(u"old"_ns, path, atomically, NSASCIIStringEncoding));
    EXPECT_FALSE(writeToFile(u"ä"_ns, path, atomically, NSASCIIStringEncoding));
    EXPECT_FALSE(writeToFile(NSString(), path, atomically, NSASCIIStringEncoding));
    EXPECT_EQ(stringWithContentsOfFile(path, NSASCIIStringEncoding), u"old"_ns);
    EXPECT_FALSE(writeToFile(u"a"_ns, folder.string("no/file"), atomically, NSASCIIStringEncoding));
    EXPECT_EQ(entriesOf(folder.path()), 1u);
  }
  setDefaultEncoding(NSASCIIStringEncoding);
  EXPECT_FALSE(writeToFileUsingDefaultEncoding(u"ä"_ns, path, true));
  setDefaultEncoding(NSUTF8StringEncoding);
}

TEST(NSStringFiles, AtomicallyMeansWholeOrNotAtAll) {
  const TemporaryFolder folder;
  const NSString path = folder.write("file", "old");
  const std::string name = *path.fileSystemRepresentation();
  ::chmod(name.c_str(), 0640);
  std::filesystem::create_symlink("file", folder.path() / "link");
  EXPECT_TRUE(writeToFile(u"new"_ns, folder.string("link"), true, NSASCIIStringEncoding));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link"));
  EXPECT_EQ(stringWithContentsOfFile(path, NSASCIIStringEncoding), u"new"_ns);
  struct stat info = {};
  ASSERT_EQ(::stat(name.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);

  // A disk that takes only a part: files may grow to four bytes.
  rlimit old = {};
  ::getrlimit(RLIMIT_FSIZE, &old);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small = {4, old.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  const bool isWritten = writeToFile(u"much longer"_ns, path, true, NSASCIIStringEncoding);
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(isWritten);
  EXPECT_EQ(stringWithContentsOfFile(path, NSASCIIStringEncoding), u"new"_ns);
  EXPECT_EQ(entriesOf(folder.path()), 2u);
}

TEST(NSStringFiles, LinksAndPipesAreNeverReplaced) {
  const TemporaryFolder folder;
  const auto &root = folder.path();
  std::filesystem::create_symlink("b", root / "a");
  std::filesystem::create_symlink("a", root / "b");
  EXPECT_FALSE(writeToFile(u"x"_ns, folder.string("a"), true, NSASCIIStringEncoding));
  std::filesystem::remove(root / "b");
  std::filesystem::create_symlink(root / "made", root / "b");
  EXPECT_TRUE(writeToFile(u"x"_ns, folder.string("a"), true, NSASCIIStringEncoding));
  EXPECT_EQ(NSData::dataWithContentsOfFile(folder.string("made")).view(), "x");
  for (const char *link : {"a", "b"}) EXPECT_TRUE(std::filesystem::is_symlink(root / link));
  EXPECT_FALSE(writeToFile(u"x"_ns, folder.string("."), true, NSASCIIStringEncoding));

  const std::string pipe = root / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  EXPECT_TRUE(writeToFile(u"x"_ns, folder.string("pipe"), true, NSASCIIStringEncoding));
  char byte = 0;
  EXPECT_EQ(::read(reader, &byte, 1), 1);
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
  ::close(reader);
  EXPECT_EQ(entriesOf(root), 4u);

  // A full disk. Not atomically: a fault there would cost the machine its device.
  EXPECT_FALSE(writeToFile(u"x"_ns, u"/dev/full"_ns, false, NSASCIIStringEncoding));
}

}  // namespace
}  // namespace nimbo
