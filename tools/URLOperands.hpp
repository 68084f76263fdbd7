// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/NSURL.hpp"

namespace nimbo {

/// The URL that somebody has typed as an operand or behind an option, as `URLWithTypedString` reads it. Raises
/// `UsageError` for what is no absolute URL.
NSURL URLOfOperand(const std::string &operand);

}  // namespace nimbo
