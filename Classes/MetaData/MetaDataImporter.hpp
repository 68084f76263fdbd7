// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Where importers are looked for.
struct MetaDataImporterLocations {
  /// Prints, when run with "-L", the installed importers on its standard error.
  NSString importerTool;
  /// Folders of applications that may bring importers along.
  std::vector<NSString> applicationFolders;
  /// Folders of importers: the user's, the local, the system's.
  std::vector<NSString> importerFolders;
  /// The folder of the user's importers for this program alone; ranks before the user's, and is always read.
  NSString userImporterFolder;
  /// The folder of the importers that come with this program; ranks behind the system's, and is always read.
  NSString shippedImporterFolder;

  /// The given ones, as far as the user defaults do not name others: "MDImporterTool" (string),
  /// "MDImporterApplicationFolders" and "MDImporterFolders" (arrays of strings), "MDImporterUserFolder" and
  /// "MDImporterShippedFolder" (strings). A leading "~" is the home folder, except in the names of application
  /// folders. The shipped importers lie in the folder "importers" beside the running program, the user's own
  /// for this program in "quiverleaf/importers" of `$XDG_DATA_HOME`, which is "~/.local/share" when it is not
  /// set.
  static MetaDataImporterLocations standardLocations();
};

/// Reads the metadata and the text of files through importer plug-ins, which run in this process. One thread
/// uses it at a time.
///
///     NSError error;
///     const NSDictionary facts = MetaDataImporter::sharedImporter().metaDataOfFileAtPath(path, &error);
///     const NSString title = facts.objectForKey(u"kMDItemTitle"_ns).string();
///     if (error) NSLog(error.localizedFailureReason);
class MetaDataImporter {
 public:
  /// One that looks for importers in these places, when the first file is asked about.
  explicit MetaDataImporter(
      MetaDataImporterLocations locations = MetaDataImporterLocations::standardLocations());
  ~MetaDataImporter();
  MetaDataImporter(const MetaDataImporter &) = delete;
  MetaDataImporter &operator=(const MetaDataImporter &) = delete;

  /// The shared instance, made on first use.
  static MetaDataImporter &sharedImporter();

  /// The attributes that the first importer for the file's content type filled in, by their kMDItem names; as
  /// far as it came when it raised an exception. Nil when the file cannot be found, no importer declares its
  /// type, or the importer cannot be loaded. `*error` says why it is nil, empty or, as the importer says, not
  /// whole: `unsupportedType` when there is no importer, with the bundles whose information cannot be used.
  NSDictionary metaDataOfFileAtPath(const NSString &path, NSError *error = nullptr);
  /// The attribute "kMDItemTextContent" when it is a string, else nil; `*error` as above.
  NSString textContentOfFileAtPath(const NSString &path, NSError *error = nullptr);

  /// Finds the importers and learns their types; the first request for metadata does it.
  void loadMDImporters();

 private:
  void learnContentTypes(const NSString &importer);
  NSError errorForUnsupportedType(const NSString &contentType, const NSString &path) const;

  static MetaDataImporter *shared_;

  MetaDataImporterLocations locations_;
  /// Full paths of importer bundles; the first that declares a type is used for it.
  std::optional<std::vector<NSString>> MDImporterArray;
  /// Why the types of importers are not known, each with the path of its bundle in front.
  std::vector<std::string> unusableImporters_;
  /// The content types, lower-cased, that each importer declares.
  std::optional<std::unordered_map<NSString, std::vector<NSString>, NSStringHash>> contentTypesForMDImporter;
};

}  // namespace nimbo
