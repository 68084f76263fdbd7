// SPDX-License-Identifier: Apache-2.0
#include "tools/PictureCommands.hpp"

#include <optional>
#include <string>

#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "tools/ContactSheet.hpp"
#include "tools/DocumentText.hpp"
#include "tools/ExitCode.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"
#include "tools/Pictures.hpp"

namespace nimbo {

namespace {

/// The longer side of the helper's thumbnails, in pixels.
constexpr std::uint32_t kThumbnailSide = 256;

struct ThumbnailOptions : CommonOptions {
  bool text = false;
  bool spotlight = false;
  std::optional<std::string> output;
  std::optional<std::string> size;
};

struct PDFFormOptions : CommonOptions {
  std::optional<std::string> output;
};

struct PosterOptions : CommonOptions {
  bool cover = false;
  std::optional<std::string> output;
  std::optional<std::string> size;
};

struct SheetOptions : CommonOptions {
  std::optional<std::string> output;
  std::optional<std::string> size;
};

NSString pathOfOperand(const char *command, const std::string &file) {
  if (file == "-") throw UsageError(std::string(command) + " needs a file with a name, not standard input");
  return NSString::stringWithFileSystemRepresentation(file);
}

/// Where a picture goes, and in which size.
struct PictureOutput {
  PictureOutput(const std::optional<std::string> &output, const std::optional<std::string> &size,
                std::uint32_t mostPixels = kMaximumPictureSide)
      : side(numberOfPixels(size, mostPixels)) {
    if (!output && size) throw UsageError("--size needs -o, the file to write");
    if (!output) return;
    file = *output;
    type = typeOfPictureFile(file);
  }

  /// Writes the TIFF of an answer, scaled and converted as asked for.
  void write(const NSData &tiff, const std::string &name, double seconds) const {
    const bool isAsItIs = !side && type == u"public.tiff"_ns;
    writeFile(isAsItIs
                  ? tiff
                  : makePicture({.what = "picture", .side = side.value_or(0), .type = type, .seconds = seconds},
                                tiff, name),
              file);
  }

  /// The longest side in pixels; without one the picture stays as it is.
  std::optional<std::uint32_t> side;
  /// Empty when nothing is written.
  std::string file;
  NSString type;
};

/// Writes the picture in an answer as the options say, and prints what else there is. Without an output all is
/// printed.
int reportPicture(const HelperClient::Answer &answer, const std::string &name, const PictureOutput &output,
                  const CommonOptions &options) {
  if (output.file.empty()) return report(answer, name, options);
  bool hasPicture = false;
  const int code = report(answer, name, [&](const id &result) {
    NSDictionary rest = result.dictionary();
    const NSData tiff = rest.objectForKey(u"Thumbnail"_ns).data();
    hasPicture = static_cast<bool>(tiff);
    if (!tiff) return;
    output.write(tiff, name, options.timeoutSeconds);
    rest.removeObjectForKey(u"Thumbnail"_ns);
    writeResult(rest, options);
  });
  if (code != kExitAnswered || hasPicture) return code;
  if (answer.code == ErrorCode::none) writeMessage(name + ": there is no picture of it");
  return exitCodeForError(answer.code);
}

/// Whether it becomes a PDF first: PostScript, and folders with a PDF.
bool isDrawnAsPDF(const NSString &path) {
  bool isFolder = false;
  NSFileManager::fileExistsAtPath(path, &isFolder);
  return isFolder || isPostScriptType(LSCopyItemContentType(path));
}

/// A picture that is larger than the helper's, which this program has made.
NSData largePicture(HelperClient &client, const NSString &path, const std::string &name,
                    const PictureOutput &output, double seconds) {
  const PictureOrder order{
      .what = "picture", .path = path, .side = *output.side, .type = output.type, .seconds = seconds};
  if (!isDrawnAsPDF(path)) return makePicture(order, name);
  const NSData pdf = client.PDFImageRepOfFile(path).result.data();
  return pdf ? makePicture(order, pdf, name) : NSData();
}

int runImage(const ThumbnailOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  const NSString path = pathOfOperand("image", file);
  const PictureOutput output(options.output, options.size);
  if (options.spotlight && !options.text) throw UsageError("--spotlight needs --text");
  HelperClient client = clientWithOptions(options);
  auto answer = client.imageWithContentsOfFile(path, options.text, options.spotlight);
  NSDictionary result = answer.result.dictionary();
  const bool isLarge = output.side && *output.side > kThumbnailSide;
  if (isLarge && result.objectForKey(u"Thumbnail"_ns)) {
    const NSData large = largePicture(client, path, file, output, options.timeoutSeconds);
    if (large) {
      writeFile(large, output.file);
      result.removeObjectForKey(u"Thumbnail"_ns);
      answer.result = result;
      return report(answer, file, options);
    }
  }
  return reportPicture(answer, file, output, options);
}

int runPDFForm(const PDFFormOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  const NSString path = pathOfOperand("topdf", file);
  if (!options.output || options.output->empty()) throw UsageError("topdf needs -o OUT.pdf, the file to write");
  return report(clientWithOptions(options).PDFImageRepOfFile(path), file,
                [&](const id &result) { writeFile(result.data(), *options.output); });
}

bool isMovie(const NSDictionary &poster) {
  return poster.objectForKey(u"Thumbnail"_ns) || poster.objectForKey(u"Duration"_ns).real().value_or(0) > 0;
}

int runPoster(const PosterOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  const NSString path = pathOfOperand("poster", file);
  const PictureOutput output(options.output, options.size);
  if (!options.cover) {
    auto answer = clientWithOptions(options).posterImageForMovieWithFile(path);
    // Of what is no movie the helper tells a duration and a size of nothing.
    if (answer.code != ErrorCode::none && !isMovie(answer.result.dictionary()))
      answer.result = NSDictionary::dictionary();
    return reportPicture(answer, file, output, options);
  }
  refuseOptions(options, {"no-start", "wait", "pretty", "plist"}, "--cover");
  if (output.file.empty()) throw UsageError("--cover needs -o, the file to write");
  writeFile(makePicture({.what = "cover",
                         .path = path,
                         .side = output.side.value_or(0),
                         .type = output.type,
                         .seconds = options.timeoutSeconds},
                        file),
            output.file);
  return kExitAnswered;
}

int runSheet(const SheetOptions &options, const Operands &operands) {
  constexpr std::uint32_t kUsualSide = 192;
  const PictureOutput output(options.output, options.size, kThumbnailSide);
  if (output.file.empty()) throw UsageError("sheet needs -o SHEET.png, the file to write");
  const std::uint32_t side = output.side.value_or(kUsualSide);
  HelperClient client = clientWithOptions(options);
  // Without a helper there would be no pictures at all.
  HelperClient::Answer failure;
  if (client.helperProcessIdentifier(&failure) == 0) return report(failure, output.file, options);
  const NSData sheet = contactSheetOfFiles(client, operands, side, output.type);
  writeFile(sheet, output.file);
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &pictureCommands() {
  static const std::vector<Command> commands = {
      {{.name = "image",
        .operands = "FILE",
        .summary = "a thumbnail and the facts of an image, a PDF or PostScript",
        .description = R"(
Prints "Thumbnail", TIFF data of 256 pixels at most, and for an image "Properties", what the file says of
itself; for other files, and with --text, "Size" in points, "PixelSize" and "Alpha" instead. With -o the
thumbnail is written as a TIFF, PNG, JPEG or WebP file, by the file's extension, and what else there is is
printed. With --text, of a PDF and of PostScript, "String" and what "quiverleaf pdf" prints, too.)",
        .minimumOperands = 1,
        .maximumOperands = 1},
       runImage,
       {{"text", &ThumbnailOptions::text, nullptr, "the text of a PDF or of PostScript, too"},
        {"spotlight", &ThumbnailOptions::spotlight, nullptr, "ask the metadata importers for that text first"},
        {"output", &ThumbnailOptions::output, "FILE", "the picture to write (-o)"},
        {"size", &ThumbnailOptions::size, "N", "the most pixels of the written picture's longer side"}}},
      {{.name = "topdf",
        .operands = "FILE",
        .summary = "PostScript, or what else has a form as PDF, as PDF",
        .description = R"(
Writes PostScript, EPS, Illustrator files with a PDF in them and PDFs as a PDF file, which -o names.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .printsValue = false},
       runPDFForm,
       {{"output", &PDFFormOptions::output, "FILE", "the file to write (-o)"}}},
      {{.name = "poster",
        .operands = "FILE",
        .summary = "a frame and the duration of a movie",
        .description = R"(
Prints "Duration" in seconds, "Size" in points and "Thumbnail", TIFF data of the frame in the middle, but not
behind the 15th second. With -o the frame is written as a TIFF, PNG, JPEG or WebP file, by the file's
extension, and what else there is is printed. With --cover the picture that comes with a sound or a movie is
written instead, which is no frame of it.)",
        .minimumOperands = 1,
        .maximumOperands = 1},
       runPoster,
       {{"cover", &PosterOptions::cover, nullptr, "write the picture that comes with the file"},
        {"output", &PosterOptions::output, "FILE", "the picture to write (-o)"},
        {"size", &PosterOptions::size, "N", "the most pixels of the written picture's longer side"}}},
      {{.name = "sheet",
        .operands = "PATH...",
        .summary = "thumbnails of files side by side",
        .description = R"(
Writes one picture with the thumbnails of files and of the files in folders, each with its name below; in
place of one that cannot be made stands the kind of the file. -o names it, a TIFF, PNG, JPEG or WebP file.)",
        .minimumOperands = 1,
        .maximumOperands = kAnyNumberOfOperands,
        .printsValue = false},
       runSheet,
       {{"output", &SheetOptions::output, "FILE", "the picture to write (-o)"},
        {"size", &SheetOptions::size, "N", "the most pixels of a thumbnail's longer side; 192 by default"}}},
  };
  return commands;
}

}  // namespace nimbo
