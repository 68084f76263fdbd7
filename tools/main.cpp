// SPDX-License-Identifier: Apache-2.0
#include <csignal>
#include <exception>
#include <new>

#include "platform/Foundation/NSLog.hpp"
#include "tools/CommandLine.hpp"
#include "tools/Commands.hpp"
#include "tools/ExitCode.hpp"
#include "tools/HelpCommands.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

int answer(const std::string &text) {
  writeOutput(text);
  return kExitAnswered;
}

int runCommandLine(const std::vector<std::string> &arguments) {
  CommonOptions common;
  const std::vector<std::string> words = readOptions(arguments, commonOptions(), true, &common);
  if (common.version) return answer(versionText());
  if (words.empty()) {
    if (common.help) return answer(helpText());
    throw UsageError("no command is given");
  }
  const Command &command = commandNamed(words.front());
  std::vector<Option> accepted = command.options;
  accepted.insert(accepted.end(), commonOptions().begin(), commonOptions().end());
  const std::shared_ptr<CommonOptions> options = command.makeOptions();
  *options = common;
  const Operands operands = readOptions(words, accepted, false, options.get());
  if (options->version) return answer(versionText());
  if (options->help) return answer(helpText(command));
  checkOptions(command, *options);
  return command.run(*options, checkedOperands(command, operands));
}

}  // namespace

}  // namespace nimbo

int main(int argumentCount, char **arguments) {
  using namespace nimbo;
  const SignalHandler inherited = prepareStandardStreams();
  setLogWriter(writeMessage);
  try {
    return runCommandLine({arguments, arguments + argumentCount});
  } catch (const UsageError &error) {
    writeMessage(std::string(error.what()) + "; see 'quiverleaf help'");
    return kExitUsage;
  } catch (const OutputClosed &) {
    // It ends as any filter does, unless the caller has told its children to ignore the signal.
    std::signal(SIGPIPE, inherited);
    std::raise(SIGPIPE);
    return kExitOutputFailed;
  } catch (const OutputError &error) {
    writeMessage(error.what());
    return kExitOutputFailed;
  } catch (const InputError &error) {
    writeMessage(error.what());
    return error.code() == ErrorCode::timeLimit ? kExitTimedOut : exitCodeForError(error.code());
  } catch (const std::bad_alloc &) {
    writeMessage("there is not enough memory");
    return kExitNil;
  } catch (const std::exception &error) {
    writeMessage(error.what());
    return kExitNil;
  }
}
