// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace nimbo {

/// The options that commands have in common. Those of a command are a struct that derives from it.
struct CommonOptions {
  bool noStart = false;
  double timeoutSeconds = 15.0;
  double waitingSeconds = 300.0;
  bool pretty = false;
  bool propertyList = false;
  bool help = false;
  bool version = false;
  /// The names of those that the command line has, of the command's own options, too.
  std::vector<std::string> given;
};

/// Two words behind one option.
using TextPair = std::pair<std::string, std::string>;

/// The longest time that --timeout takes.
inline constexpr double kMaximumTimeoutSeconds = 86400.0;

/// An option as it is typed, and the field that it sets: a switch, a number of seconds, a text or a pair of
/// texts of which the last one given counts, or a list of texts, one for each time that the option is given.
struct Option {
  const char *name;
  std::variant<bool CommonOptions::*, double CommonOptions::*, std::optional<std::string> CommonOptions::*,
               std::optional<TextPair> CommonOptions::*, std::vector<std::string> CommonOptions::*>
      field;
  /// For the help text, where it stands behind the option's name; null for a switch.
  const char *valueName;
  const char *summary;
  /// The words that a text may be; any when there are none here.
  std::vector<std::string> choices = {};
};

/// A row of the table of a command's own options.
template <class Options>
struct OptionOf : Option {
  template <class Value>
  OptionOf(const char *word, Value Options::*member, const char *valueWord, const char *line,
           std::vector<std::string> allowedWords = {})
      : Option{word, static_cast<Value CommonOptions::*>(member), valueWord, line, std::move(allowedWords)} {}
};

/// What a command line holds besides options.
using Operands = std::vector<std::string>;

/// For a command that takes as many operands as there are.
inline constexpr std::size_t kAnyNumberOfOperands = std::numeric_limits<std::size_t>::max();

/// What a command tells about itself, how many operands it takes, and what is common to commands that it does.
struct CommandText {
  const char *name;
  const char *operands = "";
  const char *summary;
  /// Whole lines, each behind its line break.
  const char *description;
  std::size_t minimumOperands = 0;
  std::size_t maximumOperands = 0;
  /// Files and names are never empty, a text may be.
  bool takesEmptyOperands = false;
  /// How many operands, from the first one, are files, which may be given as URLs.
  std::size_t fileOperands = kAnyNumberOfOperands;
  /// Whether it may ask the helper, wait for that or for its input, and print a value: what the common options
  /// are for.
  bool asksHelper = true;
  bool takesTime = true;
  bool printsValue = true;
};

/// A command of the program.
///
///     int runTags(const CommonOptions &options, const Operands &operands);
///     int runURL(const URLOptions &options, const Operands &operands);
///     Command({.name = "tags", ...}, runTags);
///     Command({.name = "url", ...}, runURL, {{"base", &URLOptions::base, "URL", "the URL of the page"}});
struct Command : CommandText {
  /// `runCommand` does the work and gives the exit code; `table` has the command's own options.
  template <class Options>
  Command(const CommandText &text, int (*runCommand)(const Options &, const Operands &),
          const std::vector<OptionOf<Options>> &table = {})
      : CommandText(text),
        options(table.begin(), table.end()),
        makeOptions([]() -> std::shared_ptr<CommonOptions> { return std::make_shared<Options>(); }),
        run([runCommand](const CommonOptions &made, const Operands &read) {
          return runCommand(static_cast<const Options &>(made), read);
        }) {}

  /// Those that only this command takes; `makeOptions` makes what they set.
  std::vector<Option> options;
  std::shared_ptr<CommonOptions> (*makeOptions)();
  std::function<int(const CommonOptions &made, const Operands &read)> run;
};

/// A command line that cannot be followed; the text says why in one line.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The options that commands have in common.
const std::vector<Option> &commonOptions();
/// Those of them that do something for a command.
std::vector<Option> commonOptionsOf(const CommandText &command);

/// Reads options off `arguments` (the first is a name and skipped) into `options`, and gives what is left. With
/// `stopsAtOperand` nothing is read behind the first operand. An output may be given as the URL of a file.
/// Raises `UsageError`.
Operands readOptions(const std::vector<std::string> &arguments, const std::vector<Option> &accepted,
                     bool stopsAtOperand, CommonOptions *options);

/// Raises `UsageError` for common options that do nothing for the command.
void checkOptions(const CommandText &command, const CommonOptions &options);
/// Raises `UsageError` when one of the named options is given, since it does nothing with `mode`.
void refuseOptions(const CommonOptions &options, std::initializer_list<std::string_view> names,
                   const std::string &mode);

/// The operands, with paths in the place of URLs of files. Raises `UsageError` for what the command does not
/// take.
Operands checkedOperands(const CommandText &command, Operands operands);

}  // namespace nimbo
