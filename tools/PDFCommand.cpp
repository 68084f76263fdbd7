// SPDX-License-Identifier: Apache-2.0
#include "tools/PDFCommand.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "clients/cpp/HelperClient.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "tools/ExitCode.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"
#include "tools/RichTextOutput.hpp"

namespace nimbo {

namespace {

struct PDFOptions : CommonOptions {
  bool attributed = false;
  bool text = false;
  std::optional<std::string> output;
  std::optional<std::string> pages;
  std::optional<std::string> password;
  std::optional<std::string> passwordFile;
};

/// The number that the text is, from 1 on.
std::int64_t pageNumber(std::string_view text, const std::string &pages) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 1)
    throw UsageError("'" + pages + "' names no pages; say 3, 3-5 or 3-");
  return number;
}

/// Adds what "3", "3-5" and "3-" say.
void addPages(const std::string &pages, NSDictionary *request) {
  const std::size_t dash = pages.find('-');
  const std::string_view text = pages;
  const std::int64_t first = pageNumber(text.substr(0, dash), pages);
  request->setObject(first, u"FirstPage"_ns);
  if (dash == text.size() - 1) return;
  const std::int64_t last = dash == text.npos ? first : pageNumber(text.substr(dash + 1), pages);
  if (last < first) throw UsageError("'" + pages + "' ends before it begins");
  request->setObject(last, u"LastPage"_ns);
}

/// The password that is given, or the first line of its file; nil when there is none.
NSString passwordOfOptions(const PDFOptions &options, const std::string &file) {
  if (options.password && options.passwordFile)
    throw UsageError("--password and --password-file exclude each other");
  std::string password = options.password.value_or("");
  if (options.passwordFile) {
    if (*options.passwordFile == "-" && file == "-")
      throw UsageError("standard input is either the PDF or the password");
    password = readInput(*options.passwordFile, options.timeoutSeconds).view();
    password.resize(std::min(password.size(), password.find_first_of("\r\n")));
  } else if (!options.password) {
    return NSString();
  }
  NSString text = NSString::stringWithUTF8String(password);
  if (!text) throw UsageError("the password is not in UTF-8");
  return text;
}

/// Writes the pages with a form feed after each but the last. Nothing is written when there is no text.
int writePages(const HelperClient::Answer &answer, const std::string &name) {
  NSMutableString text;
  bool hasText = false;
  const int code = report(answer, name, [&](const id &result) {
    const NSArray pages = result.dictionary().objectForKey(u"Pages"_ns).array();
    for (std::size_t i = 0; i < pages.count(); ++i) {
      const NSString page = pages[i].string();
      hasText = hasText || page.length() > 0;
      if (i > 0) text.appendCharacter(u'\f');
      text.appendString(page);
    }
  });
  if (code != kExitAnswered) return code;
  if (!hasText) return kExitNil;
  writeLines(std::move(text).string());
  return kExitAnswered;
}

int runPDF(const PDFOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  if (options.output && (!options.attributed || options.output->empty()))
    throw UsageError("-o needs --attributed and the name of a folder");
  if (options.text && options.attributed) throw UsageError("--text and --attributed exclude each other");
  if (options.text) refuseOptions(options, {"pretty", "plist"}, "--text");
  if (options.output) refuseOptions(options, {"pretty", "plist"}, "-o");
  NSDictionary request = NSDictionary::dictionary();
  if (options.pages) addPages(*options.pages, &request);
  if (const NSString password = passwordOfOptions(options, file)) request.setObject(password, u"Password"_ns);
  if (options.text) request.setObject(true, u"ByPage"_ns);
  const bool isPlain = request.count() == 0;
  if (options.attributed) request.setObject(true, u"Attributed"_ns);

  const NSData pdf = readInput(file, options.timeoutSeconds);
  const std::string name = nameOfInput(file);
  HelperClient client = clientWithOptions(options);
  const auto answer =
      isPlain ? client.attributedStringWithPDF(options.attributed, pdf) : client.stringWithPDF(pdf, request);
  if (options.text) return writePages(answer, name);
  if (!options.output) return report(answer, name, options);
  NSData rtfd;
  const int code = report(
      answer, name, [&](const id &result) { rtfd = result.dictionary().objectForKey(u"String"_ns).data(); });
  if (code != kExitAnswered) return code;
  return rtfd ? writeRichText(client, rtfd, *options.output) : int{kExitNil};
}

}  // namespace

Command pdfCommand() {
  return {{.name = "pdf",
           .operands = "FILE",
           .summary = "the text, page count and document attributes of a PDF",
           .description = R"(
Prints "String" (the text), "PageCount" and the attributes of the document. FILE "-" is standard input.
A document that needs a password answers "Locked" instead of a text. Whoever may list the processes of this
machine sees what stands behind --password; --password-file takes the first line of a file, which may be "-" or
a descriptor of the shell such as <(secret-tool lookup pdf contract).
With --text the text alone is printed, a form feed between pages, and pages without a text layer are named.
With --attributed the text is RTFD data, which has its fonts, sizes, colours and links. With -o it is written
as a folder, and nothing is printed.)",
           .minimumOperands = 1,
           .maximumOperands = 1},
          runPDF,
          {{"attributed", &PDFOptions::attributed, nullptr, "ask for the text as RTFD data"},
           {"output", &PDFOptions::output, "OUT.rtfd", "the folder to write that text to (-o)"},
           {"text", &PDFOptions::text, nullptr, "print the text alone, with form feeds between pages"},
           {"pages", &PDFOptions::pages, "A-B", "read these pages alone, as 3-5, 3 and 3-"},
           {"password", &PDFOptions::password, "TEXT", "opens a locked document; others can see it"},
           {"password-file", &PDFOptions::passwordFile, "FILE", "the same, in the first line of a file"}}};
}

}  // namespace nimbo
