// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/StandardDirectories.hpp"

#include "Classes/Characters/AnswerOr.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
namespace {

/// Nil when there is no memory for the path, or no folder.
NSString pathIn(const NSString &folder, const NSString &name) {
  if (!folder) return NSString();
  return answerOr(NSString(), [&] { return stringByAppendingPathComponent(folder, name); });
}

/// Made on first use. Raises when there is no memory for it, so that the next use makes it.
template <NSString (*Folder)(), detail::StringLiteral Name>
NSString keptPath() {
  static const NSString path = [] {
    const NSString folder = Folder();
    return folder ? stringByAppendingPathComponent(folder, operator""_ns<Name>()) : folder;
  }();
  return path;
}

constexpr auto &kLibraryDirectory = keptPath<NSHomeDirectory, u"Library">;

}  // namespace

NSString homeDirectory() {
  return answerOr(NSString(), NSHomeDirectory);
}

NSString libraryDirectory() {
  return answerOr(NSString(), kLibraryDirectory);
}

NSString applicationSupportDirectory() {
  return answerOr(NSString(), keptPath<kLibraryDirectory, u"Application Support">);
}

NSString cachesDirectory() {
  return answerOr(NSString(), keptPath<kLibraryDirectory, u"Caches">);
}

NSString preferencesDirectory() {
  return answerOr(NSString(), keptPath<kLibraryDirectory, u"Preferences">);
}

NSString desktopDirectory() {
  return answerOr(NSString(), keptPath<NSHomeDirectory, u"Desktop">);
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
  return answerOr(false, [&] {
    const std::u16string_view units = path.view();
    if (units.starts_with(u"/tmp") || units.starts_with(u"/var/tmp/") ||
        units.starts_with(NSTemporaryDirectory().view()))
      return true;
    return units.find(u".mimeattach") != units.npos &&
           stringByAbbreviatingWithTildeInPath(path).view().starts_with(u"~/Library/Mail/");
  });
}

}  // namespace nimbo
