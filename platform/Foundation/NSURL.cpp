// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSURL.hpp"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/URLs/URIReference.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

static_assert(sizeof(NSURL) == sizeof(void *));

struct detail::URLStorage : ReferenceCounted {
  URLStorage(NSString relative, NSURL baseURL, NSString absolute, const URIParts &partsOfAbsolute) noexcept
      : relativeString(std::move(relative)),
        base(std::move(baseURL)),
        absoluteString(std::move(absolute)),
        parts(partsOfAbsolute) {}

  const NSString relativeString;
  const NSURL base;
  const NSString absoluteString;
  const URIParts parts;

  NSString part(NSRange range) const {
    return range.location == NSNotFound ? NSString() : absoluteString.substringWithRange(range);
  }
  std::u16string_view path() const {
    return absoluteString.view().substr(parts.path.location, parts.path.length);
  }
};

template <>
void destroyShared<detail::URLStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::URLStorage *>(storage);
}

namespace {

/// A file's path may hold these, besides letters and digits, as they are. Not ";", which begins parameters.
constexpr std::string_view kPlainInPaths = "/-._~!$&'()*+,=:@";

NSRange firstOf(NSRange range, std::uint32_t length) {
  return {range.location, length};
}

NSRange behind(NSRange range, std::uint32_t length) {
  return {range.location + length, range.length - length};
}

}  // namespace

NSURL NSURL::make(NSString relativeString, NSURL base, NSString absoluteString, const URIParts &parts) {
  return NSURL(
      makeShared<Storage>(std::move(relativeString), std::move(base), std::move(absoluteString), parts));
}

NSURL NSURL::URLWithString(const NSString &string) {
  if (string.length() == 0) return NSURL();
  const std::optional<URIParts> parts = partsOfURIReference(string.view());
  return parts ? make(string, NSURL(), string, *parts) : NSURL();
}

NSURL NSURL::URLWithString(const NSString &string, const NSURL &relativeTo) {
  if (!relativeTo) return URLWithString(string);
  if (!string) return NSURL();
  const std::optional<URIParts> own = partsOfURIReference(string.view());
  if (!own) return NSURL();
  if (own->scheme.location != NSNotFound) return make(string, NSURL(), string, *own);
  const Storage &base = *relativeTo.storage_;
  if (base.parts.scheme.location == NSNotFound) return NSURL();
  const NSString target = resolvedURIReference(string.view(), *own, base.absoluteString.view(), base.parts);
  const std::optional<URIParts> parts = partsOfURIReference(target.view());
  if (!parts) return NSURL();
  return make(string, relativeTo.absoluteURL(), target, *parts);
}

NSURL NSURL::fileURLWithPath(const NSString &path) {
  bool isDirectory = false;
  return fileURLWithPath(path, NSFileManager::fileExistsAtPath(path, &isDirectory) && isDirectory);
}

NSURL NSURL::fileURLWithPath(const NSString &path, Flag isDirectory) {
  std::optional<std::string> bytes = path.fileSystemRepresentation();
  if (!bytes) return NSURL();
  if (!bytes->starts_with('/')) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    if (error) return NSURL();
    bytes = (folder / *bytes).native();
  }
  if (isDirectory && !bytes->ends_with('/')) bytes->push_back('/');
  return URLWithString(
      NSString::stringWithUTF8String("file://" + bytesByAddingPercentEscapes(*bytes, kPlainInPaths)));
}

NSString NSURL::absoluteString() const {
  return storage_ ? storage_->absoluteString : NSString();
}

NSString NSURL::relativeString() const {
  return storage_ ? storage_->relativeString : NSString();
}

NSURL NSURL::baseURL() const {
  return storage_ ? storage_->base : NSURL();
}

NSURL NSURL::absoluteURL() const {
  if (!storage_ || !storage_->base) return *this;
  return make(storage_->absoluteString, NSURL(), storage_->absoluteString, storage_->parts);
}

NSURL NSURL::standardizedURL() const {
  if (!scheme() || isOpaque() || storage_->path().find(u'.') == std::u16string_view::npos) return *this;
  const std::u16string_view units = storage_->absoluteString.view();
  const NSString target = resolvedURIReference(units, storage_->parts, units, storage_->parts);
  return target == storage_->absoluteString ? *this : URLWithString(target);
}

NSString NSURL::scheme() const {
  return storage_ ? storage_->part(storage_->parts.scheme) : NSString();
}

NSString NSURL::resourceSpecifier() const {
  if (!storage_) return NSString();
  const NSRange scheme = storage_->parts.scheme;
  const std::uint32_t length = storage_->absoluteString.length();
  return scheme.location == NSNotFound ? storage_->absoluteString
                                       : storage_->part({scheme.length + 1, length - scheme.length - 1});
}

NSString NSURL::host() const {
  return storage_ ? storage_->part(storage_->parts.host) : NSString();
}

std::optional<std::uint16_t> NSURL::port() const {
  const std::string digits = storage_ ? storage_->part(storage_->parts.port).UTF8String() : "";
  std::uint16_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() ? std::optional(number) : std::nullopt;
}

NSString NSURL::user() const {
  if (!storage_ || storage_->parts.userInfo.location == NSNotFound) return NSString();
  const NSRange range = storage_->parts.userInfo;
  const std::size_t colon = storage_->part(range).view().find(u':');
  return storage_->part(firstOf(range, static_cast<std::uint32_t>(std::min<std::size_t>(colon, range.length))));
}

NSString NSURL::password() const {
  if (!storage_ || storage_->parts.userInfo.location == NSNotFound) return NSString();
  const NSRange range = storage_->parts.userInfo;
  const std::size_t colon = storage_->part(range).view().find(u':');
  return colon == std::u16string_view::npos
             ? NSString()
             : storage_->part(behind(range, static_cast<std::uint32_t>(colon) + 1));
}

NSString NSURL::path() const {
  return decodedPath(false);
}

NSString NSURL::pathWithParameters() const {
  return decodedPath(true);
}

NSString NSURL::decodedPath(Flag withParameters) const {
  if (!storage_ || isOpaque()) return NSString();
  std::u16string_view units = storage_->path();
  if (!withParameters) units = units.substr(0, units.find(u';'));
  if (units.size() > 1 && units.ends_with(u'/')) units.remove_suffix(1);
  NSString written = NSString::stringWithCharacters(units);
  if (units.find(u'%') == std::u16string_view::npos) return written;
  const std::string bytes = bytesByReplacingPercentEscapes(std::string(units.begin(), units.end()));
  if (isFileURL()) return NSString::stringWithFileSystemRepresentation(bytes);
  const NSString decoded = NSString::stringWithUTF8String(bytes);
  return decoded ? decoded : written;
}

NSString NSURL::escapedPath() const {
  return storage_ ? storage_->part(storage_->parts.path) : NSString();
}

NSString NSURL::parameterString() const {
  if (!storage_ || isOpaque()) return NSString();
  const std::size_t semicolon = storage_->path().find(u';');
  return semicolon == std::u16string_view::npos
             ? NSString()
             : storage_->part(behind(storage_->parts.path, static_cast<std::uint32_t>(semicolon) + 1));
}

NSString NSURL::query() const {
  return storage_ ? storage_->part(storage_->parts.query) : NSString();
}

NSString NSURL::fragment() const {
  return storage_ ? storage_->part(storage_->parts.fragment) : NSString();
}

bool NSURL::isFileURL() const {
  return equalsASCIINoCase(scheme().view(), "file");
}

bool NSURL::isOpaque() const {
  return storage_ && storage_->parts.scheme.location != NSNotFound && !storage_->parts.hasAuthority &&
         !storage_->path().starts_with(u'/');
}

bool NSURL::operator==(const NSURL &other) const {
  if (storage_ == other.storage_) return true;
  return storage_ && other.storage_ && storage_->relativeString == other.storage_->relativeString &&
         storage_->base == other.storage_->base;
}

std::size_t NSURL::hash() const noexcept {
  return storage_ ? storage_->relativeString.hash() : 0;
}

}  // namespace nimbo
