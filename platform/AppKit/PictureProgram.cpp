// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/PictureProgram.hpp"

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/Foundation/System/ChildProcess.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"

namespace nimbo {

namespace {

constexpr std::uint32_t kMaximumPictureBytes = 512 << 20;
#ifdef __SANITIZE_ADDRESS__
// The sanitizer reserves nearly all addresses, and cannot look for leaks in a confined process.
constexpr std::uint64_t kMemoryBytes = UINT64_MAX;
const std::vector<std::pair<NSString, NSString>> kEnvironment = {{u"ASAN_OPTIONS"_ns, u"detect_leaks=0"_ns}};
#else
constexpr std::uint64_t kMemoryBytes = std::uint64_t{4} << 30;
const std::vector<std::pair<NSString, NSString>> kEnvironment;
#endif

NSString stringWithNumber(auto number) {
  return NSString::stringWithUTF8String(std::to_string(number));
}

}  // namespace

NSData makePicture(const PictureOrder &order, NSError *error) {
  const NSString program =
      NSString::stringWithFileSystemRepresentation(installedProgram("quiverleaf-pictures"));
  if (program.length() == 0) {
    setError(error, ErrorCode::unsupportedType, "the program that makes pictures is not installed");
    return {};
  }
  // The program works in a folder of its own.
  std::error_code gone;
  const auto file = std::filesystem::absolute(order.path.fileSystemRepresentation().value_or(""), gone);
  if (gone) {
    setError(error, ErrorCode::noSuchFile, "the working directory is gone");
    return {};
  }
  const auto folder = PrivateFolder::make(error);
  if (!folder) return {};
  const ChildProgram child{
      .launchPath = program,
      .arguments = {NSString::stringWithUTF8String(order.what),
                    NSString::stringWithFileSystemRepresentation(file.native()), stringWithNumber(order.side),
                    order.type, stringWithNumber(order.seconds)},
      .environment = kEnvironment,
      .maximumOutputBytes = kMaximumPictureBytes};
  const auto process =
      ChildProcess::start(child, {.writableFolders = {folder->path()}, .memoryBytes = kMemoryBytes}, error);
  // It keeps to the time by itself; this is for when it does not.
  constexpr double kPatienceSeconds = 2;
  const auto result =
      process ? process->waitUntilExit(Deadline::after(order.seconds + kPatienceSeconds), error) : std::nullopt;
  if (!result) return {};
  if (result->terminationStatus == 0) return result->standardOutput;
  if (error)
    *error = NSError::errorWithCode(static_cast<ErrorCode>(result->terminationStatus),
                                    result->standardError.UTF8String());
  return {};
}

NSData makePicture(PictureOrder order, const NSData &bytes, NSError *error) {
  const auto folder = PrivateFolder::make(error);
  if (!folder) return {};
  order.path = folder->pathOf("input");
  if (writeDataToFile(bytes, order.path, false)) return makePicture(order, error);
  setError(error, ErrorCode::other, "there is no room for temporary files");
  return {};
}

}  // namespace nimbo
