// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSBundle+NSBundleNimboExtensions.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "Classes/Paths/NSString+NSStringNimboPathExtensions/FileNames.hpp"
#include "Classes/Paths/StandardDirectories.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"

namespace nimbo {
inline namespace NSBundleNimboExtensions {

namespace {

NSString bundleName(const NSBundle &bundle) {
  NSString name = bundle.objectForInfoDictionaryKey(u"CFBundleName"_ns).string();
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
  const NSString name = bundleName(bundle);
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

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
