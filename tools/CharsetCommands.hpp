// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on character sets, which need no helper.
const std::vector<Command> &charsetCommands();

}  // namespace nimbo
