// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Attributes.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

id attribute(const NSString &path, const NSString &key) {
  return fileAttributeAtPath(path, key, false);
}

template <class Number>
Number number(const NSString &path, const NSString &key) {
  return static_cast<Number>(attribute(path, key).integer().value_or(0));
}

}  // namespace

NSString fileType(const NSString &path) {
  return attribute(path, NSFileType()).string();
}

std::uint64_t fileSize(const NSString &path) {
  return number<std::uint64_t>(path, NSFileSize());
}

std::uint32_t filePosixPermissions(const NSString &path) {
  return number<std::uint32_t>(path, NSFilePosixPermissions());
}

NSString fileOwnerAccountName(const NSString &path) {
  return attribute(path, NSFileOwnerAccountName()).string();
}

NSString fileGroupOwnerAccountName(const NSString &path) {
  return attribute(path, NSFileGroupOwnerAccountName()).string();
}

std::uint64_t fileSystemNumber(const NSString &path) {
  return number<std::uint64_t>(path, NSFileSystemNumber());
}

std::uint64_t fileSystemFileNumber(const NSString &path) {
  return number<std::uint64_t>(path, NSFileSystemFileNumber());
}

std::optional<NSDate> fileCreationDate(const NSString &path) {
  return attribute(path, NSFileCreationDate()).date();
}

std::optional<NSDate> fileModificationDate(const NSString &path) {
  return attribute(path, NSFileModificationDate()).date();
}

OSType fileHFSTypeCode(const NSString &path) {
  return number<OSType>(path, NSFileHFSTypeCode());
}

OSType fileHFSCreatorCode(const NSString &path) {
  return number<OSType>(path, NSFileHFSCreatorCode());
}

bool fileExtensionHidden(const NSString &path) {
  return attribute(path, NSFileExtensionHidden()).boolean().value_or(false);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
