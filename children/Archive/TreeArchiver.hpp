// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "children/Archive/NewFile.hpp"
#include "children/Archive/ZipWriter.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {

/// Puts a file, or a folder with all that is in it, into an archive. Companions and forks stand below
/// "__MACOSX", where their files stand in the archive. The archive itself, sockets, pipes and devices are left
/// out, and so is what vanishes in the meantime.
///
///     TreeArchiver(zip, file).add("/home/me/Pictures", true);
class TreeArchiver {
 public:
  /// Folders deeper in each other than any path can tell are not archived.
  static constexpr std::uint32_t kMaximumDepth = 2048;

  /// Both are borrowed.
  TreeArchiver(ZipWriter &zip, const NewFile &file) : zip_(zip), file_(file) {}

  /// Adds what is at the path, also behind a symbolic link. The names of what is in a folder begin with the
  /// folder's own when `keepsParent`. Raises `ArchiveError`.
  void add(const std::string &path, bool keepsParent);

 private:
  /// What is archived of an entry of an open folder.
  struct Item {
    int folder;
    const std::string &entry;
    /// Empty for a folder whose content stands at the top.
    const std::string &name;
    std::uint32_t depth;
  };

  void addItem(const Item &item, bool followsLink);
  void addLink(const Item &item, const struct stat &information);
  void addContents(FileDescriptor opened, const std::string &name, std::uint32_t depth);
  void addCompanion(const Item &item, int descriptor, const struct stat &information);

  ZipWriter &zip_;
  const NewFile &file_;
};

}  // namespace nimbo
