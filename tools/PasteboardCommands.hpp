// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands that copy to the desktop's clipboard, and paste from it.
const std::vector<Command> &pasteboardCommands();

}  // namespace nimbo
