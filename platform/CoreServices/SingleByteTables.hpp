// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// The 128 characters that a table of the project's own gives the bytes from 0x80 on, U+FFFD where a byte means
/// nothing; the bytes below are ASCII. Lives as long as the process. Null when there is no such table.
const char16_t *singleByteTable(std::string_view name);

}  // namespace nimbo
