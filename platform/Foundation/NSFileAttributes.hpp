// SPDX-License-Identifier: Apache-2.0
//
// What the file system and file servers know of a file. Any thread may ask.
//
//     const NSDictionary attributes = fileAttributesAtPath(path, false);
//     attributes.objectForKey(NSFileSize()).integer().value();
//     fileAttributeAtPath(path, NSFileModificationDate(), false).date();
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The key of the kind of file, one of the seven below.
inline NSString NSFileType() {
  return u"NSFileType"_ns;
}
/// The key of the length of the content in bytes.
inline NSString NSFileSize() {
  return u"NSFileSize"_ns;
}
/// The key of the twelve bits of who may do what.
inline NSString NSFilePosixPermissions() {
  return u"NSFilePosixPermissions"_ns;
}
/// The key of the owner's name; the attribute is missing when the user has none.
inline NSString NSFileOwnerAccountName() {
  return u"NSFileOwnerAccountName"_ns;
}
/// The key of the group's name; the attribute is missing when the group has none.
inline NSString NSFileGroupOwnerAccountName() {
  return u"NSFileGroupOwnerAccountName"_ns;
}
/// The key of the number of the file system.
inline NSString NSFileSystemNumber() {
  return u"NSFileSystemNumber"_ns;
}
/// The key of the number of the file in its file system.
inline NSString NSFileSystemFileNumber() {
  return u"NSFileSystemFileNumber"_ns;
}
/// The key of the date that a client of a file server set, else of when the file was made here; the attribute
/// is missing where that is not known.
inline NSString NSFileCreationDate() {
  return u"NSFileCreationDate"_ns;
}
/// The key of the date of the last change of the content.
inline NSString NSFileModificationDate() {
  return u"NSFileModificationDate"_ns;
}
/// The key of the type code; regular files alone have it, and 0 is none.
inline NSString NSFileHFSTypeCode() {
  return u"NSFileHFSTypeCode"_ns;
}
/// The key of the creator code; regular files alone have it, and 0 is none.
inline NSString NSFileHFSCreatorCode() {
  return u"NSFileHFSCreatorCode"_ns;
}
/// The key of whether the name is shown without its extension.
inline NSString NSFileExtensionHidden() {
  return u"NSFileExtensionHidden"_ns;
}

/// A folder.
inline NSString NSFileTypeDirectory() {
  return u"NSFileTypeDirectory"_ns;
}
/// A regular file.
inline NSString NSFileTypeRegular() {
  return u"NSFileTypeRegular"_ns;
}
/// A symbolic link.
inline NSString NSFileTypeSymbolicLink() {
  return u"NSFileTypeSymbolicLink"_ns;
}
/// A socket.
inline NSString NSFileTypeSocket() {
  return u"NSFileTypeSocket"_ns;
}
/// A device of characters.
inline NSString NSFileTypeCharacterSpecial() {
  return u"NSFileTypeCharacterSpecial"_ns;
}
/// A device of blocks.
inline NSString NSFileTypeBlockSpecial() {
  return u"NSFileTypeBlockSpecial"_ns;
}
/// A file of another kind, a FIFO for one.
inline NSString NSFileTypeUnknown() {
  return u"NSFileTypeUnknown"_ns;
}

/// All attributes of what is at `path`; without `traverseLink`, of a symbolic link itself. Nil when nothing can
/// be reached there; `*error` says why.
NSDictionary fileAttributesAtPath(const NSString &path, Flag traverseLink, NSError *error = nullptr);

/// The same attribute alone. Nil when it is missing, or nothing can be reached.
id fileAttributeAtPath(const NSString &path, const NSString &key, Flag traverseLink);

}  // namespace nimbo
