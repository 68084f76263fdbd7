// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Goes through the entries of a folder, and through those of the folders in it that the caller enters. The
/// entries of a folder come in the order in which the file system lists them, "." and ".." left out; those of
/// one that is entered come directly behind it. Time is linear in the number of entries; depth is bounded by
/// memory alone, and at most `kOpenFolders` and `kFollowedLinks` descriptors are open at a time.
///
/// A folder whose entries cannot be read has none. What others change meanwhile may be met or not, but nothing
/// leads out of the folder except links that are followed. When somebody moves a folder away that has the walk
/// deep inside, folders that can no longer be reached are not entered.
///
/// One thread uses a walk.
///
///     FolderWalk walk(path, false);
///     std::uint64_t files = 0;
///     while (walk.next()) {
///       if (walk.entry().isFolder) walk.enter();
///       else ++files;
///     }
class FolderWalk {
 public:
  /// How many of the folders that the walk is in are open at least before outer ones are closed; those are
  /// opened again on the way back.
  static constexpr std::size_t kOpenFolders = 32;
  /// How many links to folders may be followed one inside the other. The system opens no path with more.
  static constexpr std::uint32_t kFollowedLinks = 40;

  /// What the walk has met.
  struct Entry {
    /// The bytes of the name; borrowed from the walk until an entry is entered or the next one asked for.
    std::string_view name;
    /// In how many folders below the first one it is; 0 for an entry of the first.
    std::size_t depth = 0;
    /// The number of the folder that it is in.
    std::uint32_t folder = 0;
    /// Whether it is a symbolic link.
    bool isLink = false;
    /// Whether it is a folder or, when links are followed, a link that leads to one.
    bool isFolder = false;
  };

  /// Begins in front of the first entry of the folder at `path`, or where a link there leads to; that folder
  /// has the number 0. A path that cannot be listed, or nil, has no entries.
  FolderWalk(const NSString &path, Flag followsLinks);

  /// Goes to the next entry. False when there is none.
  bool next();
  /// The entry that `next` has found.
  const Entry &entry() const NIMBO_LIFETIMEBOUND { return entry_; }
  /// The entry's size in bytes, of a link itself; 0 when it is not there any more or must not be asked for.
  std::uint64_t sizeOfEntry() const;

  /// Makes the first entry of the folder the next one, and answers the folder's number: how many were entered
  /// before it. When links are followed, a folder is entered once only, however many ways lead there, so that
  /// circles end: for later ones the answer is the number that it has. Nothing when it cannot be read.
  std::optional<std::uint32_t> enter();

 private:
  /// What tells a folder from all others.
  struct Identity {
    dev_t device;
    ino_t inode;
    friend bool operator==(const Identity &, const Identity &) = default;
  };
  struct IdentityHash {
    std::size_t operator()(const Identity &identity) const noexcept {
      return static_cast<std::size_t>(identity.inode * 0x9e3779b97f4a7c15u ^ identity.device);
    }
  };
  /// A folder that the walk is in.
  struct Level {
    /// None while the folder is closed.
    FileDescriptor file;
    /// Known of each when links are followed, else of those that were closed.
    std::optional<Identity> identity;
    /// Where its records begin in `records_`.
    std::size_t first;
    /// Where the record of its next entry is.
    std::size_t next;
    std::uint32_t number;
    /// How many links were followed to it.
    std::uint32_t links;
    /// Whether it was reached by a link, so that its ".." does not lead back.
    bool isBehindLink;
  };

  static std::optional<Identity> identityOf(int descriptor);
  FileDescriptor openFolder(int parent, const char *name, int flags);
  std::optional<std::uint32_t> enter(FileDescriptor file, bool isBehindLink);
  bool readRecords(int descriptor);
  void classify(unsigned char type);
  bool close(std::size_t level);
  void leave();

  bool followsLinks_;
  Entry entry_;
  std::vector<Level> levels_;
  /// What the system says of the entries, folder by folder; what is behind `end_` is free.
  std::vector<char> records_;
  std::size_t end_ = 0;
  std::uint32_t folders_ = 0;
  /// The numbers of the folders that were entered, when links are followed.
  std::unordered_map<Identity, std::uint32_t, IdentityHash> numbers_;
};

}  // namespace nimbo
