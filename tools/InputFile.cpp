// SPDX-License-Identifier: Apache-2.0
#include "tools/InputFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <system_error>

#include "platform/Foundation/Connection/ConnectionMessage.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {

static_assert(kMaximumInputBytes < kMaximumMessageBytes);

namespace {

NSData readAll(int descriptor, const std::string &name, double patienceSeconds) {
  const auto fail = [&name](ErrorCode code, const std::string &reason) {
    throw InputError(name, NSError::errorWithCode(code, reason));
  };
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) throw InputError(name, NSError::errorWithFileErrno(errno));
  if (S_ISDIR(status.st_mode)) fail(ErrorCode::unreadable, "the file is a folder");
  const auto announced =
      static_cast<std::uint64_t>(std::max<off_t>(S_ISREG(status.st_mode) ? status.st_size : 0, 0));
  NSError error;
  const bool isTooLarge = announced > kMaximumInputBytes;
  // One byte more than may be, by which inputs are known that do not announce their size.
  if (::isatty(descriptor)) patienceSeconds = HUGE_VAL;
  NSData data =
      isTooLarge ? NSData() : readData(descriptor, announced, kMaximumInputBytes + 1, &error, patienceSeconds);
  if (isTooLarge || data.length() > kMaximumInputBytes)
    fail(ErrorCode::tooLarge, "the file is larger than " + std::to_string(kMaximumInputBytes) + " bytes");
  if (!data) throw InputError(name, error);
  return data;
}

}  // namespace

std::string nameOfInput(const std::string &path) {
  return path == "-" ? "standard input" : path;
}

NSData readInput(const std::string &path, double patienceSeconds) {
  if (path == "-") return readAll(STDIN_FILENO, nameOfInput(path), patienceSeconds);
  // O_NONBLOCK: opening a FIFO must not wait for a writer.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (!file) throw InputError(path, NSError::errorWithFileErrno(errno));
  return readAll(file.get(), path, patienceSeconds);
}

}  // namespace nimbo
