// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Creation.hpp"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

constexpr mode_t kNewFileMode = 0666;

NSData dataOfString(const NSString &string) {
  const std::string bytes = string.UTF8String();
  return string ? NSData::dataWithBytes(bytes.data(), bytes.size()) : NSData();
}

NSData dataOfObject(const id &object) {
  if (NSData data = object.data()) return data;
  if (const NSString string = object.string()) return dataOfString(string);
  return NSPropertyListSerialization::dataWithPropertyList(object, NSPropertyListFormat::xml);
}

bool appendAll(const FileDescriptor &file, const NSData &data) {
  struct stat before = {}, after = {};
  if (::fstat(file.get(), &before) != 0) return false;
  if (writeAll(file.get(), data.view())) return true;
  // What others have written behind it stays.
  if (S_ISREG(before.st_mode) && ::fstat(file.get(), &after) == 0 && after.st_size > before.st_size &&
      ::lseek(file.get(), 0, SEEK_CUR) == after.st_size)
    (void)!::ftruncate(file.get(), before.st_size);
  return false;
}

}  // namespace

bool createPath(const NSString &path, const NSDictionary &attributes) {
  return NSFileManager::createDirectoryAtPath(path, true, attributes);
}

bool createPathPreviousPath(const NSString &path, const NSString &previousPath) {
  return (path.length() > 0 && path == previousPath) || createPath(path);
}

bool createPathToFile(const NSString &path, const NSDictionary &attributes) {
  if (path.length() == 0) return false;
  const NSString folder = stringByDeletingLastPathComponent(path);
  if (folder.length() == 0 || createPath(folder, attributes)) return true;
  // For the file, what has the folder's name is in the wrong place, and not in its own.
  if (errno == EEXIST) errno = ENOTDIR;
  return false;
}

bool createFile(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  return name && createPathToFile(path) &&
         FileDescriptor(::open(name->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
}

bool createPathAndFile(const NSString &path) {
  return createFile(path);
}

bool createPathAndWriteObject(const id &object, const NSString &toFile, Flag atomically) {
  const NSData data = dataOfObject(object);
  return data && createPathToFile(toFile) && writeDataToFile(data, toFile, atomically);
}

NSString createWritableTemporaryPath(const NSString &path) {
  std::string folder =
      NSTemporaryDirectory().fileSystemRepresentation().value_or("/tmp/") + "quiverleaf-XXXXXX";
  const NSString name = lastPathComponent(path);
  const bool isName = name.length() == 0 || (name != u"/"_ns && name != u"."_ns && name != u".."_ns);
  if (!isName || (name.length() > 0 && !name.fileSystemRepresentation()) || !::mkdtemp(folder.data()))
    return NSString();
  const NSString made = NSString::stringWithFileSystemRepresentation(folder);
  return name.length() == 0 ? made : stringByAppendingPathComponent(made, name);
}

bool writeData(const NSData &data, const NSString &toFile, Flag append) {
  if (!data || !createPathToFile(toFile)) return false;
  if (!append) return writeDataToFile(data, toFile, true);
  const auto name = toFile.fileSystemRepresentation();
  const FileDescriptor file(
      name ? ::open(name->c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOCTTY | O_CLOEXEC, kNewFileMode) : -1);
  return file && appendAll(file, data);
}

bool writeString(const NSString &string, const NSString &toFile, Flag append) {
  return writeData(dataOfString(string), toFile, append);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
