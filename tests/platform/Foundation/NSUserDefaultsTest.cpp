// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSUserDefaults.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

TEST(NSUserDefaults, PrefersTheFileToWhatIsRegistered) {
  const TemporaryFolder folder;
  NSUserDefaults defaults(folder.write("d.plist", "{ a = file; list = (x, y); mixed = (x, (y)); }"));
  defaults.registerDefaults({{u"a"_ns, u"registered"_ns}, {u"b"_ns, 1}});
  defaults.registerDefaults({{u"b"_ns, 2}});
  EXPECT_EQ(defaults.stringForKey(u"a"_ns), u"file"_ns);
  EXPECT_EQ(defaults.objectForKey(u"b"_ns), id(2));
  EXPECT_FALSE(defaults.stringForKey(u"b"_ns));
  EXPECT_EQ(defaults.stringArrayForKey(u"list"_ns), (std::vector<NSString>{u"x"_ns, u"y"_ns}));
  for (const NSString &key : {u"mixed"_ns, u"a"_ns, u"none"_ns})
    EXPECT_FALSE(defaults.stringArrayForKey(key)) << key.UTF8String();
  // Null in the file is nothing there.
  const NSData null = NSPropertyListSerialization::dataWithPropertyList(NSDictionary{{u"a"_ns, NSNull()}},
                                                                        NSPropertyListFormat::binary);
  NSUserDefaults other(folder.write("null.plist", null.view()));
  EXPECT_FALSE(other.objectForKey(u"a"_ns));
  other.registerDefaults({{u"a"_ns, u"registered"_ns}});
  EXPECT_EQ(other.stringForKey(u"a"_ns), u"registered"_ns);
  for (const NSString &path :
       {folder.write("bad.plist", "{ a = "), folder.write("list", "(a)"), folder.string("no")})
    EXPECT_FALSE(NSUserDefaults(path).objectForKey(u"a"_ns));
}

TEST(NSUserDefaults, ChangesCountAtOnceAndStandInTheFileWhenInSync) {
  const TemporaryFolder folder;
  const NSString path = folder.string("new/folder/d.plist");
  NSUserDefaults defaults(path), other(path);
  defaults.registerDefaults({{u"a"_ns, u"registered"_ns}});
  defaults.setObject(u"set"_ns, u"a"_ns);
  defaults.setObject(NSArray{1, u"x"_ns}, u"list"_ns);
  defaults.setObject(1, NSString());
  EXPECT_EQ(defaults.stringForKey(u"a"_ns), u"set"_ns);
  EXPECT_FALSE(fs::exists(folder.path() / "new"));
  other.setObject(true, u"other"_ns);
  NSError error;
  ASSERT_TRUE(defaults.synchronize(&error)) << error.localizedFailureReason.UTF8String();
  ASSERT_TRUE(other.synchronize());
  EXPECT_EQ(other.objectForKey(u"list"_ns), id(NSArray{1, u"x"_ns}));
  EXPECT_FALSE(defaults.objectForKey(u"other"_ns));
  // What others have open of the file stays whole.
  fs::create_hard_link(folder.path() / "new/folder/d.plist", folder.path() / "before");
  defaults.removeObjectForKey(u"a"_ns);
  EXPECT_EQ(defaults.stringForKey(u"a"_ns), u"registered"_ns);
  defaults.setObject(id(), u"list"_ns);
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(defaults.objectForKey(u"other"_ns), id(true));
  ASSERT_TRUE(other.synchronize());
  EXPECT_FALSE(other.objectForKey(u"a"_ns) || other.objectForKey(u"list"_ns));
  EXPECT_EQ(NSUserDefaults(folder.string("before")).stringForKey(u"a"_ns), u"set"_ns);
}

TEST(NSUserDefaults, KeepsTheFormOfTheFileAsFarAsItCanBeWritten) {
  const TemporaryFolder folder;
  const auto formatAfterChange = [](const NSString &path) {
    NSUserDefaults defaults(path);
    defaults.setObject(1, u"new"_ns);
    EXPECT_TRUE(defaults.synchronize());
    auto format = NSPropertyListFormat::openStep;
    const id list =
        NSPropertyListSerialization::propertyListFromData(NSData::dataWithContentsOfFile(path), &format);
    EXPECT_EQ(list, id(NSDictionary{{u"old"_ns, u"x"_ns}, {u"new"_ns, 1}}));
    return format;
  };
  EXPECT_EQ(formatAfterChange(folder.write("text", "{ old = x; }")), NSPropertyListFormat::xml);
  const NSString binary = folder.string("binary");
  ASSERT_TRUE(writeDataToFile(NSPropertyListSerialization::dataWithPropertyList(
                                  NSDictionary{{u"old"_ns, u"x"_ns}}, NSPropertyListFormat::binary),
                              binary, true));
  EXPECT_EQ(formatAfterChange(binary), NSPropertyListFormat::binary);
  NSUserDefaults touched(folder.write("touched", ""));
  touched.setObject(1, u"new"_ns);
  EXPECT_TRUE(touched.synchronize());
}

TEST(NSUserDefaults, LeavesAFileThatItCannotReadOrWriteAndKeepsTheChanges) {
  const TemporaryFolder folder;
  folder.write("file", "x");
  fs::create_directory(folder.path() / "locked");
  fs::create_symlink("elsewhere", folder.path() / "locked/.d.lock");
  const struct {
    NSString path;
    ErrorCode code;
  } cases[] = {{folder.write("damaged", "{ a = "), ErrorCode::damaged},
               {folder.write("list", "(a)"), ErrorCode::damaged},
               {folder.string("file/d"), ErrorCode::unreadable},
               {folder.string("locked/d"), ErrorCode::unreadable},
               {NSString(), ErrorCode::noSuchFile}};
  for (const auto &[path, code] : cases) {
    const NSData before = NSData::dataWithContentsOfFile(path);
    NSUserDefaults defaults(path);
    defaults.setObject(1, u"a"_ns);
    NSError error;
    EXPECT_FALSE(defaults.synchronize(&error));
    EXPECT_EQ(error.errorCode(), code) << path.UTF8String() << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(NSData::dataWithContentsOfFile(path), before);
    EXPECT_EQ(defaults.objectForKey(u"a"_ns), id(1));
  }
  EXPECT_FALSE(fs::exists(folder.path() / "locked/elsewhere"));
}

TEST(NSUserDefaults, ProcessesAndThreadsThatWriteAtOnceLoseNothing) {
  constexpr int kWriters = 3, kKeys = 20;
  const TemporaryFolder folder;
  const NSString path = folder.write("d.plist", "{ }");
  fs::create_symlink("d.plist", folder.path() / "link.plist");
  const auto write = [&](int writer) {
    for (int key = 0; key < kKeys; ++key) {
      NSUserDefaults defaults(writer % 2 == 0 ? path : folder.string("link.plist"));
      defaults.setObject(writer, stringWithFormat(u"%d-%d", writer, key));
      if (!defaults.synchronize()) return false;
    }
    return true;
  };
  std::vector<pid_t> children;
  for (int writer = 0; writer < kWriters; ++writer) {
    children.push_back(::fork());
    if (children.back() == 0) ::_exit(write(writer) ? 0 : 1);
  }
  std::thread thread([&] { EXPECT_TRUE(write(kWriters)); });
  EXPECT_TRUE(write(kWriters + 1));
  thread.join();
  for (const pid_t child : children) {
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  const NSUserDefaults all(path);
  for (int writer = 0; writer < kWriters + 2; ++writer)
    for (int key = 0; key < kKeys; ++key)
      EXPECT_EQ(all.objectForKey(stringWithFormat(u"%d-%d", writer, key)), id(writer)) << key;
}

}  // namespace
}  // namespace nimbo
