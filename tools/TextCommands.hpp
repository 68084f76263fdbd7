// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on text, which do their work in this process and need no helper.
const std::vector<Command> &textCommands();

}  // namespace nimbo
