// SPDX-License-Identifier: Apache-2.0
#include "Classes/MetaData/MetaDataImporter.hpp"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

#include "Classes/MetaData/MDImporterAttributeDictionary.hpp"
#include "Classes/MetaData/MDImporterListing.hpp"
#include "platform/CoreServices/CFPlugIn.hpp"
#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

/// Importers of the CHM format declare this type, which only ever stood for the file name extension.
constexpr std::u16string_view kDynamicTypeOfCHM = u"dyn.ah62d4rv4ge80g4dr";

/// How long the importer tool may take.
constexpr double kListingSeconds = 5;

/// The types of what is no document of a known kind.
constexpr std::u16string_view kTypesThatSayNothing[] = {u"public.data", u"public.folder", u"public.item"};

/// How many importers that cannot be used a reason names.
constexpr std::size_t kMaximumNamedImporters = 3;

CFUUIDBytes uuid(const std::uint8_t (&bytes)[kMDImporterIdentifierLength]) {
  return std::to_array(bytes);
}

/// What is read by no importer, whoever asks: the file cannot be read, or there is nothing in it. Else nil.
NSError errorForUnreadableFile(const NSString &path) {
  NSError error;
  std::uint64_t size = 0;
  if (openRegularFile(path, &size, &error) && size == 0)
    setError(&error, ErrorCode::incomplete, "the file is empty");
  return error;
}

/// Why an importer set nothing and said nothing.
NSError errorForNoAttributes(const NSString &path) {
  bool isFolder = false;
  NSFileManager::fileExistsAtPath(path, &isFolder);
  // There are documents that are folders.
  NSError error = isFolder ? NSError() : errorForUnreadableFile(path);
  return error ? error : NSError::errorWithCode(ErrorCode::other, "its importer finds nothing in it");
}

/// Calls the importer behind `interface`; an exception that importers may raise is logged and ends the import.
void importData(const CFPlugInInstance &interface, MDImporterAttributeDictionary &attributes,
                const NSString &contentType, const NSString &path) {
  const std::string contentTypeBytes = contentType.UTF8String();
  const std::string pathBytes = path.fileSystemRepresentation().value_or(std::string());
  const MDImporterString lentContentType = {contentType.characters(), contentType.length(),
                                            contentTypeBytes.c_str()};
  const MDImporterString lentPath = {path.characters(), path.length(), pathBytes.c_str()};
  const auto *functions = *static_cast<const MDImporterInterfaceStruct **>(interface.get());
  try {
    functions->ImporterImportData(interface.get(), &attributes, &lentContentType, &lentPath);
  } catch (const NSException &exception) {
    logException("metaDataOfFileAtPath:", "MetaDataImporter", exception);
    if (attributes.error) return;
    attributes.error = NSError::errorWithException(exception);
    if (attributes.dictionary.count() > 0)
      attributes.error.code = static_cast<std::int64_t>(ErrorCode::incomplete);
  }
}

}  // namespace

MetaDataImporter *MetaDataImporter::shared_ = nullptr;

MetaDataImporterLocations MetaDataImporterLocations::standardLocations() {
  const NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  const auto string = [&](const NSString &key, const NSString &standard) {
    NSString value = defaults.stringForKey(key);
    return stringByExpandingTildeInPath(value ? value : standard);
  };
  const auto strings = [&](const NSString &key, std::vector<NSString> standard) {
    return defaults.stringArrayForKey(key).value_or(std::move(standard));
  };
  MetaDataImporterLocations locations;
  locations.importerTool = string(u"MDImporterTool"_ns, u"/usr/bin/mdimport"_ns);
  locations.applicationFolders =
      strings(u"MDImporterApplicationFolders"_ns,
              {u"~/Applications"_ns, u"/Applications"_ns, u"/Developer/Applications"_ns});
  locations.importerFolders =
      strings(u"MDImporterFolders"_ns,
              {u"~/Library/Spotlight"_ns, u"/Library/Spotlight"_ns, u"/System/Library/Spotlight"_ns});
  for (NSString &folder : locations.importerFolders) folder = stringByExpandingTildeInPath(folder);
  const char *const data = ::getenv("XDG_DATA_HOME");
  // A relative path there is to be ignored.
  const NSString dataFolder =
      data && *data == '/' ? NSString::stringWithFileSystemRepresentation(data) : u"~/.local/share"_ns;
  locations.userImporterFolder = string(u"MDImporterUserFolder"_ns,
                                        stringByAppendingPathComponent(dataFolder, u"quiverleaf/importers"_ns));
  locations.shippedImporterFolder =
      string(u"MDImporterShippedFolder"_ns,
             stringByAppendingPathComponent(NSBundle::mainBundle().bundlePath(), u"importers"_ns));
  return locations;
}

MetaDataImporter::MetaDataImporter(MetaDataImporterLocations locations) : locations_(std::move(locations)) {}

MetaDataImporter::~MetaDataImporter() {
  if (shared_ == this) shared_ = nullptr;
}

MetaDataImporter &MetaDataImporter::sharedImporter() {
  if (!shared_) shared_ = new MetaDataImporter;
  return *shared_;
}

void MetaDataImporter::learnContentTypes(const NSString &importer) {
  NSError error;
  const NSDictionary information = NSBundle(importer).infoDictionary(&error);
  const NSArray documentTypes = information.objectForKey(u"CFBundleDocumentTypes"_ns).array();
  for (const id &element : documentTypes) {
    const NSDictionary documentType = element.dictionary();
    const NSArray contentTypes = documentType.objectForKey(u"LSItemContentTypes"_ns).array();
    if (documentType.objectForKey(u"CFBundleTypeRole"_ns).string() != u"MDImporter"_ns || !contentTypes)
      continue;
    std::vector<NSString> &declared = (*contentTypesForMDImporter)[importer];
    for (const id &contentType : contentTypes) {
      const NSString type = lowercaseString(contentType.string());
      if (type) declared.push_back(type.view() == kDynamicTypeOfCHM ? u"com.microsoft.chm-archive"_ns : type);
    }
  }
  if (contentTypesForMDImporter->contains(importer)) return;
  if (!error) setError(&error, ErrorCode::damaged, "it declares no types in the role MDImporter");
  unusableImporters_.push_back(importer.UTF8String() + ": " + error.localizedFailureReason.UTF8String());
}

NSError MetaDataImporter::errorForUnsupportedType(const NSString &contentType, const NSString &path) const {
  if (std::ranges::find(kTypesThatSayNothing, contentType.view()) != std::end(kTypesThatSayNothing)) {
    // It may have no better type because it cannot be read.
    NSError error = errorForUnreadableFile(path);
    if (!error) setError(&error, ErrorCode::unsupportedType, "no importer reads the file; its type is unknown");
    return error;
  }
  std::string reason = "no importer reads files of this type (" + contentType.UTF8String() + ")";
  for (std::size_t i = 0; i < std::min(unusableImporters_.size(), kMaximumNamedImporters); ++i)
    reason += "; not used: " + unusableImporters_[i];
  return NSError::errorWithCode(ErrorCode::unsupportedType, reason);
}

void MetaDataImporter::loadMDImporters() {
  MDImporterArray = listMDImporters(locations_, Deadline::after(kListingSeconds));
  contentTypesForMDImporter.emplace();
  unusableImporters_.clear();
  for (const NSString &importer : *MDImporterArray) learnContentTypes(importer);
}

NSDictionary MetaDataImporter::metaDataOfFileAtPath(const NSString &path, NSError *error) {
  if (!contentTypesForMDImporter) loadMDImporters();
  const auto fail = [error](NSError failure) {
    if (error) *error = std::move(failure);
    return NSDictionary();
  };
  NSError failure;
  const NSString contentType = lowercaseString(LSCopyItemContentType(path, &failure));
  if (!contentType) return fail(failure);
  const auto importer = std::ranges::find_if(*MDImporterArray, [&](const NSString &candidate) {
    const auto declared = contentTypesForMDImporter->find(candidate);
    return declared != contentTypesForMDImporter->end() &&
           std::ranges::find(declared->second, contentType) != declared->second.end();
  });
  if (importer == MDImporterArray->end()) return fail(errorForUnsupportedType(contentType, path));

  const auto failOfImporter = [&](const std::string &reason) {
    return fail(NSError::errorWithCode(ErrorCode::other, "its importer " + importer->UTF8String() + reason));
  };
  const auto plugIn = CFPlugInCreate(*importer, &failure);
  if (!plugIn) return failOfImporter(" cannot be loaded: " + failure.localizedFailureReason.UTF8String());
  const CFUUIDBytes type = uuid(kMDImporterTypeID);
  for (const CFUUIDBytes &factory : CFPlugInFindFactoriesForPlugInTypeInPlugIn(type, *plugIn)) {
    const CFPlugInInstance interface =
        CFPlugInInstanceCreate(*plugIn, factory, type).QueryInterface(uuid(kMDImporterInterfaceID));
    if (!interface) continue;
    MDImporterAttributeDictionary attributes;
    importData(interface, attributes, contentType, path);
    if (attributes.dictionary.count() == 0 && !attributes.error) attributes.error = errorForNoAttributes(path);
    if (error && attributes.error) *error = attributes.error;
    return attributes.dictionary;
  }
  return failOfImporter(" is no metadata importer");
}

NSString MetaDataImporter::textContentOfFileAtPath(const NSString &path, NSError *error) {
  return metaDataOfFileAtPath(path, error).objectForKey(u"kMDItemTextContent"_ns).string();
}

}  // namespace nimbo
