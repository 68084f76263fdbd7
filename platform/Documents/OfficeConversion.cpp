// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/OfficeConversion.hpp"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/ChildProcess.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kChildProgram = "quiverleaf-office";
constexpr std::string_view kContent = "content.xml";
/// Over its life; a document has its own time on the clock.
constexpr std::uint32_t kProcessorSeconds = 3600;
constexpr std::uint32_t kOpenFiles = 512;
constexpr std::size_t kLongestExtension = 8;

constexpr const char *kProgramFolders[] = {"/usr/lib/libreoffice/program", "/usr/lib64/libreoffice/program",
                                           "/usr/local/lib/libreoffice/program", "/opt/libreoffice/program"};

/// Where LibreOffice's programs are; nil when it is not there.
NSString programFolder(const OfficeOptions &options) {
  const auto isLibreOffice = [](const std::string &folder) {
    std::error_code error;
    return std::filesystem::exists(folder + "/libmergedlo.so", error) ||
           std::filesystem::exists(folder + "/libsofficeapp.so", error);
  };
  if (options.programFolder) {
    const auto folder = options.programFolder.fileSystemRepresentation();
    return folder && isLibreOffice(*folder) ? options.programFolder : NSString();
  }
  const auto found = std::ranges::find_if(kProgramFolders, isLibreOffice);
  return found == std::end(kProgramFolders) ? NSString() : NSString::stringWithUTF8String(*found);
}

NSString childProgram(const OfficeOptions &options) {
  return options.childProgram ? options.childProgram
                              : NSString::stringWithFileSystemRepresentation(installedProgram(kChildProgram));
}

/// Why LibreOffice reads no document of that type: systems install its parts apart. Null when it may read it.
const char *reasonOfMissingPart(const NSString &programFolder, const NSString &type) {
  constexpr struct {
    std::u16string_view kind;
    const char *library, *reason;
  } kParts[] = {
      {u"excel", "libsclo.so", "LibreOffice Calc, which reads spreadsheets, is not installed"},
      {u"spreadsheet", "libsclo.so", "LibreOffice Calc, which reads spreadsheets, is not installed"},
      {u"powerpoint", "libsdlo.so", "LibreOffice Impress, which reads presentations, is not installed"},
      {u"presentation", "libsdlo.so", "LibreOffice Impress, which reads presentations, is not installed"},
      {u"graphics", "libsdlo.so", "LibreOffice Draw, which reads drawings, is not installed"}};
  const std::filesystem::path folder = programFolder.fileSystemRepresentation().value_or("");
  std::error_code error;
  // Where the writer has no library of its own, all are in one.
  if (!std::filesystem::exists(folder / "libswlo.so", error)) return nullptr;
  const auto *const part = std::ranges::find_if(
      kParts, [&](const auto &one) { return type.view().find(one.kind) != std::u16string_view::npos; });
  return part == std::end(kParts) || std::filesystem::exists(folder / part->library, error) ? nullptr
                                                                                            : part->reason;
}

/// LibreOffice looks at the name of a file, too. The name is made of nothing else, whatever the document is
/// called.
std::string copyName(const NSString &path) {
  std::string name = "document";
  const std::string extension = pathExtension(path).UTF8String();
  if (!extension.empty() && extension.size() <= kLongestExtension &&
      std::ranges::all_of(extension, isASCIIAlphanumeric<char>))
    name += "." + extension;
  return name;
}

/// Copies a regular file of no more than `most` bytes.
bool copyFile(const NSString &path, const std::string &target, std::uint64_t most, NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor source = openRegularFile(path, &size, error);
  if (!source) return false;
  if (size > most) {
    setError(error, ErrorCode::tooLarge, "the document is too large");
    return false;
  }
  constexpr mode_t kOwnersAlone = 0600;
  const FileDescriptor copy(::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnersAlone));
  // It may grow while it is read.
  ssize_t sent = copy ? 1 : -1;
  for (std::uint64_t left = most; left > 0 && (sent > 0 || (sent < 0 && copy && errno == EINTR));) {
    sent = ::sendfile(copy.get(), source.get(), nullptr, left);
    if (sent > 0) left -= static_cast<std::uint64_t>(sent);
  }
  if (sent < 0)
    setError(error, ErrorCode::other,
             "the document cannot be copied: " + std::generic_category().message(errno));
  return sent >= 0;
}

}  // namespace

struct OfficeConversion::Process {
  pid_t owner = ::getpid();
  std::unique_ptr<PrivateFolder> folder;
  std::unique_ptr<ChildProcess> child;
  std::uint32_t documents = 0;
  std::uint64_t memoryBytes = 0;
};

OfficeConversion::OfficeConversion(OfficeOptions options) : options_(std::move(options)) {}

/// A copy of this process that ends has no part in what this one has started.
OfficeConversion::~OfficeConversion() {
  if (process_ && process_->owner != ::getpid()) [[maybe_unused]]
    Process *const another = process_.release();
}

OfficeConversion &OfficeConversion::sharedConversion() {
  static OfficeConversion shared;
  return shared;
}

bool OfficeConversion::isAvailable(NSError *error) const {
  const bool hasOffice = static_cast<bool>(programFolder(options_));
  const bool isWhole = hasOffice && childProgram(options_).length() > 0;
  if (!isWhole)
    setError(error, ErrorCode::unsupportedType,
             hasOffice ? "the program that reads documents with LibreOffice is not installed"
                       : "LibreOffice, which reads documents of this kind, is not installed");
  return isWhole;
}

Protections OfficeConversion::protections() const {
  return process_ ? process_->child->protections() : Protections();
}

void OfficeConversion::endProcess() {
  process_.reset();
}

bool OfficeConversion::startProcess(NSError *error) {
  auto process = std::make_unique<Process>();
  process->folder = PrivateFolder::make(error);
  if (!process->folder) return false;
  const NSString office = programFolder(options_), program = childProgram(options_);
  Confinement confinement{.writableFolders = {process->folder->path()},
                          .readablePaths = Confinement::systemPaths(),
                          .memoryBytes = options_.memoryBytes,
                          .processorSeconds = kProcessorSeconds,
                          .fileBytes = options_.contentBytes,
                          .openFiles = kOpenFiles};
  confinement.readablePaths.insert(confinement.readablePaths.end(), {office, program});
  process->child = ChildProcess::start({.launchPath = program,
                                        .arguments = {office, process->folder->pathOf("profile")},
                                        .environment = {{u"SAL_USE_VCLPLUGIN"_ns, u"svp"_ns}}},
                                       confinement, error);
  if (!process->child) return false;
  process_ = std::move(process);
  return true;
}

NSData OfficeConversion::flatDocumentWithContentsOfFile(const NSString &path, const Deadline &deadline,
                                                        NSError *error) {
  if (!isAvailable(error)) return NSData();
  if (const char *const missing = reasonOfMissingPart(programFolder(options_), LSCopyItemContentType(path))) {
    setError(error, ErrorCode::unsupportedType, missing);
    return NSData();
  }
  const Deadline end = earliest(deadline, Deadline::after(options_.seconds));
  if (process_ && (process_->documents >= options_.documentsPerProcess ||
                   process_->memoryBytes > options_.keptMemoryBytes || !process_->child->isRunning()))
    endProcess();
  const bool wasWarm = process_ != nullptr;
  if (!process_ && !startProcess(error)) return NSData();

  const std::string source = process_->folder->pathOf(copyName(path)).UTF8String();
  const std::string content = process_->folder->pathOf(kContent).UTF8String();
  const auto removeFiles = [&] {
    std::error_code ignored;
    std::filesystem::remove(source, ignored);
    std::filesystem::remove(content, ignored);
  };
  removeFiles();
  if (!copyFile(path, source, options_.documentBytes, error)) {
    removeFiles();
    return NSData();
  }
  NSError failure;
  const auto reply = process_->child->exchange(source + "\n" + content, end, &failure);
  ++process_->documents;
  if (!reply) {
    const bool hadEnded = wasWarm && failure.errorCode() == ErrorCode::other &&
                          process_->child->reasonOfEnd() == "the program ended with exit code 0";
    endProcess();
    // It ends by itself when it is idle, perhaps at this very moment.
    if (hadEnded) return flatDocumentWithContentsOfFile(path, end, error);
    if (failure.errorCode() == ErrorCode::other) failure.code = static_cast<std::int64_t>(ErrorCode::damaged);
    if (error) *error = failure;
    return NSData();
  }
  const std::size_t middle = std::min(reply->find('\n'), reply->size() - 1);
  std::from_chars(reply->data(), reply->data() + middle, process_->memoryBytes);
  NSData result;
  if (const std::string reason = reply->substr(middle + 1); !reason.empty()) {
    setError(error, ErrorCode::damaged, reason);
  } else {
    std::uint64_t size = 0;
    const FileDescriptor file = process_->folder->openFile(kContent, &size, error);
    if (file && size <= options_.contentBytes)
      result = readData(file.get(), size, options_.contentBytes, error);
    else if (file)
      setError(error, ErrorCode::tooLarge, "the content of the document is too large");
  }
  removeFiles();
  return result;
}

}  // namespace nimbo
