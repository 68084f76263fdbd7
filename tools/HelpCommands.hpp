// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

#include "tools/CommandLine.hpp"

namespace nimbo {

/// What `quiverleaf help` prints: the usage, every command in one line, the common options and the exit codes.
std::string helpText(std::span<const Command> commands);
/// What `quiverleaf help COMMAND` prints.
std::string helpText(const Command &command);
/// The program's name and version.
std::string versionText();

}  // namespace nimbo
