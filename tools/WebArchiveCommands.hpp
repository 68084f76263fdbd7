// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on web archives.
const std::vector<Command> &webArchiveCommands();

}  // namespace nimbo
