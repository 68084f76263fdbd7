// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/NSURL.hpp"

namespace nimbo {

/// The URL that a person has typed: what is one as it is, other text repaired. Raises `UsageError` for what is
/// no absolute URL.
NSURL URLOfOperand(const std::string &operand);

}  // namespace nimbo
