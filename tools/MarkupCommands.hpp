// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on markup as such: what the scanner finds in it, and it without some of that.
const std::vector<Command> &markupCommands();

}  // namespace nimbo
