// SPDX-License-Identifier: Apache-2.0
#include "tools/HelpCommands.hpp"

#include "tools/Commands.hpp"
#include "tools/ExitCode.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

constexpr std::size_t kSummaryColumn = 24;

std::string row(std::string name, const char *summary) {
  name.insert(0, "  ");
  name.append(name.size() < kSummaryColumn ? kSummaryColumn - name.size() : 1, ' ');
  return name + summary + "\n";
}

std::string rows(const std::vector<Option> &options) {
  std::string text;
  for (const Option &option : options) {
    const std::string value = option.valueName ? std::string(" ") + option.valueName : "";
    text += row("--" + (option.name + value), option.summary);
  }
  return text;
}

std::string commandWithOperands(const Command &command) {
  return *command.operands ? std::string(command.name) + " " + command.operands : command.name;
}

int runHelp(const CommonOptions &, const Operands &operands) {
  writeOutput(operands.empty() ? helpText() : helpText(commandNamed(operands.front())));
  return kExitAnswered;
}

int runVersion(const CommonOptions &, const Operands &) {
  writeOutput(versionText());
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &helpCommands() {
  static const std::vector<Command> commands = {
      {{.name = "help",
        .operands = "[COMMAND]",
        .summary = "this text, or more about a command",
        .description = R"(
Shows help.)",
        .maximumOperands = 1,
        .fileOperands = 0,
        .asksHelper = false,
        .takesTime = false,
        .printsValue = false},
       runHelp},
      {{.name = "version",
        .summary = "the program's version",
        .description = R"(
Prints the program's version.)",
        .asksHelper = false,
        .takesTime = false,
        .printsValue = false},
       runVersion},
  };
  return commands;
}

std::string helpText() {
  std::string text =
      "Usage: quiverleaf COMMAND [OPTION...] [FILE]\n\n"
      "Asks the Quiverleaf helper about documents and prints its answers as JSON; converts texts by itself.\n\n"
      "Commands:\n";
  for (const Command &command : allCommands()) text += row(commandWithOperands(command), command.summary);
  text += "\nOptions:\n" + rows(commonOptions()) +
          "\nExit status: 0 answered, 1 usage, 2 no helper, 3 no answer for this file, 4 timed out,\n"
          "5 the helper died, 6 the result could not be written, 7 no such file or not readable,\n"
          "8 no importer for this type.\n";
  return text;
}

std::string helpText(const Command &command) {
  std::string text = "Usage: quiverleaf " + std::string(command.name) + " [OPTION...]";
  if (*command.operands) text += std::string(" ") + command.operands;
  text += std::string("\n") + command.description + "\n\nOptions:\n" + rows(command.options) +
          rows(commonOptionsOf(command));
  return text;
}

std::string versionText() {
  return "quiverleaf " QUIVERLEAF_VERSION "\n";
}

}  // namespace nimbo
