// SPDX-License-Identifier: Apache-2.0
#include "tools/PlainTextCommands.hpp"

#include <optional>
#include <utility>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "tools/DocumentText.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/Output.hpp"
#include "tools/ReadableText.hpp"
#include "tools/RegularInput.hpp"

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

/// Whether text that no name tells anything of begins with a tag, as pieces of pages do.
bool isPieceOfPage(const NSString &path, const NSString &text) {
  const std::u16string_view units = text.view();
  const std::size_t start = units.find_first_not_of(u" \t\r\n\f");
  return pathExtension(path).length() == 0 && start < units.size() && units[start] == u'<' &&
         start + 1 < units.size() && (units[start + 1] == u'!' || isASCIILetter(units[start + 1]));
}

/// The text of a page as the options say. Nil when it has none.
NSString textOfPage(const NSString &page, const TextOptions &options) {
  const NSString text = options.simple ? stringByConvertingHtml2SimplifiedPlainText(page)
                                       : readableTextOfPage(page, {.nonUmlauted = options.plainAscii,
                                                                   .reformat = options.reformat,
                                                                   .onlyBody = options.body,
                                                                   .removeJunk = options.noJunk,
                                                                   .googleTags = options.googleTags});
  // A page without text is its own text for the library.
  return text.identicalTo(page) ? NSString() : text;
}

int writePage(const NSString &page, const std::string &name, const TextOptions &options) {
  const NSString text = textOfPage(page, options);
  if (!text) {
    writeMessage(name + ": has no text");
    return kExitNil;
  }
  writeText(text);
  return kExitAnswered;
}

/// Writes a page or plain text. `name` is what messages call the file.
int writeFileReadHere(const TypedPath &file, const std::string &name, const TextOptions &options,
                      bool isForPages) {
  const NSData data = readInput(*file.path.fileSystemRepresentation(), options.timeoutSeconds);
  const NSString text = textOfData(data);
  if (text.length() == 0) throw InputError(name, "the file is empty");
  if (isPageType(file.type) || isForPages || isPieceOfPage(file.path, text))
    return writePage(text, name, options);
  // Bytes of any kind are characters in some encoding, but no text has many zeros.
  if (text.view().find(u'\0') != std::u16string_view::npos && !stringWithDetectedEncoding(data.view()).string)
    throw InputError(name, "the file holds no text");
  writeLines(text);
  return kExitAnswered;
}

int runText(const TextOptions &options, const Operands &operands) {
  if (options.simple && (options.reformat || options.noJunk || options.googleTags || options.plainAscii))
    throw UsageError("--simple takes none of --reformat, --no-junk, --google-tags and --plain-ascii");
  const bool isForPages = options.reformat || options.simple || options.body || options.noJunk ||
                          options.googleTags || options.plainAscii;
  RegularInput input(operands.front(), options.timeoutSeconds);
  const std::vector<TypedPath> readings = input.readings();
  if (isForPages && !isReadHere(readings.front().type))
    throw UsageError(input.name() + ": the options are for pages, and its type is " +
                     readings.front().type.UTF8String());
  std::optional<DocumentText> refusal;
  for (const TypedPath &reading : readings) {
    if (isReadHere(reading.type)) return writeFileReadHere(reading, input.name(), options, isForPages);
    DocumentText document = textOfDocument(reading, options);
    if (!document.isRefused()) return writeDocumentText(document, input.name());
    // What is wrong with the file is told of the type that its name says.
    if (!refusal || reading.path == input.path()) refusal = std::move(document);
  }
  return writeDocumentText(*refusal, input.name());
}

}  // namespace

const std::vector<Command> &plainTextCommands() {
  static const std::vector<Command> commands = {
      {{.name = "text",
        .operands = "FILE",
        .summary = "the plain text of a page or any other file",
        .description = R"(
Prints the text that a person reads on a page, in UTF-8; of a page without text, nothing. The encoding is the
one that the page declares, else guessed; the layout is that of a browser, as far as text can show it. Plain text is
printed as it is; with an option it is taken for a page. The helper reads files of all other types. A file that
is not what its name says goes by its content, and so does standard input, FILE "-".)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .printsValue = false},
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
