// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/PipeReading.hpp"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace nimbo::detail {

PipeReading readAvailable(int pipe, std::string &output, std::size_t limit) {
  std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t got = ::read(pipe, buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno == EAGAIN ? PipeReading::waiting : PipeReading::ended;
    if (got == 0) return PipeReading::ended;
    output.append(buffer.data(), static_cast<std::size_t>(got));
    if (output.size() > limit) return PipeReading::tooMuch;
  }
}

}  // namespace nimbo::detail
