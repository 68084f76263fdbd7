// SPDX-License-Identifier: Apache-2.0
#include "tools/LocationCommands.hpp"

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/InternetLocations.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "tools/ExitCode.hpp"
#include "tools/FileURLs.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"
#include "tools/RegularInput.hpp"
#include "tools/URLOperands.hpp"

namespace nimbo {

namespace {

struct LocationOptions : CommonOptions {
  bool create = false;
  std::optional<std::string> output;
};

int createLocation(const std::string &operand, const std::string &output) {
  const NSURL url = URLOfOperand(operand);
  const NSString path = NSString::stringWithFileSystemRepresentation(output), extension = pathExtension(path);
  bool isWritten = false;
  if (equalsASCIINoCase(extension.view(), "url"))
    isWritten = createURL(url, path);
  else if (equalsASCIINoCase(extension.view(), "desktop"))
    isWritten = createDesktopLink(url, path);
  else if (isInternetLocationExtension(extension, NSString()))
    isWritten = createInternetLocation(url, path);
  else
    throw UsageError("'" + output + "' has no extension of a location file, as is '" +
                     pathExtensionForInternetLocation(url).UTF8String() + "'");
  if (!isWritten) throw OutputError(messageOfFailedWriting(output));
  return kExitAnswered;
}

int runLocation(const LocationOptions &options, const Operands &operands) {
  if (options.create != options.output.has_value()) throw UsageError("--create and --output go together");
  if (options.create && operands.size() > 1) throw UsageError("--create takes one URL");
  if (options.create) {
    refuseOptions(options, {"timeout", "pretty", "plist"}, "--create");
    return createLocation(operands.front(), *options.output);
  }
  NSArray urls = NSArray::array();
  int exitCode = kExitAnswered;
  for (const std::string &operand : operands) {
    const std::string file = pathOfFileArgument(operand);
    const auto input = RegularInput::ofStandardInput(file, options.timeoutSeconds);
    NSError error;
    const NSString url = resolveInternetLocation(
        input ? input->path() : NSString::stringWithFileSystemRepresentation(file), &error);
    if (url) {
      urls.addObject(url);
      continue;
    }
    writeMessage(InputError(nameOfInput(file), error).what());
    if (exitCode == kExitAnswered) exitCode = exitCodeForError(error.errorCode());
    urls.addObject(NSNull());
  }
  if (exitCode == kExitAnswered || operands.size() > 1) writeResult(urls, options);
  return exitCode;
}

}  // namespace

const std::vector<Command> &locationCommands() {
  static const std::vector<Command> commands = {
      {{.name = "location",
        .operands = "FILE...",
        .summary = "the URLs of location files, or a new one",
        .description = R"(
Prints a JSON array with the URL of each file: a property list (.webloc and its like), a shortcut (.url)
or a desktop entry of type Link. One that has none is told, and among several null stands for it. FILE
"-" is standard input.
With --create there is a URL in the place of FILE, which is written to the output; the extension of that says
in which form.)",
        .minimumOperands = 1,
        .maximumOperands = kAnyNumberOfOperands,
        .fileOperands = 0,
        .asksHelper = false},
       runLocation,
       {{"create", &LocationOptions::create, nullptr, "write a location file"},
        {"output", &LocationOptions::output, "FILE", "the location file to write (-o)"}}},
  };
  return commands;
}

}  // namespace nimbo
