// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

namespace nimbo {

/// LibreOffice, loaded into this process.
class Office {
 public:
  /// Loads it from the folder of its programs. Null when that fails.
  static std::unique_ptr<Office> load(const std::string &programFolder, const std::string &profileFolder);
  ~Office();

  /// Writes a document as flat OpenDocument XML. What is wrong, or empty when it is written.
  std::string writeFlatDocument(const std::string &source, const std::string &target);

 private:
  struct Library;

  explicit Office(std::unique_ptr<Library> library);

  std::unique_ptr<Library> library_;
};

}  // namespace nimbo
