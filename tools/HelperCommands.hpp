// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands that ask the helper.
const std::vector<Command> &helperCommands();

}  // namespace nimbo
