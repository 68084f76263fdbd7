// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Classes/MetaData/MetaDataImporter.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {

/// The shipped importers alone, as the helper loads them.
class Importers : public testing::Test {
 public:
  static NSDictionary metaData(const NSString &path, NSError *error = nullptr) {
    static MetaDataImporter importer([] {
      MetaDataImporterLocations locations;
      locations.shippedImporterFolder = NSString::stringWithUTF8String(IMPORTERS_FOLDER);
      return locations;
    }());
    return importer.metaDataOfFileAtPath(path, error);
  }

 protected:
  static NSDictionary metaDataOfExample(const std::string &name) {
    return metaData(NSString::stringWithUTF8String(EXAMPLES_FOLDER "/" + name));
  }
  NSDictionary metaDataOf(const std::string &name, std::string_view bytes) const {
    return metaData(folder.write(name, bytes));
  }

  NSString textOf(const std::string &name, std::string_view bytes) const {
    return metaDataOf(name, bytes).objectForKey(u"kMDItemTextContent"_ns).string();
  }

  static void expectAttributes(const NSDictionary &found, const NSDictionary &wanted) {
    for (const auto &[name, value] : wanted) EXPECT_EQ(found.objectForKey(name), value) << name.UTF8String();
  }

  TemporaryFolder folder;
};

/// Whether `text` holds `part`.
inline bool contains(const NSString &text, std::u16string_view part) {
  return text.view().find(part) != std::u16string_view::npos;
}

inline std::string contentsOfExample(const std::string &name) {
  return contentsOfFile(EXAMPLES_FOLDER "/" + name);
}

/// A file of the folders `documents` and `movies` of the tests' own data.
inline std::string contentsOfSample(const std::string &path) {
  return contentsOfFile(QUIVERLEAF_TEST_DATA "/" + path);
}

}  // namespace nimbo
