// SPDX-License-Identifier: Apache-2.0
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/CoreServices/ContainerMIMEType.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  static const int file = ::memfd_create("container", MFD_CLOEXEC);
  if (::ftruncate(file, 0) != 0 || ::pwrite(file, bytes, size, 0) != static_cast<ssize_t>(size)) std::abort();
  const std::string type = nimbo::containerMIMEType({file, size});
  if (!type.empty() && !type.starts_with("application/") && !type.starts_with("image/")) std::abort();
  return 0;
}
