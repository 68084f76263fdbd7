// SPDX-License-Identifier: Apache-2.0
#include "Classes/MetaData/MDImporterListing.hpp"

#include <algorithm>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"
#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/NSTask.hpp"

namespace nimbo {
namespace {

/// Information files write this flag as a boolean, a number or one of the words that mean yes.
bool isDynamicallyRegistered(const NSString &importer) {
  const id flag = NSBundle(importer).objectForInfoDictionaryKey(u"CFPlugInDynamicRegistration"_ns);
  const NSString word = lowercaseString(flag.string());
  return flag.boolean() == true || flag.integer().value_or(0) != 0 || word.view() == u"yes" ||
         word.view() == u"true" || word.view() == u"1";
}

/// The property list inside the tool's output: what begins with the first "(" at the end of a line.
NSArray listInToolOutput(const NSString &text) {
  const std::size_t start = text.view().find(u"(\n");
  const std::u16string_view list = start == std::u16string_view::npos ? u"" : text.view().substr(start);
  if (std::ranges::any_of(list, [](char16_t unit) { return unit >= 0x80; })) return NSArray();
  const std::string ascii(list.begin(), list.end());
  return NSPropertyListSerialization::propertyListFromData(NSData::dataWithBytes(ascii.data(), ascii.size()))
      .array();
}

/// The tool lists importers in no order that matters here: the user's come first, then the local ones, then the
/// system's, each group from the end of the list to its beginning, then all others as they are listed.
std::vector<NSString> orderImporters(std::vector<NSString> listed, const MetaDataImporterLocations &locations) {
  std::vector<NSString> ordered;
  const auto append = [&](const std::vector<NSString> &importers) {
    for (const NSString &importer : importers)
      if (std::ranges::find(ordered, importer) == ordered.end()) ordered.push_back(importer);
  };
  // The tool does not list the importers that are for this program alone.
  const auto appendFolder = [&](const NSString &folder) {
    std::vector<NSString> importers;
    loadPluginsFromFolder(importers, folder);
    append(importers);
  };
  std::erase_if(listed, isDynamicallyRegistered);
  appendFolder(locations.userImporterFolder);
  for (const NSString &prefix : locations.importerFolders) {
    for (std::size_t i = listed.size(); i-- > 0;) {
      if (!listed[i].view().starts_with(prefix.view())) continue;
      ordered.push_back(listed[i]);
      listed.erase(listed.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
  appendFolder(locations.shippedImporterFolder);
  append(listed);
  return ordered;
}

std::vector<NSString> scanFolders(const MetaDataImporterLocations &locations) {
  std::vector<NSString> found;
  for (const NSString &folder : locations.applicationFolders) {
    const auto applications = NSFileManager::contentsOfDirectoryAtPath(stringByExpandingTildeInPath(folder));
    if (!applications) continue;
    for (const NSString &application : *applications) {
      // Deliberately with the folder as it is written: below one that begins with "~" nothing is found.
      const NSString path = stringByAppendingPathComponent(folder, application);
      loadPluginsFromFolder(found, stringByAppendingPathComponent(path, u"Contents/Library/Spotlight"_ns));
    }
  }
  loadPluginsFromFolder(found, locations.userImporterFolder);
  for (const NSString &folder : locations.importerFolders) loadPluginsFromFolder(found, folder);
  loadPluginsFromFolder(found, locations.shippedImporterFolder);
  return found;
}

}  // namespace

void loadPluginsFromFolder(std::vector<NSString> &target, const NSString &folder) {
  for (const NSString &name : directoryContentsAtPath(folder, u"mdimporter"_ns)) {
    NSString importer = stringByAppendingPathComponent(folder, name);
    if (!isDynamicallyRegistered(importer)) target.push_back(std::move(importer));
  }
}

std::vector<NSString> listMDImporters(const MetaDataImporterLocations &locations, const Deadline &deadline) {
  const NSTask tool{.launchPath = locations.importerTool, .arguments = {u"-L"_ns}, .deadline = deadline};
  const auto result = tool.run();
  const NSString text =
      result ? NSString::stringWithUTF8String(result->standardError.view()) : NSString::string();
  if (!text) return {};
  const NSArray list = listInToolOutput(text);
  if (list.count() == 0) return scanFolders(locations);
  std::vector<NSString> listed;
  for (const id &element : list)
    if (NSString importer = element.string()) listed.push_back(std::move(importer));
  return orderImporters(std::move(listed), locations);
}

}  // namespace nimbo
