// SPDX-License-Identifier: Apache-2.0
#include "tools/CommandLine.hpp"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

#include "tools/FileURLs.hpp"

namespace nimbo {

namespace {

double secondsFromText(std::string_view text) {
  double seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size() || !(seconds > 0) ||
      seconds > kMaximumTimeoutSeconds)
    throw UsageError("'" + std::string(text) + "' is no number of seconds above 0 and up to " +
                     std::to_string(static_cast<int>(kMaximumTimeoutSeconds)));
  return seconds;
}

const std::string &checkedChoice(const Option &option, const std::string &value) {
  if (option.choices.empty() || std::ranges::find(option.choices, value) != option.choices.end()) return value;
  std::string words;
  for (const std::string &choice : option.choices) {
    const bool isLast = &choice == &option.choices.back();
    words += (words.empty() ? "" : isLast ? " or " : ", ") + choice;
  }
  throw UsageError("'" + value + "' is not a value of --" + option.name + ", which is " + words);
}

/// Sets the field of an option; a switch has no value, and only a pair has a second one.
struct Setter {
  const Option &option;
  const std::string &value;
  const std::string &secondValue;
  CommonOptions *options;

  void operator()(bool CommonOptions::*field) const { options->*field = true; }
  void operator()(double CommonOptions::*field) const { options->*field = secondsFromText(value); }
  void operator()(std::optional<std::string> CommonOptions::*field) const {
    options->*field = checkedChoice(option, value);
  }
  void operator()(std::optional<TextPair> CommonOptions::*field) const {
    options->*field = TextPair(value, secondValue);
  }
  void operator()(std::vector<std::string> CommonOptions::*field) const {
    (options->*field).push_back(checkedChoice(option, value));
  }
};

bool isForCommand(const Option &option, const CommandText &command) {
  const std::string_view name = option.name;
  if (name == "no-start" || name == "wait") return command.asksHelper;
  if (name == "timeout") return command.takesTime;
  if (name == "pretty" || name == "plist") return command.printsValue;
  return true;
}

/// The option that is typed so: by its name, by a beginning that no other name has, or as "-h" or "-o".
const Option &optionOfWord(const std::string &word, const std::vector<Option> &accepted) {
  const std::string name = word == "-h" ? "--help" : word == "-o" ? "--output" : word;
  std::vector<const Option *> found;
  for (const Option &option : accepted) {
    const std::string whole = std::string("--") + option.name;
    if (whole == name) return option;
    if (name.starts_with("--") && whole.starts_with(name)) found.push_back(&option);
  }
  if (found.size() > 1)
    throw UsageError("option '" + word + "' may be --" + found[0]->name + " or --" + found[1]->name);
  if (found.empty()) throw UsageError("unknown option '" + word + "'");
  return *found.front();
}

}  // namespace

const std::vector<Option> &commonOptions() {
  static const std::vector<Option> options = {
      {"no-start", &CommonOptions::noStart, nullptr, "do not start a helper when none is registered"},
      {"timeout", &CommonOptions::timeoutSeconds, "SECONDS",
       "how long the helper's work, or a pause of the input, may take (default 15)"},
      {"wait", &CommonOptions::waitingSeconds, "SECONDS",
       "how long to wait for the work to begin (default 300)"},
      {"pretty", &CommonOptions::pretty, nullptr, "indent the JSON"},
      {"plist", &CommonOptions::propertyList, nullptr, "print an XML property list instead of JSON"},
      {"help", &CommonOptions::help, nullptr, "show help"},
      {"version", &CommonOptions::version, nullptr, "show the program's version"},
  };
  return options;
}

std::vector<Option> commonOptionsOf(const CommandText &command) {
  std::vector<Option> options;
  std::ranges::copy_if(commonOptions(), std::back_inserter(options),
                       [&](const Option &option) { return isForCommand(option, command); });
  return options;
}

Operands readOptions(const std::vector<std::string> &arguments, const std::vector<Option> &accepted,
                     bool stopsAtOperand, CommonOptions *options) {
  Operands operands;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string &word = arguments[i];
    const bool isOperand = word == "-" || !word.starts_with('-');
    if (word == "--" || (isOperand && stopsAtOperand)) {
      operands.insert(operands.end(), arguments.begin() + static_cast<std::ptrdiff_t>(isOperand ? i : i + 1),
                      arguments.end());
      break;
    }
    if (isOperand) {
      operands.push_back(word);
      continue;
    }
    const std::size_t equals = word.find('=');
    const Option &option = optionOfWord(word.substr(0, equals), accepted);
    std::string value, secondValue;
    if (equals != std::string::npos) {
      if (!option.valueName) throw UsageError(std::string("option '--") + option.name + "' takes no value");
      value = word.substr(equals + 1);
    } else if (option.valueName) {
      if (++i == arguments.size()) throw UsageError("option '" + word + "' needs a value");
      value = arguments[i];
    }
    if (std::holds_alternative<std::optional<TextPair> CommonOptions::*>(option.field)) {
      if (++i == arguments.size()) throw UsageError("option '" + word + "' needs two values");
      secondValue = arguments[i];
    }
    options->given.emplace_back(option.name);
    if (option.name == std::string_view("output") || option.name == std::string_view("password-file"))
      value = pathOfFileArgument(value);
    std::visit(Setter{option, value, secondValue, options}, option.field);
  }
  return operands;
}

void checkOptions(const CommandText &command, const CommonOptions &options) {
  for (const Option &option : commonOptions())
    if (!isForCommand(option, command)) refuseOptions(options, {option.name}, command.name);
  if (options.propertyList) refuseOptions(options, {"pretty"}, "--plist");
}

void refuseOptions(const CommonOptions &options, std::initializer_list<std::string_view> names,
                   const std::string &mode) {
  for (const std::string_view name : names)
    if (std::ranges::find(options.given, name) != options.given.end())
      throw UsageError("option '--" + std::string(name) + "' does nothing for " + mode);
}

Operands checkedOperands(const CommandText &command, Operands operands) {
  if (operands.size() < command.minimumOperands)
    throw UsageError(std::string(command.name) + " needs " + command.operands);
  if (operands.size() > command.maximumOperands)
    throw UsageError("'" + operands[command.maximumOperands] + "' is too much for " + command.name);
  if (!command.takesEmptyOperands && std::ranges::find(operands, "") != operands.end())
    throw UsageError(std::string(command.operands) + " is an empty text");
  for (std::size_t i = 0; i < std::min(operands.size(), command.fileOperands); ++i)
    operands[i] = pathOfFileArgument(operands[i]);
  return operands;
}

}  // namespace nimbo
