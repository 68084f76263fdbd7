// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/PictureConversion.hpp"

#include <cstdint>
#include <string>

#include "platform/Foundation/System/ChildProcess.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"

namespace nimbo::detail {
namespace {

constexpr std::uint32_t kMaximumPictureBytes = 512 << 20;
constexpr double kSeconds = 10, kPatienceSeconds = 2;

/// What the sanitizer cannot do in a confined process: it reserves nearly all addresses, and looks for leaks.
ChildProgram picturesProgram() {
  ChildProgram program{
      .launchPath = NSString::stringWithFileSystemRepresentation(installedProgram("quiverleaf-pictures")),
      .maximumOutputBytes = kMaximumPictureBytes};
#ifdef __SANITIZE_ADDRESS__
  program.environment = {{u"ASAN_OPTIONS"_ns, u"detect_leaks=0"_ns}};
#endif
  return program;
}

#ifdef __SANITIZE_ADDRESS__
constexpr std::uint64_t kMemoryBytes = UINT64_MAX;
#else
constexpr std::uint64_t kMemoryBytes = std::uint64_t{4} << 30;
#endif

}  // namespace

NSData convertedPicture(const NSData &picture, const NSString &type, NSError *error) {
  ChildProgram program = picturesProgram();
  if (program.launchPath.length() == 0) {
    setError(error, ErrorCode::unsupportedType, "the program that makes pictures is not installed");
    return {};
  }
  const auto folder = PrivateFolder::make(error);
  if (!folder) return {};
  const NSString path = folder->pathOf("picture");
  if (!writeDataToFile(picture, path, false)) {
    setError(error, ErrorCode::other, "there is no room for temporary files");
    return {};
  }
  program.arguments = {u"picture"_ns, path, u"0"_ns, type,
                       NSString::stringWithUTF8String(std::to_string(kSeconds))};
  const auto child =
      ChildProcess::start(program, {.writableFolders = {folder->path()}, .memoryBytes = kMemoryBytes}, error);
  const auto result =
      child ? child->waitUntilExit(Deadline::after(kSeconds + kPatienceSeconds), error) : std::nullopt;
  if (!result) return {};
  if (result->terminationStatus == 0) return result->standardOutput;
  if (error)
    *error = NSError::errorWithCode(static_cast<ErrorCode>(result->terminationStatus),
                                    result->standardError.UTF8String());
  return {};
}

}  // namespace nimbo::detail
