// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace nimbo {

/// The beginning of markup whose first element databases of signatures do not see: without the comments in
/// front of it, and one byte a character where it is UTF-16 ('?' for what is not ASCII). Empty when `head` is
/// no markup, or nothing hides that element.
std::string unhiddenMarkup(std::string_view head);

}  // namespace nimbo
