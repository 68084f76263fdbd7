// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSString+NSStringNimboLinkExtensions.hpp"

#include <limits.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Aliases.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Kinds.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Links.hpp"

namespace nimbo {
inline namespace NSStringNimboLinkExtensions {
namespace {

namespace fs = std::filesystem;

/// As many as the system follows in one path.
constexpr int kMaximumLinks = 40;

/// Appends the path's components to those that are to come, so that its first is the last of them.
void appendReversed(std::vector<fs::path> &components, const fs::path &path) {
  const std::vector<fs::path> own(path.begin(), path.end());
  components.insert(components.end(), own.rbegin(), own.rend());
}

/// What an alias file leads to; nil when that is not there, or the file is no alias.
NSString originalOfAlias(const NSString &path) {
  NSString original = resolveAlias(path);
  return fileExistsAtPath(original, false) ? original : NSString();
}

/// Where the link or the alias file at the path leads to; empty when there is none.
fs::path targetOf(const fs::path &path) {
  // No link has a longer name, and long paths stay linear.
  if (path.native().size() >= PATH_MAX) return fs::path();
  std::error_code error;
  const fs::file_type type = fs::symlink_status(path, error).type();
  if (type == fs::file_type::symlink) return fs::read_symlink(path, error);
  if (type != fs::file_type::regular) return fs::path();
  return originalOfAlias(NSString::stringWithFileSystemRepresentation(path.native()))
      .fileSystemRepresentation()
      .value_or("");
}

/// The path without links; an empty one when they lead in circles.
fs::path withoutLinks(const fs::path &path) {
  std::vector<fs::path> components;
  appendReversed(components, path);
  fs::path result;
  for (int links = 0; !components.empty();) {
    const fs::path component = std::move(components.back());
    components.pop_back();
    if (component.empty() || component == ".") continue;
    if (component == "..") {
      // The root is its own folder; above a relative path nothing is known.
      const bool leadsUp = !result.empty() && result.filename() != "..";
      result = leadsUp ? result.parent_path() : result / component;
      continue;
    }
    fs::path next = result / component;
    const fs::path target = targetOf(next);
    if (target.empty()) {
      result = std::move(next);
      continue;
    }
    if (++links > kMaximumLinks) return fs::path();
    appendReversed(components, target);
  }
  return result.empty() ? fs::path(".") : result;
}

}  // namespace

NSString stringByResolvingLinkOfPath(const NSString &path) {
  if (NSString target = resolveLink(path)) return target;
  const NSString original = originalOfAlias(path);
  return original ? original : path;
}

NSString stringByResolvingLinksInPath(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  const fs::path result = name ? withoutLinks(*name) : fs::path();
  if (result.empty()) return path;
  const NSString found = NSString::stringWithFileSystemRepresentation(result.native());
  return found == path ? path : found;
}

}  // namespace NSStringNimboLinkExtensions
}  // namespace nimbo
