// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Locations.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <string>

#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Information.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/FileNames.hpp"
#include "Classes/Paths/StandardDirectories.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"

namespace nimbo {
inline namespace NSBundleNimboExtensions {

namespace {

NSString folderName(const NSBundle &bundle) {
  NSString name = bundleName(bundle);
  if (name.length() == 0) name = stringByDeletingPathExtension(lastPathComponent(bundle.bundlePath()));
  return stringByCreatingFileSystemRepresentation(stringByCreatingFilename(name));
}

/// Makes the folder when nothing is there. Whether it is a folder of this user's then, and no link to one.
bool makeOwnFolder(const std::string &path) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  struct stat info = {};
  ::mkdir(path.c_str(), S_IRWXU);
  return ::lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == ::geteuid();
}

}  // namespace

NSString temporaryDirectory(const NSBundle &bundle) {
  const NSString name = folderName(bundle);
  if (name.length() == 0) return NSString();
  for (const NSString &each : {name, stringWithFormat(u"%@-%d", name, ::geteuid())}) {
    NSString path = stringByAppendingPathComponent(nimbo::temporaryDirectory(), each);
    const auto bytes = path.fileSystemRepresentation();
    if (bytes && makeOwnFolder(*bytes)) return path;
  }
  return NSString();
}

NSString bundleTemporaryDirectory() {
  return temporaryDirectory(NSBundle::mainBundle());
}

NSString logFile(const NSBundle &bundle) {
  const NSString identifier = bundle.bundleIdentifier();
  // It is the name of a file, and leads to no other folder.
  if (identifier.length() == 0 || identifier.view().find(u'/') != identifier.view().npos) return NSString();
  const NSString name = stringWithFormat(u"%@.log", identifier);
  const auto bytes = name.fileSystemRepresentation();
  if (!bytes || bytes->size() > NAME_MAX) return NSString();
  return pathInLibraryDirectory(stringByAppendingPathComponent(u"Logs"_ns, name));
}

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
