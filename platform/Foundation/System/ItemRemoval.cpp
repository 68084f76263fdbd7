// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ItemRemoval.hpp"

#include <utility>
#include <vector>

#include "platform/Foundation/System/FolderListing.hpp"

namespace nimbo {
namespace {

/// How often folders that are not empty when they should be are gone through again. Some file systems keep a
/// removed file that is open under another name, again and again.
constexpr int kPasses = 100;

/// A folder on the way down. The last of the folders in it is the one that is gone through.
struct Level {
  FolderIdentity identity;
  std::vector<std::string> folders;
};

/// Removes all but the folders from an open folder.
bool removeFiles(DIR *listing, Level *level) {
  const auto identity = identityOf(listing);
  if (!identity) return false;
  level->identity = *identity;
  while (const dirent *const entry = nextEntry(listing)) {
    if (entry->d_type != DT_DIR && ::unlinkat(::dirfd(listing), entry->d_name, 0) == 0) continue;
    if (entry->d_type == DT_DIR || errno == EISDIR)
      level->folders.emplace_back(entry->d_name);
    else if (errno != ENOENT)
      return false;
  }
  return errno == 0;
}

/// Removes the last of the folders, which should be empty. One that is not has got entries, or did not tell all
/// of them when it was listed: it stays the last one, as long as there are passes left.
bool removeFolder(DIR *parent, std::vector<std::string> *folders, int *passesLeft) {
  if (::unlinkat(::dirfd(parent), folders->back().c_str(), AT_REMOVEDIR) == 0 || errno == ENOENT)
    folders->pop_back();
  else if ((errno != ENOTEMPTY && errno != EEXIST) || --*passesLeft < 0)
    return false;
  return true;
}

/// Removes what is in a folder.
bool clearFolder(FolderListing folder) {
  std::vector<Level> levels(1);
  int passesLeft = kPasses;
  if (!removeFiles(folder.get(), &levels.back())) return false;
  for (;;) {
    std::vector<std::string> &folders = levels.back().folders;
    if (folders.empty()) {
      if (levels.size() == 1) return true;
      levels.pop_back();
      folder = openParent(folder.get(), levels.back().identity);
      if (!folder || !removeFolder(folder.get(), &levels.back().folders, &passesLeft)) return false;
      continue;
    }
    FolderListing inner = openFolderAt(::dirfd(folder.get()), folders.back().c_str());
    if (!inner) {
      // An empty folder may be closed to us and yet be ours to remove.
      const int reason = errno;
      if (reason == ENOENT || ::unlinkat(::dirfd(folder.get()), folders.back().c_str(), AT_REMOVEDIR) == 0) {
        folders.pop_back();
        continue;
      }
      errno = reason;
      return false;
    }
    Level level;
    if (!removeFiles(inner.get(), &level)) return false;
    if (!level.folders.empty()) {
      levels.push_back(std::move(level));
      folder = std::move(inner);
    } else if (!removeFolder(folder.get(), &folders, &passesLeft)) {
      return false;
    }
  }
}

}  // namespace

bool removeItem(const std::string &path) {
  if (::unlink(path.c_str()) == 0) return true;
  if (errno != EISDIR) return false;
  for (bool isCleared = false;; isCleared = true) {
    if (::rmdir(path.c_str()) == 0) return true;
    if (isCleared || (errno != ENOTEMPTY && errno != EEXIST)) return false;
    FolderListing folder = openFolderAt(AT_FDCWD, path.c_str());
    if (!folder || !clearFolder(std::move(folder))) return false;
  }
}

}  // namespace nimbo
