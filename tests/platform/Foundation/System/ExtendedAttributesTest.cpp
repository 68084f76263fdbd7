// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ExtendedAttributes.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <tuple>

#include "platform/Foundation/System/DataWriting.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

const NSString kComment = u"user.xdg.comment"_ns;

NSData bytes(std::string_view text) {
  return NSData::dataWithBytes(text.data(), text.size());
}

TEST(ExtendedAttributes, AreSetListedReadAndRemoved) {
  const TemporaryFolder folder;
  const NSString file = folder.write("name\xff", "content"), link = folder.string("link");
  fs::create_symlink("name\xff", folder.path() / "link");
  for (const NSString &path : {file, link, folder.string("")}) {
    EXPECT_EQ(extendedAttributeNames(path, true)->size(), 0u);
    ASSERT_TRUE(setExtendedAttribute(path, kComment, bytes("a\0b"), true));
    ASSERT_TRUE(setExtendedAttribute(path, u"user.empty\xdcff"_ns, NSData::data(), true));
    auto names = extendedAttributeNames(path, true).value();
    std::sort(names.begin(), names.end(), [](const auto &a, const auto &b) { return a.view() < b.view(); });
    EXPECT_EQ(names, (std::vector<NSString>{u"user.empty\xdcff"_ns, kComment}));
    EXPECT_EQ(extendedAttribute(path, kComment, true), bytes("a\0b"));
    EXPECT_EQ(extendedAttribute(path, u"user.empty\xdcff"_ns, true), NSData::data());
    for (int i = 0; i < 2; ++i) {
      for (const NSString &name : names) EXPECT_TRUE(setExtendedAttribute(path, name, NSData(), true));
    }
    EXPECT_EQ(extendedAttributeNames(path, true)->size(), 0u);
  }
  // A symbolic link has none of the user's own.
  ASSERT_TRUE(setExtendedAttribute(file, kComment, bytes("x"), true));
  EXPECT_EQ(extendedAttributeNames(link, false)->size(), 0u);
  EXPECT_FALSE(setExtendedAttribute(link, kComment, bytes("x"), false));
}

TEST(ExtendedAttributes, SayWhatFailed) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", ""), missing = folder.string("missing");
  const NSData large = bytes(std::string(70'000, 'x')), small = bytes("x");
  const std::tuple<NSString, NSString, NSData, ErrorCode> cases[] = {
      {file, kComment, large, ErrorCode::tooLarge},
      {missing, kComment, small, ErrorCode::noSuchFile},
      {missing, kComment, NSData(), ErrorCode::noSuchFile},
      {NSString(), kComment, small, ErrorCode::noSuchFile},
      {file, u"unknown.name"_ns, small, ErrorCode::unsupportedType},
      {u"/proc/self/status"_ns, kComment, small, ErrorCode::unsupportedType},
      {file, NSString(), small, ErrorCode::unreadable},
      {file, NSString::stringWithUTF8String("user." + std::string(300, 'x')), small, ErrorCode::tooLarge},
  };
  for (const auto &[path, name, data, code] : cases) {
    NSError error;
    EXPECT_FALSE(setExtendedAttribute(path, name, data, true, &error)) << path.UTF8String();
    EXPECT_EQ(error.errorCode(), code)
        << path.UTF8String() << ": " << error.localizedFailureReason.UTF8String();
  }
  for (const NSString &path : {file, missing, NSString()}) {
    NSError error;
    EXPECT_FALSE(extendedAttribute(path, kComment, true, &error));
    EXPECT_EQ(error.errorCode(), ErrorCode::noSuchFile);
    EXPECT_EQ(extendedAttributeNames(path, true).has_value(), path == file);
  }
}

TEST(ExtendedAttributes, SurviveAnAtomicWrite) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "old"), link = folder.string("link");
  fs::create_symlink("file", folder.path() / "link");
  const NSData value = bytes(std::string(2000, '\1'));
  ASSERT_TRUE(setExtendedAttribute(file, kComment, value, true));
  ASSERT_TRUE(setExtendedAttribute(file, u"user.empty"_ns, NSData::data(), true));
  for (const NSString &path : {file, link}) {
    ASSERT_TRUE(writeDataToFile(bytes("new"), path, true));
    EXPECT_EQ(extendedAttributeNames(file, true)->size(), 2u);
    EXPECT_EQ(extendedAttribute(file, kComment, true), value);
  }
  EXPECT_TRUE(writeDataToFile(bytes("new"), folder.string("other"), true));
  EXPECT_EQ(extendedAttributeNames(folder.string("other"), true)->size(), 0u);
}

TEST(ExtendedAttributes, AnAtomicWriteKeepsTheListOfWhoHasAccess) {
  const TemporaryFolder folder;
  const NSString file = folder.write("file", "old");
  // The owner, user 12345, the group, the mask and the others: what "setfacl -m u:12345:rw" makes of mode 0600.
  const std::string list(
      "\x02\0\0\0\x01\0\x06\0\xff\xff\xff\xff\x02\0\x06\0\x39\x30\0\0\x04\0\0\0\xff\xff\xff\xff"
      "\x10\0\x06\0\xff\xff\xff\xff\x20\0\0\0\xff\xff\xff\xff",
      44);
  const NSString name = u"system.posix_acl_access"_ns;
  if (!setExtendedAttribute(file, name, bytes(list), true)) GTEST_SKIP() << "the file system has no such lists";
  ASSERT_TRUE(writeDataToFile(bytes("new"), file, true));
  EXPECT_EQ(extendedAttribute(file, name, true), bytes(list));
}

}  // namespace
}  // namespace nimbo
