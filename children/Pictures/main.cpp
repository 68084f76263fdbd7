// SPDX-License-Identifier: Apache-2.0
//
// Pictures for the command, which itself has none of the libraries that they need:
//
//     quiverleaf-pictures picture FILE SIDE TYPE SECONDS
//     quiverleaf-pictures cover FILE SIDE TYPE SECONDS
//     quiverleaf-pictures sheet FILE 0 TYPE SECONDS
//
// It writes a picture of the uniform type TYPE, whose longer side is SIDE pixels at most, to its standard
// output. Otherwise it writes why there is none to its standard error, and its exit code is that of the
// `ErrorCode`.
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <string_view>

#include "children/Pictures/ContactSheet.hpp"
#include "children/Pictures/Picture.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/ImageIO/CGImageDestination.hpp"

namespace nimbo {
namespace {

CGImage sheetInFile(const NSString &path, NSError *error) {
  const NSData data = NSData::dataWithContentsOfFile(path, error);
  return contactSheet(NSPropertyListSerialization::propertyListFromData(data).dictionary(), error);
}

NSData makePicture(char **arguments, NSError *error) {
  const std::string_view what = arguments[1];
  const NSString path = NSString::stringWithFileSystemRepresentation(arguments[2]);
  const auto side = static_cast<std::uint32_t>(std::strtoul(arguments[3], nullptr, 10));
  const NSString type = NSString::stringWithUTF8String(arguments[4]);
  const Deadline deadline = Deadline::after(std::strtod(arguments[5], nullptr));
  const CGImage image = what == "picture" ? pictureInFile(path, side, deadline, error)
                        : what == "cover" ? coverInFile(path, side, deadline, error)
                                          : sheetInFile(path, error);
  return image ? dataWithImage(image, type, {.usesLZW = true}, error) : NSData();
}

}  // namespace
}  // namespace nimbo

int main(int argc, char **argv) {
  using namespace nimbo;
  constexpr int kArguments = 6;
  if (argc != kArguments) return EXIT_FAILURE;
  NSError error;
  NSData data;
  try {
    data = makePicture(argv, &error);
  } catch (const std::exception &exception) {
    error = NSError::errorWithException(exception);
  }
  if (data && writeAll(STDOUT_FILENO, data.view())) return EXIT_SUCCESS;
  if (data || !error) setError(&error, ErrorCode::other, "the picture cannot be made");
  writeAll(STDERR_FILENO, error.localizedFailureReason.UTF8String());
  return static_cast<int>(error.errorCode());
}
