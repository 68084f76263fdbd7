// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// What a table of the project's own says about an encoding of one byte a character.
struct SingleByteTable {
  /// The 128 characters of the bytes from 0x80 on, U+FFFD where a byte means nothing. Lives as long as the
  /// process.
  const char16_t *highHalf = nullptr;
  /// The bytes below are ASCII, but for these two, which some replace.
  char16_t backslash = u'\\';
  char16_t tilde = u'~';
};

/// Without a high half when there is no table of the name.
SingleByteTable singleByteTable(std::string_view name);

}  // namespace nimbo
