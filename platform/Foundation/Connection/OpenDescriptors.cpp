// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/OpenDescriptors.hpp"

#include <algorithm>

namespace nimbo {
namespace {

/// What operations may leave open: so many descriptors, and no more than half of what the process may have.
constexpr rlim_t kMaximumLeftDescriptors = 256;
/// As many as operations need to be free.
constexpr rlim_t kNeededDescriptors = 16;

rlim_t presentLimit() {
  rlimit limit = {};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  return limit.rlim_cur;
}

}  // namespace

OpenDescriptors::OpenDescriptors() : list_(::opendir("/proc/self/fd")), limit_(presentLimit()) {}

/// A limit that an operation has lowered counts as descriptors that it has left open.
bool OpenDescriptors::areTooManyLeft(std::size_t connections) const {
  const auto open = count();
  if (!open) return true;
  const rlim_t taken = *open + limit_ - std::min(presentLimit(), limit_), used = own_ + connections;
  if (taken <= used) return false;
  return taken - used > std::min(kMaximumLeftDescriptors, limit_ / 2) || taken + kNeededDescriptors > limit_;
}

/// Nothing when the list cannot be read, as when an operation has closed it.
std::optional<rlim_t> OpenDescriptors::count() const {
  struct stat info = {};
  if (!list_ || ::fstat(::dirfd(list_.get()), &info) != 0 || !S_ISDIR(info.st_mode)) return std::nullopt;
  // Linux 6.2 and later tell the number as the size.
  if (info.st_size > 0) return static_cast<rlim_t>(info.st_size);
  ::rewinddir(list_.get());
  rlim_t count = 0;
  while (nextEntry(list_.get())) ++count;
  return count;
}

}  // namespace nimbo
