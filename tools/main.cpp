// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <exception>

#include "tools/CharsetCommands.hpp"
#include "tools/CommandLine.hpp"
#include "tools/EntityCommands.hpp"
#include "tools/ExitCode.hpp"
#include "tools/HelpCommands.hpp"
#include "tools/HelperCommands.hpp"
#include "tools/InputFile.hpp"
#include "tools/MarkupCommands.hpp"
#include "tools/Output.hpp"
#include "tools/PlainTextCommands.hpp"
#include "tools/URLCommands.hpp"

namespace nimbo {

namespace {

const std::vector<Command> &allCommands();

const Command &commandNamed(const std::string &name) {
  const auto &commands = allCommands();
  const auto found =
      std::find_if(commands.begin(), commands.end(), [&](const Command &one) { return one.name == name; });
  if (found == commands.end()) throw UsageError("unknown command '" + name + "'");
  return *found;
}

int runHelp(const CommandOptions &, const std::vector<std::string> &operands) {
  writeOutput(operands.empty() ? helpText(allCommands()) : helpText(commandNamed(operands.front())));
  return kExitAnswered;
}

int runVersion(const CommandOptions &, const std::vector<std::string> &) {
  writeOutput(versionText());
  return kExitAnswered;
}

const std::vector<Command> &allCommands() {
  static const std::vector<Command> commands = [] {
    std::vector<Command> all = helperCommands();
    for (const auto *more :
         {&plainTextCommands(), &markupCommands(), &entityCommands(), &charsetCommands(), &urlCommands()})
      all.insert(all.end(), more->begin(), more->end());
    all.push_back(
        {"help", "[COMMAND]", "this text, or more about a command", "Shows help.", {}, 0, 1, runHelp});
    all.push_back(
        {"version", "", "the program's version", "Prints the program's version.", {}, 0, 0, runVersion});
    return all;
  }();
  return commands;
}

void checkOperands(const Command &command, const std::vector<std::string> &operands) {
  if (operands.size() < command.minimumOperands)
    throw UsageError(std::string(command.name) + " needs " + command.operands);
  if (operands.size() > command.maximumOperands)
    throw UsageError("'" + operands[command.maximumOperands] + "' is too much for " + command.name);
  const bool hasEmptyOperand =
      std::any_of(operands.begin(), operands.end(), [](const std::string &operand) { return operand.empty(); });
  if (hasEmptyOperand && !command.takesEmptyOperands)
    throw UsageError(std::string(command.operands) + " is an empty text");
}

int runCommandLine(const std::vector<std::string> &arguments) {
  CommandOptions options;
  const std::vector<std::string> words = readOptions(arguments, commonOptions(), true, &options);
  if (options.version) return runVersion(options, {});
  if (words.empty()) {
    if (options.help) return runHelp(options, {});
    throw UsageError("no command is given");
  }
  const Command &command = commandNamed(words.front());
  std::vector<CommandOption> accepted = command.options;
  accepted.insert(accepted.end(), commonOptions().begin(), commonOptions().end());
  const std::vector<std::string> operands = readOptions(words, accepted, false, &options);
  if (options.help) return runHelp(options, {command.name});
  checkOperands(command, operands);
  return command.run(options, operands);
}

}  // namespace

}  // namespace nimbo

int main(int argumentCount, char **arguments) {
  using namespace nimbo;
  reserveStandardStreams();
  try {
    return runCommandLine({arguments, arguments + argumentCount});
  } catch (const UsageError &error) {
    writeMessage(std::string(error.what()) + "; see 'quiverleaf help'");
    return kExitUsage;
  } catch (const OutputError &error) {
    writeMessage(error.what());
    return kExitOutputFailed;
  } catch (const InputError &error) {
    writeMessage(error.what());
    return kExitNil;
  } catch (const std::exception &error) {
    writeMessage(error.what());
    return kExitNil;
  }
}
