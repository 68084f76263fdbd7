// SPDX-License-Identifier: Apache-2.0
#include "Classes/MetaData/MetaDataImporter.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Classes/MetaData/MDImporterAttributeDictionary.hpp"
#include "Classes/MetaData/MDImporterListing.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "tests/support/EnvironmentSetting.hpp"
#include "tests/support/ImporterBundle.hpp"

namespace nimbo {
namespace {

/// A system with folders of its own, none of which is there yet, and a tool that prints what a test lets it.
class MetaDataImporterTest : public testing::Test {
 protected:
  MetaDataImporterTest() {
    locations.importerTool = folder.string("no tool");
    locations.applicationFolders = {folder.string("Applications"), folder.string("Developer")};
    locations.importerFolders = {folder.string("home"), folder.string("local"), folder.string("system")};
    locations.userImporterFolder = folder.string("user");
    locations.shippedImporterFolder = folder.string("shipped");
  }

  /// A bundle around a function of the odd test plug-in.
  NSString add(const std::string &path, const std::string &type, std::vector<std::string> factories,
               const std::string &dynamic = "<false/>") {
    return ImporterBundle{{type}, ODD_TEST_PLUGIN, std::move(factories), dynamic}.writeTo(folder,
                                                                                          path + ".mdimporter");
  }
  /// Makes the tool print a text; "@" in it stands for this test's folder.
  void toolPrints(std::string output) {
    for (std::size_t at; (at = output.find('@')) != std::string::npos;)
      output.replace(at, 1, folder.path().native());
    folder.write("output", output);
    locations.importerTool =
        folder.write("tool", "#!/bin/sh\n[ \"$*\" = -L ] && cat \"$(dirname \"$0\")/output\" >&2\n");
    std::filesystem::permissions(folder.path() / "tool", std::filesystem::perms(0755));
  }
  /// The importers in their order, without this test's folder and the ending.
  std::vector<std::string> listed() {
    std::vector<std::string> names;
    for (const NSString &path : listMDImporters(locations, Deadline::after(60))) {
      const std::string name = path.UTF8String().substr(folder.path().native().size() + 1);
      names.push_back(name.substr(0, name.find(".mdimporter")));
    }
    return names;
  }

  TemporaryFolder folder;
  MetaDataImporterLocations locations;
};

using Names = std::vector<std::string>;

TEST_F(MetaDataImporterTest, OrdersWhatTheToolLists) {
  std::string list;
  for (const char *name : {"app/1", "app/dynamic", "system/1", "home/1", "shipped/1", "local/1", "home/dynamic",
                           "home/2", "system/2", "local/2", "app/2"}) {
    const bool isDynamic = std::string_view(name).ends_with("dynamic");
    add(name, "public.data", {}, isDynamic ? *name == 'a' ? "<string>YES</string>" : "<true/>" : "<false/>");
    list += (list.empty() ? "(\n \"@/" : ",\n \"@/") + std::string(name) + ".mdimporter\"";
  }
  add("shipped/dynamic", "public.data", {}, "<integer>1</integer>");
  add("user/1", "public.data", {});
  toolPrints("Paths: id(501) (these are all: \xc3\xa4) " + list + "\n)\n");
  EXPECT_EQ(listed(), (Names{"user/1", "home/2", "home/1", "local/2", "local/1", "system/2", "system/1",
                             "shipped/1", "app/1", "app/2"}));
  locations.importerFolders = {};
  EXPECT_EQ(listed(), (Names{"user/1", "shipped/1", "app/1", "system/1", "home/1", "local/1", "home/2",
                             "system/2", "local/2", "app/2"}));
}

TEST_F(MetaDataImporterTest, ScansTheFoldersWhenThereIsNoList) {
  for (const char *name :
       {"user/1", "home/1", "local/1", "system/1", "shipped/1", "Applications/x/Contents/Library/Spotlight/1",
        "Developer/x/Contents/Library/Spotlight/1", "home/sub/not"})
    add(name, "public.data", {});
  add("local/dynamic", "public.data", {}, "<true/>");
  std::filesystem::rename(folder.path() / "home/1.mdimporter", folder.path() / "home/1.mdIMPORTER");
  folder.write("local/other.txt", "");
  const Names all = {"Applications/x/Contents/Library/Spotlight/1",
                     "Developer/x/Contents/Library/Spotlight/1",
                     "user/1",
                     "home/1.mdIMPORTER",
                     "local/1",
                     "system/1",
                     "shipped/1"};
  EXPECT_EQ(listed(), all) << "no tool";
  for (const char *output : {"", "no list", "( \"@/app/1.mdimporter\" )", "(\n)", "(\n \"@/app/1.mdimporter\"",
                             "(\n \"@/app/\xc3\xa4.mdimporter\"\n)"}) {
    toolPrints(output);
    EXPECT_EQ(listed(), all) << output;
  }
  toolPrints("(\n \"@/app/1.mdimporter\"\n) \xff");
  EXPECT_EQ(listed(), Names{}) << "not UTF-8: nothing, and nothing else is tried";
}

TEST_F(MetaDataImporterTest, DoesNotFindTheApplicationsBelowATilde) {
  // The folder is listed below the home folder, its entries are then looked for below the text "~".
  const std::string relative = "Apps/x/Contents/Library/Spotlight/1";
  add("home folder/" + relative, "public.data", {});
  const EnvironmentSetting home("HOME", (folder.path() / "home folder").c_str());
  locations.applicationFolders = {u"~/Apps"_ns};
  const Names tilde = listed();
  locations.applicationFolders = {stringByExpandingTildeInPath(u"~/Apps"_ns)};
  const Names expanded = listed();
  EXPECT_EQ(tilde, Names{});
  EXPECT_EQ(expanded, Names{"home folder/" + relative});
}

TEST_F(MetaDataImporterTest, TakesTheFirstImporterThatDeclaresTheType) {
  add("home/a", "COM.Adobe.PDF", {"makeA"});
  add("local/b", "com.adobe.pdf", {"makeB"});
  add("system/c", "dyn.AH62d4rv4ge80g4dr", {"makeC"});
  add("shipped/d", "public.plain-text", {"makeNothing", "makeStranger", "missing", "makeD", "makeA"});
  MetaDataImporter importer(locations);
  const auto asked = [&](const char *name) {
    const NSDictionary attributes = importer.metaDataOfFileAtPath(folder.write(name, ""));
    return attributes.objectForKey(u"importer"_ns).string().UTF8String();
  };
  EXPECT_EQ(asked("x.pdf"), "A");
  EXPECT_EQ(asked("x.chm"), "C");
  EXPECT_EQ(asked("x.txt"), "D") << "the first factory that offers the interface";
  EXPECT_FALSE(importer.metaDataOfFileAtPath(folder.write("x.png", ""))) << "declared for editing only";
  EXPECT_FALSE(importer.metaDataOfFileAtPath(NSString()));
  // The list is made once; one that cannot be loaded now does not let the next one in.
  std::filesystem::permissions(folder.path() / "home/a.mdimporter", std::filesystem::perms(0777));
  EXPECT_FALSE(importer.metaDataOfFileAtPath(folder.string("x.pdf")));
}

TEST_F(MetaDataImporterTest, TakesEveryKindOfValue) {
  ImporterBundle{{"com.adobe.pdf"}, TEST_PLUGIN, {"makeEveryKindImporter"}}.writeTo(folder,
                                                                                    "home/c.mdimporter");
  MetaDataImporter importer(locations);
  const NSString path = folder.write("n\xff\xc3\xa4me.pdf", "");
  const NSString text = u" b\u00e4\ufffd\r\na\u0308 "_ns;
  NSError error;
  for (int round = 0; round < 2; ++round) {
    const NSDictionary attributes = importer.metaDataOfFileAtPath(path, &error);
    EXPECT_EQ(error, NSError::errorWithCode(ErrorCode::incomplete, "only a t\xc3\xa9st"));
    const NSDictionary expected = {
        {u"references"_ns, 1},  // The interface alone; the instance is released before.
        {u"path"_ns, NSString::stringWithLossyUTF8String(*path.fileSystemRepresentation())},
        {u"pathCharacters"_ns, path},
        {u"contentType"_ns, u"com.adobe.pdf"_ns},
        {u"kMDItemTextContent"_ns, text},
        {u"characters"_ns, NSString::stringWithCharacters({u"u\0\xd800", 3})},
        {u"real"_ns, 2.5},
        {u"boolean"_ns, true},
        {u"date"_ns, NSDate::dateWithTimeIntervalSince1970(0)},
        {u"data"_ns, NSData::dataWithBytes("\0\1", 2)},
        {u"null"_ns, NSNull()},
        {u"empty"_ns, NSArray::array()},
        {u"array"_ns, NSArray{NSNull(), true, -5, 0.5, NSDate{1}, u"text"_ns, u"u"_ns, NSData::data(),
                              NSArray{NSNull(), true, -5}}},
        {u"refused"_ns, 8},
    };
    EXPECT_EQ(attributes, expected);
  }
  EXPECT_EQ(importer.textContentOfFileAtPath(path, &(error = {})), text);
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
}

TEST_F(MetaDataImporterTest, KeepsWhatCameBeforeAnExceptionAndPassesOthersOn) {
  add("home/raiser", "com.adobe.pdf", {"makeRaiser", "makeA"});
  add("home/thrower", "public.plain-text", {"makeThrower"});
  add("home/data", "public.html", {"makeDataText"});
  MetaDataImporter importer(locations);
  EXPECT_EQ(importer.metaDataOfFileAtPath(folder.write("x.pdf", "")), (NSDictionary{{u"before"_ns, 1}}));
  EXPECT_THROW(importer.metaDataOfFileAtPath(folder.write("x.txt", "")), int);
  const NSString page = folder.write("x.html", "");
  EXPECT_EQ(importer.metaDataOfFileAtPath(page).count(), 1u);
  EXPECT_FALSE(importer.textContentOfFileAtPath(page)) << "the text is no string";
}

TEST_F(MetaDataImporterTest, SaysWhyThereIsNoneOrNotAll) {
  add("home/raiser", "com.adobe.pdf", {"makeRaiser"});
  add("home/odd", "public.plain-text", {"makeOddReason"});
  folder.write("home/damaged.mdimporter/Contents/Info.plist", "<plist><dict>");
  add("home/silent", "public.html", {"makeSilent"});
  add("home/folders", "com.apple.rtfd", {"makeSilent"});
  add("home/stranger", "public.png", {"makeStranger"});
  std::filesystem::permissions(folder.path() / add("home/unsafe", "public.jpeg", {"makeA"}).UTF8String(),
                               std::filesystem::perms(0777));
  std::filesystem::create_directory(folder.path() / "a.rtfd");
  ASSERT_EQ(::mkfifo((folder.path() / "fifo").c_str(), 0600), 0);
  const std::string longest(1000, 'x');
  const struct {
    NSString path;
    ErrorCode code;
    std::string_view reason;
  } cases[] = {
      {NSString(), ErrorCode::noSuchFile, "no such file"},
      {folder.string("missing.pdf"), ErrorCode::noSuchFile, "no such file"},
      {folder.string(""), ErrorCode::unreadable, "is a folder"},
      {folder.string("fifo"), ErrorCode::unreadable, "no regular file"},
      {folder.write("empty", ""), ErrorCode::incomplete, "is empty"},
      {folder.write("unknown", "\1\2\3"), ErrorCode::unsupportedType, "unknown"},
      {folder.write("a.gif", ""), ErrorCode::unsupportedType, "com.compuserve.gif"},
      {folder.string("a.gif"), ErrorCode::unsupportedType, "home/damaged.mdimporter: "},
      {folder.write("a.png", ""), ErrorCode::other, "is no metadata importer"},
      {folder.write("a.jpg", ""), ErrorCode::other, "writable by others"},
      {folder.write("a.pdf", ""), ErrorCode::incomplete, "the test asked for it"},
      {folder.write("a.txt", ""), ErrorCode::other, longest},
      {folder.write("a.html", ""), ErrorCode::incomplete, "is empty"},
      {folder.write("b.html", "x"), ErrorCode::other, "finds nothing"},
      {folder.string("a.rtfd"), ErrorCode::other, "finds nothing"},
  };
  MetaDataImporter importer(locations);
  for (const auto &[path, code, reason] : cases) {
    NSError error;
    importer.metaDataOfFileAtPath(path, &error);
    EXPECT_EQ(error.errorCode(), code) << path.UTF8String();
    const std::string told = error.localizedFailureReason.UTF8String();
    EXPECT_NE(told.find(reason), std::string::npos) << path.UTF8String() << ": " << told;
    EXPECT_LE(told.size(), 1000u);
    EXPECT_FALSE(importer.textContentOfFileAtPath(path));
  }
}

TEST_F(MetaDataImporterTest, NamesAFewOfTheImportersThatCannotBeUsed) {
  for (const int count : {3, 4}) {
    for (int i = 0; i < count; ++i)
      folder.write("home/" + std::to_string(i) + ".mdimporter/Contents/Info.plist", "<plist><dict>");
    NSError error;
    MetaDataImporter(locations).metaDataOfFileAtPath(folder.write("a.gif", ""), &error);
    const std::string told = error.localizedFailureReason.UTF8String();
    std::size_t named = 0;
    for (std::size_t at = 0; (at = told.find("; not used: ", at)) != told.npos; ++at) ++named;
    EXPECT_EQ(named, 3u) << told;
  }
}

TEST_F(MetaDataImporterTest, HasItsPlacesBySettingsOfTheUser) {
  const EnvironmentSetting home("HOME", "/h");
  const std::pair<const char *, NSString> places[] = {{nullptr, u"/h/.local/share/quiverleaf/importers"_ns},
                                                      {"", u"/h/.local/share/quiverleaf/importers"_ns},
                                                      {"data", u"/h/.local/share/quiverleaf/importers"_ns},
                                                      {"/data", u"/data/quiverleaf/importers"_ns}};
  for (const auto &[data, place] : places) {
    const EnvironmentSetting setting("XDG_DATA_HOME", data);
    EXPECT_EQ(MetaDataImporterLocations::standardLocations().userImporterFolder, place);
  }
  const auto standard = MetaDataImporterLocations::standardLocations();
  EXPECT_EQ(standard.importerTool, u"/usr/bin/mdimport"_ns);
  EXPECT_EQ(standard.applicationFolders,
            (std::vector{u"~/Applications"_ns, u"/Applications"_ns, u"/Developer/Applications"_ns}));
  EXPECT_EQ(standard.importerFolders, (std::vector{u"/h/Library/Spotlight"_ns, u"/Library/Spotlight"_ns,
                                                   u"/System/Library/Spotlight"_ns}));
  EXPECT_TRUE(standard.shippedImporterFolder.view().ends_with(u"/importers"));

  NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  const std::pair<NSString, id> settings[] = {{u"MDImporterTool"_ns, u"~/tool"_ns},
                                              {u"MDImporterApplicationFolders"_ns, NSArray{u"~/a"_ns}},
                                              {u"MDImporterFolders"_ns, NSArray{u"~/i"_ns, u"/j"_ns}},
                                              {u"MDImporterUserFolder"_ns, u"~/u"_ns},
                                              {u"MDImporterShippedFolder"_ns, u"/s"_ns}};
  for (const auto &[key, value] : settings) defaults.setObject(value, key);
  const auto own = MetaDataImporterLocations::standardLocations();
  for (const auto &[key, value] : settings) defaults.removeObjectForKey(key);
  EXPECT_EQ(own.importerTool, u"/h/tool"_ns);
  EXPECT_EQ(own.applicationFolders, std::vector{u"~/a"_ns});
  EXPECT_EQ(own.importerFolders, (std::vector{u"/h/i"_ns, u"/j"_ns}));
  EXPECT_EQ(own.userImporterFolder, u"/h/u"_ns);
  EXPECT_EQ(own.shippedImporterFolder, u"/s"_ns);
}

}  // namespace
}  // namespace nimbo
