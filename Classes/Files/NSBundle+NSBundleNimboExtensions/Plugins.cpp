// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Plugins.hpp"

#include <filesystem>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
inline namespace NSBundleNimboExtensions {

namespace {

/// The path without symbolic links; nil when it leads nowhere.
NSString resolvedPath(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  std::error_code error;
  const std::filesystem::path real = name ? std::filesystem::canonical(*name, error) : std::filesystem::path();
  return real.empty() ? NSString() : NSString::stringWithFileSystemRepresentation(real.native());
}

NSString builtInPlugIns() {
  return NSBundle::mainBundle().builtInPlugInsPath();
}

}  // namespace

std::vector<NSBundle> loadPluginsAtPath(const NSString &path) {
  std::vector<NSBundle> plugins;
  const auto names = NSFileManager::contentsOfDirectoryAtPath(path);
  for (const NSString &name : names.value_or(std::vector<NSString>()))
    if (NSBundle bundle = NSBundle::bundleWithPath(resolvedPath(stringByAppendingPathComponent(path, name))))
      plugins.push_back(std::move(bundle));
  return plugins;
}

std::vector<NSBundle> loadPluginsOfClass(const ClassDescription &description, const NSString &atPath) {
  std::vector<NSBundle> plugins = loadPluginsAtPath(atPath);
  std::erase_if(plugins, [&](const NSBundle &bundle) { return bundle.principalClass() != &description; });
  return plugins;
}

std::vector<NSBundle> loadPluginsOfClassName(const NSString &name, const NSString &atPath) {
  std::vector<NSBundle> plugins = loadPluginsAtPath(atPath);
  std::erase_if(plugins, [&](const NSBundle &bundle) { return !bundle.classNamed(name); });
  return plugins;
}

std::vector<NSBundle> loadPlugins() {
  return loadPluginsAtPath(builtInPlugIns());
}

std::vector<NSBundle> loadPluginsOfClass(const ClassDescription &description) {
  return loadPluginsOfClass(description, builtInPlugIns());
}

std::vector<NSBundle> loadPluginsOfClassName(const NSString &name) {
  return loadPluginsOfClassName(name, builtInPlugIns());
}

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
