// SPDX-License-Identifier: Apache-2.0
#include "tools/URLCommands.hpp"

#include "tools/ExitCode.hpp"
#include "tools/Output.hpp"
#include "tools/URLOperands.hpp"
#include "tools/URLReport.hpp"

namespace nimbo {

namespace {

struct URLOptions : CommonOptions {
  std::optional<std::string> base;
  bool markup = false;
};

int runURL(const URLOptions &options, const Operands &operands) {
  const NSURL base = options.base ? URLOfOperand(*options.base) : NSURL();
  NSArray reports = NSArray::array();
  for (const std::string &operand : operands)
    reports.addObject(reportOnURL(NSString::stringWithLossyUTF8String(operand), base, options.markup));
  writeResult(reports, options);
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &urlCommands() {
  static const std::vector<Command> commands = {
      {{.name = "url",
        .operands = "URL...",
        .summary = "kinds, parts, parameters and forms of URLs",
        .description = R"(
Prints a JSON array with what is known about each URL. One that is no URL has a null "URL";
"Repaired" is what it may have been meant to be, "example.org" a host. "Loadable" looks whether a file is there.)",
        .minimumOperands = 1,
        .maximumOperands = kAnyNumberOfOperands,
        .takesEmptyOperands = true,
        .fileOperands = 0,
        .asksHelper = false,
        .takesTime = false},
       runURL,
       {{"base", &URLOptions::base, "URL", "the URL of the page with these links; adds \"Resolved\""},
        {"markup", &URLOptions::markup, nullptr,
         "they are links as the markup of a page has them, with \"&amp;\""}}},
  };
  return commands;
}

}  // namespace nimbo
