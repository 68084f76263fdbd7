// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/stat.h>

#include <string>

#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {

/// A file that takes its place when it is whole: until then it has another name beside that place, and it is
/// removed when it never was.
///
///     NewFile file("/tmp/a.zip");
///     write(file.descriptor(), bytes, length);
///     file.moveIntoPlace();
class NewFile {
 public:
  /// Makes the file with the permissions of the one that it replaces, else those of new files. What a symbolic
  /// link leads to is replaced, not the link. Raises `ArchiveError`.
  explicit NewFile(const std::string &path);
  ~NewFile();
  NewFile(const NewFile &) = delete;
  NewFile &operator=(const NewFile &) = delete;

  /// Open for writing.
  int descriptor() const { return file_.get(); }
  /// Whether this is the file, or the one that it replaces.
  bool isSame(const struct stat &information) const;
  /// Writes it to the disk and gives it its name. Raises `ArchiveError`; all is then as it was.
  void moveIntoPlace();

 private:
  std::string path_;
  std::string temporaryPath_;
  FileDescriptor file_;
  struct stat own_ = {};
  struct stat old_ = {};
};

}  // namespace nimbo
