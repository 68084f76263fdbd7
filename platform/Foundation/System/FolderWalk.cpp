// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/FolderWalk.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

namespace nimbo {
namespace {

/// The least room that the system is given for records.
constexpr std::size_t kRecordBytes = 64u << 10;

std::optional<struct stat> statusOf(int folder, const char *name, int flags) {
  struct stat info;
  if (::fstatat(folder, name, &info, flags) != 0) return std::nullopt;
  return info;
}

}  // namespace

FolderWalk::FolderWalk(const NSString &path, Flag followsLinks) : followsLinks_(followsLinks) {
  if (const auto name = path.fileSystemRepresentation()) enter(openFolder(AT_FDCWD, name->c_str(), 0), false);
}

bool FolderWalk::next() {
  while (!levels_.empty()) {
    // The records of the innermost folder are the last.
    for (Level &level = levels_.back(); level.next < end_;) {
      const auto *record = reinterpret_cast<const dirent64 *>(records_.data() + level.next);
      level.next += record->d_reclen;
      const std::string_view name = record->d_name;
      if (name == "." || name == "..") continue;
      entry_ = {.name = name, .depth = levels_.size() - 1, .folder = level.number};
      classify(record->d_type);
      return true;
    }
    leave();
  }
  return false;
}

std::uint64_t FolderWalk::sizeOfEntry() const {
  const auto info = statusOf(levels_.back().file.get(), entry_.name.data(), AT_SYMLINK_NOFOLLOW);
  return info && info->st_size > 0 ? static_cast<std::uint64_t>(info->st_size) : 0;
}

std::optional<std::uint32_t> FolderWalk::enter() {
  if (!entry_.isFolder) return std::nullopt;
  return enter(openFolder(levels_.back().file.get(), entry_.name.data(), entry_.isLink ? 0 : O_NOFOLLOW),
               entry_.isLink);
}

std::optional<FolderWalk::Identity> FolderWalk::identityOf(int descriptor) {
  const auto info = statusOf(descriptor, "", AT_EMPTY_PATH);
  if (!info) return std::nullopt;
  return Identity{info->st_dev, info->st_ino};
}

/// Opens a folder; when the process has no descriptor left, in exchange for one of the walk's own.
FileDescriptor FolderWalk::openFolder(int parent, const char *name, int flags) {
  const std::size_t count = levels_.size();
  for (std::size_t level = count - std::min(count, kOpenFolders);;) {
    FileDescriptor file(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (file || (errno != EMFILE && errno != ENFILE)) return file;
    while (level + 1 < count && !close(level)) ++level;
    if (level + 1 >= count) return file;
  }
}

std::optional<std::uint32_t> FolderWalk::enter(FileDescriptor file, bool isBehindLink) {
  if (!file) return std::nullopt;
  const std::uint32_t links = (levels_.empty() ? 0 : levels_.back().links) + (isBehindLink ? 1 : 0);
  std::optional<Identity> identity;
  if (followsLinks_) {
    identity = identityOf(file.get());
    if (!identity) return std::nullopt;
    if (const auto known = numbers_.find(*identity); known != numbers_.end()) return known->second;
  }
  const std::size_t first = end_;
  if (links > kFollowedLinks || !readRecords(file.get())) return std::nullopt;
  const std::uint32_t number = folders_++;
  if (identity) numbers_.emplace(*identity, number);
  levels_.push_back({.file = std::move(file),
                     .identity = identity,
                     .first = first,
                     .next = first,
                     .number = number,
                     .links = links,
                     .isBehindLink = isBehindLink});
  if (levels_.size() > kOpenFolders) close(levels_.size() - 1 - kOpenFolders);
  return number;
}

/// Appends the records of a folder's entries. False, with none, when they cannot be read to the end.
bool FolderWalk::readRecords(int descriptor) {
  const std::size_t first = end_;
  for (;;) {
    if (records_.size() - end_ < kRecordBytes)
      records_.resize(std::max(records_.size() * 2, end_ + kRecordBytes));
    const ssize_t got = ::getdents64(descriptor, records_.data() + end_, records_.size() - end_);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) end_ = first;
    if (got <= 0) return got == 0;
    end_ += static_cast<std::size_t>(got);
  }
}

/// Finds out what the entry is. Not every file system says so in the record.
void FolderWalk::classify(unsigned char type) {
  const auto modeOfEntry = [this](int flags) {
    const auto info = statusOf(levels_.back().file.get(), entry_.name.data(), flags);
    return info ? info->st_mode : mode_t{0};
  };
  const mode_t mode = type == DT_UNKNOWN ? modeOfEntry(AT_SYMLINK_NOFOLLOW) : DTTOIF(type);
  entry_.isLink = S_ISLNK(mode);
  entry_.isFolder = S_ISDIR(mode) || (entry_.isLink && followsLinks_ && S_ISDIR(modeOfEntry(0)));
}

/// Closes a folder that the walk is in, but not the innermost one. False when it is closed already, or when
/// there would be no way back.
bool FolderWalk::close(std::size_t index) {
  Level &level = levels_[index];
  if (!level.file || levels_[index + 1].isBehindLink) return false;
  if (!level.identity) level.identity = identityOf(level.file.get());
  level.file.close();
  return true;
}

void FolderWalk::leave() {
  const Level inner = std::move(levels_.back());
  levels_.pop_back();
  end_ = inner.first;
  if (levels_.empty() || levels_.back().file) return;
  FileDescriptor outer = openFolder(inner.file.get(), "..", 0);
  const auto identity = identityOf(outer.get());
  if (identity && identity == levels_.back().identity) levels_.back().file = std::move(outer);
}

}  // namespace nimbo
