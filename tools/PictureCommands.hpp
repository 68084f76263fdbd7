// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands that ask for pictures of files.
const std::vector<Command> &pictureCommands();

}  // namespace nimbo
