// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSPathUtilities.hpp"

#include <limits.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kUserRecordBytes = 16384;

/// The path without "/" at the end, unless it is the root.
std::u16string_view withoutFinalSlashes(std::u16string_view path) {
  while (path.size() > 1 && path.ends_with(u'/')) path.remove_suffix(1);
  return path;
}

/// Where the full stop before the path extension stands in a path without "/" at its end; npos without one.
std::size_t findExtension(std::u16string_view path) {
  const std::size_t stop = path.rfind(u'.');
  if (stop == path.npos || stop == 0 || path[stop - 1] == u'/' || path.find(u'/', stop) != path.npos)
    return path.npos;
  return stop;
}

/// The part of `path` from its beginning or to its end; the path itself when that is the whole.
NSString part(const NSString &path, std::u16string_view units) {
  return units.size() == path.length() ? path : NSString::stringWithCharacters(units);
}

template <class Visit>
void visitComponents(std::u16string_view path, Visit visit) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find(u'/'), path.size());
    if (end > 0) visit(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
}

/// Removes the last component of an absolute path, or moves to the folder above the target of a link.
void ascend(std::u16string &path) {
  std::error_code error;
  // No link has a longer name, and long paths stay linear.
  if (path.size() < PATH_MAX) {
    const auto name = NSString::stringWithCharacters(path).fileSystemRepresentation();
    if (name && std::filesystem::is_symlink(*name, error)) {
      const std::filesystem::path target = std::filesystem::canonical(*name, error);
      if (!error) path = NSString::stringWithFileSystemRepresentation(target.native()).view();
    }
  }
  path.resize(std::min(path.rfind(u'/'), path.size()));
}

/// What the user database has of the process's user in a field; nil when it has none.
NSString userRecord(char *passwd::*field) {
  std::vector<char> buffer(kUserRecordBytes);
  struct passwd record;
  struct passwd *user = nullptr;
  if (::getpwuid_r(::getuid(), &record, buffer.data(), buffer.size(), &user) != 0 || !user) return NSString();
  return NSString::stringWithFileSystemRepresentation(user->*field);
}

}  // namespace

NSString NSHomeDirectory() {
  if (const char *home = std::getenv("HOME"); home && home[0] == '/')
    return NSString::stringWithFileSystemRepresentation(home);
  return userRecord(&passwd::pw_dir);
}

NSString NSUserName() {
  NSString name = userRecord(&passwd::pw_name);
  return name ? name : NSString::stringWithUTF8String(std::to_string(::getuid()));
}

NSString NSTemporaryDirectory() {
  const char *folder = std::getenv("TMPDIR");
  const NSString path = stringByStandardizingPath(
      NSString::stringWithFileSystemRepresentation(folder && folder[0] == '/' ? folder : ""));
  return path.length() > 1 ? stringByConcatenating(path, u"/") : u"/tmp/"_ns;
}

NSString stringByExpandingTildeInPath(const NSString &path) {
  const std::u16string_view units = path.view();
  if (!units.starts_with(u'~') || (units.size() > 1 && units[1] != u'/')) return path;
  const NSString home = NSHomeDirectory();
  return home ? stringByConcatenating(home, units.substr(1)) : path;
}

NSString stringByAbbreviatingWithTildeInPath(const NSString &path) {
  const NSString home = NSHomeDirectory();
  const std::u16string_view folder = withoutFinalSlashes(home.view());
  std::u16string_view units = path.view();
  if (folder.size() < 2 || !units.starts_with(folder)) return path;
  units.remove_prefix(folder.size());
  return units.empty() || units.starts_with(u'/') ? stringByConcatenating(u"~"_ns, units) : path;
}

NSString stringByAppendingPathComponent(const NSString &path, const NSString &component) {
  if (path.length() == 0) return component;
  NSMutableString whole;
  whole.reserve(std::size_t{path.length()} + component.length() + 1);
  whole.appendString(path);
  appendPathComponent(whole, component);
  return std::move(whole).string();
}

void appendPathComponent(NSMutableString &path, const NSString &component) {
  if (path.length() == 0) return path.appendString(component);
  std::u16string_view tail = component.view();
  while (tail.starts_with(u'/')) tail.remove_prefix(1);
  path.setLength(static_cast<std::uint32_t>(withoutFinalSlashes(path.view()).size()));
  if (path.view() != u"/" && !tail.empty()) path.appendCharacter(u'/');
  path.append(tail);
}

NSString pathExtension(const NSString &path) {
  const std::u16string_view units = withoutFinalSlashes(path.view());
  const std::size_t stop = findExtension(units);
  return stop == units.npos ? NSString::string() : NSString::stringWithCharacters(units.substr(stop + 1));
}

NSString lastPathComponent(const NSString &path) {
  const std::u16string_view units = withoutFinalSlashes(path.view());
  return units == u"/" ? part(path, units) : part(path, units.substr(units.rfind(u'/') + 1));
}

NSString stringByDeletingLastPathComponent(const NSString &path) {
  const std::u16string_view units = withoutFinalSlashes(path.view());
  const std::size_t slash = units.rfind(u'/');
  if (slash == units.npos) return path.length() == 0 ? path : NSString::string();
  return part(path, withoutFinalSlashes(units.substr(0, std::max<std::size_t>(slash, 1))));
}

NSString stringByDeletingPathExtension(const NSString &path) {
  const std::u16string_view units = withoutFinalSlashes(path.view());
  return part(path, units.substr(0, findExtension(units)));
}

NSString stringByAppendingPathExtension(const NSString &path, const NSString &extension) {
  const std::u16string_view units = withoutFinalSlashes(path.view());
  if (units.empty() || units == u"/" || extension.length() == 0) return path;
  return stringByConcatenating(units, u'.', extension);
}

std::vector<NSString> pathComponents(const NSString &path) {
  std::vector<NSString> components;
  const std::u16string_view units = path.view();
  if (units.starts_with(u'/')) components.push_back(u"/"_ns);
  visitComponents(units, [&](std::u16string_view name) { components.push_back(part(path, name)); });
  const bool isRoot = units.find_first_not_of(u'/') == units.npos;
  if (units.ends_with(u'/') && !isRoot) components.push_back(u"/"_ns);
  return components;
}

NSString stringByStandardizingPath(const NSString &path) {
  if (path.length() == 0) return path;
  const NSString expanded = stringByExpandingTildeInPath(path);
  const bool isAbsolute = expanded.view().starts_with(u'/');
  std::u16string result;
  visitComponents(expanded.view(), [&](std::u16string_view name) {
    if (name == u".") return;
    if (isAbsolute && name == u"..") return ascend(result);
    if (isAbsolute || !result.empty()) result += u'/';
    result += name;
  });
  if (result.empty()) result = isAbsolute ? u'/' : u'.';
  return result == path.view() ? path : NSString::stringWithCharacters(result);
}

}  // namespace nimbo
