// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/StandardDirectories.hpp"

#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
namespace {

NSString pathIn(const NSString &folder, const NSString &name) {
  return folder ? stringByAppendingPathComponent(folder, name) : NSString();
}

}  // namespace

NSString homeDirectory() {
  return NSHomeDirectory();
}

NSString libraryDirectory() {
  static const NSString path = pathInHomeDirectory(u"Library"_ns);
  return path;
}

NSString applicationSupportDirectory() {
  static const NSString path = pathInLibraryDirectory(u"Application Support"_ns);
  return path;
}

NSString cachesDirectory() {
  static const NSString path = pathInLibraryDirectory(u"Caches"_ns);
  return path;
}

NSString preferencesDirectory() {
  static const NSString path = pathInLibraryDirectory(u"Preferences"_ns);
  return path;
}

NSString desktopDirectory() {
  static const NSString path = pathInHomeDirectory(u"Desktop"_ns);
  return path;
}

NSString temporaryDirectory() {
  return u"/tmp"_ns;
}

NSString pathInHomeDirectory(const NSString &name) {
  return pathIn(homeDirectory(), name);
}

NSString pathInLibraryDirectory(const NSString &name) {
  return pathIn(libraryDirectory(), name);
}

NSString pathInApplicationSupportDirectory(const NSString &name) {
  return pathIn(applicationSupportDirectory(), name);
}

NSString pathInCachesDirectory(const NSString &name) {
  return pathIn(cachesDirectory(), name);
}

NSString pathInPreferencesDirectory(const NSString &name) {
  return pathIn(preferencesDirectory(), name);
}

bool isTemporaryPath(const NSString &path) {
  const std::u16string_view units = path.view();
  if (units.starts_with(u"/tmp") || units.starts_with(u"/var/tmp/") ||
      units.starts_with(NSTemporaryDirectory().view()))
    return true;
  return units.find(u"/Library/Mail/") != units.npos && units.find(u".mimeattach") != units.npos &&
         stringByAbbreviatingWithTildeInPath(path).view().starts_with(u"~/Library/Mail/");
}

}  // namespace nimbo
