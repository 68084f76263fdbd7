// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Where importers are looked for.
struct MetaDataImporterLocations {
  /// Prints, when run with "-L", the installed importers on its standard error.
  NSString importerTool;
  /// Folders of applications that may bring importers along, and folders of importers: user, local, system.
  std::vector<NSString> applicationFolders;
  std::vector<NSString> importerFolders;
  /// The folder of the importers that come with this program; ranks behind the system's.
  NSString shippedImporterFolder;

  /// The defaults, as far as the user defaults do not name others.
  static MetaDataImporterLocations standardLocations();
};

/// Reads the metadata and the text of files through importer plug-ins, which run in this process.
class MetaDataImporter {
 public:
  explicit MetaDataImporter(MetaDataImporterLocations locations = MetaDataImporterLocations::standardLocations());
  ~MetaDataImporter();
  MetaDataImporter(const MetaDataImporter &) = delete;
  MetaDataImporter &operator=(const MetaDataImporter &) = delete;

  /// The shared instance, made on first use.
  static MetaDataImporter &sharedImporter();

  /// The attributes that the first importer for the file's content type filled in, by their kMDItem names; as far as it
  /// came when it raised an exception. Nil when the file cannot be found, no importer declares its type, or the importer
  /// cannot be loaded.
  NSDictionary metaDataOfFileAtPath(const NSString &path);
  /// The attribute "kMDItemTextContent" when it is a string, else nil.
  NSString textContentOfFileAtPath(const NSString &path);

  /// Finds the importers and learns their types; the first request for metadata does it.
  void loadMDImporters();

 private:
  MetaDataImporterLocations locations_;
  std::optional<std::vector<NSString>> MDImporterArray;
};

}  // namespace nimbo
