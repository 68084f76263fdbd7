// SPDX-License-Identifier: Apache-2.0
#include "tools/RichTextCommands.hpp"

#include <optional>
#include <string>

#include "platform/Foundation/NSURL.hpp"
#include "tools/ExitCode.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/RichTextOutput.hpp"
#include "tools/URLOperands.hpp"

namespace nimbo {

namespace {

struct RichTextOptions : CommonOptions {
  std::optional<std::string> output;
};

struct PageOptions : CommonOptions {
  std::optional<std::string> output;
  std::optional<std::string> base;
  bool remote = false;
};

const std::string &outputFolder(const std::optional<std::string> &output) {
  if (!output || output->empty()) throw UsageError("it needs -o OUT.rtfd, the folder to write");
  return *output;
}

int runRTFD(const RichTextOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  const std::string &folder = outputFolder(options.output);
  if (file == "-") throw UsageError("rtfd needs a file with a name, not standard input");
  HelperClient client = clientWithOptions(options);
  NSDictionary document;
  const auto answer =
      client.attributedStringWithContentsOfFile(NSString::stringWithFileSystemRepresentation(file));
  const int code = report(answer, file, [&](const id &result) { document = result.dictionary(); });
  return code != kExitAnswered ? code : writeRichText(client, document.objectForKey(u"Rtfd"_ns).data(), folder);
}

/// Where the references of a page begin: at the URL that is given, else at the file.
NSString baseOfPage(const PageOptions &options, const std::string &file) {
  if (options.base) return URLOfOperand(*options.base).absoluteString();
  if (file == "-") return NSString();
  return NSURL::fileURLWithPath(NSString::stringWithFileSystemRepresentation(file)).absoluteString();
}

int runPage(const PageOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  const std::string &folder = outputFolder(options.output);
  const NSString base = baseOfPage(options, file);
  const NSData html = readInput(file, options.timeoutSeconds);
  checkIsText(html, nameOfInput(file));
  HelperClient client = clientWithOptions(options);
  NSData rtfd;
  const auto answer = client.RTFDWithHTML(html, base, options.remote);
  const int code = report(answer, nameOfInput(file), [&](const id &result) { rtfd = result.data(); });
  return code != kExitAnswered ? code : writeRichText(client, rtfd, folder);
}

}  // namespace

const std::vector<Command> &richTextCommands() {
  static const std::vector<Command> commands = {
      {{.name = "rtfd",
        .operands = "FILE",
        .summary = "a document of any kind as rich text with attachments",
        .description = R"(
Reads plain text, RTF, RTFD, pages, web archives and what LibreOffice reads, and writes a folder, which -o
names: the text in TXT.rtf, its pictures beside it. A part of a page that is not on this machine or its local
network is left out.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .printsValue = false},
       runRTFD,
       {{"output", &RichTextOptions::output, "OUT.rtfd", "the folder to write (-o)"}}},
      {{.name = "html2rtfd",
        .operands = "FILE",
        .summary = "a page as rich text with attachments",
        .description = R"(
Writes a folder, which -o names: the text, as a browser shows it, in TXT.rtf, its pictures beside it. FILE "-"
is standard input. Style sheets and pictures are loaded from this machine and its local network, and from
elsewhere with --remote; what does not come within 15 seconds, which a page has beyond --timeout, is left
out. Scripts are not run.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .printsValue = false},
       runPage,
       {{"output", &PageOptions::output, "OUT.rtfd", "the folder to write (-o)"},
        {"base", &PageOptions::base, "URL", "the URL of the page, which relative ones in it begin at"},
        {"remote", &PageOptions::remote, nullptr, "load parts of the page from anywhere"}}},
  };
  return commands;
}

}  // namespace nimbo
