// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands that write rich text.
const std::vector<Command> &richTextCommands();

}  // namespace nimbo
