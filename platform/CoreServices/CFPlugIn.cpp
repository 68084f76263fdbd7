// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/CFPlugIn.hpp"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <unordered_set>

#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

using FactoryFunction = void *(*)(void *allocator, const std::uint8_t *typeID);

const IUnknownVTbl &functionsOf(void *object) {
  return **static_cast<const IUnknownVTbl **>(object);
}

/// The value under a key that is a UUID, in whatever case it is written; nil when there is none.
id objectForUUID(const NSDictionary &dictionary, const CFUUIDBytes &uuid) {
  for (const auto &[key, value] : dictionary)
    if (CFUUIDCreateFromString(key) == uuid) return value;
  return id();
}

/// Why the file or folder must not be trusted; nil when it may.
NSError errorForDistrust(const NSString &path, mode_t kind) {
  const auto name = path.fileSystemRepresentation();
  struct stat info = {};
  const auto because = [&](ErrorCode code, std::string_view reason) {
    return NSError::errorWithCode(code, path.UTF8String().append(" ").append(reason));
  };
  if (!name || ::lstat(name->c_str(), &info) != 0) return because(ErrorCode::noSuchFile, "is missing");
  if ((info.st_mode & S_IFMT) != kind)
    return because(ErrorCode::unreadable,
                   S_ISLNK(info.st_mode) ? "is a symbolic link" : "is of the wrong kind");
  if (info.st_uid != 0 && info.st_uid != ::geteuid())
    return because(ErrorCode::unreadable, "belongs to another user");
  if (info.st_mode & (S_IWGRP | S_IWOTH))
    return because(ErrorCode::unreadable, "is writable by others than its owner");
  return NSError();
}

void logRefusalOnce(const NSString &bundlePath, const NSError &error) {
  static std::unordered_set<NSString, NSStringHash> logged;
  if (logged.insert(bundlePath).second)
    NSLog(u"The plug-in %@ is not loaded: %@", bundlePath, error.localizedFailureReason);
}

/// The library of the bundle after `*info`, its information, was read, and nothing in it is found that must not
/// be trusted; null, with `*error`, when it cannot be loaded.
void *loadLibrary(const NSString &bundlePath, NSDictionary *info, NSError *error) {
  const NSBundle bundle(bundlePath);
  const NSString contents = stringByAppendingPathComponent(bundlePath, u"Contents"_ns);
  const std::pair<NSString, mode_t> trusted[] = {
      // The path loses the slashes at its end, with which a symbolic link would be followed.
      {stringByAppendingPathComponent(bundlePath, NSString::string()), S_IFDIR},
      {contents, S_IFDIR},
      {stringByAppendingPathComponent(contents, u"Info.plist"_ns), S_IFREG},
      {stringByAppendingPathComponent(contents, u"Linux"_ns), S_IFDIR},
  };
  for (const auto &[path, kind] : trusted)
    if ((*error = errorForDistrust(path, kind))) return nullptr;
  *info = bundle.infoDictionary(error);
  if (!*info) return nullptr;
  const NSString executable = bundle.executablePath();
  if (!executable) {
    setError(error, ErrorCode::damaged, "its library is not named");
    return nullptr;
  }
  if ((*error = errorForDistrust(executable, S_IFREG))) return nullptr;
  void *library =
      ::dlopen(executable.fileSystemRepresentation()->c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  const char *reason = library ? nullptr : ::dlerror();
  if (!library) setError(error, ErrorCode::damaged, reason ? reason : "its library cannot be loaded");
  return library;
}

}  // namespace

std::optional<CFUUIDBytes> CFUUIDCreateFromString(const NSString &string) {
  constexpr std::u16string_view kPattern = u"xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  const std::u16string_view text = string.view();
  if (text.size() != kPattern.size()) return std::nullopt;
  CFUUIDBytes bytes = {};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (kPattern[i] == u'-') {
      if (c != u'-') return std::nullopt;
      continue;
    }
    const std::uint32_t digit = hexDigitValue(c);
    if (digit > 15) return std::nullopt;
    bytes[digits / 2] = static_cast<std::uint8_t>(bytes[digits / 2] << 4 | digit);
    ++digits;
  }
  return bytes;
}

void CFPlugInInstance::Release::operator()(void *object) const noexcept {
  functionsOf(object).Release(object);
}

CFPlugInInstance CFPlugInInstance::QueryInterface(const CFUUIDBytes &interfaceID) const {
  void *interface = nullptr;
  if (!object_ || functionsOf(get()).QueryInterface(get(), interfaceID.data(), &interface) != 0)
    return CFPlugInInstance();
  return CFPlugInInstance(interface);
}

void CFPlugIn::Close::operator()(void *library) const noexcept {
  ::dlclose(library);
}

std::optional<CFPlugIn> CFPlugInCreate(const NSString &bundlePath, NSError *error) {
  NSDictionary info;
  NSError failure;
  std::unique_ptr<void, CFPlugIn::Close> library(loadLibrary(bundlePath, &info, &failure));
  if (library) return CFPlugIn(std::move(info), std::move(library));
  logRefusalOnce(bundlePath, failure);
  if (error) *error = std::move(failure);
  return std::nullopt;
}

std::vector<CFUUIDBytes> CFPlugInFindFactoriesForPlugInTypeInPlugIn(const CFUUIDBytes &type,
                                                                    const CFPlugIn &plugIn) {
  std::vector<CFUUIDBytes> factories;
  const NSDictionary types = plugIn.info_.objectForKey(u"CFPlugInTypes"_ns).dictionary();
  const NSArray named = objectForUUID(types, type).array();
  for (const id &element : named)
    if (const auto factory = CFUUIDCreateFromString(element.string())) factories.push_back(*factory);
  return factories;
}

CFPlugInInstance CFPlugInInstanceCreate(const CFPlugIn &plugIn, const CFUUIDBytes &factory,
                                        const CFUUIDBytes &type) {
  const NSDictionary factories = plugIn.info_.objectForKey(u"CFPlugInFactories"_ns).dictionary();
  const NSString name = objectForUUID(factories, factory).string();
  if (name.length() == 0) return CFPlugInInstance();
  const auto function =
      reinterpret_cast<FactoryFunction>(::dlsym(plugIn.library_.get(), name.UTF8String().c_str()));
  return function ? CFPlugInInstance(function(nullptr, type.data())) : CFPlugInInstance();
}

}  // namespace nimbo
