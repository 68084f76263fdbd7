// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSBundleLocalization.hpp"

#include <string>

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kMaximumTableBytes = 1 << 24;

/// The text in UTF-8 without a byte order mark, which may tell that it is in UTF-16.
std::string tableText(std::string_view bytes) {
  constexpr std::string_view kUTF8Mark = "\xef\xbb\xbf";
  if (bytes.starts_with(kUTF8Mark)) bytes.remove_prefix(kUTF8Mark.size());
  const bool isLittle = bytes.starts_with("\xff\xfe");
  if (!isLittle && !bytes.starts_with("\xfe\xff")) return std::string(bytes);
  std::u16string units;
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]), second = static_cast<unsigned char>(bytes[i + 1]);
    units += static_cast<char16_t>(isLittle ? second << 8 | first : first << 8 | second);
  }
  return NSString::stringWithCharacters(units).UTF8String();
}

NSDictionary tableAtPath(const NSString &path) {
  const NSData data = NSData::dataWithContentsOfFile(path);
  if (!data || data.length() > kMaximumTableBytes) return NSDictionary();
  const auto read = [](const std::string &text) {
    return NSPropertyListSerialization::propertyListFromData(NSData::dataWithBytes(text.data(), text.size()));
  };
  const std::string text = tableText(data.view());
  const id list = read(text);
  return (list ? list : read("{" + text + "\n}")).dictionary();
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
