// SPDX-License-Identifier: Apache-2.0
#include "tools/InputFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>
#include <system_error>

#include "platform/Foundation/Connection/ConnectionMessage.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tools/FailureReason.hpp"

namespace nimbo {

static_assert(kMaximumInputBytes < kMaximumMessageBytes);

namespace {

constexpr std::size_t kFirstReadBytes = 64u << 10;

struct FreeBytes {
  void operator()(void *bytes) const { std::free(bytes); }
};

NSData readAll(int descriptor, const std::string &name) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0)
    throw InputError(name, "cannot be read: " + std::generic_category().message(errno));
  if (S_ISDIR(status.st_mode)) throw InputError(name, "is a folder");
  const auto announced =
      static_cast<std::size_t>(std::max<off_t>(S_ISREG(status.st_mode) ? status.st_size : 0, 0));
  std::unique_ptr<void, FreeBytes> bytes;
  std::size_t length = 0;
  // One byte more than the file has, so that its end is seen without growing.
  for (std::size_t capacity = std::max(announced + 1, kFirstReadBytes);; capacity *= 2) {
    capacity = std::min(capacity, kMaximumInputBytes + 1);
    if (announced > kMaximumInputBytes || length == capacity)
      throw InputError(name, "is larger than " + std::to_string(kMaximumInputBytes) + " bytes");
    void *grown = std::realloc(bytes.get(), capacity);
    if (!grown) throw std::bad_alloc();
    static_cast<void>(bytes.release());
    bytes.reset(grown);
    while (length < capacity) {
      const ssize_t count = ::read(descriptor, static_cast<char *>(grown) + length, capacity - length);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) throw InputError(name, "cannot be read: " + std::generic_category().message(errno));
      if (count == 0) return NSData::dataWithMallocedBytes(bytes.release(), length);
      length += static_cast<std::size_t>(count);
    }
  }
}

}  // namespace

std::string nameOfInput(const std::string &path) {
  return path == "-" ? "standard input" : path;
}

NSData readInput(const std::string &path) {
  if (path == "-") return readAll(STDIN_FILENO, nameOfInput(path));
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!file) {
    const int error = errno;
    const std::string reason = reasonFileIsUnreadable(path);
    throw InputError(path,
                     reason.empty() ? "cannot be read: " + std::generic_category().message(error) : reason);
  }
  return readAll(file.get(), path);
}

}  // namespace nimbo
