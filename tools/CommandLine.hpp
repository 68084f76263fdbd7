// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace nimbo {

/// The options of all commands; which of them a command takes stands in its `Command`.
struct CommandOptions {
  bool noStart = false;
  bool pretty = false;
  bool propertyList = false;
  bool attributed = false;
  bool help = false;
  bool version = false;
  double timeoutSeconds = 15.0;
};

/// The longest time that --timeout takes.
inline constexpr double kMaximumTimeoutSeconds = 86400.0;

/// An option as it is typed, and the field that it sets: a switch or a number of seconds.
struct CommandOption {
  const char *name;
  std::variant<bool CommandOptions::*, double CommandOptions::*> field;
  /// For the help text; a value's name stands after the option's own.
  const char *valueName;
  const char *summary;
};

struct Command {
  const char *name;
  const char *operands;
  const char *summary;
  const char *description;
  std::vector<CommandOption> options;
  std::size_t minimumOperands;
  std::size_t maximumOperands;
  /// Does the work and gives the exit code.
  int (*run)(const CommandOptions &options, const std::vector<std::string> &operands);
};

/// A command line that cannot be followed; the text says why in one line.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The options that every command takes.
const std::vector<CommandOption> &commonOptions();

/// Reads options off `arguments` (the first is a name and skipped) into `options`, and gives what is left. With
/// `stopsAtOperand` nothing is read behind the first operand. Raises `UsageError`.
std::vector<std::string> readOptions(const std::vector<std::string> &arguments,
                                     const std::vector<CommandOption> &accepted, bool stopsAtOperand,
                                     CommandOptions *options);

}  // namespace nimbo
