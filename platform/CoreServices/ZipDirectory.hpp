// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/CoreServices/RandomAccessFile.hpp"

namespace nimbo {

/// What a zip archive contains, as far as its kind depends on it.
struct ZipDirectory {
  /// Names beyond so many bytes of the directory are left out.
  static constexpr std::size_t kMaximumDirectoryBytes = 1 << 20;
  /// Names of entries beyond so many are left out.
  static constexpr std::size_t kMaximumEntries = 4096;
  /// A longer entry "mimetype" is not read.
  static constexpr std::size_t kMaximumMIMETypeBytes = 256;

  /// The names of the entries, in order.
  std::vector<std::string> names;
  /// The content of the entry "mimetype" when that comes first and is stored as it is, else empty.
  std::string mimetype;
};

/// Reads what the archive contains. Nothing when the file does not begin like a zip archive. A damaged or cut
/// archive gives the entries that are found.
std::optional<ZipDirectory> readZipDirectory(const RandomAccessFile &file);

}  // namespace nimbo
