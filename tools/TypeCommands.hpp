// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The command on types of files.
const std::vector<Command> &typeCommands();

}  // namespace nimbo
