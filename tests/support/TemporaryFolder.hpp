// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// A folder of a test's own, removed with everything in it.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::filesystem::path &parent = std::filesystem::temp_directory_path()) {
    std::string name = (parent / "quiverleaf-test-XXXXXX").native();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  /// One in memory, where the system has such a place, for very many files and folders.
  static TemporaryFolder inMemory() {
    return std::filesystem::is_directory("/dev/shm") ? TemporaryFolder("/dev/shm") : TemporaryFolder();
  }
  TemporaryFolder(const TemporaryFolder &) = delete;
  TemporaryFolder &operator=(const TemporaryFolder &) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  const std::filesystem::path &path() const { return path_; }
  NSString string(std::string_view name) const {
    return NSString::stringWithFileSystemRepresentation((path_ / name).native());
  }
  /// Writes a file, with the folders above it, and answers its path.
  NSString write(std::string_view name, std::string_view content) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << content;
    return string(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace nimbo
