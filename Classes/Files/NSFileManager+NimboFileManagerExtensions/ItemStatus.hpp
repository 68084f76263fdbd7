// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/stat.h>

#include <cerrno>
#include <optional>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// What stands at the path itself, which may be a link that leads nowhere. Nothing when nothing does, or it
/// cannot be known; errno says which.
inline std::optional<struct stat> statusOfItem(const NSString &path) {
  auto name = path.fileSystemRepresentation().value_or("");
  while (name.size() > 1 && name.back() == '/') name.pop_back();  // They would follow a link.
  struct stat info = {};
  return ::lstat(name.c_str(), &info) == 0 ? std::optional(info) : std::nullopt;
}

/// Whether it is certain that nothing stands at the path, not even a link.
inline bool isMissing(const NSString &path) {
  return !statusOfItem(path) && (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG);
}

}  // namespace nimbo
