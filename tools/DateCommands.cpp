// SPDX-License-Identifier: Apache-2.0
#include "tools/DateCommands.hpp"

#include "Classes/Dates/NSString+Date.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/id.hpp"
#include "tools/ExitCode.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

struct DateOptions : CommonOptions {
  bool http = false;
};

int runDate(const DateOptions &options, const Operands &operands) {
  NSArray answers = NSArray::array();
  bool isComplete = true;
  for (const std::string &operand : operands) {
    const NSString text = NSString::stringWithLossyUTF8String(operand);
    const auto found = options.http ? dateFromHTTPHeaderValue(text) : date(text);
    answers.addObject(found ? id(*found) : id(NSNull()));
    isComplete = isComplete && found;
  }
  writeResult(answers, options);
  return isComplete ? kExitAnswered : kExitNil;
}

}  // namespace

const std::vector<Command> &dateCommands() {
  static const std::vector<Command> commands = {
      {{.name = "date",
        .operands = "TEXT...",
        .summary = "the moments that texts name as dates",
        .description = R"(
Prints an array with the moment of each text, ISO 8601 in UTC, and null for a text that is no date,
of which there is a line on standard error, too, unless it is blank; the exit status is 3 then.
Texts without a zone are in the one of TZ.)",
        .minimumOperands = 1,
        .maximumOperands = kAnyNumberOfOperands,
        .takesEmptyOperands = true,
        .fileOperands = 0,
        .asksHelper = false,
        .takesTime = false},
       runDate,
       {{"http", &DateOptions::http, nullptr, "read the forms of HTTP headers alone, and say nothing"}}},
  };
  return commands;
}

}  // namespace nimbo
