// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The text of a file, or of standard input when `path` is "-". What is not UTF-8 becomes U+FFFD. Raises
/// `InputError`.
NSString textOfInput(const std::string &path);

}  // namespace nimbo
