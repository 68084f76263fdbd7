// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/stat.h>

#include <memory>
#include <string>
#include <string_view>

struct archive;
struct archive_entry;

namespace nimbo {

/// Writes a zip archive to an open file, entry by entry; what is behind it is only its table of contents, which
/// it keeps. Sizes and counts may be any; names in UTF-8 are marked so, others keep their bytes. All raise
/// `ArchiveError`. The process has one thread, as the locale is changed here.
///
///     ZipWriter zip(descriptor);
///     zip.addFolder("Pictures", information);
///     zip.addFile("Pictures/a.png", information, picture);
///     zip.close();
class ZipWriter {
 public:
  /// The file stays the caller's.
  explicit ZipWriter(int descriptor);
  ~ZipWriter();
  ZipWriter(const ZipWriter &) = delete;
  ZipWriter &operator=(const ZipWriter &) = delete;

  /// Adds a folder; the name has no "/" at its end.
  void addFolder(const std::string &name, const struct stat &information);
  /// Adds a symbolic link.
  void addLink(const std::string &name, const struct stat &information, const std::string &target);
  /// Adds a file, read from its place on. One that grows while it is read is cut to its size.
  void addFile(const std::string &name, const struct stat &information, int descriptor);
  /// Adds a file with these bytes, dated like another one.
  void addBytes(const std::string &name, const struct stat &information, std::string_view bytes);
  /// Writes the table of contents; without it there is no archive.
  void close();

 private:
  ::archive_entry *newEntry(const std::string &name, const struct stat &information);
  void writeHeader(const std::string &name);
  void write(const std::string &name, std::string_view bytes);
  [[noreturn]] void fail(const std::string &name);

  std::unique_ptr<::archive, int (*)(::archive *)> archive_;
  std::unique_ptr<::archive_entry, void (*)(::archive_entry *)> entry_;
  std::string chunk_;
};

}  // namespace nimbo
