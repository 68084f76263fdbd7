// SPDX-License-Identifier: Apache-2.0
//
// Folders and files made, with the folders above them where these are missing. Any thread may call.
//
//     createPath(u"/tmp/export/2001"_ns);
//     createPathAndWriteObject(settings, u"/tmp/export/settings.plist"_ns, true);
//     writeString(u"a line\n"_ns, u"/tmp/export/log"_ns, true);
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Makes a folder. Whether there is one then. Of the attributes `NSFilePosixPermissions` counts, for the folder
/// itself when it is new.
bool createPath(const NSString &path, const NSDictionary &attributes = {});
/// As `createPath`, for many paths in a row: nothing is done for one that equals `previousPath`, the one before
/// it, which the caller knows to be a folder.
bool createPathPreviousPath(const NSString &path, const NSString &previousPath);
/// Makes the folder that a file is to be in, as `createPath` does; true for a name without a folder.
bool createPathToFile(const NSString &path, const NSDictionary &attributes = {});

/// Makes an empty file where there is nothing, with the folders above it. False when there is something, which
/// stays as it is; of several that make it at once one succeeds.
bool createFile(const NSString &path);
/// The same, by a name that says so.
bool createPathAndFile(const NSString &path);

/// Writes an object to a file, with the folders above it: data as it is, a string in UTF-8, anything else as an
/// XML property list. Atomically or not as `writeDataToFile` has it. False, without touching the file, for nil
/// and for what no property list can hold.
bool createPathAndWriteObject(const id &object, const NSString &toFile, Flag atomically);

/// A path in a new folder for temporary files that only this user can look into, with the last component of
/// `path` as its name; the folder itself when that is nil or empty. Nothing is there yet. Nil when no folder
/// can be made, or the name is none. The folder is the caller's to remove.
NSString createWritableTemporaryPath(const NSString &path);

/// Writes data to a file, with the folders above it: atomically, or behind what is in the file. Data that
/// cannot be appended whole is taken away again. False when the data is nil or cannot be written; errno says
/// why.
bool writeData(const NSData &data, const NSString &toFile, Flag append);
/// As `writeData`, in UTF-8.
bool writeString(const NSString &string, const NSString &toFile, Flag append);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
