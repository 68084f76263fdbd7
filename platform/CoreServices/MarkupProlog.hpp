// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nimbo {

/// The beginning of markup whose first element databases of signatures do not see: without the comments in
/// front of it, and one byte a character where it is UTF-16 ('?' for what is not ASCII). Empty when `head` is
/// no markup, or nothing hides that element.
std::string unhiddenMarkup(std::string_view head);

/// The name of the first element of markup of one byte a character, behind a prolog, without a prefix; empty
/// when something else stands there. Nothing when `head` does not reach so far.
std::optional<std::string_view> firstElementOfMarkup(std::string_view head);

}  // namespace nimbo
