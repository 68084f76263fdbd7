// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
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
  std::optional<std::string> encode;
  std::optional<std::string> base;
  bool noStandard = false;
  bool numeric = false;
  bool nonUmlauted = false;
  std::optional<std::string> tag;
  std::optional<std::string> attributes;
  std::vector<std::string> bodies;
  std::vector<std::string> except;
  bool objects = false;
  std::optional<std::string> encoding;
  std::optional<std::string> defaultEncoding;
  bool json = false;
  bool reformat = false;
  bool simple = false;
  bool body = false;
  bool noJunk = false;
  bool googleTags = false;
  bool plainAscii = false;
  bool help = false;
  bool version = false;
  double timeoutSeconds = 15.0;
};

/// The longest time that --timeout takes.
inline constexpr double kMaximumTimeoutSeconds = 86400.0;

/// The field that an option sets: a switch, a number of seconds, a text of which the last one given counts, or
/// a list of texts, one for each time that the option is given.
using CommandOptionField =
    std::variant<bool CommandOptions::*, double CommandOptions::*, std::optional<std::string> CommandOptions::*,
                 std::vector<std::string> CommandOptions::*>;

/// An option as it is typed, and the field that it sets.
struct CommandOption {
  const char *name;
  CommandOptionField field;
  /// For the help text, where it stands behind the option's name; null for a switch.
  const char *valueName;
  const char *summary;
  /// The words that a text may be; any when there are none here.
  std::vector<std::string> choices = {};
};

/// For a command that takes as many operands as there are.
inline constexpr std::size_t kAnyNumberOfOperands = std::numeric_limits<std::size_t>::max();

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
  /// Files and names are never empty, a text may be.
  bool takesEmptyOperands = false;
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
