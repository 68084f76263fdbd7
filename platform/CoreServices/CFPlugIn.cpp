// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/CFPlugIn.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <map>
#include <string>
#include <unordered_set>

#include "platform/CoreServices/TrustedFiles.hpp"
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

void logRefusalOnce(const NSString &bundlePath, const NSError &error) {
  static std::unordered_set<NSString, NSStringHash> logged;
  if (logged.insert(bundlePath).second)
    NSLog(u"The plug-in %@ is not loaded: %@", bundlePath, error.localizedFailureReason);
}

/// A path to the open folder that never comes to mean another one: to the dynamic linker a name that it met
/// once is the same library or folder for ever. Empty when the folder's disk fails.
std::string lastingPath(FileDescriptor folder) {
  static std::map<std::pair<dev_t, ino_t>, FileDescriptor> kept;
  struct stat info = {};
  if (::fstat(folder.get(), &info) != 0) return std::string();
  const auto [entry, isNew] = kept.try_emplace({info.st_dev, info.st_ino}, std::move(folder));
  return pathOfDescriptor(entry->second.get());
}

/// The library in the bundle's folder of libraries; null, with `*error`, when it cannot be loaded.
void *openLibrary(const NSString &bundlePath, FileDescriptor folder, const std::string &name, NSError *error) {
  // By its name in a folder that nobody else can change, as its dependencies may be named relative to that.
  const std::string path = lastingPath(std::move(folder));
  void *library =
      path.empty() ? nullptr : ::dlopen((path + "/" + name).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library) return library;
  const char *message = ::dlerror();
  std::string reason = message ? message : "its library cannot be loaded";
  if (reason.starts_with(path + "/"))
    reason.replace(0, path.size(),
                   stringByAppendingPathComponent(bundlePath, u"Contents/Linux"_ns).UTF8String());
  setError(error, ErrorCode::damaged, reason);
  return nullptr;
}

/// The library of the bundle after `*info`, its information, was read, and nothing in it is found that must not
/// be trusted; null, with `*error`, when it cannot be loaded.
void *loadLibrary(const NSString &bundlePath, NSDictionary *info, NSError *error) {
  // The path loses the slashes at its end, with which a symbolic link would be followed.
  const auto path = stringByAppendingPathComponent(bundlePath, NSString::string()).fileSystemRepresentation();
  const FileDescriptor bundle = openTrusted(AT_FDCWD, path.value_or(std::string()), S_IFDIR, error);
  if (!bundle || !holderIsTrusted(bundle.get(), error)) return nullptr;
  const FileDescriptor contents = openTrusted(bundle.get(), "Contents", S_IFDIR, error);
  if (!contents) return nullptr;
  const FileDescriptor information = openTrusted(contents.get(), "Info.plist", S_IFREG, error);
  if (!information) return nullptr;
  FileDescriptor libraries = openTrusted(contents.get(), "Linux", S_IFDIR, error);
  if (!libraries) return nullptr;
  *info = NSBundle::infoDictionaryOfFile(
      NSString::stringWithFileSystemRepresentation(pathOfDescriptor(information.get())), error);
  if (!*info) return nullptr;
  const auto name = NSBundle::executableName(*info).fileSystemRepresentation();
  if (!name) {
    setError(error, ErrorCode::damaged, "its library is not named");
    return nullptr;
  }
  if (!openTrusted(libraries.get(), *name, S_IFREG, error)) return nullptr;
  return openLibrary(bundlePath, std::move(libraries), *name, error);
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
