// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {

/// A temporary folder with folders in each other, deeper than paths can say. Each folder of the way has, beside
/// the next one, an empty folder of each of the other names.
class DeepFolder {
 public:
  DeepFolder(std::size_t depth, std::string name, std::initializer_list<const char *> siblings = {})
      : depth_(depth), name_(std::move(name)), siblings_(siblings.begin(), siblings.end()) {
    inner_ = open(AT_FDCWD, top_.path().c_str());
    for (std::size_t i = 0; i < depth; ++i) {
      for (const std::string &sibling : siblings_) ::mkdirat(inner_.get(), sibling.c_str(), 0700);
      if (::mkdirat(inner_.get(), name_.c_str(), 0700) != 0) throw std::runtime_error("no deep folder");
      inner_ = open(inner_.get(), name_.c_str());
    }
  }
  DeepFolder(const DeepFolder &) = delete;
  DeepFolder &operator=(const DeepFolder &) = delete;
  ~DeepFolder() {
    for (std::size_t i = 0; i < depth_; ++i) {
      inner_ = open(inner_.get(), "..");
      ::unlinkat(inner_.get(), name_.c_str(), AT_REMOVEDIR);
      for (const std::string &sibling : siblings_) ::unlinkat(inner_.get(), sibling.c_str(), AT_REMOVEDIR);
    }
  }

  NSString path() const { return top_.string(""); }

 private:
  static FileDescriptor open(int folder, const char *name) {
    return FileDescriptor(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }

  const TemporaryFolder top_ = TemporaryFolder::inMemory();
  std::size_t depth_;
  std::string name_;
  std::vector<std::string> siblings_;
  FileDescriptor inner_;
};

}  // namespace nimbo
