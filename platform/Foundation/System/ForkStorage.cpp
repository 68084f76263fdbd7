// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ForkStorage.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/ExtendedAttributes.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

NSString forkAttribute() {
  return u"user.org.netatalk.ResourceFork"_ns;
}
NSString metadataAttribute() {
  return u"user.org.netatalk.Metadata"_ns;
}
/// Streams that a server for another platform keeps for the same clients; a null byte ends each.
NSString forkStream() {
  return u"user.DosStream.AFP_Resource:$DATA"_ns;
}
NSString informationStream() {
  return u"user.DosStream.AFP_AfpInfo:$DATA"_ns;
}

/// In the stream, a signature, a version, a reserved field and a date precede the Finder information.
constexpr std::uint32_t kFinderInfoOffset = 16;
constexpr std::uint32_t kInformationLength = 60;

/// The companion of what the path leads to; nil when that is nothing.
NSString companionPath(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  std::error_code error;
  const std::filesystem::path file = name ? std::filesystem::canonical(*name, error) : "";
  if (!name || error || !file.has_filename()) return NSString();
  return NSString::stringWithFileSystemRepresentation(
      (file.parent_path() / ("._" + file.filename().native())).native());
}

std::string nameOfCompanion(const NSString &path) {
  return "the companion \"" + lastPathComponent(path).UTF8String() + "\"";
}

void setUnwritable(const NSString &path, NSError *error) {
  setError(error, ErrorCode::unreadable, nameOfCompanion(path) + " cannot be written");
}

/// The companion's content; `*exists` gets whether there is something by its name.
std::optional<AppleDouble> companionAtPath(const NSString &path, bool *exists, NSError *error) {
  std::uint64_t size = 0;
  NSError reason;
  const FileDescriptor file = openRegularFile(path, &size, &reason);
  *exists = file || reason.errorCode() != ErrorCode::noSuchFile;
  std::optional<AppleDouble> result;
  if (!file || size > kMaximumForkLength) {
    if (file) setError(&reason, ErrorCode::tooLarge, "the companion is too large");
  } else if (const NSData data = readData(file.get(), size, kMaximumForkLength, &reason)) {
    result = AppleDouble::appleDoubleWithData(data);
    if (!result) setError(&reason, ErrorCode::damaged, nameOfCompanion(path) + " is damaged or another file");
  }
  if (!result && error) *error = reason;
  return result;
}

NSData streamData(const NSString &path, const NSString &name) {
  const NSData data = extendedAttribute(path, name, true);
  const bool isEnded = data.view().ends_with('\0');
  return data.subdataWithRange({0, data.length() - (isEnded ? 1 : 0)});
}

/// Takes the fork out of the companion, and removes that when nothing is left in it.
bool removeForkFromCompanion(const NSString &path, NSError *error) {
  bool exists = false;
  auto companion = companionAtPath(path, &exists, error);
  if (!exists) return true;
  if (!companion) return false;
  companion->setEntry(AppleDouble::kResourceFork, NSData::data());
  const NSData data = companion->data();
  const bool isDone = data == AppleDouble::companion().data()
                          ? ::unlink(path.fileSystemRepresentation()->c_str()) == 0 || errno == ENOENT
                          : writeDataToFile(data, path, true);
  if (!isDone) setUnwritable(path, error);
  return isDone;
}

bool writeForkToCompanion(const NSData &fork, const NSString &path, NSError *error) {
  bool exists = false;
  auto companion = companionAtPath(path, &exists, error);
  if (!companion && exists) return false;
  if (!companion) companion = AppleDouble::companion();
  companion->setEntry(AppleDouble::kResourceFork, fork);
  if (writeDataToFile(companion->data(), path, true)) return true;
  setUnwritable(path, error);
  return false;
}

/// The attribute, nil when there is none. `*isClosed` gets whether there may be one that cannot be read, and
/// that must not be taken for none and replaced.
NSData readableAttribute(const NSString &path, const NSString &name, bool *isClosed, NSError *error) {
  NSError reason;
  NSData data = extendedAttribute(path, name, true, &reason);
  *isClosed = !data && reason.errorCode() == ErrorCode::unreadable;
  if (*isClosed && error) *error = reason;
  return data;
}

}  // namespace

NSData resourceForkData(const NSString &path, NSError *error) {
  bool isClosed = false;
  NSData attribute = readableAttribute(path, forkAttribute(), &isClosed, error);
  if (isClosed || attribute.length() > 0) return attribute;
  if (const NSString companion = companionPath(path)) {
    bool exists = false;
    NSError reason;
    const auto file = companionAtPath(companion, &exists, &reason);
    if (file && file->entry(AppleDouble::kResourceFork).length() > 0)
      return file->entry(AppleDouble::kResourceFork);
    if (exists && !file && error) *error = reason;
    if (exists && !file) return NSData();
    if (NSData data = streamData(path, forkStream()); data.length() > 0) return data;
    setError(error, ErrorCode::noSuchFile, "the file has no resource fork");
  } else {
    setError(error, ErrorCode::noSuchFile, "there is no such file");
  }
  return NSData();
}

bool setResourceForkData(const NSString &path, const NSData &data, NSError *error) {
  const NSString companion = companionPath(path);
  if (!companion) {
    setError(error, ErrorCode::noSuchFile, "there is no such file");
    return false;
  }
  // The old fork goes only when the new one is there. The attribute counts before the companion.
  NSError reason;
  const bool isSet = data && setExtendedAttribute(path, forkAttribute(), data, true, &reason);
  const bool needsCompanion = data && !isSet;
  if (needsCompanion && reason.errorCode() != ErrorCode::tooLarge &&
      reason.errorCode() != ErrorCode::unsupportedType) {
    if (error) *error = reason;
    return false;
  }
  const bool isArranged = needsCompanion ? writeForkToCompanion(data, companion, &reason)
                                         : removeForkFromCompanion(companion, &reason);
  // Behind the attribute no companion is read, and so one that cannot be changed may stay.
  if (!isArranged && !isSet) {
    if (error) *error = reason;
    return false;
  }
  for (const NSString &name : {forkAttribute(), forkStream()}) {
    if (isSet && name == forkAttribute()) continue;
    if (!setExtendedAttribute(path, name, NSData(), true, &reason) &&
        reason.errorCode() != ErrorCode::unsupportedType) {
      if (error) *error = reason;
      return false;
    }
  }
  return true;
}

NSData metadataEntry(const NSString &path, AppleDouble::EntryID number) {
  if (const auto metadata =
          AppleDouble::appleDoubleWithData(extendedAttribute(path, metadataAttribute(), true));
      metadata && metadata->entry(number))
    return metadata->entry(number);
  if (const NSData stream = extendedAttribute(path, informationStream(), true);
      number == AppleDouble::kFinderInfo && stream.length() >= kInformationLength &&
      stream.view().starts_with("AFP"))
    return stream.subdataWithRange({kFinderInfoOffset, AppleDouble::kFinderInfoLength});
  bool exists = false;
  const NSString companion = companionPath(path);
  const auto file = companion ? companionAtPath(companion, &exists, nullptr) : std::nullopt;
  return file ? file->entry(number) : NSData();
}

bool setMetadataEntry(const NSString &path, AppleDouble::EntryID number, const NSData &data, NSError *error) {
  bool isClosed = false;
  auto metadata =
      AppleDouble::appleDoubleWithData(readableAttribute(path, metadataAttribute(), &isClosed, error));
  if (isClosed) return false;
  if (!metadata) {
    // What the file has elsewhere counts no more once the attribute is there.
    metadata = AppleDouble::metadata();
    for (const auto other : {AppleDouble::kFinderInfo, AppleDouble::kAFPFileInfo}) {
      const NSData old = metadataEntry(path, other), empty = metadata->entry(other);
      if (old.length() >= empty.length()) metadata->setEntry(other, old.subdataWithRange({0, empty.length()}));
    }
  }
  metadata->setEntry(number, data);
  return setExtendedAttribute(path, metadataAttribute(), metadata->data(), true, error);
}

}  // namespace nimbo
