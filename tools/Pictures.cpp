// SPDX-License-Identifier: Apache-2.0
#include "tools/Pictures.hpp"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/ChildProcess.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "tools/CommandLine.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

constexpr std::string_view kProgram = "quiverleaf-pictures";
constexpr std::uint32_t kMaximumPictureBytes = 512 << 20;
#ifdef __SANITIZE_ADDRESS__
// The sanitizer reserves nearly all addresses, and cannot look for leaks in a confined process.
constexpr std::uint64_t kMemoryBytes = UINT64_MAX;
const std::vector<std::pair<NSString, NSString>> kEnvironment = {{u"ASAN_OPTIONS"_ns, u"detect_leaks=0"_ns}};
#else
constexpr std::uint64_t kMemoryBytes = std::uint64_t{4} << 30;
const std::vector<std::pair<NSString, NSString>> kEnvironment;
#endif
/// The longest side that a picture may have.
constexpr std::uint32_t kMaximumSide = 32'767;

NSString stringWithNumber(double number) {
  return NSString::stringWithUTF8String(std::to_string(number));
}

/// A folder and a file in it with the bytes.
std::unique_ptr<PrivateFolder> folderWithFile(const NSData &bytes, NSString *path, const std::string &name) {
  NSError error;
  auto folder = PrivateFolder::make(&error);
  if (!folder) throw InputError(name, error);
  *path = folder->pathOf("input");
  if (!writeDataToFile(bytes, *path, false)) throw InputError(name, "there is no room for temporary files");
  return folder;
}

}  // namespace

NSString typeOfPictureFile(const std::string &file) {
  constexpr struct {
    std::string_view extension;
    const char16_t *type;
  } kTypes[] = {{".tiff", u"public.tiff"}, {".tif", u"public.tiff"},  {".png", u"public.png"},
                {".jpg", u"public.jpeg"},  {".jpeg", u"public.jpeg"}, {".webp", u"org.webmproject.webp"}};
  const auto *const found = std::ranges::find_if(
      kTypes, [&](const auto &one) { return endsWithASCIINoCase(std::string_view(file), one.extension); });
  if (found == std::end(kTypes))
    throw UsageError("-o takes the name of a .tiff, .png, .jpeg or .webp file, not '" + file + "'");
  return NSString::stringWithCharacters(found->type);
}

std::optional<std::uint32_t> numberOfPixels(const std::optional<std::string> &option) {
  if (!option) return std::nullopt;
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(option->data(), option->data() + option->size(), number);
  if (error != std::errc() || end != option->data() + option->size() || number == 0 || number > kMaximumSide)
    throw UsageError("--size takes a number of pixels from 1 to " + std::to_string(kMaximumSide) + ", not '" +
                     *option + "'");
  return number;
}

NSData makePicture(const PictureOrder &order, const std::string &name) {
  // The program works in a folder of its own.
  std::error_code gone;
  const auto file = std::filesystem::absolute(order.path.fileSystemRepresentation().value_or(""), gone);
  if (gone) throw InputError(name, "the working directory is gone");
  const NSString program = NSString::stringWithFileSystemRepresentation(installedProgram(kProgram));
  if (program.length() == 0) throw InputError(name, "the program that makes pictures is not installed");
  NSError error;
  const auto folder = PrivateFolder::make(&error);
  const Confinement confinement{.writableFolders = {folder ? folder->path() : NSString()},
                                .memoryBytes = kMemoryBytes};
  const ChildProgram child{.launchPath = program,
                           .arguments = {NSString::stringWithUTF8String(order.what),
                                         NSString::stringWithFileSystemRepresentation(file.native()),
                                         NSString::stringWithUTF8String(std::to_string(order.side)), order.type,
                                         stringWithNumber(order.seconds)},
                           .environment = kEnvironment,
                           .maximumOutputBytes = kMaximumPictureBytes};
  // It keeps to the time by itself; this is for when it does not.
  constexpr double kPatienceSeconds = 2;
  const auto process = folder ? ChildProcess::start(child, confinement, &error) : nullptr;
  const auto result = process
                          ? process->waitUntilExit(Deadline::after(order.seconds + kPatienceSeconds), &error)
                          : std::nullopt;
  if (!result) throw InputError(name, error);
  if (result->terminationStatus != 0)
    throw InputError(name, NSError::errorWithCode(static_cast<ErrorCode>(result->terminationStatus),
                                                  result->standardError.UTF8String()));
  return result->standardOutput;
}

NSData makePicture(PictureOrder order, const NSData &bytes, const std::string &name) {
  const auto folder = folderWithFile(bytes, &order.path, name);
  return makePicture(order, name);
}

}  // namespace nimbo
