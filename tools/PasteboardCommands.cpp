// SPDX-License-Identifier: Apache-2.0
#include "tools/PasteboardCommands.hpp"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "tools/Clipboard.hpp"
#include "tools/ClipboardReading.hpp"
#include "tools/ClipboardWriting.hpp"
#include "tools/ExitCode.hpp"
#include "tools/FileURLs.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/Output.hpp"
#include "tools/Pictures.hpp"
#include "tools/RichTextOutput.hpp"
#include "tools/URLOperands.hpp"

namespace nimbo {

namespace {

struct CopyOptions : CommonOptions {
  std::optional<std::string> file;
  std::optional<std::string> url;
  std::optional<std::string> title;
  std::optional<std::string> rtf;
  std::optional<std::string> image;
  std::optional<std::string> html;
};

struct PasteOptions : CommonOptions {
  std::optional<std::string> as;
  bool types = false;
  std::optional<std::string> output;
};

NSString pathOfFile(const std::string &file) {
  return NSString::stringWithFileSystemRepresentation(file);
}

/// The URL of a file, from which the references of a page begin; nil for standard input.
NSString baseOfFile(const std::string &file) {
  return file == "-" ? NSString() : NSURL::fileURLWithPath(pathOfFile(file)).absoluteString();
}

/// Words of the command line as they would be typed in a row.
NSString joined(const Operands &words) {
  std::string text;
  for (const std::string &word : words) text += (text.empty() ? "" : " ") + word;
  return NSString::stringWithLossyUTF8String(text);
}

int copyRTF(const std::string &file, const CopyOptions &options) {
  std::error_code unknown;
  const bool isFolder = file != "-" && std::filesystem::is_directory(file, unknown);
  const NSData data = isFolder ? NSData() : readInput(file, options.timeoutSeconds);
  if (isRTF(data)) {
    copyRichText(initWithRTF(data), data, options.timeoutSeconds);
    return kExitAnswered;
  }
  if (file == "-") throw InputError(nameOfInput(file), "is no RTF");
  const auto answer = clientWithOptions(options).attributedStringWithContentsOfFile(pathOfFile(file));
  return report(answer, file, [&](const id &result) {
    copyRichText(initWithRTFD(result.dictionary().objectForKey(u"Rtfd"_ns).data()), NSData(),
                 options.timeoutSeconds);
  });
}

int copyHTML(const std::string &file, const CopyOptions &options) {
  const NSData html = readInput(file, options.timeoutSeconds);
  if (html.length() == 0) throw InputError(nameOfInput(file), "the file is empty");
  const auto answer = clientWithOptions(options).RTFDWithHTML(html, baseOfFile(file), false);
  return report(answer, nameOfInput(file), [&](const id &result) {
    copyPage(textOfData(html), initWithRTFD(result.data()), options.timeoutSeconds);
  });
}

NSData pictureOfFile(const std::string &file, const NSString &type, const NSData &input, double seconds) {
  const PictureOrder order{.what = "picture", .path = pathOfFile(file), .type = type, .seconds = seconds};
  return input ? makePicture(order, input, nameOfInput(file)) : makePicture(order, file);
}

int copyImage(const std::string &file, const CopyOptions &options) {
  const NSData input = file == "-" ? readInput(file, options.timeoutSeconds) : NSData();
  const NSData tiff = pictureOfFile(file, u"public.tiff"_ns, input, options.timeoutSeconds);
  const NSData png = pictureOfFile(file, u"public.png"_ns, input, options.timeoutSeconds);
  copyPicture(tiff, png, options.timeoutSeconds);
  return kExitAnswered;
}

int runCopy(const CopyOptions &options, const Operands &operands) {
  const std::optional<std::string> *const sources[] = {&options.file, &options.url, &options.rtf,
                                                       &options.image, &options.html};
  const auto given = std::ranges::count_if(sources, [](const auto *source) { return source->has_value(); });
  if (given + (operands.empty() ? 0 : 1) > 1)
    throw UsageError("copy takes one of a text, --file, --url, --rtf, --image and --html");
  if (!options.url) refuseOptions(options, {"title"}, "copy without --url");
  if (!options.rtf && !options.html)
    refuseOptions(options, {"no-start", "wait"}, "copy without --rtf or --html");
  if (options.rtf) return copyRTF(pathOfFileArgument(*options.rtf), options);
  if (options.html) return copyHTML(pathOfFileArgument(*options.html), options);
  if (options.image) return copyImage(pathOfFileArgument(*options.image), options);
  if (options.url)
    copyURL(URLOfOperand(*options.url),
            options.title ? NSString::stringWithLossyUTF8String(*options.title) : NSString(),
            options.timeoutSeconds);
  else if (!operands.empty())
    copyText(joined(operands), options.timeoutSeconds);
  else
    copyText(textOfInput(options.file ? pathOfFileArgument(*options.file) : "-", options.timeoutSeconds),
             options.timeoutSeconds);
  return kExitAnswered;
}

void writeData(const NSData &data, const std::optional<std::string> &file) {
  if (file) return writeFile(data, *file);
  writeOutput(data.view());
}

void writeString(const NSString &string, const std::optional<std::string> &file) {
  const std::string bytes = string.UTF8String();
  writeData(NSData::dataWithBytes(bytes.data(), bytes.size()), file);
}

int pasteRichText(const PasteOptions &options) {
  if (!options.output || options.output->empty())
    throw UsageError("--as rtfd needs -o OUT.rtfd, the folder to write");
  HelperClient client = clientWithOptions(options);
  NSData rtfd;
  const int code = report(clipboardRichText(client, options.timeoutSeconds), kClipboardName,
                          [&](const id &result) { rtfd = result.data(); });
  return code != kExitAnswered ? code : writeRichText(client, rtfd, *options.output);
}

int runPaste(const PasteOptions &options, const Operands & /*operands*/) {
  const std::string_view form = options.as ? std::string_view(*options.as) : "text";
  if (options.types) {
    refuseOptions(options, {"as", "output"}, "--types");
    writeResult(clipboardTypes(options.timeoutSeconds), options);
    return kExitAnswered;
  }
  refuseOptions(options, {"pretty", "plist"}, "paste without --types");
  if (form == "rtfd") return pasteRichText(options);
  if (form == "text") {
    writeString(clipboardText(options.timeoutSeconds), options.output);
  } else if (form == "html") {
    writeString(clipboardPage(options.timeoutSeconds), options.output);
  } else {
    if (!options.output && ::isatty(STDOUT_FILENO))
      throw UsageError("a terminal shows no picture; -o names a file for it");
    writeData(clipboardPicture(options.timeoutSeconds), options.output);
  }
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &pasteboardCommands() {
  static const std::vector<Command> commands = {
      {{.name = "copy",
        .operands = "[TEXT...]",
        .summary = "a text, URL, picture or page to the clipboard",
        .description = R"(
Copies to the desktop's clipboard, where it stays when the command has ended, until something else is copied:
the text, a blank between operands; or what an option names; or standard input, without any of them. FILE "-"
is standard input. A page is offered as its source, as rich text and as plain text at once, a document as rich
text and as plain text, a picture as PNG and TIFF; other programs take what they like best.)",
        .maximumOperands = kAnyNumberOfOperands,
        .takesEmptyOperands = true,
        .fileOperands = 0,
        .printsValue = false},
       runCopy,
       {{"file", &CopyOptions::file, "FILE", "the text of a file"},
        {"url", &CopyOptions::url, "URL", "a URL, as such and as text"},
        {"title", &CopyOptions::title, "TEXT", "the title of the URL"},
        {"rtf", &CopyOptions::rtf, "FILE", "rich text: RTF, or what rtfd reads"},
        {"image", &CopyOptions::image, "FILE", "a picture"},
        {"html", &CopyOptions::html, "FILE", "a page"}}},
      {{.name = "paste",
        .summary = "what is on the clipboard, converted to what is asked for",
        .description = R"(
Prints what is on the desktop's clipboard as text: plain text, else the text of a table, a page or rich text,
else a URL. With --as html a page, which is made of rich text, a URL or text where there is none; with --as png
a picture; with --as rtfd the folder that -o names: rich text, else that of a page, a URL, text or a picture.
--types prints an array of the types of what is there.)",
        .fileOperands = 0},
       runPaste,
       {{"as",
         &PasteOptions::as,
         "FORM",
         "what to make of it: text, html, rtfd or png",
         {"text", "html", "rtfd", "png"}},
        {"output", &PasteOptions::output, "FILE", "the file to write (-o)"},
        {"types", &PasteOptions::types, nullptr, "list the types of what is there"}}},
  };
  return commands;
}

}  // namespace nimbo
