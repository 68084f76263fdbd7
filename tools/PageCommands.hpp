// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on what a page says about itself and what it refers to.
const std::vector<Command> &pageCommands();

}  // namespace nimbo
