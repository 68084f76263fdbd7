// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "Classes/NSBundle+NSBundleNimboExtensions.hpp"
#include "Classes/NSMutableString+NSStringNimboPathExtensions.hpp"
#include "Classes/NSString+NSStringNimboPathExtensions+Types.hpp"
#include "Classes/NSString+NSStringNimboPathExtensions.hpp"
#include "Classes/StandardDirectories.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "tests/Classes/StringSamples.hpp"
#include "tests/TemporaryFolder.hpp"

namespace nimbo {
namespace {

struct Pair {
  NSString from, to;
};

void expectEach(std::initializer_list<Pair> pairs, NSString (*function)(const NSString &)) {
  for (const Pair &each : pairs) {
    const NSString result = function(each.from);
    EXPECT_EQ(result, each.to) << each.from.UTF8String() << ": " << result.UTF8String();
    EXPECT_EQ(result.identicalTo(each.from), each.from == each.to) << each.from.UTF8String();
  }
}

NSString repeated(const NSString &part, int count) {
  NSMutableString result;
  for (int i = 0; i < count; ++i) result.appendString(part);
  return std::move(result).string();
}

std::size_t bytesOf(const NSString &name) {
  return name.fileSystemRepresentation().value_or("").size();
}

TEST(StandardDirectories, StandInTheHomeFolder) {
  const std::string home = NSHomeDirectory().UTF8String();
  EXPECT_EQ(pathInApplicationSupportDirectory(u"a/b"_ns).UTF8String(),
            home + "/Library/Application Support/a/b");
  EXPECT_EQ(pathInCachesDirectory(NSString()).UTF8String(), home + "/Library/Caches");
  EXPECT_EQ(pathInPreferencesDirectory(u"p"_ns).UTF8String(), home + "/Library/Preferences/p");
  EXPECT_EQ(desktopDirectory().UTF8String(), home + "/Desktop");
  EXPECT_TRUE(cachesDirectory().identicalTo(cachesDirectory()));
}

TEST(StandardDirectories, KnowTemporaryPaths) {
  ASSERT_EQ(::setenv("TMPDIR", "/own/temporary", 1), 0);
  const NSString mail = pathInLibraryDirectory(u"Mail/x.mimeattach/a.pdf"_ns);
  for (const NSString &path : {u"/tmp"_ns, u"/tmpfiles/a"_ns, u"/var/tmp/"_ns, u"/own/temporary/a"_ns, mail})
    EXPECT_TRUE(isTemporaryPath(path)) << path.UTF8String();
  for (const NSString &path : {u"/var/tmp"_ns, u"/own/temporaryfile"_ns, u"/x/Library/Mail/x.mimeattach/a"_ns,
                               pathInLibraryDirectory(u"Mail/a.pdf"_ns), u"tmp"_ns, u""_ns, NSString()})
    EXPECT_FALSE(isTemporaryPath(path)) << path.UTF8String();
  ASSERT_EQ(::setenv("TMPDIR", "/", 1), 0);
  EXPECT_FALSE(isTemporaryPath(u"/home"_ns));
  ::unsetenv("TMPDIR");
}

TEST(StandardDirectories, GiveEachBundleAFolderOfItsOwn) {
  const TemporaryFolder folder;
  const NSString plain = folder.string("Plain.bundle");
  EXPECT_EQ(temporaryDirectory(NSBundle(plain)), u"/tmp/Plain"_ns);
  std::filesystem::remove("/tmp/Plain");
  const std::string name = folder.path().filename().native() + "~x";
  folder.write("B/Contents/Info.plist", "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>../" +
                                            name + "</string></dict></plist>");
  const NSBundle bundle(folder.string("B"));
  const std::string expected = "/tmp/" + folder.path().filename().native() + "-x";
  for (int i = 0; i < 2; ++i) EXPECT_EQ(temporaryDirectory(bundle).UTF8String(), expected);
  struct stat info = {};
  ASSERT_EQ(::lstat(expected.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700u);
  // What is no folder of the user's is not used.
  std::filesystem::remove(expected);
  std::filesystem::create_symlink("/", expected);
  const std::string numbered = expected + "-" + std::to_string(::geteuid());
  EXPECT_EQ(temporaryDirectory(bundle).UTF8String(), numbered);
  std::filesystem::remove(numbered);
  std::ofstream{numbered};
  EXPECT_FALSE(temporaryDirectory(bundle));
  std::filesystem::remove(numbered);
  std::filesystem::remove(expected);
}

TEST(FileNames, AreMadeOfAnyText) {
  expectEach({{u"..a/b:c~"_ns, u"a-b-c"_ns},
              {u"~/x."_ns, u"x"_ns},
              {u"a\u0308.b"_ns, u"\u00e4.b"_ns},
              {u"./~:"_ns, u""_ns},
              {u"a~b"_ns, u"a-b"_ns},
              {u"fine.txt"_ns, u"fine.txt"_ns},
              {u""_ns, u""_ns},
              {NSString(), NSString()}},
             stringByCreatingFilename);
  EXPECT_EQ(stringByTrimmingInvalidFilenameCharacters(u":.a/b~c/"_ns), u"a/b~c"_ns);
}

TEST(FileNames, KeepCharactersWholeWithinTheLimit) {
  const NSString family = u"\U0001f468\u200d\U0001f469"_ns;  // One character of 5 units and 11 bytes.
  struct Case {
    NSString name, cut;
  };
  const Case cases[] = {
      {repeated(u"a"_ns, 255), repeated(u"a"_ns, 255)},
      {repeated(u"a"_ns, 256), repeated(u"a"_ns, 255)},
      {repeated(u"\u00e4"_ns, 200), repeated(u"\u00e4"_ns, 127)},
      {repeated(u"\U0001f600"_ns, 70), repeated(u"\U0001f600"_ns, 63)},
      {repeated(u"e\u0301"_ns, 100), repeated(u"e\u0301"_ns, 85)},
      {repeated(family, 24), repeated(family, 23)},
      {repeated(u"\u0301"_ns, 200), repeated(u"\u0301"_ns, 127)},  // All one character.
      {u"ab\0cd"_ns, u"ab"_ns},
      {u"ab\xd800 cd"_ns, u"ab"_ns},
      {repeated(u"\xdcff"_ns, 300), repeated(u"\xdcff"_ns, 255)},
      {u"\0"_ns, u""_ns},
  };
  for (const Case &each : cases) EXPECT_EQ(stringByCreatingFileSystemRepresentation(each.name), each.cut);

  const TemporaryFolder folder;  // The real file system takes them.
  for (const Case &each : cases) {
    if (each.cut.length() == 0) continue;
    const NSString path = stringByAppendingPathComponent(folder.string(""), each.cut);
    EXPECT_TRUE(std::ofstream(path.fileSystemRepresentation().value())) << each.cut.UTF8String();
  }
}

TEST(FileNames, AreTheLongestThatFit) {
  RandomStrings random;
  for (int i = 0; i < 300; ++i) {
    NSMutableString long_;
    while (long_.length() < 270) long_.appendString(random.next());
    const NSString name = std::move(long_).string();
    const NSString cut = stringByCreatingFileSystemRepresentation(name);
    ASSERT_LE(bytesOf(cut), kMaximumFileNameBytes);
    ASSERT_EQ(name.substringWithRange({0, cut.length()}), cut);
    // One more character of these samples (at most a pair) cannot be had.
    const NSString more = name.substringWithRange({0, cut.length() + 2});
    ASSERT_TRUE(bytesOf(more) == 0 || bytesOf(more) > kMaximumFileNameBytes);
  }
}

TEST(FileNames, LeaveRoomForTheExtension) {
  const NSString umlauts = repeated(u"\u00e4"_ns, 10);
  struct Case {
    NSString name, extension, result;
  };
  const Case cases[] = {
      {u"a"_ns, u"txt"_ns, u"a.txt"_ns},       {u"a.txt"_ns, u"txt"_ns, u"a.txt"_ns},
      {u"atxt"_ns, u"txt"_ns, u"atxt.txt"_ns}, {u"a"_ns, u""_ns, u"a"_ns},
      {u"a"_ns, NSString(), u"a"_ns},          {u"a"_ns, repeated(u"x"_ns, 254), u"a"_ns},
      {u"a"_ns, u"x\0"_ns, u"a"_ns},
  };
  for (const Case &each : cases)
    EXPECT_EQ(stringByCreatingFileSystemRepresentationByAppendingExtension(each.name, each.extension),
              each.result);
  for (const NSString &extension : {u"txt"_ns, umlauts, repeated(u"x"_ns, 253)}) {
    const NSString name =
        stringByCreatingFileSystemRepresentationByAppendingExtension(repeated(u"a"_ns, 400), extension);
    EXPECT_EQ(bytesOf(name), kMaximumFileNameBytes);
    EXPECT_TRUE(name.view().ends_with(extension.view()));
  }
}

TEST(PathExtensions, AreValidatedReplacedAndAppended) {
  for (const NSString &valid : {u"html"_ns, u"\u00e4\u0661"_ns, repeated(u"x"_ns, 15)})
    EXPECT_TRUE(isValidPathExtension(valid)) << valid.UTF8String();
  for (const NSString &invalid : {u"tar.gz"_ns, repeated(u"x"_ns, 16), u""_ns, NSString()})
    EXPECT_FALSE(isValidPathExtension(invalid)) << invalid.UTF8String();
  const Pair extensions[] = {
      {u"/a/b.html?x=1"_ns, u"html"_ns},
      {u"b.php;s"_ns, u"php"_ns},
      {u"x.12345678901234"_ns, u"12345678901234"_ns},
      {u"x.123456789012345"_ns, u""_ns},
      {u"x.123456789012345#"_ns, u""_ns},
      {u"a"_ns, u""_ns},
      {u"a.?b"_ns, u""_ns},
      {u"a.b-c"_ns, u""_ns},
  };
  for (const Pair &each : extensions)
    EXPECT_EQ(validPathExtension(each.from), each.to) << each.from.UTF8String();

  const NSString path = u"a.txt"_ns;
  EXPECT_EQ(stringByReplacingPathExtensionWith(path, u"TXT"_ns), u"a.TXT"_ns);
  EXPECT_EQ(stringByReplacingPathExtensionWith(path, u""_ns), u"a"_ns);
  EXPECT_EQ(stringByAppendingPathExtensionIfNecessary(path, u"md"_ns), u"a.txt.md"_ns);
  for (const NSString &same : {stringByReplacingPathExtensionWith(path, u"txt"_ns),
                               stringByReplacingPathExtensionWith(path, NSString()),
                               stringByAppendingPathExtensionIfNecessary(path, u"TXT"_ns),
                               stringByAppendingPathExtensionIfNecessary(path, NSString())})
    EXPECT_TRUE(same.identicalTo(path));
}

TEST(PathExtensions, MatchNamesFilesAndTypes) {
  const TemporaryFolder folder;
  const NSString base = folder.string("base");
  const NSString text = folder.write("base.md", "text");
  const NSString page = folder.write("page", "%PDF-1.4\n");
  const std::vector<NSString> list{u""_ns, u"'PDF '"_ns, u"pdf"_ns, u"md"_ns, u"com.adobe.pdf"_ns};
  EXPECT_TRUE(pathMatchingExtensions(u"/none/x.MD"_ns, list));
  EXPECT_EQ(pathMatchingExtensions(base, list), text);
  EXPECT_FALSE(pathMatchingExtensions(page, list));
  EXPECT_FALSE(pathMatchingExtensions(NSString(), list));
  EXPECT_TRUE(pathMatchingExtensionsOrTypes(page, list).identicalTo(page));
  EXPECT_EQ(pathMatchingExtensionsOrTypes(base, list), text);
  EXPECT_FALSE(pathMatchingExtensionsOrTypes(folder.write("plain", "text"), list));
}

TEST(Paths, LoseTheirLastPart) {
  expectEach({{u"/a/b"_ns, u"/a"_ns},
              {u"/a/b/"_ns, u"/a/b"_ns},
              {u"/a"_ns, u"/"_ns},
              {u"/"_ns, u""_ns},
              {u"a"_ns, u""_ns},
              {u""_ns, u""_ns},
              {NSString(), NSString()}},
             stringByDeletingFileComponent);
}

TEST(Paths, AreToldFromAFolder) {
  const NSString cases[][3] = {
      {u"/a/b/c"_ns, u"/a/b"_ns, u"c"_ns},   {u"/a/b"_ns, u"/a/c/d/"_ns, u"../../b"_ns},
      {u"/a/./b/"_ns, u"/a//b"_ns, u"."_ns}, {u"/a"_ns, u"/"_ns, u"a"_ns},
      {u"/"_ns, u"/a"_ns, u".."_ns},         {u"/ab"_ns, u"/a"_ns, u"../ab"_ns},
      {u"a/b"_ns, u"."_ns, u"a/b"_ns},       {u"a"_ns, u"b"_ns, u"../a"_ns},
      {u"../a"_ns, u"../b"_ns, u"../a"_ns},  {u"a"_ns, u"../b"_ns, u"a"_ns},
      {u"/a/b"_ns, u"c"_ns, u"/a/b"_ns},     {u"/a"_ns, NSString(), u"/a"_ns},
  };
  for (const auto &[path, directory, relative] : cases)
    EXPECT_EQ(relativePathToDirectory(path, directory), relative) << path.UTF8String();
  EXPECT_EQ(standardizedPathComponents(u"/a//./b/"_ns), (std::vector<NSString>{u"/"_ns, u"a"_ns, u"b"_ns}));
}

TEST(Paths, HaveAFormWithColonsAndComeBack) {
  const Pair both[] = {
      {u"/"_ns, u"Root:"_ns},
      {u"/a/b:c"_ns, u"Root:a:b/c"_ns},
      {u"/a/../b/"_ns, u"Root:a::b:"_ns},
      {u"a/b"_ns, u":a:b"_ns},
      {u"../a"_ns, u"::a"_ns},
      {u"../"_ns, u"::"_ns},
      {u"."_ns, u":"_ns},
      {u""_ns, u""_ns},
  };
  for (const Pair &each : both) {
    EXPECT_EQ(HFSPath(each.from), each.to) << each.from.UTF8String();
    EXPECT_EQ(POSIXPath(each.to), each.from) << each.to.UTF8String();
  }
  EXPECT_EQ(HFSPath(u"/a//./b/.."_ns), u"Root:a:b::"_ns);
  EXPECT_FALSE(POSIXPath(u"Elsewhere:a"_ns));
  for (const NSString &path : {u"/a:b"_ns, u"a/b"_ns}) EXPECT_TRUE(POSIXPath(path).identicalTo(path));
}

TEST(Base64, IsWrittenPlainAndReadWithTolerance) {
  const Pair both[] = {
      {u""_ns, u""_ns},
      {u"f"_ns, u"Zg=="_ns},
      {u"fo"_ns, u"Zm8="_ns},
      {u"foo"_ns, u"Zm9v"_ns},
      {u"\u00e4\U0001f600\0"_ns, u"w6Twn5iAAA=="_ns},
  };
  for (const Pair &each : both) {
    EXPECT_EQ(encodebase64(each.from), each.to);
    EXPECT_EQ(decodebase64(each.to), each.from);
  }
  const Pair tolerated[] = {
      {u" Zm\r\n9v "_ns, u"foo"_ns}, {u"Zm9vZ"_ns, u"foo"_ns},         {u"Zm9vZg"_ns, u"foof"_ns},
      {u"Zg==Zg=="_ns, u"f"_ns},     {u"\u0100Z\u0161g-"_ns, u"f"_ns}, {u"=Zm9v"_ns, u""_ns},
      {u"/w=="_ns, NSString()},      {NSString(), NSString()},
  };
  for (const Pair &each : tolerated) EXPECT_EQ(decodebase64(each.from), each.to) << each.from.UTF8String();
  EXPECT_EQ(decodebase64UsingEncoding(u"/w=="_ns, NSISOLatin1StringEncoding), u"\u00ff"_ns);
  const NSString long_ = repeated(u"line of text "_ns, 1000);
  EXPECT_EQ(encodebase64(long_).view().find(u'\n'), std::u16string_view::npos);
  EXPECT_EQ(decodebase64(encodebase64(long_)), long_);
}

}  // namespace
}  // namespace nimbo
