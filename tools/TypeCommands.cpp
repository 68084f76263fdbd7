// SPDX-License-Identifier: Apache-2.0
#include "tools/TypeCommands.hpp"

#include "platform/CoreServices/ContentTypes.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"
#include "tools/RegularInput.hpp"

namespace nimbo {

namespace {

int runType(const CommonOptions &options, const Operands &operands) {
  NSArray types = NSArray::array();
  int exitCode = kExitAnswered;
  for (const std::string &file : operands) {
    const auto input = RegularInput::ofStandardInput(file, options.timeoutSeconds);
    NSError error;
    const NSString type = LSCopyItemContentType(
        input ? input->path() : NSString::stringWithFileSystemRepresentation(file), &error);
    if (type) {
      types.addObject(type);
      continue;
    }
    writeMessage(InputError(nameOfInput(file), error).what());
    exitCode = kExitUnreadable;
    types.addObject(NSNull());
  }
  if (exitCode == kExitAnswered || operands.size() > 1) writeResult(types, options);
  return exitCode;
}

}  // namespace

const std::vector<Command> &typeCommands() {
  static const std::vector<Command> commands = {
      {{.name = "type",
        .operands = "FILE...",
        .summary = "the content types of files",
        .description = R"(
Prints a JSON array with the type of each file, a uniform type identifier as "com.adobe.pdf": by its name,
and where that says nothing by its content. It is the type that importers are chosen by. One of which nothing
is known is "public.data". A file that is not there is told, and among several null stands for it. FILE "-" is
standard input.)",
        .minimumOperands = 1,
        .maximumOperands = kAnyNumberOfOperands,
        .asksHelper = false},
       runType},
  };
  return commands;
}

}  // namespace nimbo
