// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CoreServices/RandomAccessFile.hpp"
#include "platform/Foundation/Attributes.hpp"

namespace nimbo {

/// What a zip archive contains, as far as its kind depends on it.
struct ZipDirectory {
  /// Names beyond so many bytes of the directory are left out.
  static constexpr std::size_t kMaximumDirectoryBytes = 1 << 20;
  /// Names of entries beyond so many are left out.
  static constexpr std::size_t kMaximumEntries = 4096;

  /// A file in the archive.
  struct Entry {
    /// Its path in the archive, as it stands there.
    std::string name;
    /// Where its own header begins in the archive.
    std::uint64_t headerOffset = 0;
    /// How many bytes of the archive its content takes; 0 when they are not told.
    std::uint32_t packedSize = 0;
  };

  /// The entries, in order.
  std::vector<Entry> entries;

  /// The entry of this name; null when there is none.
  const Entry *entryNamed(std::string_view name) const NIMBO_LIFETIMEBOUND;
};

/// Reads what the archive contains. Nothing when the file does not begin like a zip archive. A damaged or cut
/// archive gives the entries that are found.
std::optional<ZipDirectory> readZipDirectory(const RandomAccessFile &file);

/// The beginning of an entry's content, at most `count` bytes; less when it is damaged, none when it is packed
/// otherwise than by deflation. At most as many bytes again are read of the archive.
std::string readZipEntry(const RandomAccessFile &file, const ZipDirectory::Entry &entry, std::size_t count);

}  // namespace nimbo
