// SPDX-License-Identifier: Apache-2.0
#include "children/Archive/Companions.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cstdint>
#include <optional>

#include "platform/Foundation/System/AppleDouble.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {

namespace {

/// A larger one is an ordinary file.
constexpr std::uint32_t kMaximumCompanionBytes = 512u << 20;

/// The attributes that file servers keep a file's fork and its metadata in, and the streams of other ones,
/// which a null byte ends.
constexpr char kForkAttribute[] = "user.org.netatalk.ResourceFork",
               kMetadataAttribute[] = "user.org.netatalk.Metadata",
               kForkStream[] = "user.DosStream.AFP_Resource:$DATA",
               kInformationStream[] = "user.DosStream.AFP_AfpInfo:$DATA";
/// In the stream, a signature, a version, a reserved field and a date precede the Finder information.
constexpr std::uint32_t kFinderInfoOffset = 16, kInformationLength = 60;

/// Nil when there is none, or when it changes while it is read.
NSData attributeOf(int descriptor, const char *name) {
  const ssize_t length = ::fgetxattr(descriptor, name, nullptr, 0);
  if (length <= 0) return {};
  std::string bytes(static_cast<std::size_t>(length), '\0');
  const ssize_t got = ::fgetxattr(descriptor, name, bytes.data(), bytes.size());
  return got < 0 ? NSData() : NSData::dataWithBytes(bytes.data(), static_cast<std::size_t>(got));
}

NSData forkOf(int descriptor) {
  if (NSData fork = attributeOf(descriptor, kForkAttribute)) return fork;
  const NSData stream = attributeOf(descriptor, kForkStream);
  return stream.view().ends_with('\0') ? stream.subdataWithRange({0, stream.length() - 1}) : stream;
}

NSData finderInfoOf(int descriptor) {
  if (const auto metadata = AppleDouble::appleDoubleWithData(attributeOf(descriptor, kMetadataAttribute)))
    return metadata->entry(AppleDouble::kFinderInfo);
  const NSData stream = attributeOf(descriptor, kInformationStream);
  if (stream.length() < kInformationLength || !stream.view().starts_with("AFP")) return {};
  return stream.subdataWithRange({kFinderInfoOffset, AppleDouble::kFinderInfoLength});
}

bool saysSomething(const NSData &data) {
  return data.view().find_first_not_of('\0') != std::string_view::npos;
}

}  // namespace

NSData companionOfFile(int descriptor, const NSData &companion) {
  const NSData fork = forkOf(descriptor), information = finderInfoOf(descriptor);
  if (fork.length() == 0 && !saysSomething(information)) return companion;
  auto merged = AppleDouble::appleDoubleWithData(companion);
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
