// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/RegularFile.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>

#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"

namespace nimbo {
namespace {

/// The first room when there is more than expected: pipes and files of /proc do not tell their length.
constexpr std::size_t kSmallestRoom = 64u << 10;

/// Waits until there is something to read, or the end. A FIFO that nobody writes to has neither.
bool comesWithin(double seconds, int descriptor) {
  if (std::isinf(seconds)) return true;
  const Deadline deadline = Deadline::after(seconds);
  pollfd state = {descriptor, POLLIN, 0};
  int ready = 0;
  do ready = ::poll(&state, 1, deadline.remainingMilliseconds());
  while (ready < 0 && errno == EINTR);
  return ready != 0;
}

}  // namespace

FileDescriptor openRegularFile(const NSString &path, std::uint64_t *size, NSError *error) {
  const auto name = path.fileSystemRepresentation();
  if (!name) {
    setError(error, ErrorCode::noSuchFile,
             path.length() == 0 ? "no file is named" : "no file can have this name");
    return FileDescriptor();
  }
  // O_NONBLOCK: opening a FIFO must not wait for a writer.
  FileDescriptor file(::open(name->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info = {};
  if (!file || ::fstat(file.get(), &info) != 0) {
    // A socket or a device without a driver.
    if (errno == ENXIO || errno == ENODEV)
      setError(error, ErrorCode::unreadable, "the file is no regular file");
    else if (error)
      *error = NSError::errorWithFileErrno(errno);
    return FileDescriptor();
  }
  if (!S_ISREG(info.st_mode)) {
    setError(error, ErrorCode::unreadable,
             S_ISDIR(info.st_mode) ? "the file is a folder" : "the file is no regular file");
    return FileDescriptor();
  }
  *size = static_cast<std::uint64_t>(info.st_size);
  return file;
}

NSData readData(int descriptor, std::uint64_t expectedLength, std::uint32_t maximumLength, NSError *error,
                double patienceSeconds) {
  // One byte more than expected, so that the end is seen without growing.
  std::size_t capacity = static_cast<std::size_t>(std::min<std::uint64_t>(expectedLength, maximumLength)) + 1;
  std::size_t length = 0;
  std::unique_ptr<void, decltype(&std::free)> buffer(allocateBytes(capacity), &std::free);
  while (buffer) {
    const std::size_t room = std::min<std::size_t>(capacity, maximumLength) - length;
    if (!comesWithin(patienceSeconds, descriptor)) {
      setError(error, ErrorCode::timeLimit, "nothing came within the time limit");
      return NSData();
    }
    const ssize_t got = room > 0 ? ::read(descriptor, static_cast<char *>(buffer.get()) + length, room) : 0;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      if (error) *error = NSError::errorWithFileErrno(errno);
      return NSData();
    }
    length += static_cast<std::size_t>(got);
    if (got == 0) return NSData::dataWithMallocedBytes(buffer.release(), length);
    if (length < capacity) continue;
    capacity = std::max(kSmallestRoom, capacity * 2);
    void *larger = std::realloc(buffer.get(), capacity);
    if (!larger) break;
    static_cast<void>(buffer.release());
    buffer.reset(larger);
  }
  throw std::bad_alloc();
}

}  // namespace nimbo
