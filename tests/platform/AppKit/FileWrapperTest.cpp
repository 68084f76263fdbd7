// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/NSFileWrapper.hpp"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

NSFileWrapper file(std::string_view name, std::string_view bytes) {
  return NSFileWrapper::regularFileWithContents(dataOf(bytes), NSString::stringWithUTF8String(name));
}

std::string read(const std::filesystem::path &path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

NSFileWrapper tree() {
  return NSFileWrapper::directoryWithFileWrappers(
      {file("TXT.rtf", "{\\rtf1}"),
       NSFileWrapper::directoryWithFileWrappers(
           {file("caf\u00e9 \U0001f600.png", std::string("\0\xff", 2)), file("empty", "")}, u"inner"_ns),
       NSFileWrapper::symbolicLinkWithDestination(u"TXT.rtf"_ns, u"link"_ns)},
      u"A.rtfd"_ns);
}

std::vector<std::string> namesOf(const NSFileWrapper &folder) {
  std::vector<std::string> names;
  for (const auto &entry : folder.fileWrappers()) names.push_back(entry.first.UTF8String());
  return names;
}

TEST(FileWrapper, SurvivesItsSerialisedForm) {
  const NSData data = tree().serializedRepresentation();
  const NSFileWrapper again = NSFileWrapper::initWithSerializedRepresentation(data);
  EXPECT_EQ(again.fileWrappers(), tree().fileWrappers());
  EXPECT_EQ(again.serializedRepresentation(), data);
  EXPECT_EQ(again.fileWrapperNamed(u"inner"_ns).hash(), tree().fileWrapperNamed(u"inner"_ns).hash());
  EXPECT_FALSE(file("a", "b").serializedRepresentation()) << "only a folder has one";
}

TEST(FileWrapper, ReadsWhatOthersSerialise) {
  using namespace std::string_literals;
  const std::string text = "{\\rtf1 a}";
  const std::string data =
      "rtfd\0\0\0\0\3\0\0\0\2\0\0\0\7\0\0\0TXT.rtf\1\0\0\0."s + "\x11\0\0\0\x2b\0\0\0"s +
      "\1\0\0\0\x09\0\0\0"s + text +
      "\1\0\0\0\x23\0\0\0\1\0\0\0\7\0\0\0TXT.rtf\x10\0\0\0\1\2\3\4\xb6\1\0\0\0\0\0\0\0\0\0\0"s;
  const NSFileWrapper folder = NSFileWrapper::initWithSerializedRepresentation(dataOf(data));
  EXPECT_EQ(namesOf(folder), std::vector<std::string>{"TXT.rtf"});
  EXPECT_EQ(folder.fileWrapperNamed(u"TXT.rtf"_ns).regularFileContents().view(), text);
  // What is written has the same form, the modes of new files, and no times.
  std::string written = data;
  written.replace(data.find("\1\2\3\4\xb6"), 5, "\0\0\0\0\xa4"s);
  EXPECT_EQ(NSFileWrapper::directoryWithFileWrappers({file("TXT.rtf", text)}).serializedRepresentation().view(),
            written);
  // An entry of a kind that there is not.
  for (const char kind : {'\0', '\4'}) {
    std::string unknown = data;
    unknown[data.find(text) - 8] = kind;
    EXPECT_FALSE(NSFileWrapper::initWithSerializedRepresentation(dataOf(unknown))) << int{kind};
  }
}

TEST(FileWrapper, SerialisedFoldersStandInEachOtherToALimit) {
  const auto number = [](std::size_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i, value >>= 8) bytes += static_cast<char>(value);
    return bytes;
  };
  std::string entry = number(3) + number(0);
  for (std::uint32_t depth = 0; depth <= NSFileWrapper::kMaximumDepth; ++depth) {
    const NSData data = dataOf(std::string("rtfd\0\0\0\0", 8) + entry);
    NSError error;
    const NSFileWrapper folder = NSFileWrapper::initWithSerializedRepresentation(data, &error);
    EXPECT_TRUE(folder) << depth;
    EXPECT_TRUE(folder.serializedRepresentation()) << depth;
    entry = number(3) + number(1) + number(1) + "x" + number(entry.size()) + entry;
  }
  NSError error;
  EXPECT_FALSE(
      NSFileWrapper::initWithSerializedRepresentation(dataOf(std::string("rtfd\0\0\0\0", 8) + entry), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
}

TEST(FileWrapper, DamagedSerialisedFormsAreNil) {
  const NSData whole = tree().serializedRepresentation();
  for (std::uint32_t length = 0; length < whole.length(); ++length) {
    NSError error;
    EXPECT_FALSE(NSFileWrapper::initWithSerializedRepresentation(whole.subdataWithRange({0, length}), &error))
        << length;
    EXPECT_TRUE(error.localizedFailureReason);
  }
  for (std::uint32_t at = 0; at < whole.length(); ++at)
    for (const char damage : {'\0', '\x7f', '\xff'}) {
      std::string bytes(whole.view());
      bytes[at] = damage;
      (void)NSFileWrapper::initWithSerializedRepresentation(dataOf(bytes));
    }
  NSFileWrapper deep = NSFileWrapper::directoryWithFileWrappers({});
  for (std::uint32_t i = 0; i <= NSFileWrapper::kMaximumDepth; ++i)
    deep = NSFileWrapper::directoryWithFileWrappers({deep});
  EXPECT_FALSE(deep.serializedRepresentation());
}

TEST(FileWrapper, FilesGetHarmlessNamesOfTheirOwn) {
  const std::string longName(300, 'x');
  const NSFileWrapper folder = NSFileWrapper::directoryWithFileWrappers(
      {file("a.png", "1"), file("A.PNG", "2"), file("a-1.png", "3"), file("../../etc/passwd", "4"),
       file("..", "5"), file("", "6"), NSFileWrapper::regularFileWithContents(dataOf("7")), file("a\nb", "8"),
       file(longName + ".jpeg", "9"), NSFileWrapper()});
  EXPECT_EQ(namesOf(folder), (std::vector<std::string>{"a.png", "A-1.PNG", "a-1-1.png", ".._.._etc_passwd",
                                                       "file", "file-1", "file-2", "a_b", namesOf(folder)[8]}));
  EXPECT_TRUE(namesOf(folder)[8].ends_with("x.jpeg"));
  const TemporaryFolder disk;
  EXPECT_TRUE(folder.writeToFile(disk.string("out"), true));
}

TEST(FileWrapper, LongNamesAreCutBetweenCharacters) {
  // Room is left for a number and three bytes a unit.
  constexpr std::size_t kUnits = NSFileWrapper::kMaximumNameBytes / 3 - 11;
  const std::string x(kUnits - 1, 'x'), extension = "." + std::string(31, 'e');
  const std::pair<std::string, std::string> cases[] = {
      {x + "y", x + "y"},
      {x + "yz", x + "y"},
      {x + "\U0001f600", x},
      {x.substr(1) + "\U0001f600z", x.substr(1) + "\U0001f600"},
      {x + "y" + extension, x.substr(0, kUnits - 32) + extension},
      {x + "y" + extension + "e", x + "y"},
      {"." + x + "y", "." + x},
      {" \x7f\\a\x01. ", "__a_."},
      {" . ", "file"},
  };
  for (const auto &[name, cut] : cases) {
    const NSFileWrapper folder = NSFileWrapper::directoryWithFileWrappers({file(name, ""), file(name, "")});
    ASSERT_EQ(namesOf(folder).size(), 2u) << name;
    EXPECT_EQ(namesOf(folder)[0], cut) << name;
    EXPECT_NE(namesOf(folder)[1], cut) << name;
    EXPECT_LE(namesOf(folder)[1].size(), NSFileWrapper::kMaximumNameBytes) << name;
  }
}

TEST(FileWrapper, SurvivesTheDisk) {
  for (const bool atomically : {false, true}) {
    const TemporaryFolder disk;
    for (int round = 0; round < 2; ++round) {
      ASSERT_TRUE(tree().writeToFile(disk.string("A.rtfd"), atomically));
      NSError error;
      EXPECT_EQ(NSFileWrapper::initWithPath(disk.string("A.rtfd"), &error), tree());
    }
    // An old folder loses what the new one does not have only when it is replaced.
    disk.write("A.rtfd/old.txt", "old");
    ASSERT_TRUE(tree().writeToFile(disk.string("A.rtfd"), atomically));
    EXPECT_EQ(std::filesystem::exists(disk.path() / "A.rtfd/old.txt"), !atomically);
    disk.write("plain", "a file");
    EXPECT_EQ(tree().writeToFile(disk.string("plain"), atomically), atomically)
        << "a file in the place of a folder";
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.path()), {}), 2)
        << "something was left behind";
  }
}

TEST(FileWrapper, NeverWritesThroughALinkInAFolder) {
  const TemporaryFolder disk;
  disk.write("victim", "safe");
  std::filesystem::create_directories(disk.path() / "A.rtfd");
  std::filesystem::create_symlink("../victim", disk.path() / "A.rtfd/TXT.rtf");
  std::filesystem::create_directory_symlink("..", disk.path() / "A.rtfd/inner");
  EXPECT_FALSE(tree().writeToFile(disk.string("A.rtfd"), false)) << "the inner folder is a link";
  EXPECT_EQ(read(disk.path() / "victim"), "safe");
  EXPECT_EQ(read(disk.path() / "A.rtfd/TXT.rtf"), "{\\rtf1}");
  EXPECT_FALSE(std::filesystem::exists(disk.path() / "empty"));
}

TEST(FileWrapper, FailuresLeaveWhatWasThere) {
  const TemporaryFolder disk;
  disk.write("A.rtfd/TXT.rtf", "old");
  NSFileWrapper deep = file("leaf", "");
  for (std::uint32_t i = 0; i <= NSFileWrapper::kMaximumDepth; ++i)
    deep = NSFileWrapper::directoryWithFileWrappers({file("TXT.rtf", "new"), deep});
  EXPECT_FALSE(deep.writeToFile(disk.string("A.rtfd"), true));
  EXPECT_EQ(read(disk.path() / "A.rtfd/TXT.rtf"), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.path()), {}), 1);
  EXPECT_FALSE(tree().writeToFile(disk.string("none/A.rtfd"), true));
  EXPECT_FALSE(tree().writeToFile(NSString(), true));
  EXPECT_FALSE(NSFileWrapper().writeToFile(disk.string("x"), true));
  // Nobody makes anything there.
  for (const NSFileWrapper &wrapper : {tree(), file("x", "new")})
    for (const bool atomically : {false, true}) {
      NSError error;
      EXPECT_FALSE(wrapper.writeToFile(u"/proc/self/A.rtfd"_ns, atomically, &error));
      EXPECT_EQ(error.errorCode(), ErrorCode::other);
    }
  for (const bool atomically : {false, true})
    EXPECT_FALSE(file("x", "new").writeToFile(disk.string("A.rtfd"), atomically)) << "a file for a folder";
  EXPECT_EQ(read(disk.path() / "A.rtfd/TXT.rtf"), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.path()), {}), 1);
}

TEST(FileWrapper, FoldersAreReadToALimitedDepth) {
  const TemporaryFolder disk;
  std::filesystem::path folder = disk.path() / "0";
  for (std::uint32_t depth = 0; depth < NSFileWrapper::kMaximumDepth; ++depth) folder /= "x";
  std::filesystem::create_directories(folder);
  EXPECT_TRUE(NSFileWrapper::initWithPath(disk.string("0")));
  std::filesystem::create_directory(folder / "x");
  NSError error;
  EXPECT_FALSE(NSFileWrapper::initWithPath(disk.string("0"), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
}

TEST(FileWrapper, OddPathsHaveAReason) {
  const TemporaryFolder disk;
  ASSERT_EQ(::mkfifo((disk.path() / "fifo").c_str(), 0600), 0);
  NSError error;
  EXPECT_FALSE(NSFileWrapper::initWithPath(disk.string("fifo"), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unreadable);
  EXPECT_FALSE(NSFileWrapper::initWithPath(disk.string("none"), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::noSuchFile);
  EXPECT_FALSE(NSFileWrapper::initWithPath(NSString(), &error));
  const FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
  const std::string name = (disk.path() / "socket").native();
  ASSERT_LT(name.size(), sizeof address.sun_path);
  std::copy(name.begin(), name.end(), address.sun_path);
  ASSERT_EQ(::bind(listener.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  error = NSError();
  EXPECT_FALSE(NSFileWrapper::initWithPath(disk.string("socket"), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unreadable);
  const NSFileWrapper folder =
      NSFileWrapper::initWithPath(NSString::stringWithUTF8String(disk.path().native()));
  EXPECT_TRUE(folder.isDirectory());
  EXPECT_TRUE(folder.fileWrappers().empty()) << "a pipe and a socket in a folder are left out";
  // What can be read leaves an error as it is.
  EXPECT_TRUE(NSFileWrapper::initWithPath(NSString::stringWithUTF8String(disk.path().native()), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unreadable);
}

}  // namespace
}  // namespace nimbo
