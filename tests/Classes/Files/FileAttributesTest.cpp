// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <future>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Classes/Files/NSDictionary+NimboFileAttributesExtensions.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/AttributeChanges.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Attributes.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/CustomIcons.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ExtendedAttributes.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/FinderMetadata.hpp"
#include "Classes/Files/ScriptRunner.hpp"
#include "platform/Foundation/System/AppleDouble.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "tests/support/EnvironmentSetting.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr OSType kText = 0x54455854, kEditor = 0x74747874;
const NSString kMetadata = u"user.org.netatalk.Metadata"_ns;

NSData bytes(std::string_view text) {
  return NSData::dataWithBytes(text.data(), text.size());
}

/// What is logged while the work is done.
template <class Work>
std::string logOf(Work work) {
  testing::internal::CaptureStderr();
  work();
  return testing::internal::GetCapturedStderr();
}

TEST(FileAttributes, AreThoseOfTheFileSystem) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "content"), link = folder.string("link");
  fs::create_symlink("file", folder.path() / "link");
  ASSERT_EQ(::mkfifo((folder.path() / "fifo").c_str(), 0600), 0);
  ASSERT_EQ(::chmod((folder.path() / "file").c_str(), 04751), 0);
  struct stat info = {};
  ASSERT_EQ(::stat((folder.path() / "file").c_str(), &info), 0);
  EXPECT_EQ(fileType(file), NSFileTypeRegular());
  EXPECT_EQ(fileType(link), NSFileTypeSymbolicLink());
  EXPECT_EQ(fileType(folder.string("")), NSFileTypeDirectory());
  EXPECT_EQ(fileType(folder.string("fifo")), NSFileTypeUnknown());
  EXPECT_EQ(fileType(u"/dev/null"_ns), NSFileTypeCharacterSpecial());
  ASSERT_EQ(::mknod((folder.path() / "socket").c_str(), S_IFSOCK | 0600, 0), 0);
  EXPECT_EQ(fileType(folder.string("socket")), NSFileTypeSocket());
  EXPECT_EQ(fileSize(file), 7u);
  EXPECT_EQ(fileSize(link), 4u);
  EXPECT_EQ(filePosixPermissions(file), 04751u);
  EXPECT_EQ(fileSystemNumber(file), info.st_dev);
  EXPECT_EQ(fileSystemFileNumber(file), info.st_ino);
  EXPECT_EQ(fileOwnerAccountName(u"/dev/null"_ns), u"root"_ns);
  EXPECT_EQ(fileGroupOwnerAccountName(u"/dev/null"_ns), u"root"_ns);
  EXPECT_EQ(fileAttributesAtPath(link, true).objectForKey(NSFileSize()).integer(), 7);
  const double now = NSDate::date().timeIntervalSince1970();
  EXPECT_NEAR(fileModificationDate(file).value().timeIntervalSince1970(), now, 60);

  const NSString missing = folder.string("missing");
  EXPECT_FALSE(fileAttributesAtPath(missing, true));
  EXPECT_FALSE(fileType(missing));
  EXPECT_EQ(fileSize(missing), 0u);
  EXPECT_FALSE(fileModificationDate(NSString()));
}

TEST(FileAttributes, AreChanged) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "content");
  ASSERT_EQ(::chmod((folder.path() / "file").c_str(), 0640), 0);
  const NSDate old = NSDate::dateWithUTC(1984, 1, 24, 1, 2, 3),
               later = NSDate::dateWithUTC(2038, 2, 1, 0, 0, 0.5);
  EXPECT_TRUE(setFileCreationDate(old, later, file));
  EXPECT_EQ(fileCreationDate(file), old);
  EXPECT_EQ(fileModificationDate(file), later);
  EXPECT_TRUE(touchFile(file));
  EXPECT_LT(fileModificationDate(file)->timeIntervalSince1970(), later.timeIntervalSince1970());
  EXPECT_EQ(fileCreationDate(file), old);

  EXPECT_TRUE(setFileHFSCreatorCode(kEditor, kText, file));
  EXPECT_TRUE(setFileExtensionHidden(true, file));
  EXPECT_FALSE(isFileLockedAtPath(file));
  EXPECT_TRUE(setFileLocked(true, file));
  EXPECT_TRUE(setFinderLabel(6, file));
  EXPECT_EQ(fileHFSTypeCode(file), kText);
  EXPECT_EQ(fileHFSCreatorCode(file), kEditor);
  EXPECT_TRUE(fileExtensionHidden(file));
  EXPECT_TRUE(isFileLockedAtPath(file));
  // The bytes that file servers read: codes and flags, no comment, the seconds before 2000, the lock.
  const NSData metadata = extendedAttributeNamed(kMetadata, file);
  EXPECT_EQ(metadata.length(), 402u);
  EXPECT_EQ(metadata.view().substr(122, 32), "TEXTttxt\0\x1c"s + std::string(22, '\0'));
  EXPECT_EQ(metadata.view().substr(354, 8), "\xe2\x05\xe3\x0b\x80\0\0\0"sv);
  EXPECT_EQ(metadata.view().substr(370, 4), "\0\0\1\xa0"sv);

  ASSERT_TRUE(writeDataToFile(bytes("new"), file, true));
  EXPECT_TRUE(setFileHFSTypeCode(0, file));
  EXPECT_TRUE(setFileExtensionHidden(false, file));
  EXPECT_TRUE(setFileLocked(false, file));
  EXPECT_EQ(fileHFSTypeCode(file), 0u);
  EXPECT_EQ(fileHFSCreatorCode(file), kEditor);
  EXPECT_FALSE(fileExtensionHidden(file));
  EXPECT_FALSE(isFileLockedAtPath(file));
  EXPECT_EQ(finderLabel(file), 6);
}

TEST(FileAttributes, AreReadFromEveryServersPlaceAndKept) {
  const TemporaryFolder folder;
  const std::string info = "TEXTttxt\x04\x10"s + std::string(22, '\0');
  const NSString stream = folder.write("stream", ""), beside = folder.write("beside", "");
  ASSERT_TRUE(
      setExtendedAttributeNamed(bytes("AFP\0\0\1\0\0\0\0\0\0\x80\0\0\0"s + info + std::string(13, '\0')),
                                u"user.DosStream.AFP_AfpInfo:$DATA"_ns, stream));
  AppleDouble companion = AppleDouble::companion();
  companion.setEntry(AppleDouble::kFinderInfo, bytes(info + std::string(100, 'x')));
  folder.write("._beside", companion.data().view());
  for (const NSString &path : {stream, beside}) {
    EXPECT_EQ(fileHFSTypeCode(path), kText);
    EXPECT_TRUE(fileExtensionHidden(path));
    EXPECT_TRUE(existsCustomIconForPath(path));
    EXPECT_TRUE(setFileExtensionHidden(false, path));
    EXPECT_EQ(fileHFSTypeCode(path), kText);
    EXPECT_FALSE(fileExtensionHidden(path));
  }
  // Metadata that no server wrote is replaced, not read.
  const NSString damaged = folder.write("damaged", "");
  ASSERT_TRUE(setExtendedAttributeNamed(bytes("\0\x05\x16\x07 damaged"sv), kMetadata, damaged));
  EXPECT_EQ(fileHFSTypeCode(damaged), 0u);
  EXPECT_TRUE(setFileHFSTypeCode(kText, damaged));
  EXPECT_EQ(fileHFSTypeCode(damaged), kText);
}

TEST(FileAttributes, ThatCannotBeChangedAreLogged) {
  const TemporaryFolder folder;
  const NSString missing = folder.string("missing"), file = folder.write("file", ""),
                 none = u"/proc/version"_ns;
  EXPECT_NE(
      logOf([&] {
        EXPECT_FALSE(setFileHFSTypeCode(kText, none));
      }).find("setFileHFSTypeCode:atPath: (codes):\n/proc/version\nthe file system keeps no such attributes"),
      std::string::npos);
  EXPECT_NE(logOf([&] {
              EXPECT_FALSE(setFileHFSCreatorCode(kText, u"/"_ns));
            }).find("setFileHFSCreatorCode:atPath: (codes):\n/\nIs a directory"),
            std::string::npos);
  using Change = bool (*)(const NSString &path);
  const std::pair<Change, std::string> changes[] = {
      {[](const NSString &path) { return setFileCreationDate(NSDate::date(), path); },
       "setFileCreationDate:atPath: (date)"},
      {[](const NSString &path) { return setFileModificationDate(NSDate::date(), path); },
       "setFileModificationDate:atPath: (date)"},
      {[](const NSString &path) { return touchFile(path); }, "touchFile: (date)"},
      {[](const NSString &path) { return setFileHFSCreatorCode(kText, kText, path); },
       "setFileHFSCreatorCode:typeCode:atPath: (codes)"},
      {[](const NSString &path) { return setFileExtensionHidden(true, path); },
       "setFileExtensionHidden:atPath: (hidden extension)"},
      {[](const NSString &path) { return setFileImmutable(true, path); },
       "setFileImmutable:atPath: (immutable)"},
      {[](const NSString &path) { return setFileLocked(true, path); }, "setFileLocked:atPath: (locked)"},
      {[](const NSString &path) { return setFinderComment(u"x"_ns, path); },
       "setFinderComment:atPath: (user.xdg.comment)"},
      {[](const NSString &path) { return setFinderLabel(1, path); }, "setFinderLabel:atPath: (label)"},
      {[](const NSString &path) { return setExtendedAttributeNamed(NSData::data(), u"user.x"_ns, path); },
       "setExtendedAttribute:named:atPath: (user.x)"},
  };
  for (const auto &[change, what] : changes) {
    for (const NSString &path : {missing, NSString()}) {
      const std::string log = logOf([&] { EXPECT_FALSE(change(path)); });
      EXPECT_TRUE(log.starts_with(what + ":\n" + (path ? path.UTF8String() : "(null)") + "\n")) << log;
      EXPECT_NE(log.find("o such file"), std::string::npos) << log;
    }
  }
  EXPECT_FALSE(fs::exists(folder.path() / "missing"));
  EXPECT_FALSE(setFileCreationDate(NSDate::dateWithUTC(1900, 1, 1, 0, 0, 0), file));
  // The first and the last second that file servers have, and those around them.
  for (const int seconds : {52, 53})
    EXPECT_EQ(setFileCreationDate(NSDate::dateWithUTC(1931, 12, 13, 20, 45, seconds), file), seconds == 53);
  for (const int seconds : {7, 8})
    EXPECT_EQ(setFileCreationDate(NSDate::dateWithUTC(2068, 1, 19, 3, 14, seconds), file), seconds == 7);
  EXPECT_EQ(fileCreationDate(file), NSDate::dateWithUTC(2068, 1, 19, 3, 14, 7));
  EXPECT_FALSE(setFileModificationDate(NSDate{HUGE_VAL}, file));
  for (const int label : {-1, 8}) EXPECT_FALSE(setFinderLabel(label, file));
}

TEST(FileAttributes, ImmutableFilesCannotBeChanged) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "content");
  EXPECT_FALSE(isFileImmutableAtPath(file));
  EXPECT_TRUE(setFileImmutable(false, file));
  if (!setFileImmutable(true, file)) GTEST_SKIP() << "this user or file system may not";
  const bool isImmutable = isFileImmutableAtPath(file), isLocked = isFileLockedAtPath(file);
  const bool isWritten = writeDataToFile(bytes("new"), file, true);
  ASSERT_TRUE(setFileImmutable(false, file));
  EXPECT_TRUE(isImmutable);
  EXPECT_TRUE(isLocked);
  EXPECT_FALSE(isWritten);
  EXPECT_EQ(NSData::dataWithContentsOfFile(file).view(), "content");
}

TEST(FileAttributes, PermissionsAreThoseOfThisProcess) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "");
  ASSERT_EQ(::chmod((folder.path() / "file").c_str(), 0600), 0);
  fs::create_symlink("missing", folder.path() / "link");
  EXPECT_TRUE(permissionsAtPath(file, false, true));
  EXPECT_FALSE(permissionsAtPath(file, true, true));
  EXPECT_TRUE(permissionsAtPath(folder.string(""), true, true));
  EXPECT_FALSE(permissionsAtPath(folder.string("link"), false, true));
  EXPECT_TRUE(permissionsAtPath(folder.string("link"), false, false));
  EXPECT_FALSE(permissionsAtPath(NSString(), false, true));
  EXPECT_TRUE(permissionsAtPathByDeletingLastPathComponent(folder.string("new"), true));
  EXPECT_FALSE(permissionsAtPathByDeletingLastPathComponent(folder.string("missing/new"), false));
  EXPECT_FALSE(permissionsAtPathByDeletingLastPathComponent(u"/proc/version"_ns, true) && ::geteuid() != 0);
}

TEST(ExtendedAttributes, AreTextsAndLogWhatFails) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", ""), name = u"user.text"_ns;
  const std::pair<std::string_view, NSString> texts[] = {
      {"caf\xc3\xa9", u"caf\u00e9"_ns}, {"a\0"sv, u"a"_ns}, {"", u""_ns}, {"\xff", NSString()}};
  for (const auto &[value, text] : texts) {
    EXPECT_TRUE(setExtendedAttributeNamed(bytes(value), name, file));
    EXPECT_EQ(createStringWithExtendedAttribute(name, file), text);
  }
  EXPECT_EQ(extendedAttributesAtPath(file), std::vector<NSString>{name});
  EXPECT_TRUE(setExtendedAttributeNamed(NSData(), name, file));
  EXPECT_EQ(logOf([&] { EXPECT_FALSE(createStringWithExtendedAttribute(name, file)); }), "");
  const NSString missing = folder.string("missing");
  const std::string line = "(user.text):\n" + missing.UTF8String() + "\nthere is no such file";
  EXPECT_NE(logOf([&] {
              EXPECT_FALSE(extendedAttributeNamed(name, missing));
            }).find("extendedAttributeNamed:atPath: " + line),
            std::string::npos);
  EXPECT_NE(logOf([&] {
              EXPECT_FALSE(setExtendedAttributeNamed(bytes("x"), name, missing));
            }).find("setExtendedAttribute:named:atPath: " + line),
            std::string::npos);
  EXPECT_NE(
      logOf([&] { EXPECT_TRUE(extendedAttributesAtPath(missing).empty()); }).find("there is no such file"),
      std::string::npos);
}

TEST(FinderMetadata, StandsInExtendedAttributes) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file\xff", ""), inside = folder.string("");
  for (const NSString &path : {file, inside}) {
    EXPECT_FALSE(finderComment(path));
    EXPECT_TRUE(setFinderComment(u"a \u4e00 comment"_ns, path));
    EXPECT_EQ(finderComment(path), u"a \u4e00 comment"_ns);
    EXPECT_EQ(createStringWithExtendedAttribute(u"user.xdg.comment"_ns, path), finderComment(path));
    EXPECT_TRUE(setFinderComment(NSString(), path));
    EXPECT_EQ(extendedAttributesAtPath(path).size(), 0u);
    for (int label = 7; label >= 0; --label) {
      EXPECT_TRUE(setFinderLabel(label, path));
      EXPECT_EQ(finderLabel(path), label);
    }
  }
  EXPECT_TRUE(setFileComments({{file, u"one"_ns}}));
  EXPECT_FALSE(setContainerComments({{folder.string("missing"), u"none"_ns}, {inside, u"two"_ns}}));
  EXPECT_FALSE(setFinderLabels({{folder.string("missing"), 1}, {file, u"red"_ns}, {inside, 3}}));
  // Not cut to a number that would be a label.
  EXPECT_FALSE(setFinderLabels({{file, std::int64_t{1} << 32 | 3}}));
  EXPECT_TRUE(setFileComments(NSDictionary()));
  EXPECT_EQ(finderComment(file), u"one"_ns);
  EXPECT_EQ(finderComment(inside), u"two"_ns);
  EXPECT_EQ(finderLabel(inside), 3);
  EXPECT_EQ(finderLabel(file), 0);
}

/// Answers what the test says, when it says so.
class RecordingRunner : public ScriptRunner {
 public:
  id run(const NSString &source, const NSString &entryPoint, const NSArray &arguments) override {
    started.wait();
    calls.push_back({source, entryPoint, arguments});
    if (calls.size() == 3) finished.set_value();
    if (!answer) throw std::runtime_error("no desktop");
    return answer;
  }

  std::shared_future<void> started;
  std::promise<void> finished;
  std::vector<NSArray> calls;
  id answer = true;
};

TEST(FinderMetadata, IsAskedForByScripts) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", ""), inside = folder.string("");
  std::promise<void> start;
  const auto runner = std::make_shared<RecordingRunner>();
  runner->started = start.get_future().share();
  setScriptRunner(runner);
  // They come back while the runner still waits.
  EXPECT_TRUE(setFinderComment(u"one"_ns, file, true));
  EXPECT_TRUE(setFinderLabel(1, inside, true));
  EXPECT_TRUE(setFinderLabel(2, inside, true));
  start.set_value();
  runner->finished.get_future().wait();
  EXPECT_TRUE(setFileComments({{file, u"two"_ns}}));
  runner->answer = u"a comment"_ns;
  EXPECT_EQ(finderComment(inside), u"a comment"_ns);
  runner->answer = 5;
  EXPECT_EQ(finderLabel(file), 5);
  EXPECT_FALSE(setFinderLabel(5, file));
  runner->answer = id();
  EXPECT_NE(logOf([&] { EXPECT_FALSE(finderComment(file)); }).find("no desktop"), std::string::npos);
  setScriptRunner(nullptr);

  ASSERT_EQ(runner->calls.size(), 8u);
  const NSArray expected[] = {
      {u"on setComment(thePath,theComment)\nwith timeout of 1 second\ntry\n"
       "tell application \"Finder\" to set comment of file thePath to theComment\n"
       "on error\nreturn false\nend\nreturn true\nend\nend"_ns,
       u"setComment"_ns, NSArray{file, u"one"_ns}},
      {u"on setLabel(thePath,theLabel)\nwith timeout of 1 second\ntry\n"
       "tell application \"Finder\" to set label index of container thePath to (theLabel as integer)\n"
       "on error\nreturn false\nend\nreturn true\nend\nend"_ns,
       u"setLabel"_ns, NSArray{inside, 1}},
      runner->calls[2],
      {u"on setComments(thePaths,theComments)\nlocal i, cnt\nset cnt to count of thePaths\n"
       "repeat with i from 1 to cnt\nmy setComment(item i of thePaths,item i of theComments)\nend repeat\nend\n"
       "on setComment(thePath,theComment)\nwith timeout of 1 second\ntry\n"
       "tell application \"Finder\" to set comment of file thePath to theComment\n"
       "on error\nreturn false\nend\nreturn true\nend\nend"_ns,
       u"setComments"_ns, NSArray{NSArray{file}, NSArray{u"two"_ns}}},
      {u"on getComment(thePath)\nwith timeout of 1 second\n"
       "tell application \"Finder\" to get comment of container thePath\nend\nend"_ns,
       u"getComment"_ns, NSArray{inside}},
      {u"on getLabel(thePath)\nwith timeout of 1 second\n"
       "tell application \"Finder\" to get label index of file thePath\nend\nend"_ns,
       u"getLabel"_ns, NSArray{file}},
  };
  for (std::size_t i = 0; i < std::size(expected); ++i) EXPECT_EQ(runner->calls[i], expected[i]) << i;
  EXPECT_EQ(runner->calls[2][2], (id(NSArray{inside, 2})));
}

TEST(CustomIcons, OfFoldersAreFilesOrTheSystems) {
  const TemporaryFolder folder;
  fs::create_directories(folder.path() / "home/inside/deep");
  fs::create_directory_symlink("home", folder.path() / "link");
  folder.write("icon/Icon\r", "");
  const EnvironmentSetting home("HOME", (folder.path() / "link").c_str());
  const std::pair<NSString, bool> cases[] = {
      {folder.string("link/inside"), true},
      {folder.string("link/inside/deep"), false},
      {folder.string("link"), false},
      {folder.string("icon"), true},
      {folder.string("home"), false},
      {folder.string("home/inside"), true},
      {folder.string("home/inside/"), true},
      {folder.string("home/inside/deep"), false},
      {u"/usr"_ns, true},
      {u"/usr/bin"_ns, false},
      {folder.write("home/file", ""), false},
      {folder.string("missing"), false},
      {NSString(), false},
  };
  for (const auto &[path, exists] : cases)
    EXPECT_EQ(existsCustomIconForPath(path), exists) << path.UTF8String();
  // No path is not that of the working folder.
  const fs::path working = fs::current_path();
  fs::current_path(folder.path() / "icon");
  EXPECT_FALSE(existsCustomIconForPath(NSString(), true) || existsCustomIconForPath(u""_ns, true));
  for (const auto &[path, exists] :
       {std::pair(u"../home/inside"_ns, true), {u"../icon"_ns, true}, {u"../home/inside/deep"_ns, false}})
    EXPECT_EQ(existsCustomIconForPath(path), exists) << path.UTF8String();
  fs::current_path(folder.path() / "home/inside");
  EXPECT_TRUE(existsCustomIconForPath(u"."_ns));
  EXPECT_FALSE(existsCustomIconForPath(u"deep"_ns) || existsCustomIconForPath(u".."_ns));
  fs::current_path(working);
}

TEST(FileTypes, ForWorkspaces) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "");
  const auto typeOf = [](const NSString &path) {
    return fileTypeForWorkspace(fileAttributesAtPath(path, true));
  };
  EXPECT_EQ(typeOf(folder.string("")), u"'fldr'"_ns);
  EXPECT_EQ(typeOf(file), NSFileTypeForHFSTypeCode(0x3f3f3f3f));
  EXPECT_EQ(typeOf(u"/dev/null"_ns), u"''"_ns);
  EXPECT_EQ(fileTypeForWorkspace(NSDictionary()), u"''"_ns);
  ASSERT_TRUE(setFileHFSTypeCode(kText, file));
  EXPECT_EQ(typeOf(file), u"'TEXT'"_ns);
}

TEST(FileTypes, OfFiles) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "");
  fs::create_symlink("file", folder.path() / "link");
  EXPECT_EQ(NSHFSTypeOfFile(file), u"''"_ns);
  ASSERT_TRUE(setFileHFSTypeCode(kText, file));
  EXPECT_EQ(NSHFSTypeOfFile(folder.string("link")), u"'TEXT'"_ns);
  for (const NSString &path : {folder.string(""), folder.string("missing"), NSString()})
    EXPECT_FALSE(NSHFSTypeOfFile(path)) << path.UTF8String();
}

}  // namespace
}  // namespace nimbo
