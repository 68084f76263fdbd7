// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <utility>

#include "Classes/Files/NSBundle+NSBundleNimboExtensions.hpp"
#include "Classes/Paths/NSMutableString+NSStringNimboPathExtensions.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions.hpp"
#include "Classes/Paths/StandardDirectories.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

/// A list of arguments, each before what the function makes of it: itself where both are equal.
void expectEach(std::initializer_list<NSString> list, NSString (*function)(const NSString &)) {
  for (auto argument = list.begin(); argument != list.end(); argument += 2) {
    const NSString result = function(argument[0]);
    EXPECT_EQ(result, argument[1]) << argument[0].UTF8String() << ": " << result.UTF8String();
  }
}

NSString repeated(const NSString &part, int count) {
  NSMutableString result;
  for (int i = 0; i < count; ++i) result.appendString(part);
  return std::move(result).string();
}

TEST(StandardDirectories, AreInTheHomeFolderAndKnowTemporaryPaths) {
  const std::string library = NSHomeDirectory().UTF8String() + "/Library";
  EXPECT_EQ(pathInApplicationSupportDirectory(u"a"_ns).UTF8String(), library + "/Application Support/a");
  const std::string home = NSHomeDirectory().UTF8String();
  const std::pair<NSString, std::string> paths[] = {
      {homeDirectory(), home},
      {desktopDirectory(), home + "/Desktop"},
      {cachesDirectory(), library + "/Caches"},
      {preferencesDirectory(), library + "/Preferences"},
      {pathInHomeDirectory(u"a/b"_ns), home + "/a/b"},
      {pathInCachesDirectory(u"a"_ns), library + "/Caches/a"},
      {pathInPreferencesDirectory(u"a.plist"_ns), library + "/Preferences/a.plist"},
  };
  for (const auto &[path, expected] : paths) EXPECT_EQ(path.UTF8String(), expected);
  ASSERT_EQ(::setenv("TMPDIR", "/own/temporary", 1), 0);
  const NSString mail = pathInLibraryDirectory(u"Mail/x.mimeattach/a.pdf"_ns);
  for (const NSString &path : {u"/tmp"_ns, u"/tmpfiles/a"_ns, u"/var/tmp/"_ns, u"/own/temporary/a"_ns, mail})
    EXPECT_TRUE(isTemporaryPath(path)) << path.UTF8String();
  for (const NSString &path :
       {u"/var/tmp"_ns, u"/own/temporaryfile"_ns, u"/x/Library/Mail/x.mimeattach/a"_ns,
        pathInLibraryDirectory(u"Mail/a.pdf"_ns),
        pathInLibraryDirectory(u"Mails/Library/Mail/x.mimeattach/a"_ns), u"tmp"_ns, u""_ns, NSString()})
    EXPECT_FALSE(isTemporaryPath(path)) << path.UTF8String();
  ASSERT_EQ(::setenv("TMPDIR", "/", 1), 0);
  EXPECT_FALSE(isTemporaryPath(u"/home"_ns));
  ::unsetenv("TMPDIR");
}

TEST(StandardDirectories, GiveEachBundleAFolderOfItsOwn) {
  const TemporaryFolder folder;
  const std::string name = folder.path().filename().native();
  folder.write("B/Contents/Info.plist", "{CFBundleName = \"../" + name + "~x\";}");
  const NSBundle bundle(folder.string("B"));
  const std::string path = "/tmp/" + name + "-x", numbered = path + "-" + std::to_string(::geteuid());
  for (int i = 0; i < 2; ++i) EXPECT_EQ(temporaryDirectory(bundle).UTF8String(), path);
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms::owner_all);
  // What is no folder of the user's is not used.
  std::filesystem::remove(path);
  std::filesystem::create_symlink("/", path);
  EXPECT_EQ(temporaryDirectory(bundle).UTF8String(), numbered);
  std::filesystem::remove(numbered);
  std::ofstream{numbered};
  EXPECT_FALSE(temporaryDirectory(bundle));
  std::filesystem::remove(numbered);
  std::filesystem::remove(path);
}

TEST(FileNames, AreMadeOfAnyText) {
  expectEach({u"..a/b:c~"_ns, u"a-b-c"_ns, u"~/x."_ns, u"x"_ns, u"a\u0308.b"_ns, u"\u00e4.b"_ns, u"./~:"_ns,
              u""_ns, u"fine.txt"_ns, u"fine.txt"_ns, NSString(), NSString()},
             stringByCreatingFilename);
  expectEach({u":.a/b~c/"_ns, u"a/b~c"_ns}, stringByTrimmingInvalidFilenameCharacters);
}

TEST(FileNames, KeepCharactersWholeWithinTheLimit) {
  // How often the character still fits behind five letters.
  const std::pair<NSString, int> characters[] = {
      {u"a"_ns, 250},      {u"\u00e4"_ns, 125}, {u"\U0001f600"_ns, 62}, {u"\xdc80"_ns, 250},
      {u"\xdcff"_ns, 250}, {u"\xdd00"_ns, 0},   {u"e\u0301"_ns, 83},    {u"\U0001f468\u200d\U0001f469"_ns, 22},
      {u"\0"_ns, 0},       {u"\xd800 "_ns, 0}};
  const TemporaryFolder folder;
  for (const auto &[character, count] : characters) {
    const auto name = [&](int characterCount) {
      NSMutableString result(u"names"_ns);
      result.appendString(repeated(character, characterCount));
      return std::move(result).string();
    };
    EXPECT_EQ(stringByCreatingFileSystemRepresentation(name(260)), name(count));
    EXPECT_EQ(stringByCreatingFileSystemRepresentation(name(count)), name(count));
    const NSString path = stringByAppendingPathComponent(folder.string(""), name(count));
    EXPECT_TRUE(std::ofstream(path.fileSystemRepresentation().value())) << path.UTF8String();
  }
  // All of them make one character.
  EXPECT_EQ(stringByCreatingFileSystemRepresentation(repeated(u"\u0301"_ns, 200)), repeated(u"\u0301"_ns, 127));
}

TEST(FileNames, LeaveRoomForTheExtension) {
  const auto named = stringByCreatingFileSystemRepresentationByAppendingExtension;
  for (const NSString &name : {named(u"a.txt"_ns, u"txt"_ns), named(u"a"_ns, u"txt"_ns)})
    EXPECT_EQ(name, u"a.txt"_ns);
  EXPECT_EQ(named(u"atxt"_ns, u"txt"_ns), u"atxt.txt"_ns);
  for (const NSString &none : {u""_ns, NSString(), repeated(u"x"_ns, 254), u"x\0"_ns})
    EXPECT_EQ(named(u"a"_ns, none), u"a"_ns);
  for (const NSString &extension : {u"txt"_ns, u"\u00e4\u00e4"_ns, repeated(u"x"_ns, 253)}) {
    const NSString name = named(repeated(u"a"_ns, 400), extension);
    EXPECT_EQ(name.UTF8String().size(), kMaximumFileNameBytes);
    EXPECT_TRUE(name.view().ends_with(extension.view()));
  }
}

TEST(PathExtensions, AreValidatedReplacedAndAppended) {
  for (const NSString &valid : {u"html"_ns, u"\u00e4\u0661"_ns, repeated(u"x"_ns, 15)})
    EXPECT_TRUE(isValidPathExtension(valid)) << valid.UTF8String();
  for (const NSString &invalid : {u"tar.gz"_ns, repeated(u"x"_ns, 16), u""_ns, NSString()})
    EXPECT_FALSE(isValidPathExtension(invalid)) << invalid.UTF8String();
  expectEach({u"/a/b.html?x=1"_ns, u"html"_ns, u"x.12345678901234;"_ns, u"12345678901234"_ns,
              u"x.123456789012345"_ns, u""_ns, u"a"_ns, u""_ns, u"a.?b"_ns, u""_ns, u"a.b-c"_ns, u""_ns},
             validPathExtension);
  const NSString path = u"a.txt"_ns;
  EXPECT_EQ(stringByReplacingPathExtensionWith(path, u"TXT"_ns), u"a.TXT"_ns);
  EXPECT_EQ(stringByReplacingPathExtensionWith(path, u""_ns), u"a"_ns);
  EXPECT_EQ(stringByReplacingPathExtensionWith(path, NSString()), path);
  EXPECT_EQ(stringByAppendingPathExtensionIfNecessary(path, u"md"_ns), u"a.txt.md"_ns);
  EXPECT_TRUE(stringByAppendingPathExtensionIfNecessary(path, u"TXT"_ns).identicalTo(path));
}

TEST(PathExtensions, MatchNamesAndFiles) {
  const TemporaryFolder folder;
  const NSString base = folder.string("base");
  const NSString text = folder.write("base.md", "text");
  const std::vector<NSString> list{u""_ns, u"'PDF '"_ns, u"pdf"_ns, u"md"_ns, u"com.adobe.pdf"_ns};
  EXPECT_TRUE(pathMatchingExtensions(u"/none/x.MD"_ns, list));
  EXPECT_EQ(pathMatchingExtensions(base, list), text);
  EXPECT_FALSE(pathMatchingExtensions(folder.write("page", "%PDF-1.4\n"), list));
  EXPECT_FALSE(pathMatchingExtensions(NSString(), list));
}

TEST(Paths, LoseTheirLastPart) {
  expectEach({u"/a/b"_ns, u"/a"_ns, u"/a/b/"_ns, u"/a/b"_ns, u"/a"_ns, u"/"_ns, u"/"_ns, u""_ns, u"a"_ns,
              u""_ns, u""_ns, u""_ns, NSString(), NSString()},
             stringByDeletingFileComponent);
}

TEST(Paths, AreToldFromAFolder) {
  const NSString cases[][3] = {
      {u"/a/b/c"_ns, u"/a/b"_ns, u"c"_ns},   {u"/a/b"_ns, u"/a/c/d/"_ns, u"../../b"_ns},
      {u"/a/./b/"_ns, u"/a//b"_ns, u"."_ns}, {u"/a"_ns, u"/"_ns, u"a"_ns},
      {u"/ab"_ns, u"/a"_ns, u"../ab"_ns},    {u"a/b"_ns, u"."_ns, u"a/b"_ns},
      {u"../a"_ns, u"../b"_ns, u"../a"_ns},  {u"a"_ns, u"../b"_ns, u"a"_ns},
      {u"/a/b"_ns, u"c"_ns, u"/a/b"_ns},     {u"/a"_ns, NSString(), u"/a"_ns},
  };
  for (const auto &[path, directory, relative] : cases)
    EXPECT_EQ(relativePathToDirectory(path, directory), relative) << path.UTF8String();
  EXPECT_EQ(standardizedPathComponents(u"/a//./b/"_ns), (std::vector<NSString>{u"/"_ns, u"a"_ns, u"b"_ns}));
}

TEST(Paths, HaveAFormWithColonsAndComeBack) {
  const NSString both[][2] = {{u"/"_ns, u"Root:"_ns},
                              {u"/a/b:c"_ns, u"Root:a:b/c"_ns},
                              {u"/a/../b/"_ns, u"Root:a::b:"_ns},
                              {u"a/b"_ns, u":a:b"_ns},
                              {u"../a"_ns, u"::a"_ns},
                              {u"../"_ns, u"::"_ns},
                              {u"."_ns, u":"_ns},
                              {u""_ns, u""_ns}};
  for (const auto &[slashes, colons] : both) {
    EXPECT_EQ(HFSPath(slashes), colons) << slashes.UTF8String();
    EXPECT_EQ(POSIXPath(colons), slashes) << colons.UTF8String();
  }
  expectEach({u"/a//./b/.."_ns, u"Root:a:b::"_ns, u"a/../."_ns, u":a::"_ns, u"./a/."_ns, u":a:"_ns}, HFSPath);
  expectEach({u"Elsewhere:a"_ns, NSString(), u"/a:b"_ns, u"/a:b"_ns, u"a/b"_ns, u"a/b"_ns}, POSIXPath);
}

TEST(Base64, IsWrittenPlainAndReadWithTolerance) {
  const NSString long_ = repeated(u"line of text \u00e4\U0001f600\0"_ns, 1000);
  EXPECT_EQ(decodebase64(encodebase64(long_)), long_);
  EXPECT_EQ(encodebase64(long_).view().find(u'\n'), std::u16string_view::npos);
  expectEach({u"f"_ns, u"Zg=="_ns, u"fo"_ns, u"Zm8="_ns, u"\u00e4\U0001f600\0"_ns, u"w6Twn5iAAA=="_ns},
             encodebase64);
  expectEach(
      {u" Zm\r\n9v "_ns, u"foo"_ns, u"Zm9vZ"_ns, u"foo"_ns, u"Zm9vZg"_ns, u"foof"_ns, u"Zg==Zg=="_ns, u"f"_ns,
       u"\u0100Z\u0161g-"_ns, u"f"_ns, u"=Zm9v"_ns, u""_ns, u"/w=="_ns, NSString(), NSString(), NSString()},
      decodebase64);
  EXPECT_EQ(decodebase64UsingEncoding(u"/w=="_ns, NSISOLatin1StringEncoding), u"\u00ff"_ns);
}

}  // namespace
}  // namespace nimbo
