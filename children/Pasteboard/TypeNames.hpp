// SPDX-License-Identifier: Apache-2.0
//
// The names of the desktop's types, which are lines.
#pragma once

#include <cstddef>
#include <string_view>

namespace nimbo {

/// How many types may be offered.
constexpr std::size_t kMaximumTypes = 1 << 11;
/// The reason when there are more, a clause for people.
constexpr char kTooManyTypes[] = "these are too many types for the clipboard";

/// Whether it can name a type: it is short enough, not empty, and has no control characters.
bool isTypeName(std::string_view name);

/// Whether two names mean the same type: those of media types in whatever case, with or without spaces.
bool isSameType(std::string_view a, std::string_view b);

}  // namespace nimbo
