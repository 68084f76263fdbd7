// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/InternetLocations.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "Classes/Files/InternetLocationData.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Creation.hpp"
#include "Classes/Files/ResourceFork.hpp"
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/NSStringSearch.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// A location file holds one URL; what is larger is another file under the name of one.
constexpr std::uint32_t kMaximumLocationBytes = 16u << 20;

/// Where resource forks have the URL.
constexpr OSType kURLResource = 0x75726c20;  // "url "
constexpr std::int16_t kURLResourceID = 256;

/// The type codes of the extensions.
constexpr std::pair<std::u16string_view, OSType> kTypesOfExtensions[] = {
    {u"webloc", 0x696c6874},   // "ilht"
    {u"ftploc", 0x696c6674},   // "ilft"
    {u"fileloc", 0x696c6669},  // "ilfi"
    {u"mailloc", 0x696c6d61},  // "ilma"
    {u"newsloc", 0x696c6e77},  // "ilnw"
    {u"vncloc", 0x696c766e},   // "ilvn"
    {u"inetloc", 0x696c6765},  // "ilge"
};

bool isQuoted(const NSString &type) {
  return type.view().starts_with(u'\'');
}

bool writeText(const std::string &text, const NSString &path) {
  return writeData(NSData::dataWithBytes(text.data(), text.size()), path, false);
}

/// A value of a desktop entry, whose backslashes begin escapes.
std::string escapedValue(const NSString &text) {
  std::string value;
  for (const char c : text.UTF8String()) {
    if (c == '\\' || c == '\n' || c == '\r' || c == '\t') value += '\\';
    value += c == '\n' ? 'n' : c == '\r' ? 'r' : c == '\t' ? 't' : c;
  }
  return value;
}

OSType typeForURL(const NSURL &url) {
  const NSString extension = pathExtensionForInternetLocation(url);
  return std::ranges::find_if(kTypesOfExtensions,
                              [&](const auto &row) { return row.first == extension.view(); })
      ->second;
}

/// What the file had is there until the fork is.
bool createLocationInResourceFork(const NSURL &url, const NSString &path) {
  const bool isNew = !NSFileManager::fileExistsAtPath(path);
  if (isNew && !writeData(NSData::data(), path, false)) return false;
  auto fork = ResourceFork::resourceForkForWritingAtPath(path);
  if (fork && fork->addString(url.absoluteString(), kURLResource, kURLResourceID)) {
    // The URL is all that matters; a file system without attributes has no place for types.
    setFinderField(path, kFinderType, typeForURL(url));
    return isNew || writeData(NSData::data(), path, false);
  }
  if (isNew) ::unlink(path.fileSystemRepresentation().value_or("").c_str());
  return false;
}

NSString URLOfResourceFork(const NSString &path) {
  const auto fork = ResourceFork::resourceForkForReadingAtPath(path);
  if (!fork) return {};
  const auto found = std::ranges::find(fork->resources(), kURLResource, &Resource::type);
  if (found == fork->resources().end()) return {};
  return URLOfLocationText(stringWithDetectedEncoding(found->data.view()).string.view());
}

}  // namespace

std::vector<NSString> InternetLocationTypes() {
  return {u"'ilht'"_ns, u"'ilft'"_ns,  u"'ilfi'"_ns, u"'ilma'"_ns, u"'ilnw'"_ns,  u"'ilaf'"_ns,  u"'ilat'"_ns,
          u"'ilns'"_ns, u"'ilge'"_ns,  u"'ilvn'"_ns, u"webloc"_ns, u"mailloc"_ns, u"newsloc"_ns, u"fileloc"_ns,
          u"ftploc"_ns, u"inetloc"_ns, u"vncloc"_ns, u"url"_ns,    u"URL"_ns,     u"'LINK'"_ns};
}

bool isInternetLocationExtension(const NSString &extension, const NSString &type) {
  return std::ranges::any_of(InternetLocationTypes(), [&](const NSString &known) {
    return isQuoted(known) ? known == type : isEqualCaseInsensitive(extension.view(), known.view());
  });
}

bool isInternetLocationFile(const NSString &path) {
  std::uint64_t size = 0;
  if (!openRegularFile(path, &size)) return false;
  const NSString extension = pathExtension(path);
  const auto type = static_cast<OSType>(finderField(path, kFinderType));
  if (equalsASCIINoCase(extension.view(), "desktop")) return static_cast<bool>(resolveInternetLocation(path));
  return isInternetLocationExtension(extension, NSFileTypeForHFSTypeCode(type));
}

NSString pathExtensionForInternetLocation(const NSURL &url) {
  const NSString scheme = url.scheme();
  if (url.isFileURL()) return u"fileloc"_ns;
  if (isHTTPURL(url)) return u"webloc"_ns;
  if (isFTPURL(url)) return u"ftploc"_ns;
  if (isMailURL(url)) return u"mailloc"_ns;
  if (equalsOneOfASCIINoCase(scheme.view(), {"news", "nntp"})) return u"newsloc"_ns;
  if (equalsASCIINoCase(scheme.view(), "vnc")) return u"vncloc"_ns;
  return u"inetloc"_ns;
}

NSString pathExtensionForInternetLocation(const NSString &string) {
  if (isFileStringURL(string)) return u"fileloc"_ns;
  if (isHTTPStringURL(string)) return u"webloc"_ns;
  if (isFTPStringURL(string)) return u"ftploc"_ns;
  if (isNewsStringURL(string)) return u"newsloc"_ns;
  if (isMailStringURL(string)) return u"mailloc"_ns;
  if (startsWithASCIINoCase(string.view(), "vnc://")) return u"vncloc"_ns;
  return u"inetloc"_ns;
}

bool createURL(const NSURL &url, const NSString &atPath) {
  return url && writeText("[InternetShortCut]\nURL=" + url.absoluteString().UTF8String() + "\n", atPath);
}

bool createInternetLocation(const NSURL &url, const NSString &atPath, InternetLocationForm form) {
  if (!url) return false;
  if (form == InternetLocationForm::resourceFork) return createLocationInResourceFork(url, atPath);
  const bool isBinary = form == InternetLocationForm::binary;
  const NSPropertyListFormat format = isBinary ? NSPropertyListFormat::binary : NSPropertyListFormat::xml;
  const NSDictionary list = {{u"URL"_ns, url.absoluteString()}};
  return writeData(NSPropertyListSerialization::dataWithPropertyList(list, format), atPath, false);
}

bool createDesktopLink(const NSURL &url, const NSString &atPath) {
  const NSString name = stringByDeletingPathExtension(lastPathComponent(atPath));
  return url && writeText("[Desktop Entry]\nVersion=1.0\nType=Link\nName=" + escapedValue(name) +
                              "\nURL=" + escapedValue(url.absoluteString()) + "\n",
                          atPath);
}

NSString resolveInternetLocation(const NSString &path, NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, error);
  if (!file) return {};
  if (size > kMaximumLocationBytes) {
    setError(error, ErrorCode::tooLarge, "the file is too large for a location");
    return {};
  }
  NSError reason;
  const NSData data = readData(file.get(), size, kMaximumLocationBytes, &reason);
  NSString url = data ? URLOfInternetLocationData(data, &reason) : NSString();
  if (!url && data) url = URLOfResourceFork(path);
  if (!url && error) *error = reason;
  return url;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
