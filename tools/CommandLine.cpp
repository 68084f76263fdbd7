// SPDX-License-Identifier: Apache-2.0
#include "tools/CommandLine.hpp"

#include <getopt.h>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace nimbo {

namespace {

double secondsFromText(std::string_view text) {
  double seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size() || !(seconds > 0) ||
      seconds > kMaximumTimeoutSeconds)
    throw UsageError("'" + std::string(text) + "' is no number of seconds between 0 and " +
                     std::to_string(static_cast<int>(kMaximumTimeoutSeconds)));
  return seconds;
}

const char *checkedChoice(const CommandOption &option, const char *value) {
  if (option.choices.empty() || std::ranges::find(option.choices, value) != option.choices.end()) return value;
  std::string words;
  for (const std::string &choice : option.choices) {
    const bool isLast = &choice == &option.choices.back();
    words += (words.empty() ? "" : isLast ? " or " : ", ") + choice;
  }
  throw UsageError("'" + std::string(value) + "' is not a value of --" + option.name + ", which is " + words);
}

/// Sets the field of an option; `value` is null for a switch.
struct Setter {
  const CommandOption &option;
  const char *value;
  CommandOptions *options;

  void operator()(bool CommandOptions::*field) const { options->*field = true; }
  void operator()(double CommandOptions::*field) const { options->*field = secondsFromText(value); }
  void operator()(std::optional<std::string> CommandOptions::*field) const {
    options->*field = checkedChoice(option, value);
  }
  void operator()(std::vector<std::string> CommandOptions::*field) const {
    (options->*field).emplace_back(checkedChoice(option, value));
  }
};

void set(const CommandOption &option, const char *value, CommandOptions *options) {
  std::visit(Setter{option, value, options}, option.field);
}

}  // namespace

const std::vector<CommandOption> &commonOptions() {
  static const std::vector<CommandOption> options = {
      {"no-start", &CommandOptions::noStart, nullptr, "do not start a helper when none is registered"},
      {"timeout", &CommandOptions::timeoutSeconds, "SECONDS", "how long to wait for the answer (default 15)"},
      {"pretty", &CommandOptions::pretty, nullptr, "indent the JSON"},
      {"plist", &CommandOptions::propertyList, nullptr, "print an XML property list instead of JSON"},
      {"help", &CommandOptions::help, nullptr, "show help"},
      {"version", &CommandOptions::version, nullptr, "show the program's version"},
  };
  return options;
}

std::vector<std::string> readOptions(const std::vector<std::string> &arguments,
                                     const std::vector<CommandOption> &accepted, bool stopsAtOperand,
                                     CommandOptions *options) {
  constexpr int kFirstValue = 256;
  std::vector<option> table;
  table.reserve(accepted.size() + 1);
  for (const CommandOption &one : accepted)
    table.push_back({one.name, one.valueName ? required_argument : no_argument, nullptr,
                     kFirstValue + static_cast<int>(table.size())});
  table.push_back({});
  std::vector<char *> words;
  words.reserve(arguments.size() + 1);
  for (const std::string &argument : arguments) words.push_back(const_cast<char *>(argument.c_str()));
  const int count = static_cast<int>(words.size());
  words.push_back(nullptr);

  optind = 0;
  opterr = 0;
  const char *shortOptions = stopsAtOperand ? "+:h" : ":h";
  for (int found; (found = getopt_long(count, words.data(), shortOptions, table.data(), nullptr)) != -1;) {
    if (found == 'h')
      options->help = true;
    else if (found == ':')
      throw UsageError("option '" + std::string(words[static_cast<std::size_t>(optind - 1)]) +
                       "' needs a value");
    else if (found < kFirstValue)
      throw UsageError("unknown option '" +
                       (optopt > 0 && optopt < kFirstValue ? "-" + std::string(1, static_cast<char>(optopt))
                                                           : words[static_cast<std::size_t>(optind - 1)]) +
                       "'");
    else
      set(accepted[static_cast<std::size_t>(found - kFirstValue)], optarg, options);
  }
  return {words.begin() + optind, words.end() - 1};
}

}  // namespace nimbo
