// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSPathUtilities.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kUserRecordBytes = 16384;

NSString concatenate(const NSString &first, std::u16string_view second) {
  NSMutableString result(first);
  result.appendCharacters(second.data(), static_cast<std::uint32_t>(second.size()));
  return std::move(result).string();
}

}  // namespace

NSString NSHomeDirectory() {
  if (const char *home = std::getenv("HOME"); home && home[0] == '/')
    return NSString::stringWithFileSystemRepresentation(home);
  std::vector<char> buffer(kUserRecordBytes);
  struct passwd record;
  struct passwd *user = nullptr;
  if (::getpwuid_r(::getuid(), &record, buffer.data(), buffer.size(), &user) != 0 || !user) return NSString();
  return NSString::stringWithFileSystemRepresentation(user->pw_dir);
}

NSString stringByExpandingTildeInPath(const NSString &path) {
  const std::u16string_view units = path.view();
  if (!units.starts_with(u'~') || (units.size() > 1 && units[1] != u'/')) return path;
  const NSString home = NSHomeDirectory();
  return home ? concatenate(home, units.substr(1)) : path;
}

NSString stringByAppendingPathComponent(const NSString &path, const NSString &component) {
  if (path.length() == 0) return component;
  std::u16string_view tail = component.view();
  while (tail.starts_with(u'/')) tail.remove_prefix(1);
  std::u16string_view head = path.view();
  while (head.size() > 1 && head.ends_with(u'/')) head.remove_suffix(1);
  NSMutableString result;
  result.appendCharacters(head.data(), static_cast<std::uint32_t>(head.size()));
  if (head != u"/" && !tail.empty()) result.appendCharacter(u'/');
  result.appendCharacters(tail.data(), static_cast<std::uint32_t>(tail.size()));
  return std::move(result).string();
}

NSString pathExtension(const NSString &path) {
  std::u16string_view name = path.view();
  while (name.ends_with(u'/')) name.remove_suffix(1);
  name.remove_prefix(name.rfind(u'/') + 1);
  const std::size_t stop = name.rfind(u'.');
  if (stop == std::u16string_view::npos || stop == 0) return NSString::string();
  return NSString::stringWithCharacters(name.substr(stop + 1));
}

}  // namespace nimbo
