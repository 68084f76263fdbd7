// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Files.hpp"
#include "platform/Foundation/NSBundleLocalization.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "tests/support/FileReaders.hpp"

namespace nimbo {
namespace {

std::string pageBytes() {
  std::string page = "<html><head><meta charset=windows-1252><title>Bl\xe4tter</title></head><body>";
  for (int i = 0; i < 200; ++i)
    page +=
        "<p>Ein K\xf6"
        "cher voller Bl\xe4tter &amp; Pfeile</p>\n";
  return page;
}

std::string listBytes(NSPropertyListFormat format) {
  const id list = NSDictionary{
      {u"leaf"_ns,
       NSArray{u"Bl\u00e4tter \U0001f342"_ns, 7, -0.5, true, NSDate{3}, NSData::dataWithBytes("\0\1", 2)}},
      {u"WebMainResource"_ns,
       NSDictionary{{u"WebResourceData"_ns, NSData::dataWithBytes(pageBytes().data(), pageBytes().size())},
                    {u"WebResourceTextEncodingName"_ns, u"windows-1252"_ns}}},
  };
  return std::string(NSPropertyListSerialization::dataWithPropertyList(list, format).view());
}

constexpr char kOldStyleList[] = "{ leaf = (Blatt, \"\\U00e4\", <0102>); /* x */ \"quiver\" = {a = b; }; }\n";

id propertyList(const NSString &path, NSError *error) {
  const NSData data = NSData::dataWithContentsOfFile(path, error);
  return data ? NSPropertyListSerialization::propertyListFromData(data, nullptr, error) : id();
}

/// The path without its last components.
NSString folderAbove(NSString path, int components) {
  while (components-- > 0) path = stringByDeletingLastPathComponent(path);
  return path;
}

id localizedText(const NSString &path, NSError *) {
  ::setenv("LANGUAGE", "de", 1);
  const NSString text = localizedStringForKey(NSBundle(folderAbove(path, 4)), u"quiver"_ns, u"none"_ns);
  ::unsetenv("LANGUAGE");
  return text == u"none"_ns ? id() : id(text);
}

INSTANTIATE_TEST_SUITE_P(
    Text, FileReaders,
    testing::Values(
        FileReader{"Data", "leaf.txt", "Quiver and leaf\n",
                   [](const NSString &path, NSError *error) {
                     return id(NSData::dataWithContentsOfFile(path, error));
                   }},
        FileReader{"DetectedText", "leaf.txt",
                   "gr\xc3\xbc\xc3\x9f"
                   "e Bl\xc3\xa4tter\n",
                   [](const NSString &path, NSError *) { return id(stringWithContentsOfFile(path, 0)); },
                   false},
        FileReader{"Markup", "leaf.html", pageBytes(),
                   [](const NSString &path, NSError *) {
                     return id(stringWithMarkupContentsOfFile(path, NSUTF8StringEncoding));
                   },
                   false},
        FileReader{"MarkupOfWebArchive", "leaf.webarchive", listBytes(NSPropertyListFormat::binary),
                   [](const NSString &path, NSError *) {
                     return id(stringWithMarkupContentsOfFile(path, NSUTF8StringEncoding));
                   },
                   false},
        FileReader{"XMLPropertyList", "leaf.plist", listBytes(NSPropertyListFormat::xml), propertyList},
        FileReader{"BinaryPropertyList", "leaf.plist", listBytes(NSPropertyListFormat::binary), propertyList},
        FileReader{"TextPropertyList", "leaf.plist", kOldStyleList, propertyList},
        FileReader{
            "UserDefaults", "defaults.plist", listBytes(NSPropertyListFormat::xml),
            [](const NSString &path, NSError *) { return NSUserDefaults(path).objectForKey(u"leaf"_ns); },
            false},
        FileReader{"Bundle", "Contents/Info.plist", listBytes(NSPropertyListFormat::xml),
                   [](const NSString &path, NSError *error) {
                     return id(NSBundle(folderAbove(path, 2)).infoDictionary(error));
                   }},
        FileReader{"Localization", "Contents/Resources/de.lproj/Localizable.strings",
                   "\"leaf\" = \"Blatt\";\n\"quiver\" = \"K\xc3\xb6"
                   "cher\";\n",
                   localizedText, false}),
    nameOfFileReader);

}  // namespace
}  // namespace nimbo
