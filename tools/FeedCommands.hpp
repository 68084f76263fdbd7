// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The command on feeds: their items, and what else they can be written as.
const std::vector<Command> &feedCommands();

}  // namespace nimbo
