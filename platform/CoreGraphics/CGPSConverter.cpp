// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/CGPSConverter.hpp"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/CoreGraphics/EPSBoundingBox.hpp"
#include "platform/CoreGraphics/PostScriptFile.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/System/ChildProcess.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

constexpr const char *kPrograms[] = {"/usr/bin/gs", "/usr/local/bin/gs", "/opt/ghostscript/bin/gs"};

/// The names of the files in the child's folder.
constexpr std::string_view kInputName = "input.ps";
constexpr std::string_view kOutputName = "output.pdf";

constexpr std::uint32_t kMaximumPDFBytes = 256 << 20;
/// What a document prints while it is drawn, and why it failed.
constexpr std::uint32_t kMaximumMessageBytes = 1 << 20;
constexpr std::uint64_t kAddressSpaceBytes = std::uint64_t{1} << 30;
/// What documents may allocate, below that of the whole process, so that they fail by an error of the language.
constexpr std::uint32_t kDocumentKilobytes = 512 << 10;
constexpr std::uint32_t kProcessorSeconds = 60;

/// Comments that tell Ghostscript the page of EPS, for in front of the program: it does not look for a box at
/// the end, nor behind anything but comments. Empty for other programs, and without a box.
std::string commentsOfPage(std::string_view firstLine, std::string_view program) {
  const auto box = isFirstLineOfEPS(firstLine) ? boundingBoxOfPostScript(program) : std::nullopt;
  if (!box) return {};
  std::string comments = "%!PS-Adobe-3.0 EPSF-3.0\n%%HiResBoundingBox:";
  for (const double number :
       {box->origin.x, box->origin.y, box->origin.x + box->size.width, box->origin.y + box->size.height})
    comments += stringWithFormat(u" %@", number).UTF8String();
  return comments + "\n%%EndComments\n";
}

bool writeProgram(std::string_view comments, std::string_view program, const NSString &path, NSError *error) {
  constexpr mode_t kOwnersAlone = 0600;
  const FileDescriptor file(
      ::open(path.UTF8String().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnersAlone));
  const bool isWritten = file && writeAll(file.get(), comments) && writeAll(file.get(), program);
  if (!isWritten)
    setError(error, ErrorCode::other,
             "the PostScript cannot be copied: " + std::generic_category().message(errno));
  return isWritten;
}

/// Its language's own file operators are off; what it prints goes to the standard output, errors included.
std::vector<NSString> argumentsOfGhostscript(const PrivateFolder &folder, std::uint32_t pages, bool isCropped) {
  const auto argument = [](const std::string &text) { return NSString::stringWithUTF8String(text); };
  const auto path = [&](std::string_view name) { return folder.pathOf(name).UTF8String(); };
  const std::string count = std::to_string(pages);
  return {argument("-q"), argument("-dSAFER"), argument("-dBATCH"), argument("-dNOPAUSE"),
          argument("-dNOPROMPT"), argument("-K" + std::to_string(kDocumentKilobytes)),
          argument("-sDEVICE=pdfwrite"), argument(isCropped ? "-dEPSCrop" : "-dNOEPS"),
          argument("-dAutoRotatePages=/None"),
          // The size of pages that have none is the same everywhere.
          argument("-sPAPERSIZE=letter"), argument("-dLastPage=" + count),
          argument("-sOutputFile=" + path(kOutputName)),
          // Pages behind the last one would be computed without being written, for ever where they do not end.
          argument("-c"), argument("<</EndPage {exch " + count + " ge {quit} if 2 ne}>> setpagedevice"),
          argument("-f"), argument(path(kInputName))};
}

/// Tells why Ghostscript gave up, by the error's name in its language and by where it was.
void setErrorOfGhostscript(NSError *error, const ChildResult &result) {
  constexpr std::string_view kMark = "Error: /";
  constexpr std::size_t kLongestReason = 100;
  const std::string_view output = result.standardOutput.view();
  const std::size_t mark = output.rfind(kMark);
  if (mark == std::string_view::npos) {
    setError(error, ErrorCode::damaged,
             "Ghostscript ended with exit code " + std::to_string(result.terminationStatus));
    return;
  }
  std::string reason(output.substr(mark + kMark.size(), kLongestReason));
  reason.resize(std::min(reason.find('\n'), reason.size()));
  if (reason.starts_with("VMerror"))
    setError(error, ErrorCode::memoryLimit, "the PostScript needs too much memory");
  else
    setError(error, ErrorCode::damaged, "the PostScript is faulty: " + reason);
}

}  // namespace

NSData PDFDataWithPostScript(const NSData &postScript, const PostScriptLimits &limits, NSError *error) {
  const std::string_view bytes = postScriptPart(postScript.view()), line = firstLineOfPostScript(bytes);
  if (line.empty() || limits.maximumPages == 0) {
    setError(error, ErrorCode::unsupportedType, line.empty() ? "it is no PostScript" : "no page is asked for");
    return NSData();
  }
  const auto *const program = std::ranges::find_if(kPrograms, isProgram);
  if (program == std::end(kPrograms)) {
    setError(error, ErrorCode::unsupportedType, "Ghostscript, which reads PostScript, is not installed");
    return NSData();
  }
  const auto folder = PrivateFolder::make(error);
  const std::string comments = commentsOfPage(line, bytes);
  if (!folder || !writeProgram(comments, bytes, folder->pathOf(kInputName), error)) return NSData();
  const Confinement confinement{.writableFolders = {folder->path()},
                                .readablePaths = Confinement::systemPaths(),
                                .memoryBytes = kAddressSpaceBytes,
                                .processorSeconds = kProcessorSeconds,
                                .fileBytes = kMaximumPDFBytes};
  const std::uint32_t pages = isFirstLineOfEPS(line) ? 1 : limits.maximumPages;
  const auto child =
      ChildProcess::start({.launchPath = NSString::stringWithUTF8String(*program),
                           .arguments = argumentsOfGhostscript(*folder, pages, !comments.empty()),
                           .maximumOutputBytes = kMaximumMessageBytes},
                          confinement, error);
  const auto result = child ? child->waitUntilExit(limits.deadline, error) : std::nullopt;
  if (!result) return NSData();
  // A run that fails leaves a small PDF all the same.
  if (result->terminationStatus != 0) {
    setErrorOfGhostscript(error, *result);
    return NSData();
  }
  std::uint64_t size = 0;
  const FileDescriptor file = folder->openFile(kOutputName, &size, error);
  return file ? readData(file.get(), size, kMaximumPDFBytes, error) : NSData();
}

}  // namespace nimbo
