// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSBundleLocalization.hpp"

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kMaximumTableBytes = 1 << 24;

NSDictionary tableAtPath(const NSString &path) {
  const NSData data = NSData::dataWithContentsOfFile(path);
  if (!data || data.length() > kMaximumTableBytes) return NSDictionary();
  return NSPropertyListSerialization::propertyListFromData(data).dictionary();
}

/// Nil when no table of the user's languages has the key.
NSString localizedText(const NSBundle &bundle, const NSString &key, const NSString &table) {
  const NSString resources = stringByAppendingPathComponent(bundle.bundlePath(), u"Contents/Resources"_ns);
  for (const NSString &language : bundle.preferredLocalizations()) {
    const NSString folder =
        stringByAppendingPathComponent(resources, stringByAppendingPathExtension(language, u"lproj"_ns));
    const NSString path =
        stringByAppendingPathComponent(folder, stringByAppendingPathExtension(table, u"strings"_ns));
    if (NSString text = tableAtPath(path).objectForKey(key).string()) return text;
  }
  return NSString();
}

}  // namespace

NSString localizedStringForKey(const NSBundle &bundle, const NSString &key, const NSString &value,
                               const NSString &table) {
  if (NSString text = localizedText(bundle, key, table.length() != 0 ? table : u"Localizable"_ns)) return text;
  return value.length() != 0 ? value : key;
}

id localizedObjectForInfoDictionaryKey(const NSBundle &bundle, const NSString &key) {
  if (NSString text = localizedText(bundle, key, u"InfoPlist"_ns)) return text;
  return bundle.objectForInfoDictionaryKey(key);
}

}  // namespace nimbo
