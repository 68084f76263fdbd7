// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSBundleLocalization.hpp"

#include <string>

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kMaximumTableBytes = 1 << 24;

NSDictionary tableAtPath(const NSString &path) {
  const NSData data = NSData::dataWithContentsOfFile(path);
  if (!data || data.length() > kMaximumTableBytes) return NSDictionary();
  if (const id list = NSPropertyListSerialization::propertyListFromData(data)) return list.dictionary();
  const std::string braced = "{" + std::string(data.view()) + "\n}";
  return NSPropertyListSerialization::propertyListFromData(NSData::dataWithBytes(braced.data(), braced.size()))
      .dictionary();
}

}  // namespace

NSString localizedStringForKey(const NSBundle &bundle, const NSString &key, const NSString &value) {
  const NSString resources = stringByAppendingPathComponent(bundle.bundlePath(), u"Contents/Resources"_ns);
  for (const NSString &language : bundle.preferredLocalizations()) {
    const NSString folder =
        stringByAppendingPathComponent(resources, stringByAppendingPathExtension(language, u"lproj"_ns));
    const NSString path = stringByAppendingPathComponent(folder, u"Localizable.strings"_ns);
    if (NSString text = tableAtPath(path).objectForKey(key).string()) return text;
  }
  return value.length() != 0 ? value : key;
}

}  // namespace nimbo
