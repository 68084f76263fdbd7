// SPDX-License-Identifier: Apache-2.0
//
// Changes of one attribute of a file or folder, or of what a symbolic link leads to. What the file system has
// no place for goes where file servers keep it, in an extended attribute. All answer false, and log a line,
// when the attribute is not what was asked for. Any thread may call.
//
//     setFileHFSTypeCode(OSTypeFromString(u"TEXT"_ns), path);
//     if (!setFileImmutable(true, path)) NSLog(u"%@ can be changed", path);
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSHFSFileTypes.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Sets the date that `fileCreationDate` answers, to a second of the years 1932 to 2068; that of the file
/// system itself never changes.
bool setFileCreationDate(NSDate date, const NSString &path);
/// Sets the date of the last change of the content, with fractions of a second.
bool setFileModificationDate(NSDate date, const NSString &path);
/// Sets both dates; the second one also when the first one cannot be set.
bool setFileCreationDate(NSDate date, NSDate modificationDate, const NSString &path);
/// Makes the present moment the date of the last change; a file that is not there is not made.
bool touchFile(const NSString &path);

/// Sets the type code of a regular file; 0 is none.
bool setFileHFSTypeCode(OSType code, const NSString &path);
/// Sets the creator code of a regular file; 0 is none.
bool setFileHFSCreatorCode(OSType code, const NSString &path);
/// Sets both codes at once.
bool setFileHFSCreatorCode(OSType code, OSType typeCode, const NSString &path);
/// Has the name shown without its extension, or with it.
bool setFileExtensionHidden(Flag hidden, const NSString &path);

/// Sets the file system's own flag: nobody can change, rename, link or remove the file until it is taken away.
/// Mostly only the administrator may.
bool setFileImmutable(Flag immutable, const NSString &path);
/// Whether that flag is set.
bool isFileImmutableAtPath(const NSString &path);
/// Sets the lock that clients of file servers obey; programs on this machine do not.
bool setFileLocked(Flag locked, const NSString &path);
/// Whether that lock is set, or the file is immutable.
bool isFileLockedAtPath(const NSString &path);

/// Whether this process may read and write what is at `path` and, with `executable`, run it or enter it.
/// Without `traverseLink` a symbolic link itself is asked, which everybody may read.
bool permissionsAtPath(const NSString &path, Flag executable, Flag traverseLink);
/// The same of the folder in which the path is, or would be.
bool permissionsAtPathByDeletingLastPathComponent(const NSString &path, Flag executable);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
