// SPDX-License-Identifier: Apache-2.0
//
// Folders that are gone through by their descriptors, so that no link which somebody puts in place of a folder
// is ever followed, and without a bound to how deep they are: a walk holds the folder that it is in and perhaps
// one below it, and goes back up by "..". One thread uses a listing at a time.
//
//     const FolderListing folder = openFolderAt(AT_FDCWD, path);
//     while (const dirent *entry = nextEntry(folder.get())) ::unlinkat(::dirfd(folder.get()), entry->d_name,
//     0);
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <string_view>

namespace nimbo {

struct CloseFolderListing {
  void operator()(DIR *listing) const { ::closedir(listing); }
};
/// An open folder, closed when this goes; null when there is none.
using FolderListing = std::unique_ptr<DIR, CloseFolderListing>;

/// Which folder it is, whatever its name.
struct FolderIdentity {
  dev_t device;
  ino_t inode;
  friend bool operator==(const FolderIdentity &, const FolderIdentity &) = default;
};

/// The folder of that name, which is no link. Null when it cannot be listed; errno says why.
inline FolderListing openFolderAt(int parent, const char *name) {
  const int folder = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder < 0) return nullptr;
  FolderListing listing(::fdopendir(folder));
  if (!listing) ::close(folder);
  return listing;
}

/// The next entry but "." and ".."; null at the end, and when reading fails: errno is then not 0.
inline const dirent *nextEntry(DIR *listing) {
  for (;;) {
    errno = 0;
    const dirent *const entry = ::readdir(listing);
    if (!entry) return nullptr;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return entry;
  }
}

inline std::optional<FolderIdentity> identityOf(DIR *listing) {
  struct stat info = {};
  if (::fstat(::dirfd(listing), &info) != 0) return std::nullopt;
  return FolderIdentity{info.st_dev, info.st_ino};
}

/// The folder above. Null when it is not the expected one any more, because somebody moves folders meanwhile.
inline FolderListing openParent(DIR *listing, const FolderIdentity &expected) {
  FolderListing parent = openFolderAt(::dirfd(listing), "..");
  if (parent && identityOf(parent.get()) != expected) {
    parent.reset();
    errno = ESTALE;
  }
  return parent;
}

}  // namespace nimbo
