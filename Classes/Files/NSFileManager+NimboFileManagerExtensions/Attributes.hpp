// SPDX-License-Identifier: Apache-2.0
//
// One attribute of what is at a path; of a symbolic link, its own. Any thread may ask.
//
//     if (fileType(path) == NSFileTypeRegular()) NSLog(u"%@ has %d bytes", path, fileSize(path));
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSFileAttributes.hpp"
#include "platform/Foundation/NSHFSFileTypes.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// `NSFileTypeRegular()` or another of these; nil when nothing can be reached.
NSString fileType(const NSString &path);
/// The length of the content in bytes; 0 when nothing can be reached.
std::uint64_t fileSize(const NSString &path);
/// The twelve bits of who may do what; 0 when nothing can be reached.
std::uint32_t filePosixPermissions(const NSString &path);
/// The owner's name; nil when the user has none, or nothing can be reached.
NSString fileOwnerAccountName(const NSString &path);
/// The group's name; nil when the group has none, or nothing can be reached.
NSString fileGroupOwnerAccountName(const NSString &path);
/// The number of the file system; 0 when nothing can be reached.
std::uint64_t fileSystemNumber(const NSString &path);
/// The number of the file in its file system; 0 when nothing can be reached.
std::uint64_t fileSystemFileNumber(const NSString &path);
/// The date that `setFileCreationDate` or a client of a file server set, else that of the file system. Nothing
/// when neither is known.
std::optional<NSDate> fileCreationDate(const NSString &path);
/// The date of the last change of the content; nothing when nothing can be reached.
std::optional<NSDate> fileModificationDate(const NSString &path);
/// The type code; 0 when there is none, as for all that is no regular file.
OSType fileHFSTypeCode(const NSString &path);
/// The creator code; 0 when there is none, as for all that is no regular file.
OSType fileHFSCreatorCode(const NSString &path);
/// Whether the name is shown without its extension.
bool fileExtensionHidden(const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
