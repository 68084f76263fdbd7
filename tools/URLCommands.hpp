// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The command on URLs.
const std::vector<Command> &urlCommands();

}  // namespace nimbo
