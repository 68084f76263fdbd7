// SPDX-License-Identifier: Apache-2.0
#include "children/Archive/NewFile.hpp"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "children/Archive/ArchiveError.hpp"

namespace nimbo {

namespace {

/// What a new file takes over from an old one; not the bits that run it as its owner.
constexpr mode_t kPermissions = 0777, kNewFileMode = 0666;

bool isSameFile(const struct stat &a, const struct stat &b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

mode_t maskOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return mask;
}

}  // namespace

NewFile::NewFile(const std::string &path) : path_(path) {
  std::error_code error;
  if (const auto real = std::filesystem::canonical(path, error); !error) path_ = real.native();
  const bool replaces = ::stat(path_.c_str(), &old_) == 0;
  if (replaces && !S_ISREG(old_.st_mode)) throw ArchiveError(path + ": it is no regular file");
  temporaryPath_ = path_.substr(0, path_.rfind('/') + 1) + ".quiverleaf-XXXXXX";
  file_ = FileDescriptor(::mkostemp(temporaryPath_.data(), O_CLOEXEC));
  if (!file_) throw ArchiveError(path, errno);
  const mode_t mode = replaces ? old_.st_mode & kPermissions : kNewFileMode & ~maskOfNewFiles();
  if (::fchmod(file_.get(), mode) != 0 || ::fstat(file_.get(), &own_) != 0) {
    const int number = errno;
    ::unlink(temporaryPath_.c_str());
    throw ArchiveError(path, number);
  }
}

NewFile::~NewFile() {
  if (!temporaryPath_.empty()) ::unlink(temporaryPath_.c_str());
}

bool NewFile::isSame(const struct stat &information) const {
  return isSameFile(information, own_) || isSameFile(information, old_);
}

void NewFile::moveIntoPlace() {
  if (::fsync(file_.get()) != 0 || std::rename(temporaryPath_.c_str(), path_.c_str()) != 0)
    throw ArchiveError(path_, errno);
  temporaryPath_.clear();
}

}  // namespace nimbo
