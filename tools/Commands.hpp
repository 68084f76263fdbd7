// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// Every command, in the order of the help text.
const std::vector<Command> &allCommands();

/// Raises `UsageError` when there is none of this name.
const Command &commandNamed(const std::string &name);

}  // namespace nimbo
