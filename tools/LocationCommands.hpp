// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on location files.
const std::vector<Command> &locationCommands();

}  // namespace nimbo
