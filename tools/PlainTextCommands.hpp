// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The command that makes plain text of pages, in this process.
const std::vector<Command> &plainTextCommands();

}  // namespace nimbo
