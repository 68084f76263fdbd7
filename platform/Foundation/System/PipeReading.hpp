// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

namespace nimbo::detail {

/// What came of reading a pipe.
enum class PipeReading { waiting, ended, tooMuch };

/// Appends what a pipe that does not block has now, until there are more than `limit` bytes in all.
PipeReading readAvailable(int pipe, std::string &output, std::size_t limit);

}  // namespace nimbo::detail
