// SPDX-License-Identifier: Apache-2.0
#include "children/Archive/TreeArchiver.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string_view>
#include <utility>

#include "children/Archive/ArchiveError.hpp"
#include "children/Archive/Companions.hpp"

namespace nimbo {

namespace {

constexpr std::string_view kSequesteredFolder = "__MACOSX/";

struct CloseFolder {
  void operator()(DIR *folder) const { ::closedir(folder); }
};

bool isCompanionName(std::string_view name) {
  return name.size() > kCompanionPrefix.size() && name.starts_with(kCompanionPrefix);
}

/// Whether the entry is the companion of another one, with which it is archived.
bool isCompanion(int folder, const std::string &entry) {
  if (!isCompanionName(entry)) return false;
  const std::string owner = entry.substr(kCompanionPrefix.size());
  struct stat information = {};
  return !isCompanionName(owner) && ::fstatat(folder, owner.c_str(), &information, AT_SYMLINK_NOFOLLOW) == 0 &&
         (S_ISREG(information.st_mode) || S_ISDIR(information.st_mode)) && companionInFolder(folder, entry);
}

/// "a/b" as "__MACOSX/a/._b".
std::string nameOfCompanion(const std::string &name) {
  const std::size_t last = name.rfind('/') + 1;
  return std::string(kSequesteredFolder).append(name, 0, last).append(kCompanionPrefix).append(name, last);
}

}  // namespace

void TreeArchiver::add(const std::string &path, bool keepsParent) {
  std::filesystem::path source(path);
  while (!source.has_filename() && source.has_relative_path()) source = source.parent_path();
  if (const auto last = source.filename(); last == "." || last == "..")
    source = std::filesystem::canonical(source);
  const std::string folder = source.has_parent_path() ? source.parent_path().native() : ".";
  const std::string entry = source.has_filename() ? source.filename().native() : ".";
  const FileDescriptor parent(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat information = {};
  if (!parent || ::fstatat(parent.get(), entry.c_str(), &information, 0) != 0) throw ArchiveError(path, errno);
  if (!S_ISREG(information.st_mode) && !S_ISDIR(information.st_mode))
    throw ArchiveError(path + ": it is neither a file nor a folder");
  if (file_.isSame(information)) throw ArchiveError(path + ": it would be replaced by the archive");
  const bool hasName = entry != "." && (keepsParent || !S_ISDIR(information.st_mode));
  addItem({parent.get(), entry, hasName ? entry : std::string(), 0}, true);
}

void TreeArchiver::addItem(const Item &item, bool followsLink) {
  struct stat information = {};
  if (::fstatat(item.folder, item.entry.c_str(), &information, followsLink ? 0 : AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return;
    throw ArchiveError(item.name, errno);
  }
  if (S_ISLNK(information.st_mode)) return addLink(item, information);
  if ((!S_ISREG(information.st_mode) && !S_ISDIR(information.st_mode)) || file_.isSame(information)) return;
  FileDescriptor opened(
      ::openat(item.folder, item.entry.c_str(),
               O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (followsLink ? 0 : O_NOFOLLOW)));
  if (!opened && errno == ENOENT) return;
  if (!opened || ::fstat(opened.get(), &information) != 0) throw ArchiveError(item.name, errno);
  if (S_ISDIR(information.st_mode)) {
    if (!item.name.empty()) zip_.addFolder(item.name, information);
    addCompanion(item, opened.get(), information);
    addContents(std::move(opened), item.name, item.depth);
  } else if (S_ISREG(information.st_mode)) {
    zip_.addFile(item.name, information, opened.get());
    addCompanion(item, opened.get(), information);
  }
}

void TreeArchiver::addLink(const Item &item, const struct stat &information) {
  std::string target(PATH_MAX, '\0');
  const ssize_t length = ::readlinkat(item.folder, item.entry.c_str(), target.data(), target.size());
  if (length < 0 && errno == ENOENT) return;
  if (length < 0) throw ArchiveError(item.name, errno);
  target.resize(static_cast<std::size_t>(length));
  zip_.addLink(item.name, information, target);
}

void TreeArchiver::addContents(FileDescriptor opened, const std::string &name, std::uint32_t depth) {
  if (depth >= kMaximumDepth) throw ArchiveError(name + ": folders are too deep in each other");
  const std::unique_ptr<DIR, CloseFolder> folder(::fdopendir(opened.get()));
  if (!folder) throw ArchiveError(name, errno);
  const int descriptor = opened.release();
  for (;;) {
    errno = 0;
    const struct dirent *entry = ::readdir(folder.get());
    if (!entry) break;
    const std::string entryName = entry->d_name;
    if (entryName == "." || entryName == ".." || isCompanion(descriptor, entryName)) continue;
    std::string entryPath = name;
    if (!name.empty()) entryPath += '/';
    addItem({descriptor, entryName, entryPath.append(entryName), depth + 1}, false);
  }
  if (errno != 0) throw ArchiveError(name, errno);
}

void TreeArchiver::addCompanion(const Item &item, int descriptor, const struct stat &information) {
  if (item.name.empty() || isCompanionName(item.entry)) return;
  const NSData beside = companionInFolder(item.folder, std::string(kCompanionPrefix) + item.entry);
  if (const NSData companion = companionOfFile(descriptor, beside))
    zip_.addBytes(nameOfCompanion(item.name), information, companion.view());
}

}  // namespace nimbo
