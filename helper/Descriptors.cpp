// SPDX-License-Identifier: Apache-2.0
#include "helper/Descriptors.hpp"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace nimbo {
namespace {

/// With fewer, operations fail for want of descriptors, or nobody can connect.
constexpr rlim_t kNeededDescriptors = 64;
/// What systems give usually; some calls of libraries can name no higher ones.
constexpr rlim_t kUsualDescriptors = 1024;

}  // namespace

bool prepareDescriptors() {
  int lowest = 0;
  while (lowest >= 0 && lowest <= STDERR_FILENO) lowest = ::open("/dev/null", O_RDWR);
  if (lowest > STDERR_FILENO) ::close(lowest);
  rlimit limit = {};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = std::max(limit.rlim_cur, std::min(limit.rlim_max, kUsualDescriptors));
  ::setrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_cur >= kNeededDescriptors) return true;
  std::fprintf(stderr, "quiverleaf-helper: only %lu files may be open, and it needs %lu\n",
               static_cast<unsigned long>(limit.rlim_cur), static_cast<unsigned long>(kNeededDescriptors));
  return false;
}

}  // namespace nimbo
