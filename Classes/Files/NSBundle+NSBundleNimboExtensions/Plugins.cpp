// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Plugins.hpp"

#include <utility>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"
#include "platform/Foundation/System/FSRef.hpp"

namespace nimbo {
inline namespace NSBundleNimboExtensions {

namespace {

NSString builtInPlugIns() {
  return NSBundle::mainBundle().builtInPlugInsPath();
}

}  // namespace

std::vector<NSBundle> loadPluginsAtPath(const NSString &path) {
  std::vector<NSBundle> plugins;
  FSRef folder;
  if (!FSPathMakeRef(path, &folder)) return plugins;
  // Their paths are absolute: they hold when the working folder changes.
  for (const NSString &entry : directoryContentsAtPath(FSRefMakePath(folder), true, true))
    if (NSBundle bundle = NSBundle::bundleWithPath(entry)) plugins.push_back(std::move(bundle));
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
