// SPDX-License-Identifier: Apache-2.0
#include "tools/PlainTextCommands.hpp"

#include <memory>
#include <utility>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "tools/DocumentText.hpp"
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

/// An input as a regular file, which its type is found by and the helper reads: the file itself, or what came
/// from standard input or a pipe.
struct RegularInput {
  RegularInput(const std::string &file, double patienceSeconds)
      : path(NSString::stringWithFileSystemRepresentation(file)) {
    if (file != "-" && typeOfFile(file) != u"public.item"_ns) return;
    const NSData data = readInput(file, patienceSeconds);
    NSError error;
    folder = PrivateFolder::make(&error);
    if (!folder) throw InputError(nameOfInput(file), error);
    path = folder->pathOf("input");
    if (!writeDataToFile(data, path, false))
      throw InputError(nameOfInput(file), "there is no room for temporary files");
  }

  NSString typeOfFile(const std::string &name) const {
    NSError error;
    NSString type = LSCopyItemContentType(path, &error);
    if (!type) throw InputError(name, error);
    return type;
  }

  NSString path;
  std::unique_ptr<PrivateFolder> folder;
};

/// Whether text that no name tells anything of begins with a tag, as pieces of pages do.
bool isPieceOfPage(const NSString &path, const NSString &text) {
  const std::u16string_view units = text.view();
  const std::size_t start = units.find_first_not_of(u" \t\r\n\f");
  return pathExtension(path).length() == 0 && start < units.size() && units[start] == u'<' &&
         start + 1 < units.size() && (units[start + 1] == u'!' || isASCIILetter(units[start + 1]));
}

void writePlainText(const NSString &text) {
  const std::string bytes = text.UTF8String();
  writeOutput(bytes.ends_with('\n') ? bytes : bytes + "\n");
}

void writePage(const NSString &page, const TextOptions &options) {
  if (options.simple)
    writeText(stringByConvertingHtml2SimplifiedPlainText(page));
  else
    writeText(withFewEmptyLines(
        stringByConvertingHtml2PlainTextNonUmlauted(page, options.plainAscii, options.reformat, options.body,
                                                    options.noJunk, nullptr, options.googleTags)));
}

int runText(const TextOptions &options, const Operands &operands) {
  if (options.simple && (options.reformat || options.noJunk || options.googleTags || options.plainAscii))
    throw UsageError("--simple takes none of --reformat, --no-junk, --google-tags and --plain-ascii");
  const bool isForPages = options.reformat || options.simple || options.body || options.noJunk ||
                          options.googleTags || options.plainAscii;
  const std::string name = nameOfInput(operands.front());
  const RegularInput input(operands.front(), options.timeoutSeconds);
  const NSString type = input.typeOfFile(name);
  const bool isPage = type == u"public.html"_ns || type == u"public.xhtml"_ns;
  const bool isPlainText = type == u"public.plain-text"_ns;
  if (!isPage && !isPlainText) {
    if (isForPages)
      throw UsageError(name + ": the options are for pages, and its type is " + type.UTF8String());
    return isPostScriptType(type) ? writeTextOfPostScript(input.path, name, options)
                                  : writeTextOfDocument(input.path, name, options);
  }
  const auto path = input.path.fileSystemRepresentation();
  const NSString text = textOfInput(*path, options.timeoutSeconds);
  if (text.length() == 0) throw InputError(name, "the file is empty");
  if (isPage || isForPages || isPieceOfPage(input.path, text))
    writePage(text, options);
  else
    writePlainText(text);
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &plainTextCommands() {
  static const std::vector<Command> commands = {
      {{.name = "text",
        .operands = "FILE",
        .summary = "the plain text of a page or any other file",
        .description = R"(
Prints the text that a person reads on a page, in UTF-8; of a page without text, the page. The encoding is the
one that the page declares, else guessed. Of empty lines in a row one is printed. Plain text is printed as it
is; with an option it is taken for a page. The helper reads files of all other types. FILE "-" is standard
input, whose type is found by its content.)",
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
