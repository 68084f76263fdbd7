// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A folder for a child process to write to, which nobody else may look into. It is removed with all that is in
/// it when this object goes; that of a process that was killed is removed when the next one is made.
///
///     NSError error;
///     const auto folder = PrivateFolder::make(&error);
///     if (!folder) return tell(error.localizedFailureReason);
///     const Confinement confinement{.writableFolders = {folder->path()}};
class PrivateFolder {
 public:
  /// Makes one below the folder for temporary files. Null when it cannot be made; `*error` says why.
  static std::unique_ptr<PrivateFolder> make(NSError *error = nullptr);
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder &) = delete;
  PrivateFolder &operator=(const PrivateFolder &) = delete;

  /// Its absolute path, without symbolic links.
  const NSString &path() const NIMBO_LIFETIMEBOUND { return path_; }
  /// The path of a file in it.
  NSString pathOf(std::string_view name) const;
  /// A regular file in it, open for reading, but not what a link leads to: a child may put anything there.
  /// `*size` gets its size in bytes. Nothing when there is none; `*error` says why.
  FileDescriptor openFile(std::string_view name, std::uint64_t *size, NSError *error = nullptr) const;
  /// Removes all that is in it.
  void clear() const;

 private:
  PrivateFolder(NSString path, FileDescriptor lock) : path_(std::move(path)), lock_(std::move(lock)) {}

  NSString path_;
  FileDescriptor lock_;
};

}  // namespace nimbo
