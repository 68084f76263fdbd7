// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Paths.hpp"

#include <algorithm>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Strings/UnitEditing.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
namespace {

/// Appends a name with each `from` as `to`.
void appendName(NSMutableString &path, std::u16string_view name, unichar from, unichar to) {
  for (const unichar c : name) path.appendCharacter(c == from ? to : c);
}

bool isAbsolute(const NSString &path) {
  return path.view().starts_with(u'/');
}

}  // namespace

inline namespace NSStringNimboPathExtensions {

NSString stringByDeletingFileComponent(const NSString &path) {
  return answerOr(path, [&] {
    if (path.view().ends_with(u'/')) return path.substringWithRange({0, path.length() - 1});
    return stringByDeletingLastPathComponent(path);
  });
}

NSString standardizedPath(const NSString &path) {
  return answerOr(path, [&] { return stringByStandardizingPath(path); });
}

std::vector<NSString> standardizedPathComponents(const NSString &path) {
  return answerOr(std::vector<NSString>(), [&] { return pathComponents(stringByStandardizingPath(path)); });
}

NSString relativePathToDirectory(const NSString &path, const NSString &directory) {
  return answerOr(path, [&] {
    const NSString to = stringByStandardizingPath(path), from = stringByStandardizingPath(directory);
    if (to.length() == 0 || from.length() == 0 || isAbsolute(to) != isAbsolute(from)) return path;
    std::vector<NSString> target = pathComponents(to), origin = pathComponents(from);
    std::erase(target, u"."_ns);
    std::erase(origin, u"."_ns);
    const auto [up, down] = std::mismatch(origin.begin(), origin.end(), target.begin(), target.end());
    if (std::find(up, origin.end(), u".."_ns) != origin.end()) return path;
    NSMutableString result;
    const auto append = [&](const NSString &name) {
      if (result.length() > 0) result.appendCharacter(u'/');
      result.appendString(name);
    };
    std::for_each(up, origin.end(), [&](const NSString &) { append(u".."_ns); });
    std::for_each(down, target.end(), append);
    return result.length() == 0 ? u"."_ns : std::move(result).string();
  });
}

NSString POSIXPath(const NSString &path) {
  return answerOr(path, [&] {
    std::u16string_view units = path.view();
    const std::size_t colon = units.find(u':');
    if (units.starts_with(u'/') || colon == units.npos) return path;
    NSMutableString result;
    if (colon > 0) {
      if (units.substr(0, colon) != kRootVolumeName) return NSString();
      result.appendCharacter(u'/');
    }
    units.remove_prefix(colon + 1);
    if (colon == 0 && units.empty()) return u"."_ns;
    while (!units.empty()) {
      const std::size_t end = units.find(u':');
      const std::u16string_view name = units.substr(0, end);
      appendName(result, name.empty() ? u".." : name, u'/', u':');
      if (end == units.npos) break;
      result.appendCharacter(u'/');
      units.remove_prefix(end + 1);
    }
    return std::move(result).string();
  });
}

NSString HFSPath(const NSString &path) {
  return answerOr(path, [&] {
    if (path.length() == 0) return path;
    std::vector<NSString> names = pathComponents(path);
    const auto isNoName = [](const NSString &name) { return name.view() == u"/" || name.view() == u"."; };
    const bool isFolder = isNoName(names.back()) || names.back().view() == u"..";
    std::erase_if(names, isNoName);
    NSMutableString result;
    if (isAbsolute(path)) result.append(kRootVolumeName);
    for (const NSString &name : names) {
      result.appendCharacter(u':');
      if (name.view() != u"..") appendName(result, name.view(), u':', u'/');
    }
    if (isFolder) result.appendCharacter(u':');
    return std::move(result).string();
  });
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
