// SPDX-License-Identifier: Apache-2.0
#include "tools/WebArchiveCommands.hpp"

#include "tools/ExitCode.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"
#include "tools/PageCollector.hpp"

namespace nimbo {

namespace {

struct WebArchiveOptions : CommonOptions {
  bool create = false;
  std::optional<std::string> output;
};

int createArchive(const std::string &page, const std::string &output) {
  PageCollector collector(
      [](const std::string &part, const std::string &reason) { writeMessage(part + ": " + reason); });
  NSError error;
  const WebArchive archive =
      collector.archiveOfPage(NSString::stringWithFileSystemRepresentation(page), &error);
  const NSData data = archive ? archive.data(&error) : NSData();
  if (!data) throw InputError(page, error);
  writeFile(data, output);
  return kExitAnswered;
}

int runWebArchive(const WebArchiveOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  if (file == "-") throw UsageError("webarchive needs a file with a name, not standard input");
  if (options.create != options.output.has_value()) throw UsageError("--create and --output go together");
  if (options.create) {
    refuseOptions(options, {"no-start", "timeout", "wait", "pretty", "plist"}, "--create");
    return createArchive(file, *options.output);
  }
  const NSString path = NSString::stringWithFileSystemRepresentation(file);
  return report(clientWithOptions(options).searchableTextOfWebArchive(path), file, options);
}

}  // namespace

const std::vector<Command> &webArchiveCommands() {
  static const std::vector<Command> commands = {
      {{.name = "webarchive",
        .operands = "FILE",
        .summary = "the text of a saved page, or a page saved",
        .description = R"(
Prints "String" (the text of the page and of its frames), and "Source" (its markup) and "URL" when they
are known. With --create, FILE is a page on this machine, and is saved with its images, sheets and
frames as a web archive; a part that is missing, or not on this machine, is told and left out.)",
        .minimumOperands = 1,
        .maximumOperands = 1},
       runWebArchive,
       {{"create", &WebArchiveOptions::create, nullptr, "save the page as a web archive"},
        {"output", &WebArchiveOptions::output, "FILE", "where to save the archive (-o)"}}},
  };
  return commands;
}

}  // namespace nimbo
