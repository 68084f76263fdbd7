// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSUserDefaults.hpp"

#include <cstdlib>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

NSString standardPath() {
  if (const char *path = std::getenv("QUIVERLEAF_DEFAULTS"); path && path[0])
    return NSString::stringWithFileSystemRepresentation(path);
  const char *configuration = std::getenv("XDG_CONFIG_HOME");
  const NSString folder = configuration && configuration[0] == '/'
                              ? NSString::stringWithFileSystemRepresentation(configuration)
                              : stringByAppendingPathComponent(NSHomeDirectory(), u".config"_ns);
  return stringByAppendingPathComponent(folder, u"quiverleaf/defaults.plist"_ns);
}

}  // namespace

NSUserDefaults::NSUserDefaults(const NSString &path) {
  if (!NSFileManager::fileExistsAtPath(path)) return;
  NSError error;
  const NSData data = NSData::dataWithContentsOfFile(path, &error);
  if (data) values_ = NSPropertyListSerialization::propertyListFromData(data, nullptr, &error).dictionary();
  if (!values_)
    NSLog(u"The user defaults are not used, %@: %@", path,
          error ? error.localizedFailureReason : u"no dictionary"_ns);
}

NSUserDefaults &NSUserDefaults::standardUserDefaults() {
  static NSUserDefaults defaults(standardPath());
  return defaults;
}

void NSUserDefaults::registerDefaults(const NSDictionary &defaults) {
  registered_.addEntriesFromDictionary(defaults);
}

id NSUserDefaults::objectForKey(const NSString &key) const {
  const id &value = values_.objectForKey(key);
  return value ? value : registered_.objectForKey(key);
}

std::optional<std::vector<NSString>> NSUserDefaults::stringArrayForKey(const NSString &key) const {
  const NSArray array = objectForKey(key).array();
  if (!array) return std::nullopt;
  std::vector<NSString> strings;
  for (const id &element : array) {
    strings.push_back(element.string());
    if (!strings.back()) return std::nullopt;
  }
  return strings;
}

}  // namespace nimbo
