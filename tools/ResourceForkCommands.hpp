// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on resource forks.
const std::vector<Command> &resourceForkCommands();

}  // namespace nimbo
