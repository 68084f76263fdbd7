// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/Foundation/NSURL.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

/// The URL that an option has, as somebody types it. Raises `UsageError` when it is not absolute.
NSURL absoluteURLOfOption(const std::string &value);

/// The command on URLs.
const std::vector<Command> &urlCommands();

}  // namespace nimbo
