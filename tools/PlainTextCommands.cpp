// SPDX-License-Identifier: Apache-2.0
#include "tools/PlainTextCommands.hpp"

#include <utility>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

struct TextOptions : CommonOptions {
  bool reformat = false;
  bool simple = false;
  bool body = false;
  bool noJunk = false;
  bool googleTags = false;
  bool plainAscii = false;
};

/// Every tag that ends a paragraph is an empty line in the text; a reader wants one for a row of them.
constexpr std::uint32_t kMostLineBreaks = 2;

NSString withFewEmptyLines(const NSString &text) {
  NSMutableString result;
  std::uint32_t breaks = kMostLineBreaks;
  for (const unichar c : text.view()) {
    breaks = c == u'\n' ? breaks + 1 : 0;
    if (breaks <= kMostLineBreaks) result.appendCharacter(c);
  }
  return std::move(result).string();
}

int runText(const TextOptions &options, const Operands &operands) {
  if (options.simple && (options.reformat || options.noJunk || options.googleTags || options.plainAscii))
    throw UsageError("--simple takes none of --reformat, --no-junk, --google-tags and --plain-ascii");
  const NSString page = textOfInput(operands.front(), options.timeoutSeconds);
  if (page.length() == 0) throw InputError(nameOfInput(operands.front()), "the file is empty");
  if (options.simple)
    writeText(stringByConvertingHtml2SimplifiedPlainText(page));
  else
    writeText(withFewEmptyLines(
        stringByConvertingHtml2PlainTextNonUmlauted(page, options.plainAscii, options.reformat, options.body,
                                                    options.noJunk, nullptr, options.googleTags)));
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &plainTextCommands() {
  static const std::vector<Command> commands = {
      {{.name = "text",
        .operands = "FILE",
        .summary = "the plain text of an HTML page",
        .description = R"(
Prints the text that a person reads on a page, in UTF-8; of a page without text, the page. FILE "-"
is standard input. The encoding is the one that the page declares, else guessed. Of empty lines in a
row one is printed.)",
        .minimumOperands = 1,
        .maximumOperands = 1},
       runText,
       {{"reformat", &TextOptions::reformat, nullptr, "keep meaningful lines of the source"},
        {"simple", &TextOptions::simple, nullptr, "only the texts of the body, each behind a space"},
        {"body", &TextOptions::body, nullptr, "only the body, if there is text in it"},
        {"no-junk", &TextOptions::noJunk, nullptr, "leave out hidden and overlong texts"},
        {"google-tags", &TextOptions::googleTags, nullptr, "leave out what googleoff comments hide"},
        {"plain-ascii", &TextOptions::plainAscii, nullptr, "letters without diacritics"}}},
  };
  return commands;
}

}  // namespace nimbo
