// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The command on character references.
const std::vector<Command> &entityCommands();

}  // namespace nimbo
