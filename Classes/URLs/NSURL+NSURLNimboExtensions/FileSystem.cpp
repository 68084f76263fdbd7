// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/FileSystem.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Classes/Paths/NSString+NSStringNimboPathExtensions.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Components.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Strings.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

/// The name of a copy of what a path that ends with "/" names.
constexpr std::u16string_view kIndexName = u"index";

/// Cuts the text to so many units, without half a character at the end; 0 is no limit.
NSString cutTo(const NSString &string, std::uint32_t maxUnits) {
  if (maxUnits == 0 || string.length() <= maxUnits) return string;
  const bool cutsPair = isHighSurrogate(string.characterAtIndex(maxUnits - 1));
  return string.substringWithRange({0, maxUnits - (cutsPair ? 1u : 0u)});
}

/// The components of the path and the query, as they are to be named.
std::vector<NSString> componentsOfPath(const NSURL &url) {
  std::vector<NSString> components;
  for (const NSString &component : pathComponents(fullPath(url)))
    if (component != u"/"_ns) components.push_back(component);
  if (!url.escapedPath().length() || url.escapedPath().view().ends_with(u'/'))
    components.push_back(NSString::stringWithCharacters(kIndexName));
  if (url.query() && !components.empty())
    components.back() = stringByConcatenating(components.back(), u'?', url.query());
  return components;
}

void joinBeyond(std::vector<NSString> &components, std::uint32_t maxComponents) {
  if (maxComponents == 0 || components.size() <= maxComponents) return;
  components[maxComponents - 1] = stringByJoining(std::span(components).subspan(maxComponents - 1), u"-");
  components.resize(maxComponents);
}

}  // namespace

bool getFSRef(const NSURL &url, FSRef *ref) {
  return FSPathMakeRef(fileSystemPathPOSIXStyle(url), ref);
}

NSURL URLWithFSRef(const FSRef &ref) {
  return NSURL::fileURLWithPath(FSRefMakePath(ref));
}

NSString fileSystemPathPOSIXStyle(const NSURL &url) {
  return url.isFileURL() ? fullPath(url) : NSString();
}

NSString fileSystemPathHFSStyle(const NSURL &url) {
  return HFSPath(fileSystemPathPOSIXStyle(url));
}

NSString pathRelativeToDirectory(const NSURL &url, const NSString &directory, Flag simplified,
                                 const NSString &defaultPathComponent) {
  const bool isSimplified = simplified && !url.isFileURL();
  const NSURL source = isSimplified ? NSURL::URLWithString(simplifiedStringURL(url)) : url;
  NSString path = source.isFileURL() ? fullPath(source) : source.path();
  if (!path) return path;
  const bool isFolder = source.escapedPath().length() == 0 || source.escapedPath().view().ends_with(u'/');
  if (path.length() == 0) path = u"/"_ns;
  if (isFolder && defaultPathComponent.length() != 0)
    path = stringByAppendingPathComponent(path, defaultPathComponent);
  return relativePathToDirectory(path, directory);
}

NSString invertedPathRelativeToDirectory(const NSURL &url, const NSString &directory, Flag removeSessionIDs,
                                         const NSString &pathExtension, std::uint32_t maxComponents,
                                         std::uint32_t maxComponentUnits, Flag caseInsensitive) {
  if (!url || url.isOpaque() || (!url.host() && !url.isFileURL())) return NSString();
  const NSURL source = removeSessionIDs && !url.isFileURL()
                           ? NSURL::URLWithString(stringURLByRemovingSessionIDs(url.absoluteString()))
                           : url;
  std::vector<NSString> components;
  for (const NSString &label : invertedHostComponents(source)) components.push_back(lowercaseString(label));
  for (const NSString &component : componentsOfPath(source))
    components.push_back(caseInsensitive ? lowercaseString(component) : component);
  joinBeyond(components, maxComponents);

  NSMutableString path(directory);
  for (const NSString &component : components) {
    const bool isLast = &component == &components.back();
    const NSString name = stringByCreatingFilename(cutTo(component, maxComponentUnits));
    const NSString bounded =
        isLast ? stringByCreatingFileSystemRepresentationByAppendingExtension(name, pathExtension)
               : stringByCreatingFileSystemRepresentation(name);
    if (bounded.length() != 0) appendPathComponent(path, bounded);
  }
  return path.length() == 0 ? directory : std::move(path).string();
}

NSString directoryInPath(const NSURL &url, const NSString &path, NSDate forDate, Flag milliseconds) {
  // A double of 0.123 seconds is a little less.
  const double time = forDate.timeIntervalSinceReferenceDate + (milliseconds ? 0.0005 : 0);
  const double seconds = std::floor(time);
  std::optional<std::string> name = NSDate{seconds}.ISO8601String();
  const NSString host = stringByCreatingFilename(lowercaseString(invertedHost(url)));
  if (!host || !path || !name) return NSString();
  name->pop_back();  // The "Z" of UTC.
  std::ranges::replace(*name, 'T', ' ');
  std::ranges::replace(*name, ':', '-');
  if (milliseconds) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "-%03d", static_cast<int>((time - seconds) * 1000));
    *name += text.data();
  }
  return stringByAppendingPathComponent(
      stringByAppendingPathComponent(path, stringByCreatingFileSystemRepresentation(host)),
      NSString::stringWithUTF8String(*name));
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
