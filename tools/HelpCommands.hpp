// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The commands on the program itself.
const std::vector<Command> &helpCommands();

/// What `quiverleaf help` prints: the usage, every command in one line, the common options and the exit codes.
std::string helpText();
/// What `quiverleaf help COMMAND` prints.
std::string helpText(const Command &command);
/// The program's name and version.
std::string versionText();

}  // namespace nimbo
