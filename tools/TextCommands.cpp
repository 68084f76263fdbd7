// SPDX-License-Identifier: Apache-2.0
#include "tools/TextCommands.hpp"

namespace nimbo {

const std::vector<Command> &textCommands() {
  static const std::vector<Command> commands;
  return commands;
}

}  // namespace nimbo
