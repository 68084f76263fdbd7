// SPDX-License-Identifier: Apache-2.0
#include "tools/EntityCommands.hpp"

#include <string_view>

#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

struct EntityOptions : CommonOptions {
  std::optional<std::string> encode;
  bool noStandard = false;
  bool numeric = false;
  bool nonUmlauted = false;
};

/// A text as it is typed, or standard input for "-", without the line feed that ends it. What is not UTF-8
/// becomes U+FFFD.
NSString textOfOperand(const std::string &operand, double patienceSeconds) {
  if (operand != "-") return NSString::stringWithLossyUTF8String(operand);
  const NSData input = readInput(operand, patienceSeconds);
  std::string_view bytes = input.view();
  if (bytes.ends_with('\n')) bytes.remove_suffix(1);
  return NSString::stringWithLossyUTF8String(bytes);
}

NSString encode(const NSString &text, const std::string &encoding) {
  if (encoding == "standard") return stringByConvertingCharactersToStandardEntities(text);
  if (encoding == "high") return stringByConvertingHighCharactersToEntities(text);
  return stringByConvertingCharactersToEntities(text);
}

int runEntities(const EntityOptions &options, const Operands &operands) {
  if (options.encode && (options.noStandard || options.numeric || options.nonUmlauted))
    throw UsageError("--no-standard, --numeric and --non-umlauted are for decoding, not for --encode");
  const NSString text = textOfOperand(operands.front(), options.timeoutSeconds);
  writeText(options.encode ? encode(text, *options.encode)
                           : stringByConvertingEntitiesToCharacters(text, !options.noStandard, options.numeric,
                                                                    options.nonUmlauted));
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &entityCommands() {
  static const std::vector<Command> commands = {
      {{.name = "entities",
        .operands = "TEXT",
        .summary = "the characters of a text's entities, or the reverse",
        .description = R"(
Prints the text with its character references as characters, or with --encode characters as
references: the form "standard" is markup as entities, "high" what is not ASCII as numbers,
"table" the same as entities where there are any. TEXT "-" is standard input without the line feed
that ends it. A text of 3 characters or fewer is not decoded.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .takesEmptyOperands = true,
        .fileOperands = 0,
        .asksHelper = false,
        .printsValue = false},
       runEntities,
       {{"encode",
         &EntityOptions::encode,
         "FORM",
         "encode: standard, high or table",
         {"standard", "high", "table"}},
        {"no-standard", &EntityOptions::noStandard, nullptr, "leave markup characters as references"},
        {"numeric", &EntityOptions::numeric, nullptr, "decode no names but quot, amp, lt, gt, nbsp, apos"},
        {"non-umlauted", &EntityOptions::nonUmlauted, nullptr, "remove diacritics, if anything is decoded"}}},
  };
  return commands;
}

}  // namespace nimbo
