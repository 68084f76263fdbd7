// SPDX-License-Identifier: Apache-2.0
#include "tools/HelperCommands.hpp"

#include <string>

#include "clients/cpp/HelperClient.hpp"
#include "helper/NimboImExport.hpp"
#include "tools/DocumentText.hpp"
#include "tools/ExitCode.hpp"
#include "tools/FileFacts.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/Output.hpp"
#include "tools/PDFCommand.hpp"

namespace nimbo {

namespace {

struct MetadataOptions : CommonOptions {
  bool noText = false;
  bool textOnly = false;
  bool fileFacts = false;
};

int runMetadata(const MetadataOptions &options, const Operands &operands) {
  if (options.textOnly) refuseOptions(options, {"no-text", "file-facts", "pretty", "plist"}, "--text-only");
  constexpr std::u16string_view kTextName = u"kMDItemTextContent";
  const std::string &file = operands.front();
  if (file == "-") throw UsageError("metadata needs a file with a name, not standard input");
  const NSString path = NSString::stringWithFileSystemRepresentation(file);
  const auto answer = clientWithOptions(options).metaDataForFile(path);
  if (options.textOnly) return writeDocumentText(textUnderKey(answer, kTextName), file);
  return report(answer, file, [&](const id &result) {
    NSDictionary attributes = result.dictionary();
    if (options.noText) attributes.removeObjectForKey(NSString::stringWithCharacters(kTextName));
    if (options.fileFacts)
      for (const auto &[name, fact] : factsOfFile(file)) attributes.setObject(fact, name);
    writeResult(attributes, options);
  });
}

NSDictionary dictionaryOfRecord(const ConnectionRecord &record) {
  return {{u"ProcessIdentifier"_ns, record.process},
          {u"Name"_ns, NSString::stringWithCharacters(kHelperConnectionName)},
          {u"Version"_ns, record.server.version},
          {u"Path"_ns, record.server.path},
          {u"Since"_ns, record.server.version ? id(record.server.since) : id()}};
}

int runPing(const CommonOptions &options, const Operands &) {
  HelperClient client = clientWithOptions(options);
  HelperClient::Answer failure;
  const int process = client.helperProcessIdentifier(&failure);
  if (process == 0) {
    const bool isTimedOut = failure.status == HelperClient::Status::timedOut;
    const bool isOfStart = !isTimedOut && !options.noStart;
    writeMessage((isOfStart ? "no helper is registered and none could be started: " : "") + failure.message);
    return isTimedOut ? kExitTimedOut : kExitUnreachable;
  }
  const auto state = client.helperState();
  const bool isKnown = state && state->record.process == process;
  writeResult(dictionaryOfRecord(isKnown ? state->record : ConnectionRecord{.process = process}), options);
  return kExitAnswered;
}

NSDictionary dictionaryOfRequest(const ConnectionRecord &record) {
  return {{u"Selector"_ns, record.selector},
          {u"Input"_ns, record.input},
          {u"ProcessIdentifier"_ns, record.client},
          {u"Since"_ns, record.begun}};
}

int runStatus(const CommonOptions &options, const Operands &) {
  const auto state = clientWithOptions(options).helperState();
  if (!state || !state->isRunning) {
    writeMessage("no helper is registered");
    if (state && state->record.isWorking)
      writeMessage("the last one ended while it worked on " + HelperClient::describedRequest(state->record));
    return kExitUnreachable;
  }
  NSDictionary result = dictionaryOfRecord(state->record);
  if (state->record.isWorking) {
    NSArray waiting = NSArray::array();
    for (const int process : state->record.waiting) waiting.addObject(process);
    result.setObject(dictionaryOfRequest(state->record), u"Working"_ns);
    result.setObject(waiting, u"Waiting"_ns);
  }
  writeResult(result, options);
  return kExitAnswered;
}

int runStop(const CommonOptions &options, const Operands &) {
  if (clientWithOptions(options).stopHelper()) return kExitAnswered;
  writeMessage("no helper is registered");
  return kExitUnreachable;
}

}  // namespace

const std::vector<Command> &helperCommands() {
  static const std::vector<Command> commands = {
      {{.name = "metadata",
        .operands = "FILE",
        .summary = "the metadata and the text of a file",
        .description = R"(
Prints the attributes that the metadata importer for the file's type found, by their kMDItem names.
The text of the document is kMDItemTextContent.
With --file-facts there are kMDItemPath, kMDItemFSName, kMDItemContentType and kMDItemFSSize, too.)",
        .minimumOperands = 1,
        .maximumOperands = 1},
       runMetadata,
       {{"no-text", &MetadataOptions::noText, nullptr, "leave out the text of the document"},
        {"text-only", &MetadataOptions::textOnly, nullptr, "print nothing but that text, as text"},
        {"file-facts", &MetadataOptions::fileFacts, nullptr, "add path, name, type and size of the file"}}},
      pdfCommand(),
      {{.name = "ping", .summary = "the helper's process, started if need be", .description = R"(
Prints the process number of the helper, the name under which it answers, its version, its program and since
when it runs.)"},
       runPing},
      {{.name = "status",
        .summary = "what the helper is doing",
        .description = R"(
Prints what "ping" does, and, while the helper works, "Working": the operation, the file, the process that
asked, since when; and "Waiting": the processes whose requests waited when this one began. It asks the helper
nothing and starts none, so it does not wait. When there is none, it tells what the last one worked on when it
ended.)",
        .asksHelper = false,
        .takesTime = false},
       runStatus},
      {{.name = "stop",
        .summary = "end the helper",
        .description = R"(
Ends the helper that is registered when the request under way is done, and waits until it is gone. One that is
not gone after 2 seconds is killed. --timeout is how long it tries to reach one that takes no connections.)",
        .asksHelper = false,
        .printsValue = false},
       runStop},
  };
  return commands;
}

}  // namespace nimbo
