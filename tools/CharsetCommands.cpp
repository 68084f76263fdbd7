// SPDX-License-Identifier: Apache-2.0
#include "tools/CharsetCommands.hpp"

#include "Classes/Encodings/CharsetNames.hpp"
#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

struct DecodeOptions : CommonOptions {
  std::optional<std::string> encoding;
  std::optional<std::string> defaultEncoding;
  bool json = false;
};

/// Adds an encoding's name and numbers; those of strings only when text can be read in it.
void describe(CFStringEncoding encoding, NSDictionary *description) {
  if (encoding == kCFStringEncodingInvalidId) return;
  description->setObject(CFStringConvertEncodingToIANACharSetName(encoding), u"Encoding"_ns);
  description->setObject(encoding, u"CFStringEncoding"_ns);
  if (CFStringIsEncodingAvailable(encoding))
    description->setObject(CFStringConvertEncodingToNSStringEncoding(encoding), u"NSStringEncoding"_ns);
}

int runCharset(const CommonOptions &options, const Operands &operands) {
  NSArray answers = NSArray::array();
  for (const std::string &operand : operands) {
    const NSString name = NSString::stringWithLossyUTF8String(operand);
    const CFStringEncoding encoding = encodingOfCharset(name);
    NSDictionary answer{{u"Name"_ns, name}, {u"Available"_ns, CFStringIsEncodingAvailable(encoding)}};
    describe(encoding, &answer);
    answers.addObject(std::move(answer));
  }
  writeResult(answers, options);
  return kExitAnswered;
}

/// The encoding that an option names; none when it is not given.
NSStringEncoding encodingOfOption(const char *option, const std::optional<std::string> &value) {
  if (!value) return kCFStringEncodingInvalidId;
  const CFStringEncoding encoding = encodingOfCharset(NSString::stringWithLossyUTF8String(*value));
  if (CFStringIsEncodingAvailable(encoding)) return CFStringConvertEncodingToNSStringEncoding(encoding);
  const bool isUnknown = encoding == kCFStringEncodingInvalidId;
  throw UsageError("'" + *value + "' after --" + option +
                   (isUnknown ? " is no known encoding" : " is an encoding that cannot be read"));
}

int runDecode(const DecodeOptions &options, const Operands &operands) {
  if (!options.json && !options.propertyList) refuseOptions(options, {"pretty"}, "decode without --json");
  const NSStringEncoding supplied = encodingOfOption("encoding", options.encoding);
  const NSStringEncoding chosenDefault = encodingOfOption("default", options.defaultEncoding);
  const NSData data = readInput(operands.front(), options.timeoutSeconds);
  const std::string file = nameOfInput(operands.front());
  if (data.length() == 0) throw InputError(file, "the file is empty");
  const DecodedMarkup decoded =
      options.defaultEncoding ? decodeMarkup(data, supplied, chosenDefault) : decodeMarkup(data, supplied);
  if (!decoded.string) throw InputError(file, "is no text in any encoding that is given, declared or likely");

  const NSString declared = markupCharset(decoded.string);
  const CFStringEncoding encoding = CFStringConvertNSStringEncodingToEncoding(decoded.encoding);
  if (options.json || options.propertyList) {
    NSDictionary answer{{u"String"_ns, decoded.string}};
    if (declared.length() > 0) answer.setObject(declared, u"Declared"_ns);
    describe(encoding, &answer);
    writeResult(answer, options);
    return kExitAnswered;
  }
  writeOutput(decoded.string.UTF8String());
  writeMessage(file + ": declares " + (declared.length() > 0 ? declared.UTF8String() : "nothing") +
               ", read as " + CFStringConvertEncodingToIANACharSetName(encoding).UTF8String());
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &charsetCommands() {
  static const std::vector<Command> commands = {
      {{.name = "charset",
        .operands = "NAME...",
        .summary = "the encodings of character sets' names",
        .description = R"(
Prints an array with an object for each name: the "Encoding" by its registered name,
"CFStringEncoding" and "NSStringEncoding" by their numbers, and whether text in it can be read
("Available"). A name that nothing is known by has none of them.)",
        .minimumOperands = 1,
        .maximumOperands = kAnyNumberOfOperands,
        .fileOperands = 0,
        .asksHelper = false,
        .takesTime = false},
       runCharset},
      {{.name = "decode",
        .operands = "FILE",
        .summary = "the text of a page or feed in any encoding",
        .description = R"(
Prints the text of a page or feed in UTF-8, and on standard error what it declares and in which
encoding it was read. What the file declares is weighed against what --encoding says. FILE "-" is
standard input.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .asksHelper = false},
       runDecode,
       {{"encoding", &DecodeOptions::encoding, "NAME", "the encoding that came with the file"},
        {"default", &DecodeOptions::defaultEncoding, "NAME", "the encoding without any (else guessed)"},
        {"json", &DecodeOptions::json, nullptr, "print an object with the text and the encodings"}}},
  };
  return commands;
}

}  // namespace nimbo
