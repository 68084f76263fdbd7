// SPDX-License-Identifier: Apache-2.0
#include "children/Archive/Companions.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Foundation/System/AppleDouble.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/ForkStorage.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {

namespace {

/// A larger one is an ordinary file.
constexpr std::uint32_t kMaximumCompanionBytes = 512u << 20;

bool saysSomething(const NSData &data) {
  return data.view().find_first_not_of('\0') != std::string_view::npos;
}

}  // namespace

NSData companionOfFile(int descriptor, const NSData &beside) {
  // Most files have no attributes, which one call tells.
  if (::flistxattr(descriptor, nullptr, 0) <= 0) return beside;
  const NSString path = NSString::stringWithUTF8String("/proc/self/fd/" + std::to_string(descriptor));
  const NSData fork = resourceForkData(path), information = metadataEntry(path, AppleDouble::kFinderInfo);
  if (fork.length() == 0 && !saysSomething(information)) return beside;
  auto merged = AppleDouble::appleDoubleWithData(beside);
  if (!merged) merged = AppleDouble::companion();
  if (fork.length() > 0) merged->setEntry(AppleDouble::kResourceFork, fork);
  if (saysSomething(information)) merged->setEntry(AppleDouble::kFinderInfo, information);
  return merged->data();
}

NSData companionInFolder(int folder, const std::string &companionName) {
  const FileDescriptor file(
      ::openat(folder, companionName.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat information = {};
  if (!file || ::fstat(file.get(), &information) != 0 || !S_ISREG(information.st_mode) ||
      information.st_size > kMaximumCompanionBytes)
    return {};
  const NSData data =
      readData(file.get(), static_cast<std::uint64_t>(information.st_size), kMaximumCompanionBytes);
  return AppleDouble::appleDoubleWithData(data) ? data : NSData();
}

}  // namespace nimbo
